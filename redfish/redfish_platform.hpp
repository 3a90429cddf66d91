#pragma once

#include <functional>
#include <memory>
#include <mutex>
#include <string>

#include "backend/backend_platform.hpp"
#include "redfish/curl_transport.hpp"
#include "redfish/http_transport.hpp"
#include "redfish/redfish_client.hpp"
#include "redfish/storage_tree_reader.hpp"

namespace redfish {

// Serves the out-of-band backend classes, the connection library and the BMC queries from a
// real BMC through its Redfish service. Every fetch (CIM, SSH, REST) reaches the BMC over
// Redfish with its credentials checked; all connections of one process to the same BMC with
// the same credentials share one client: one session, one read cache of the storage tree.
// In-band families get no controllers here.
class RedfishPlatform : public Quillon::RaidConfig::BackendPlatform {
public:
    // Makes the transport towards the BMC an option names; tests hand in canned transports.
    using TransportFactory =
        std::function<std::unique_ptr<HttpTransport>(const TesselConnect::ConnectOption&)>;

    // Reaches BMCs through CurlTransport.
    RedfishPlatform();
    // base gives the retry and sleep settings; user and password come from each option.
    RedfishPlatform(TransportFactory factory, ClientSettings base);
    ~RedfishPlatform() override;

    std::shared_ptr<Quillon::RaidConfig::RaidDriver>
    MakeRaidDriver(Quillon::RaidConfig::RaidTarget::Type family,
                   const QuillonConnection::ConnectionInfo& connection) override;
    std::shared_ptr<Quillon::RaidConfig::EncryptionDriver>
    MakeEncryptionDriver(const QuillonConnection::ConnectionInfo& connection) override;
    std::shared_ptr<Quillon::RaidConfig::FwDevOrderDriver>
    MakeFwDevOrderDriver(const QuillonConnection::ConnectionInfo& connection) override;
    std::shared_ptr<Quillon::RaidConfig::RedfishHelperDriver>
    MakeRedfishHelperDriver(const QuillonConnection::ConnectionInfo& connection) override;

    TesselResult FetchConnection(Channel channel, const TesselConnect::ConnectOption& option,
                                 QuillonConnection::ConnectionInfo& connection) override;
    TesselResult
    GetRESTConnectionList(const TesselConnect::ConnectOption& option,
                          std::vector<QuillonConnection::ConnectionInfo>& connections) override;
    int GetAmbitType(const QuillonConnection::ConnectionInfo& connection,
                     Quillon::Agentless::AmbitTypeValue& value) override;
    bool IsVantorV3(const QuillonConnection::ConnectionInfo& connection) override;

    // The settings CurlTransport takes from an option (scheme, host, port, TLS, time limit).
    static CurlSettings TransportSettings(const TesselConnect::ConnectOption& option);

    // Why the BMC could not be used, in words for the user: the log-in's or the storage tree's
    // failure of the last fetch; empty when there was none. The service's result only says
    // "Connection failed." or "Authentication failed.".
    std::string Failure() const;

private:
    struct Session;
    // The session for option's BMC and credentials, logged in once; Success or why not.
    TesselResult Reach(const TesselConnect::ConnectOption& option,
                       std::shared_ptr<Session>& session);
    // Reads the storage tree and checks that the Manager has channel switched on; Success,
    // else "Authentication failed." or "Connection failed." with the reason kept for Failure.
    TesselResult Admit(Session& session, const std::string& channel);
    TesselResult Refuse(const RedfishStatus& status);
    QuillonConnection::ConnectionInfo Connect(const std::shared_ptr<Session>& session,
                                              const std::string& channel) const;

    TransportFactory factory_;
    ClientSettings base_;
    mutable std::mutex mutex_;
    std::shared_ptr<Session> session_;
    std::string failure_;
};

} // namespace redfish
