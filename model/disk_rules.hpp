#pragma once

#include <string>

#include "model/machine.hpp"
#include "result/raid_error_code.hpp"

namespace model {

// Which disks a careful controller lets each disk change take, with the codes and texts it
// refuses with: the simulated machine applies them, and so does the Redfish road before it
// sends a write to a BMC that would not judge the request itself.
class DiskRules {
public:
    using Code = Quillon::RaidConfig::RaidErrorCode;

    enum class Change {
        Good,        // make good: UBad or JBOD, else 11
        Jbod,        // make JBOD: UGood, else 12
        Spare,       // a global or dedicated hot spare: UGood, else 15
        SpareRemoval // remove a hot spare: GHS or DHS, else 16
    };

    // Checks the disk named by its id as text ("3"): 5 "disk 3 does not exist" when the
    // controller has no such disk, the change's refusal when its state does not allow it, else
    // 0 with id set.
    static Code Check(const Controller& controller, const std::string& disk, Change change, int& id,
                      std::string& error);
};

} // namespace model
