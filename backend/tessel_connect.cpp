// The connection library, answered by the backend platform of the process.
#include "collaborators/tessel_connect.hpp"

#include "backend/backend_platform.hpp"

namespace TesselConnect {

using Quillon::RaidConfig::BackendPlatform;
using Quillon::RaidConfig::CurrentBackendPlatform;

TesselResult FetchCIMConnection(const ConnectOption& option,
                                QuillonConnection::ConnectionInfo& info) {
    return CurrentBackendPlatform().FetchConnection(BackendPlatform::Channel::Cim, option, info);
}

TesselResult FetchBmcSSHConnection(const ConnectOption& option,
                                   QuillonConnection::ConnectionInfo& info) {
    return CurrentBackendPlatform().FetchConnection(BackendPlatform::Channel::Ssh, option, info);
}

TesselResult GetRESTConnection(const ConnectOption& option,
                               QuillonConnection::ConnectionInfo& info) {
    return CurrentBackendPlatform().FetchConnection(BackendPlatform::Channel::Rest, option, info);
}

TesselResult GetRESTConnectionList(const ConnectOption& option,
                                   std::vector<QuillonConnection::ConnectionInfo>& list) {
    return CurrentBackendPlatform().GetRESTConnectionList(option, list);
}

} // namespace TesselConnect
