#pragma once

#include <memory>
#include <vector>

#include "backend/encryption_driver.hpp"
#include "backend/fw_dev_order_driver.hpp"
#include "backend/raid_driver.hpp"
#include "backend/raid_target.hpp"
#include "backend/redfish_helper_driver.hpp"
#include "collaborators/ambit_type_acquire.hpp"
#include "collaborators/connect_option.hpp"
#include "collaborators/connection_info.hpp"
#include "result/tessel_result.hpp"

namespace Quillon {
namespace RaidConfig {

// The one seam between the service and what actually reaches RAID hardware. A platform makes
// the driver behind every backend class (HWRaidStorcli, HWRaidStorage, RaidEncryption, ...) and
// answers the connection library and the BMC queries. The host installs one platform per
// process before the first run (the simulated machine, or Redfish for a real BMC); the service
// itself never knows which.
class BackendPlatform {
public:
    BackendPlatform() = default;
    virtual ~BackendPlatform() = default;
    BackendPlatform(const BackendPlatform&) = delete;
    BackendPlatform& operator=(const BackendPlatform&) = delete;

    // The driver of one family. In-band families get an empty connection; out-of-band ones the
    // connection that this platform's fetch operations made.
    virtual std::shared_ptr<RaidDriver>
    MakeRaidDriver(RaidTarget::Type family, const QuillonConnection::ConnectionInfo& connection);
    virtual std::shared_ptr<EncryptionDriver>
    MakeEncryptionDriver(const QuillonConnection::ConnectionInfo& connection);
    virtual std::shared_ptr<FwDevOrderDriver>
    MakeFwDevOrderDriver(const QuillonConnection::ConnectionInfo& connection);
    virtual std::shared_ptr<RedfishHelperDriver>
    MakeRedfishHelperDriver(const QuillonConnection::ConnectionInfo& connection);

    // The connection library. Each fills its output and returns a result whose code is 0 on
    // success.
    enum class Channel { Cim, Ssh, Rest };
    virtual TesselResult FetchConnection(Channel channel,
                                         const TesselConnect::ConnectOption& option,
                                         QuillonConnection::ConnectionInfo& connection);
    virtual TesselResult
    GetRESTConnectionList(const TesselConnect::ConnectOption& option,
                          std::vector<QuillonConnection::ConnectionInfo>& connections);

    // The BMC type query (0 on success) and the Vantor v3 check.
    virtual int GetAmbitType(const QuillonConnection::ConnectionInfo& connection,
                             Agentless::AmbitTypeValue& value);
    virtual bool IsVantorV3(const QuillonConnection::ConnectionInfo& connection);
};

// Puts platform in charge for the rest of the process; nullptr restores the default, which has
// no in-band controllers and no way to reach a BMC.
void InstallBackendPlatform(std::shared_ptr<BackendPlatform> platform);

// The platform in charge.
BackendPlatform& CurrentBackendPlatform();

} // namespace RaidConfig
} // namespace Quillon
