#pragma once

#include <string>
#include <vector>

#include "result/raid_error_code.hpp"

namespace model {

// A controller setting with a fixed set of modes (connector mode, firmware device order, key
// management), changed the way a controller does: the word is taken in any letter case.
class ModeSetting {
public:
    // Sets current to the entry of modes that equals mode: 0 when it changed, 34 when it already
    // stood so (error then says so of subject: "connector 0 is already in RAID mode"), 3 with a
    // reason when mode is not one of modes.
    static Quillon::RaidConfig::RaidErrorCode
    Change(std::string& current, const std::vector<std::string>& modes, const std::string& mode,
           const std::string& subject, std::string& error);

    static std::string Lower(std::string text);
};

} // namespace model
