#include "sim/simulated_machine.hpp"

#include <memory>

#include "backend/backend_platform.hpp"
#include "sim/demo_machine.hpp"
#include "sim/machine_store.hpp"
#include "sim/sim_platform.hpp"

namespace sim {

bool SimulatedMachine::Use(const std::string& machine, std::string& error) {
    std::string path = machine;
    if (machine == "demo") {
        path = DemoMachine::Prepare(error);
        if (path.empty()) {
            return false;
        }
    }
    auto store = std::make_shared<MachineStore>(path);
    if (!store->Check(error)) {
        return false;
    }
    Quillon::RaidConfig::InstallBackendPlatform(std::make_shared<SimPlatform>(store));
    return true;
}

} // namespace sim
