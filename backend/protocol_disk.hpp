#pragma once

#include <string>

namespace Quillon {
namespace protocol {

// One disk of an out-of-band Microchip or VROC controller.
struct ProtocolDisk {
    int id = 0;
    std::string reserved_text;
    std::string product_name;
    std::string state;
    std::string slot_no;
    std::string disk_type;
    std::string media_type;
    std::string health_status;
    std::string capacity;
    std::string manufacturer;
    std::string serial_no;
    std::string fru_no;
    std::string part_no;
};

} // namespace protocol
} // namespace Quillon
