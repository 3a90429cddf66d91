#include "sim/sim_redfish_helper_driver.hpp"

#include <utility>

#include "model/controller_reader.hpp"
#include "model/family_names.hpp"

namespace sim {

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
    const std::string wanted = model::FamilyNames::OfSupportWord(family);
    for (const Controller& candidate : machine.controllers) {
        if (candidate.family == wanted && candidate.id == controller) {
            model::ControllerReader::SupportInfo(candidate, max_stripe_size, min_stripe_size,
                                                 raid_levels);
            return;
        }
    }
}

} // namespace sim
