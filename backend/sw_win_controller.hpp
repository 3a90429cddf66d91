#pragma once

#include <string>
#include <vector>

namespace Quillon {
namespace RaidConfig {

// One disk seen by the in-band software RAID controller.
struct SWWinDisk {
    int id = 0;
    std::string reserved_text;
    std::string disk_type;
    std::string state;
    std::string size;
    std::string system_disk;
    std::string usage;
    std::string serial_no;
    std::string product_name;
    std::string fru_no;
};

// One volume of a software RAID container.
struct SWWinVolume {
    int id = 0;
    std::string name;
    std::string raid_level;
    std::string size;
    std::string stripe_size;
    std::string num_disks;
    std::string state;
    std::string system;
    std::string cache_policy;
    std::string disks_in_volume;
    std::string rwh_closure_policy; // RAID write hole closure policy
};

// One software RAID container (array). It has table columns of its own, but only its volumes are
// saved as XML.
struct SWWinArray {
    std::string name;
    std::string size;
    std::string free;
    std::string num_disks;
    std::string num_vols;
    std::string write_cache;
    std::string volumes_in_array;
    std::string disks_in_array;
    std::vector<SWWinVolume> volumes;
};

// One in-band software RAID controller with its disks and containers.
struct SWWinController {
    int id = 0;
    std::string target_id;
    std::string name;
    std::string supported_raid_levels;
    std::vector<SWWinDisk> disks;
    std::vector<SWWinArray> arrays;
};

} // namespace RaidConfig
} // namespace Quillon
