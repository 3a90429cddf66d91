#pragma once

#include <memory>

#include "backend/backend_platform.hpp"
#include "sim/machine_store.hpp"

namespace sim {

// Serves every backend class, the connection library and the BMC queries from one machine
// file. The BMC answers by the file's "bmc" section: a channel that is off fails with
// "Connection failed.", credentials that differ from the file's with "Authentication failed.".
class SimPlatform : public Quillon::RaidConfig::BackendPlatform {
public:
    explicit SimPlatform(std::shared_ptr<MachineStore> store);

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

    // The machine file's name of a family, e.g. "OOB_LSI"; empty for INVALID.
    static std::string FamilyName(Quillon::RaidConfig::RaidTarget::Type family);

private:
    // Checks the BMC's channel and the credentials; Success or the failing value.
    TesselResult Admit(const std::string& channel, const TesselConnect::ConnectOption& option,
                       Bmc& bmc);

    std::shared_ptr<MachineStore> store_;
};

} // namespace sim
