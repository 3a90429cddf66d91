#pragma once

#include <string>

namespace Quillon {
namespace RaidConfig {

// The volume request of the in-band software RAID backend. Every value is text, numbers too.
struct VolRaidConfig {
    std::string reserved_text;
    std::string raid_level; // decimal text
    std::string vol_name;
    std::string disks;
    std::string vol_capacity;   // with the unit as written in the policy file
    std::string vol_strip_size; // without the "K"
    std::string raid_write_hole;
    std::string volume_id;     // decimal text
    std::string controller_id; // decimal text
};

} // namespace RaidConfig
} // namespace Quillon
