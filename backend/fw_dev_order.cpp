#include "backend/fw_dev_order.hpp"

#include "backend/backend_platform.hpp"

namespace Quillon {
namespace RaidConfig {

FWDevOrder::FWDevOrder(const QuillonConnection::ConnectionInfo& connection)
    : driver_(CurrentBackendPlatform().MakeFwDevOrderDriver(connection)) {
    if (!driver_) {
        driver_ = std::make_shared<FwDevOrderDriver>();
    }
}

FWDevOrder::~FWDevOrder() = default;

RaidErrorCode FWDevOrder::GetController(const int& controller, FWDevOrderController& record) {
    message_.clear();
    return driver_->GetController(controller, record, message_);
}

// mode comes by value: the signature is the backend contract's.
RaidErrorCode FWDevOrder::TurnFirmwareDeviceOrder(
    const int& controller,
    std::string mode) { // NOLINT(performance-unnecessary-value-param)
    message_.clear();
    return driver_->TurnFirmwareDeviceOrder(controller, mode, message_);
}

std::string FWDevOrder::GetErrorMsg() {
    return message_;
}

} // namespace RaidConfig
} // namespace Quillon
