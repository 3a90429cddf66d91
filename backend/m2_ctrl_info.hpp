#pragma once

#include <string>
#include <vector>

#include "backend/m2_volume_info.hpp"

namespace Quillon {
namespace RaidConfig {

// One disk of an M.2 controller.
struct M2DiskInfo {
    std::string slot_no;
    std::string product_name;
    std::string media_type;
    std::string capacity;
    std::string manufacturer;
};

// One M.2 controller with its disks and volumes.
struct M2CtrlInfo {
    int id = 0; // shown as "M.2-" and the number
    std::string version;
    std::string name;
    std::string max_stripe_size;
    std::string min_stripe_size;
    std::vector<std::string> support_raid_levels;
    std::vector<M2DiskInfo> disks;
    std::vector<M2VolumeInfo> volumes;
};

} // namespace RaidConfig
} // namespace Quillon
