#pragma once

#include <string>

namespace Quillon {
namespace RaidConfig {

// One physical disk of an out-of-band LSI or CFC controller. Copyable, since the service sorts
// disk lists in place before printing them.
struct Disk {
    std::string reserved_text;
    int id = 0;
    std::string product_name;
    std::string state;
    std::string slot_no;
    std::string disk_type;
    std::string media_type;
    std::string health_status;
    std::string capacity;
    std::string serial_no;
    std::string fru_no;
    std::string part_no;
    std::string reserved_text_2;
};

} // namespace RaidConfig
} // namespace Quillon
