#include "redfish/redfish_backends.hpp"

#include <memory>

#include "backend/backend_platform.hpp"
#include "redfish/redfish_platform.hpp"

namespace redfish {

namespace {

// The platform Use installed, for Failure.
std::shared_ptr<RedfishPlatform>& Installed() {
    static std::shared_ptr<RedfishPlatform> platform;
    return platform;
}

} // namespace

void RedfishBackends::Use() {
    Installed() = std::make_shared<RedfishPlatform>();
    Quillon::RaidConfig::InstallBackendPlatform(Installed());
}

std::string RedfishBackends::Failure() {
    return Installed() ? Installed()->Failure() : std::string();
}

} // namespace redfish
