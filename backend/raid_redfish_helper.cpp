#include "backend/raid_redfish_helper.hpp"

#include "backend/backend_platform.hpp"

namespace Quillon {
namespace RaidConfig {

RaidRedfishHelper::RaidRedfishHelper(const QuillonConnection::ConnectionInfo& connection)
    : driver_(CurrentBackendPlatform().MakeRedfishHelperDriver(connection)) {
    if (!driver_) {
        driver_ = std::make_shared<RedfishHelperDriver>();
    }
}

RaidRedfishHelper::~RaidRedfishHelper() = default;

// url comes by value: the signature is the backend contract's.
void RaidRedfishHelper::getSupportInfo(
    const int& controller, const std::string& family, std::string& max_stripe_size,
    std::string& min_stripe_size, std::vector<std::string>& raid_levels,
    std::string url) { // NOLINT(performance-unnecessary-value-param)
    driver_->GetSupportInfo(controller, family, max_stripe_size, min_stripe_size, raid_levels, url);
}

} // namespace RaidConfig
} // namespace Quillon
