#pragma once

#include <functional>
#include <memory>
#include <optional>
#include <string>
#include <vector>

#include "result/raid_error_code.hpp"
#include "sim/machine.hpp"
#include "sim/machine_store.hpp"

namespace sim {

// How every simulated backend operation reaches one controller of the machine: under the
// store's lock, with the machine read anew, the controller's faults answering first.
class MachineAccess {
public:
    using Code = Quillon::RaidConfig::RaidErrorCode;
    // Acts on the controller; returns the code and sets error on failure.
    using Action = std::function<Code(Controller& controller, std::string& error)>;

    MachineAccess(std::shared_ptr<MachineStore> store, std::string family);

    // The ids of the family's controllers, in file order; empty when the machine is unreadable.
    std::vector<int> ControllerIds() const;

    // Runs action on controller id of the family. A fault whose op (and arg, where the fault
    // names one) matches answers instead, and nothing else changes. When changes is true and the
    // action answers 0 the machine is written back. error_text is set only on failure.
    Code Act(const std::string& op, int controller, const std::optional<std::string>& arg,
             bool changes, std::string& error_text, const Action& action) const;

    const std::string& family() const { return family_; }

private:
    std::shared_ptr<MachineStore> store_;
    std::string family_;
};

} // namespace sim
