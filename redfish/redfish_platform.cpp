#include "redfish/redfish_platform.hpp"

#include <utility>

#include "collaborators/log.hpp"
#include "model/family_names.hpp"
#include "redfish/redfish_connection.hpp"
#include "redfish/redfish_encryption_driver.hpp"
#include "redfish/redfish_fw_dev_order_driver.hpp"
#include "redfish/redfish_raid_driver.hpp"
#include "redfish/redfish_support_driver.hpp"
#include "result/result_values.hpp"

namespace redfish {

using Quillon::RaidConfig::RaidTarget;

// One BMC reached with one set of credentials: the client logs in once, and a failed log-in is
// remembered, so that the service's further fetches do not knock on the BMC again and again.
struct RedfishPlatform::Session {
    std::string key;
    std::shared_ptr<RedfishClient> client;
    std::shared_ptr<StorageTreeReader> tree;
    RedfishStatus opened;
};

namespace {

// Tells options apart without keeping the password itself in the key.
std::string SessionKey(const TesselConnect::ConnectOption& option) {
    return option.scheme + "\n" + option.host + "\n" + std::to_string(option.port) + "\n" +
           option.user + "\n" + std::to_string(std::hash<std::string>()(option.password)) + "\n" +
           (option.verify_tls ? "verify" : "any") + "\n" + option.ca_file + "\n" +
           std::to_string(option.timeout_seconds) + "\n" + option.system;
}

bool IsOutOfBandFamily(RaidTarget::Type family) {
    return family == RaidTarget::OOB_LSI || family == RaidTarget::OOB_CFC ||
           family == RaidTarget::OOB_M2 || family == RaidTarget::OOB_MICROCHIP ||
           family == RaidTarget::OOB_VROC;
}

} // namespace

RedfishPlatform::RedfishPlatform()
    : RedfishPlatform(
          [](const TesselConnect::ConnectOption& option) -> std::unique_ptr<HttpTransport> {
              return std::make_unique<CurlTransport>(TransportSettings(option));
          },
          ClientSettings()) {}

RedfishPlatform::RedfishPlatform(TransportFactory factory, ClientSettings base)
    : factory_(std::move(factory)), base_(std::move(base)) {}

RedfishPlatform::~RedfishPlatform() = default;

CurlSettings RedfishPlatform::TransportSettings(const TesselConnect::ConnectOption& option) {
    CurlSettings settings;
    settings.scheme = option.scheme.empty() ? std::string("https") : option.scheme;
    settings.host = option.host;
    settings.port = option.port;
    settings.verify_tls = option.verify_tls;
    settings.ca_file = option.ca_file;
    if (option.timeout_seconds > 0) {
        settings.timeout_seconds = option.timeout_seconds;
    }
    if (settings.connect_timeout_seconds > settings.timeout_seconds) {
        settings.connect_timeout_seconds = settings.timeout_seconds;
    }
    return settings;
}

TesselResult RedfishPlatform::Reach(const TesselConnect::ConnectOption& option,
                                    std::shared_ptr<Session>& session) {
    const std::lock_guard<std::mutex> lock(mutex_);
    const std::string key = SessionKey(option);
    if (session_ == nullptr || session_->key != key) {
        auto made = std::make_shared<Session>();
        made->key = key;
        ClientSettings settings = base_;
        settings.user = option.user;
        settings.password = option.password;
        made->client = std::make_shared<RedfishClient>(factory_(option), std::move(settings));
        made->tree = std::make_shared<StorageTreeReader>(made->client, option.system);
        // The client logs a failure itself, with its text scrubbed of the credentials.
        made->opened = made->client->Open();
        session_ = std::move(made);
    }
    session = session_;
    if (session->opened.ok()) {
        return TesselResult(result::Success);
    }
    failure_ = session->opened.text;
    return TesselResult(session->opened.code == Quillon::RaidConfig::RAID_AUTH_FAILED
                            ? result::AuthenticationFailed
                            : result::ConnectionFailed);
}

TesselResult RedfishPlatform::Refuse(const RedfishStatus& status) {
    {
        const std::lock_guard<std::mutex> lock(mutex_);
        failure_ = status.text;
    }
    return TesselResult(status.code == Quillon::RaidConfig::RAID_AUTH_FAILED
                            ? result::AuthenticationFailed
                            : result::ConnectionFailed);
}

std::string RedfishPlatform::Failure() const {
    const std::lock_guard<std::mutex> lock(mutex_);
    return failure_;
}

TesselResult RedfishPlatform::Admit(Session& session, const std::string& channel) {
    // The storage is found and read before anything else: a BMC whose storage cannot be read
    // ends the run here with the reason, rather than later as a server without controllers.
    std::shared_ptr<const StorageTree> tree;
    const RedfishStatus loaded = session.tree->Load(tree);
    if (!loaded.ok()) {
        return Refuse(loaded);
    }
    ManagerInfo manager;
    const RedfishStatus read = session.tree->Manager(manager);
    if (!read.ok()) {
        return Refuse(read);
    }
    const bool up = channel == "rest" ? manager.rest : channel == "ssh" ? manager.ssh : manager.cim;
    if (!up) {
        RAIDCFG_LOG(1) << "Redfish: the BMC has its " << channel << " channel switched off";
        return TesselResult(result::ConnectionFailed);
    }
    return TesselResult(result::Success);
}

QuillonConnection::ConnectionInfo RedfishPlatform::Connect(const std::shared_ptr<Session>& session,
                                                           const std::string& channel) const {
    return QuillonConnection::ConnectionInfo(
        std::make_shared<RedfishConnection>(channel, session->client, session->tree));
}

TesselResult RedfishPlatform::FetchConnection(Channel channel,
                                              const TesselConnect::ConnectOption& option,
                                              QuillonConnection::ConnectionInfo& connection) {
    const std::string name = channel == Channel::Rest  ? "rest"
                             : channel == Channel::Ssh ? "ssh"
                                                       : "cim";
    std::shared_ptr<Session> session;
    TesselResult reached = Reach(option, session);
    if (reached != result::Success) {
        return reached;
    }
    TesselResult admitted = Admit(*session, name);
    if (admitted != result::Success) {
        return admitted;
    }
    connection = Connect(session, name);
    return admitted;
}

TesselResult RedfishPlatform::GetRESTConnectionList(
    const TesselConnect::ConnectOption& option,
    std::vector<QuillonConnection::ConnectionInfo>& connections) {
    connections.clear();
    std::shared_ptr<Session> session;
    TesselResult reached = Reach(option, session);
    if (reached != result::Success) {
        return reached;
    }
    TesselResult admitted = Admit(*session, "rest");
    if (admitted != result::Success) {
        return admitted;
    }
    ManagerInfo manager;
    session->tree->Manager(manager);
    // Every entry shares the one session: the list tells how many the BMC would allow.
    for (int i = 0; i < manager.rest_connections; ++i) {
        connections.push_back(Connect(session, "rest"));
    }
    return admitted;
}

int RedfishPlatform::GetAmbitType(const QuillonConnection::ConnectionInfo& connection,
                                  Quillon::Agentless::AmbitTypeValue& value) {
    const RedfishConnection* redfish = RedfishConnection::Of(connection);
    ManagerInfo manager;
    if (redfish == nullptr || !redfish->tree().Manager(manager).ok() || !manager.ambit_type) {
        return -1;
    }
    value = static_cast<Quillon::Agentless::AmbitTypeValue>(*manager.ambit_type);
    return 0;
}

bool RedfishPlatform::IsVantorV3(const QuillonConnection::ConnectionInfo& connection) {
    const RedfishConnection* redfish = RedfishConnection::Of(connection);
    ManagerInfo manager;
    return redfish != nullptr && redfish->tree().Manager(manager).ok() && manager.vantor_v3;
}

std::shared_ptr<Quillon::RaidConfig::RaidDriver>
RedfishPlatform::MakeRaidDriver(RaidTarget::Type family,
                                const QuillonConnection::ConnectionInfo& connection) {
    const RedfishConnection* redfish = RedfishConnection::Of(connection);
    if (redfish == nullptr || !IsOutOfBandFamily(family)) {
        return std::make_shared<Quillon::RaidConfig::RaidDriver>();
    }
    return std::make_shared<RedfishRaidDriver>(*redfish, model::FamilyNames::Of(family));
}

std::shared_ptr<Quillon::RaidConfig::EncryptionDriver>
RedfishPlatform::MakeEncryptionDriver(const QuillonConnection::ConnectionInfo& connection) {
    const RedfishConnection* redfish = RedfishConnection::Of(connection);
    if (redfish == nullptr) {
        return std::make_shared<Quillon::RaidConfig::EncryptionDriver>();
    }
    return std::make_shared<RedfishEncryptionDriver>(*redfish);
}

std::shared_ptr<Quillon::RaidConfig::FwDevOrderDriver>
RedfishPlatform::MakeFwDevOrderDriver(const QuillonConnection::ConnectionInfo& connection) {
    const RedfishConnection* redfish = RedfishConnection::Of(connection);
    if (redfish == nullptr) {
        return std::make_shared<Quillon::RaidConfig::FwDevOrderDriver>();
    }
    return std::make_shared<RedfishFwDevOrderDriver>(*redfish);
}

std::shared_ptr<Quillon::RaidConfig::RedfishHelperDriver>
RedfishPlatform::MakeRedfishHelperDriver(const QuillonConnection::ConnectionInfo& connection) {
    const RedfishConnection* redfish = RedfishConnection::Of(connection);
    if (redfish == nullptr) {
        return std::make_shared<Quillon::RaidConfig::RedfishHelperDriver>();
    }
    return std::make_shared<RedfishSupportDriver>(*redfish);
}

} // namespace redfish
