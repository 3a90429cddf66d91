#pragma once

#include <string>
#include <vector>

#include "backend/disk.hpp"

namespace Quillon {
namespace RaidConfig {

// One volume of a pool, as the out-of-band LSI and CFC backends report it.
struct PoolVolume {
    std::string reserved_text;
    int id = 0;
    std::string name;
    std::string reserved_text_1;
    std::string status;
    std::string stripe_size;
    std::string bootable;
    std::string capacity;
    std::string read_policy;
    std::string write_policy;
    std::string default_write_policy; // shown in place of write_policy when that one is empty
    std::string reserved_text_2;
    std::string io_policy;
    std::string access_policy;
    std::string disk_cache_policy;
    std::string reserved_text_3;
};

// One pool of an out-of-band LSI or CFC controller. Copyable, since the service sorts pool
// lists in place before printing them.
struct Pool {
    std::string reserved_text;
    int id = 0;
    std::string raid_state; // in the CFC family the level without the word RAID, e.g. "5"
    std::string raid_capacity;
    std::string holes;
    std::vector<Disk> disks;
    std::vector<PoolVolume> volumes;
};

} // namespace RaidConfig
} // namespace Quillon
