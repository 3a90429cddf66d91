#pragma once

#include <string>
#include <vector>

#include "backend/protocol_disk.hpp"

namespace Quillon {
namespace protocol {

// One volume of an out-of-band Microchip pool.
struct MicrochipVolume {
    int id = 0;
    std::string reserved_text;
    std::string name;
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

// One pool of an out-of-band Microchip controller.
struct MicrochipPool {
    int id = 0;
    std::string reserved_text;
    std::string raid_state;
    std::string raid_capacity;
    std::string reserved_text_2;
    std::string holes;
    std::vector<ProtocolDisk> disks; // not read by the service
    std::vector<MicrochipVolume> volumes;
};

// One out-of-band Microchip controller with its disks and pools.
struct MicrochipCtrl {
    int id = 0; // the controller's slot
    std::string reserved_text;
    std::string product_name;
    std::string reserved_text_2;
    std::string serial_no;
    std::string fru_no;
    std::string part_no;
    std::string manufacturer;
    std::string max_stripe_size;
    std::string min_stripe_size;
    std::vector<std::string> support_raid_levels;
    std::vector<ProtocolDisk> disks;
    std::vector<MicrochipPool> pools;
};

} // namespace protocol
} // namespace Quillon
