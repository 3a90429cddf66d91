#include "redfish/redfish_backends.hpp"

#include <memory>

#include "backend/backend_platform.hpp"
#include "redfish/redfish_platform.hpp"

namespace redfish {

void RedfishBackends::Use() {
    Quillon::RaidConfig::InstallBackendPlatform(std::make_shared<RedfishPlatform>());
}

} // namespace redfish
