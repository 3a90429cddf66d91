#pragma once

#include <string>

#include "result/raid_error_code.hpp"

namespace Quillon {
namespace RaidConfig {

// One row of an action's outcome.
struct RaidResult {
    // "ctrl" and a number, with "-vol" or "-disk" and a number behind for one volume or disk.
    std::string device;
    // The words of the outcome; may hold several lines, of which only the first is shown.
    std::string result;
    RaidErrorCode code = RAID_OK;
};

} // namespace RaidConfig
} // namespace Quillon
