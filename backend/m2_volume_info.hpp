#pragma once

#include <string>

namespace Quillon {
namespace RaidConfig {

// One volume of an M.2 controller, all text as the backend reports it.
struct M2VolumeInfo {
    std::string volume_id;
    std::string name;
    std::string physical_disks;
    std::string raid_level;
    std::string stripe_size;
    std::string capacity;
    std::string status;
};

} // namespace RaidConfig
} // namespace Quillon
