#pragma once

#include <string>

#include "result/raidcfg_export.hpp"

namespace redfish {

// Host set-up: serves the out-of-band backends, the connection library and the BMC queries of
// this process from a real BMC through its Redfish service. Where the BMC is and how to reach
// it (scheme, host, port, TLS, time limit, credentials) comes with each fetch's connect option.
class RedfishBackends {
public:
    RAIDCFG_EXPORT static void Use();
    // Why the BMC could not be used in this run, in words for the user (no secret in it);
    // empty when nothing failed or Use was not called.
    RAIDCFG_EXPORT static std::string Failure();
};

} // namespace redfish
