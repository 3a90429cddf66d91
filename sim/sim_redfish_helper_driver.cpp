#include "sim/sim_redfish_helper_driver.hpp"

#include <utility>

namespace sim {

namespace {

// The machine file's family of each word the helper is asked with.
std::string FamilyOfWord(const std::string& word) {
    if (word == "OOBLSI") {
        return "OOB_LSI";
    }
    if (word == "OOBCFC") {
        return "OOB_CFC";
    }
    if (word == "OOBM2") {
        return "OOB_M2";
    }
    if (word == "OOBMICROCHIP") {
        return "OOB_MICROCHIP";
    }
    if (word == "OOBVROC") {
        return "OOB_VROC";
    }
    return {};
}

} // namespace

SimRedfishHelperDriver::SimRedfishHelperDriver(std::shared_ptr<MachineStore> store)
    : store_(std::move(store)) {}

void SimRedfishHelperDriver::GetSupportInfo(int controller, const std::string& family,
                                            std::string& max_stripe_size,
                                            std::string& min_stripe_size,
                                            std::vector<std::string>& raid_levels,
                                            const std::string& /*url*/) {
    Machine machine;
    std::string ignored;
    if (!store_->Read(machine, ignored) || !machine.bmc.support_info) {
        return;
    }
    const std::string wanted = FamilyOfWord(family);
    for (const Controller& candidate : machine.controllers) {
        if (candidate.family == wanted && candidate.id == controller) {
            // A limit the controller does not tell (0) is the empty text, never "0K".
            max_stripe_size = candidate.max_stripe_kb > 0
                                  ? std::to_string(candidate.max_stripe_kb) + "K"
                                  : std::string();
            min_stripe_size = candidate.min_stripe_kb > 0
                                  ? std::to_string(candidate.min_stripe_kb) + "K"
                                  : std::string();
            raid_levels = candidate.raid_levels;
            return;
        }
    }
}

} // namespace sim
