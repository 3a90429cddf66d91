#include "sim/sim_platform.hpp"

#include <utility>

#include "model/family_names.hpp"
#include "result/result_values.hpp"
#include "sim/sim_connection.hpp"
#include "sim/sim_encryption_driver.hpp"
#include "sim/sim_fw_dev_order_driver.hpp"
#include "sim/sim_raid_driver.hpp"
#include "sim/sim_redfish_helper_driver.hpp"

namespace sim {

using Quillon::RaidConfig::RaidTarget;

SimPlatform::SimPlatform(std::shared_ptr<MachineStore> store) : store_(std::move(store)) {}

std::string SimPlatform::FamilyName(RaidTarget::Type family) {
    return model::FamilyNames::Of(family);
}

std::shared_ptr<Quillon::RaidConfig::RaidDriver>
SimPlatform::MakeRaidDriver(RaidTarget::Type family,
                            const QuillonConnection::ConnectionInfo& /*connection*/) {
    return std::make_shared<SimRaidDriver>(store_, FamilyName(family));
}

std::shared_ptr<Quillon::RaidConfig::EncryptionDriver>
SimPlatform::MakeEncryptionDriver(const QuillonConnection::ConnectionInfo& /*connection*/) {
    return std::make_shared<SimEncryptionDriver>(store_);
}

std::shared_ptr<Quillon::RaidConfig::FwDevOrderDriver>
SimPlatform::MakeFwDevOrderDriver(const QuillonConnection::ConnectionInfo& /*connection*/) {
    return std::make_shared<SimFwDevOrderDriver>(store_);
}

std::shared_ptr<Quillon::RaidConfig::RedfishHelperDriver>
SimPlatform::MakeRedfishHelperDriver(const QuillonConnection::ConnectionInfo& /*connection*/) {
    return std::make_shared<SimRedfishHelperDriver>(store_);
}

TesselResult SimPlatform::Admit(const std::string& channel,
                                const TesselConnect::ConnectOption& option, Bmc& bmc) {
    Machine machine;
    std::string error;
    if (!store_->Read(machine, error)) {
        return TesselResult(result::ConnectionFailed, error);
    }
    bmc = machine.bmc;
    const bool up = channel == "rest" ? bmc.rest : channel == "ssh" ? bmc.ssh : bmc.cim;
    if (!up) {
        return TesselResult(result::ConnectionFailed);
    }
    if (option.user != bmc.user || option.password != bmc.password) {
        return TesselResult(result::AuthenticationFailed);
    }
    return TesselResult(result::Success);
}

TesselResult SimPlatform::FetchConnection(Channel channel,
                                          const TesselConnect::ConnectOption& option,
                                          QuillonConnection::ConnectionInfo& connection) {
    const std::string name = channel == Channel::Rest  ? "rest"
                             : channel == Channel::Ssh ? "ssh"
                                                       : "cim";
    Bmc bmc;
    TesselResult admitted = Admit(name, option, bmc);
    if (admitted != result::Success) {
        return admitted;
    }
    connection = QuillonConnection::ConnectionInfo(std::make_shared<SimConnection>(name));
    return admitted;
}

TesselResult
SimPlatform::GetRESTConnectionList(const TesselConnect::ConnectOption& option,
                                   std::vector<QuillonConnection::ConnectionInfo>& connections) {
    connections.clear();
    Bmc bmc;
    TesselResult admitted = Admit("rest", option, bmc);
    if (admitted != result::Success) {
        return admitted;
    }
    for (int i = 0; i < bmc.rest_connections; ++i) {
        connections.emplace_back(std::make_shared<SimConnection>("rest"));
    }
    return admitted;
}

int SimPlatform::GetAmbitType(const QuillonConnection::ConnectionInfo& /*connection*/,
                              Quillon::Agentless::AmbitTypeValue& value) {
    Machine machine;
    std::string ignored;
    if (!store_->Read(machine, ignored) || !machine.bmc.bmc_type) {
        return -1;
    }
    value = static_cast<Quillon::Agentless::AmbitTypeValue>(*machine.bmc.bmc_type);
    return 0;
}

bool SimPlatform::IsVantorV3(const QuillonConnection::ConnectionInfo& /*connection*/) {
    Machine machine;
    std::string ignored;
    return store_->Read(machine, ignored) && machine.bmc.vantor_v3;
}

} // namespace sim
