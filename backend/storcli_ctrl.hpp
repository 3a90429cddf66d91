#pragma once

#include <map>
#include <string>
#include <vector>

namespace Quillon {
namespace protocol {

// One disk of an in-band LSI controller.
struct StorcliDisk {
    int id = 0;
    std::string reserved_text;
    int reserved_int = 0;
    std::string product_name;
    std::string state;
    std::string slot_no;
    std::string disk_type;
    std::string media_type;
    std::string capacity;
    std::string serial_no;
    std::string fru_no;
    std::string type;
};

// One volume of an in-band LSI controller.
struct StorcliVolume {
    int id = 0;
    std::string reserved_text;
    int drive_group = 0; // key into StorcliCtrl::drive_groups
    std::string name;
    std::string raid_state;
    std::string reserved_text_2;
    std::string status;
    std::string stripe_size;
    std::string capacity;
    std::string read_policy;
    std::string write_policy;
    std::string io_policy;
    std::string access_policy;
    std::string disk_cache_policy;
};

// One in-band LSI controller with its disks and volumes.
struct StorcliCtrl {
    int target_id = 0;
    std::string product_name;
    std::string serial_no;
    // Drive group number to its disks, each "enclosure:slot" or a single word.
    std::map<int, std::vector<std::string>> drive_groups;
    std::vector<StorcliDisk> disks;
    std::vector<StorcliVolume> volumes;
};

} // namespace protocol
} // namespace Quillon
