#pragma once

#include <vector>

#include "collaborators/connect_option.hpp"
#include "collaborators/connection_info.hpp"
#include "result/tessel_result.hpp"

// The connection library: each call fills its output from the option record and returns a
// result whose low 16 bits are 0 on success.
namespace TesselConnect {

TesselResult FetchCIMConnection(const ConnectOption& option,
                                QuillonConnection::ConnectionInfo& info);
TesselResult FetchBmcSSHConnection(const ConnectOption& option,
                                   QuillonConnection::ConnectionInfo& info);
TesselResult GetRESTConnection(const ConnectOption& option,
                               QuillonConnection::ConnectionInfo& info);
TesselResult GetRESTConnectionList(const ConnectOption& option,
                                   std::vector<QuillonConnection::ConnectionInfo>& list);

} // namespace TesselConnect
