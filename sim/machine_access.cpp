#include "sim/machine_access.hpp"

#include <utility>

namespace sim {

using Quillon::RaidConfig::RAID_INTERNAL_ERROR;
using Quillon::RaidConfig::RAID_OK;
using Quillon::RaidConfig::RAID_TARGET_NOT_FOUND;

namespace {

// The first fault of the controller that answers for op; counts it down and drops it at 0.
// Returns whether one answered; faults_changed tells whether the list must be written back.
bool TakeFault(Controller& controller, const std::string& op, const std::optional<std::string>& arg,
               Fault& taken, bool& faults_changed) {
    for (auto fault = controller.faults.begin(); fault != controller.faults.end(); ++fault) {
        if (fault->op != op) {
            continue;
        }
        if (fault->arg && (!arg || *fault->arg != *arg)) {
            continue;
        }
        if (fault->times && *fault->times <= 0) {
            continue;
        }
        taken = *fault;
        if (fault->times) {
            --*fault->times;
            if (*fault->times == 0) {
                controller.faults.erase(fault);
            }
            faults_changed = true;
        }
        return true;
    }
    return false;
}

} // namespace

MachineAccess::MachineAccess(std::shared_ptr<MachineStore> store, std::string family)
    : store_(std::move(store)), family_(std::move(family)) {}

std::vector<int> MachineAccess::ControllerIds() const {
    Machine machine;
    std::string ignored;
    std::vector<int> ids;
    if (!store_->Read(machine, ignored)) {
        return ids;
    }
    for (const Controller& controller : machine.controllers) {
        if (controller.family == family_) {
            ids.push_back(controller.id);
        }
    }
    return ids;
}

MachineAccess::Code MachineAccess::Act(const std::string& op, int controller_id,
                                       const std::optional<std::string>& arg, bool changes,
                                       std::string& error_text, const Action& action) const {
    Code code = RAID_OK;
    std::string error;
    std::string store_error;
    bool fired = false;
    const bool stored = store_->Update(
        [&](Machine& machine) {
            Controller* controller = nullptr;
            for (Controller& candidate : machine.controllers) {
                if (candidate.family == family_ && candidate.id == controller_id) {
                    controller = &candidate;
                    break;
                }
            }
            if (controller == nullptr) {
                code = RAID_TARGET_NOT_FOUND;
                error = "controller " + std::to_string(controller_id) + " does not exist";
                return false;
            }
            Fault fault;
            bool faults_changed = false;
            if (TakeFault(*controller, op, arg, fault, faults_changed)) {
                code = static_cast<Code>(fault.code);
                error = fault.error_text.value_or("simulated fault on " + op);
                fired = true;
                return faults_changed;
            }
            // An action that fails changes nothing: the machine is only written on success.
            Controller before = *controller;
            code = action(*controller, error);
            if (code != RAID_OK) {
                *controller = std::move(before);
                return false;
            }
            return changes;
        },
        store_error);
    if (!stored) {
        error_text = store_error;
        return RAID_INTERNAL_ERROR;
    }
    // A fault's text goes out with whatever code it gives, success included; so does the
    // reason of a failure or of a change that was not needed (34).
    if (fired || code != RAID_OK) {
        error_text = error;
    }
    return code;
}

} // namespace sim
