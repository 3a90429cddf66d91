#pragma once

#include <string>
#include <vector>

#include "result/raid_error_code.hpp"

namespace Quillon {
namespace RaidConfig {

struct FWDevOrderController;

// What stands behind FWDevOrder.
class FwDevOrderDriver {
public:
    FwDevOrderDriver() = default;
    virtual ~FwDevOrderDriver() = default;
    FwDevOrderDriver(const FwDevOrderDriver&) = delete;
    FwDevOrderDriver& operator=(const FwDevOrderDriver&) = delete;

    virtual RaidErrorCode GetController(int controller, FWDevOrderController& record,
                                        std::string& message);
    // 0 when changed, 34 when the controller already stands in that mode.
    virtual RaidErrorCode TurnFirmwareDeviceOrder(int controller, const std::string& mode,
                                                  std::string& message);
};

} // namespace RaidConfig
} // namespace Quillon
