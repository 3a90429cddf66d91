#pragma once

#include <string>

namespace Quillon {
namespace RaidConfig {

// One controller of the out-of-band firmware device order action. It holds no controller id: the
// caller keeps the ids in a parallel sequence.
struct FWDevOrderController {
    std::string product_name;
    std::string serial_no;
    std::string fru_no;
    std::string part_no;
    std::string firmware_device_order;
    int reserved_int = 0;
};

} // namespace RaidConfig
} // namespace Quillon
