#pragma once

#include <memory>
#include <string>

#include "backend/fw_dev_order_driver.hpp"
#include "collaborators/connection_info.hpp"
#include "result/raid_error_code.hpp"

namespace Quillon {
namespace RaidConfig {

struct FWDevOrderController;

// The firmware device order of the LSI controllers behind a BMC.
class FWDevOrder {
public:
    explicit FWDevOrder(const QuillonConnection::ConnectionInfo& connection);
    ~FWDevOrder();
    FWDevOrder(const FWDevOrder&) = delete;
    FWDevOrder& operator=(const FWDevOrder&) = delete;

    RaidErrorCode GetController(const int& controller, FWDevOrderController& record);
    // 0 when changed, 34 when the controller already stands in that mode.
    RaidErrorCode TurnFirmwareDeviceOrder(const int& controller, std::string mode);
    std::string GetErrorMsg();

private:
    std::shared_ptr<FwDevOrderDriver> driver_;
    std::string message_;
};

} // namespace RaidConfig
} // namespace Quillon
