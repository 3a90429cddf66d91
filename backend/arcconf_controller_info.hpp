#pragma once

#include <string>
#include <vector>

namespace Quillon {
namespace ARCCONF {

// One connector of an in-band Microchip controller.
struct ArcconfConnector {
    std::string reserved_text;
    std::string id;
    std::string name;
    std::string mode;
};

// One disk of an in-band Microchip controller.
struct ArcconfDisk {
    std::string reserved_text;
    std::string reserved_text_2;
    std::string id;
    std::string product_name;
    std::string state;
    std::string slot_no;
    std::string disk_type;
    std::string media_type;
    std::string capacity;
    std::string serial_no;
    std::string fru;
    std::string connector_id;
    std::string reserved_text_3;
    std::string reserved_text_4;
};

// One volume of an in-band Microchip controller.
struct ArcconfVolume {
    std::string reserved_text;
    std::string id;
    std::string name;
    std::string raid_state; // the level without the word RAID, e.g. "5"
    std::string status;
    std::string stripe_size; // a number without unit
    std::string capacity;
    std::string reserved_text_2;
    std::string reserved_text_3;
    int acceleration = 0; // 0 none, 1 controller cache, anything else SSD I/O bypass
    std::vector<std::string> disks;
};

// One in-band Microchip controller with its connectors, disks and volumes.
struct ControllerInfo {
    std::string target_id;
    std::string reserved_text;
    std::string reserved_text_2;
    std::string reserved_text_3;
    std::string product_name;
    std::string serial_no;
    std::string reserved_text_4;
    std::vector<ArcconfConnector> connectors;
    std::vector<ArcconfDisk> disks;
    std::vector<ArcconfVolume> volumes;
};

} // namespace ARCCONF
} // namespace Quillon
