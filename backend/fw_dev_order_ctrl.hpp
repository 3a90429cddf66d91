#pragma once

#include <string>

namespace Quillon {
namespace protocol {

// One controller of the in-band firmware device order action. It holds no controller id: the
// caller keeps the ids in a parallel sequence.
struct FWDevOrderCtrl {
    std::string product_name;
    std::string serial_no;
    std::string firmware_device_order;
};

} // namespace protocol
} // namespace Quillon
