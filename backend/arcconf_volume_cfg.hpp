#pragma once

#include <string>
#include <vector>

namespace Quillon {
namespace ARCCONF {

// A volume of an in-band Microchip controller as read back for saving as policy.
struct VolumeCfg {
    int controller_id = 0;
    int volume_id = 0;
    std::vector<std::string> disks;
    std::string raid_level;
    std::string vol_name;
    std::string volume_size;
    std::string strip_size; // the policy writer puts "K" behind it
    std::vector<std::string> hot_spares;
    int io_policy = -1; // -1: unset, and not saved
};

} // namespace ARCCONF
} // namespace Quillon
