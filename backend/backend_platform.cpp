#include "backend/backend_platform.hpp"

#include <utility>

#include "result/result_values.hpp"

namespace Quillon {
namespace RaidConfig {

namespace {

std::shared_ptr<BackendPlatform>& Installed() {
    static std::shared_ptr<BackendPlatform> platform = std::make_shared<BackendPlatform>();
    return platform;
}

} // namespace

// The default platform stands for a machine with no RAID tools and no BMC transport: every
// family is empty and every connection fails, so a run ends with a clear answer, not a crash.
std::shared_ptr<RaidDriver>
BackendPlatform::MakeRaidDriver(RaidTarget::Type /*family*/,
                                const QuillonConnection::ConnectionInfo& /*connection*/) {
    return std::make_shared<RaidDriver>();
}

std::shared_ptr<EncryptionDriver>
BackendPlatform::MakeEncryptionDriver(const QuillonConnection::ConnectionInfo& /*connection*/) {
    return std::make_shared<EncryptionDriver>();
}

std::shared_ptr<FwDevOrderDriver>
BackendPlatform::MakeFwDevOrderDriver(const QuillonConnection::ConnectionInfo& /*connection*/) {
    return std::make_shared<FwDevOrderDriver>();
}

std::shared_ptr<RedfishHelperDriver>
BackendPlatform::MakeRedfishHelperDriver(const QuillonConnection::ConnectionInfo& /*connection*/) {
    return std::make_shared<RedfishHelperDriver>();
}

TesselResult BackendPlatform::FetchConnection(Channel /*channel*/,
                                              const TesselConnect::ConnectOption& /*option*/,
                                              QuillonConnection::ConnectionInfo& /*connection*/) {
    return TesselResult(result::ConnectionFailed);
}

TesselResult BackendPlatform::GetRESTConnectionList(
    const TesselConnect::ConnectOption& /*option*/,
    std::vector<QuillonConnection::ConnectionInfo>& connections) {
    connections.clear();
    return TesselResult(result::ConnectionFailed);
}

int BackendPlatform::GetAmbitType(const QuillonConnection::ConnectionInfo& /*connection*/,
                                  Agentless::AmbitTypeValue& /*value*/) {
    return -1;
}

bool BackendPlatform::IsVantorV3(const QuillonConnection::ConnectionInfo& /*connection*/) {
    return false;
}

void InstallBackendPlatform(std::shared_ptr<BackendPlatform> platform) {
    Installed() = platform ? std::move(platform) : std::make_shared<BackendPlatform>();
}

BackendPlatform& CurrentBackendPlatform() {
    return *Installed();
}

} // namespace RaidConfig
} // namespace Quillon
