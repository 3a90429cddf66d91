// The action handlers: each picks the road of its action (out-of-band through the BMC, in-band
// with targets, or local), builds the object that serves it and takes over its rows.
#include <iostream>
#include <vector>

#include <boost/algorithm/string/case_conv.hpp>

#include "collaborators/log.hpp"
#include "collaborators/tessel_connect.hpp"
#include "result/result_values.hpp"
#include "service/misc_raid_service/detail/inband_raid.hpp"
#include "service/misc_raid_service/detail/raid_client.hpp"
#include "service/misc_raid_service/detail/service_raid_impl.hpp"

namespace service {
namespace detail {

namespace {

constexpr const char* kScope = "service::detail::ServiceRaidImpl::";

} // namespace

std::uint32_t ServiceRaidImpl::ConnectBmc(QuillonConnection::ConnectionInfo& info, bool use_rest) {
    const TesselResult fetched =
        use_rest ? TesselConnect::GetRESTConnection(option_.connect_option, info)
                 : TesselConnect::FetchBmcSSHConnection(option_.connect_option, info);
    return fetched.code();
}

std::uint32_t ServiceRaidImpl::RaidShow() {
    RAIDCFG_LOG(4) << "Entering  " << kScope << "RaidShow";
    std::uint32_t value = result::Success;
    if (out_of_band_) {
        QuillonConnection::ConnectionInfo info;
        value = ConnectBmc(info, option_.cfc);
        if (value != 0) {
            RAIDCFG_LOG(4) << "Exiting  " << kScope << "RaidShow";
            return value;
        }
        RaidClient client(option_, info);
        value = client.Show();
        client.WriteResultPage(TesselResult(value, ""));
        client.TakeResults(results_);
    } else if (!option_.target.empty()) {
        InbandRaid inband(option_);
        value = inband.Show();
        inband.TakeResults(results_);
    } else {
        RaidClient client(option_);
        value = client.Show();
        client.TakeResults(results_);
    }
    RAIDCFG_LOG(4) << "Exiting  " << kScope << "RaidShow";
    return value;
}

std::string ServiceRaidImpl::GetRaidShowResult() {
    if (!out_of_band_) {
        // With or without a target: the in-band driver has no part in this.
        RaidClient client(option_);
        return client.GetShowResult();
    }
    QuillonConnection::ConnectionInfo info;
    if (ConnectBmc(info, option_.cfc) != 0) {
        return {};
    }
    RaidClient client(option_, info);
    return client.GetShowResult();
}

std::uint32_t ServiceRaidImpl::RaidAdd() {
    RAIDCFG_LOG(4) << "Entering  " << kScope << "RaidAdd";
    std::uint32_t value = result::Success;
    if (out_of_band_) {
        QuillonConnection::ConnectionInfo info;
        value = ConnectBmc(info, option_.cfc);
        if (value != 0) {
            RAIDCFG_LOG(4) << "Exiting  " << kScope << "RaidAdd";
            return value;
        }
        RaidClient client(option_, info);
        value = client.Add();
        client.WriteResultPage(TesselResult(value, ""));
        client.TakeResults(results_);
    } else if (!option_.target.empty()) {
        InbandRaid inband(option_);
        value = inband.Add();
        inband.TakeResults(results_);
    } else {
        RaidClient client(option_);
        value = client.Add();
        client.TakeResults(results_);
    }
    RAIDCFG_LOG(4) << "Exiting  " << kScope << "RaidAdd";
    return value;
}
std::uint32_t ServiceRaidImpl::RaidSave() {
    RAIDCFG_LOG(4) << "Entering  " << kScope << "RaidSave";
    std::uint32_t value = result::Success;
    if (out_of_band_) {
        QuillonConnection::ConnectionInfo info;
        value = ConnectBmc(info, option_.cfc);
        if (value != 0) {
            RAIDCFG_LOG(4) << "Exiting  " << kScope << "RaidSave";
            return value;
        }
        RaidClient client(option_, info);
        value = client.Save();
        client.WriteResultPage(TesselResult(value, ""));
        client.TakeResults(results_);
    } else if (!option_.target.empty()) {
        InbandRaid inband(option_);
        value = inband.Save();
        inband.TakeResults(results_);
    } else {
        RaidClient client(option_);
        value = client.Save();
        client.TakeResults(results_);
    }
    RAIDCFG_LOG(4) << "Exiting  " << kScope << "RaidSave";
    return value;
}
std::uint32_t ServiceRaidImpl::RaidCfg() {
    RAIDCFG_LOG(4) << "Entering  " << kScope << "RaidCfg";
    std::uint32_t value = result::Success;
    if (out_of_band_) {
        QuillonConnection::ConnectionInfo info;
        value = ConnectBmc(info, option_.cfc);
        if (value != 0) {
            RAIDCFG_LOG(4) << "Exiting  " << kScope << "RaidCfg";
            return value;
        }
        RaidClient client(option_, info);
        value = client.Clear();
        client.WriteResultPage(TesselResult(value, ""));
        client.TakeResults(results_);
    } else if (!option_.target.empty()) {
        InbandRaid inband(option_);
        value = inband.Clear();
        inband.TakeResults(results_);
    } else {
        RaidClient client(option_);
        value = client.Clear();
        client.TakeResults(results_);
    }
    RAIDCFG_LOG(4) << "Exiting  " << kScope << "RaidCfg";
    return value;
}

std::uint32_t ServiceRaidImpl::Refused(const char* handler) {
    RAIDCFG_LOG(4) << "Entering  " << kScope << handler;
    RAIDCFG_LOG(4) << "Exiting  " << kScope << handler;
    return result::FunctionNotSupported;
}

std::uint32_t ServiceRaidImpl::RaidMakeGood() {
    if (out_of_band_ && option_.cfc) {
        return Refused("RaidMakeGood");
    }
    RAIDCFG_LOG(4) << "Entering  " << kScope << "RaidMakeGood";
    std::uint32_t value = result::Success;
    if (out_of_band_) {
        QuillonConnection::ConnectionInfo info;
        value = ConnectBmc(info, false);
        if (value != 0) {
            RAIDCFG_LOG(4) << "Exiting  " << kScope << "RaidMakeGood";
            return value;
        }
        RaidClient client(option_, info);
        value = client.MakeGood();
        client.WriteResultPage(TesselResult(value, ""));
        client.TakeResults(results_);
    } else {
        // With or without a target: the in-band driver has no part in disk states.
        RaidClient client(option_);
        value = client.MakeGood();
        client.TakeResults(results_);
    }
    RAIDCFG_LOG(4) << "Exiting  " << kScope << "RaidMakeGood";
    return value;
}
std::uint32_t ServiceRaidImpl::RaidMakeJBOD() {
    if (out_of_band_ && option_.cfc) {
        return Refused("RaidMakeJBOD");
    }
    RAIDCFG_LOG(4) << "Entering  " << kScope << "RaidMakeJBOD";
    std::uint32_t value = result::Success;
    if (out_of_band_) {
        QuillonConnection::ConnectionInfo info;
        value = ConnectBmc(info, false);
        if (value != 0) {
            RAIDCFG_LOG(4) << "Exiting  " << kScope << "RaidMakeJBOD";
            return value;
        }
        RaidClient client(option_, info);
        value = client.MakeJbod();
        client.WriteResultPage(TesselResult(value, ""));
        client.TakeResults(results_);
    } else {
        // With or without a target: the in-band driver has no part in disk states.
        RaidClient client(option_);
        value = client.MakeJbod();
        client.TakeResults(results_);
    }
    RAIDCFG_LOG(4) << "Exiting  " << kScope << "RaidMakeJBOD";
    return value;
}
std::uint32_t ServiceRaidImpl::RaidAddHotSpare() {
    if (out_of_band_ && option_.cfc) {
        return Refused("RaidAddHotSpare");
    }
    RAIDCFG_LOG(4) << "Entering  " << kScope << "RaidAddHotSpare";
    std::uint32_t value = result::Success;
    if (out_of_band_) {
        QuillonConnection::ConnectionInfo info;
        value = ConnectBmc(info, false);
        if (value != 0) {
            RAIDCFG_LOG(4) << "Exiting  " << kScope << "RaidAddHotSpare";
            return value;
        }
        RaidClient client(option_, info);
        value = client.AddHotSpare();
        client.WriteResultPage(TesselResult(value, ""));
        client.TakeResults(results_);
    } else if (!option_.target.empty()) {
        InbandRaid inband(option_);
        value = inband.AddHotSpare();
        inband.TakeResults(results_);
    } else {
        RaidClient client(option_);
        value = client.AddHotSpare();
        client.TakeResults(results_);
    }
    RAIDCFG_LOG(4) << "Exiting  " << kScope << "RaidAddHotSpare";
    return value;
}
std::uint32_t ServiceRaidImpl::RaidRemoveHotSpare() {
    if (out_of_band_ && option_.cfc) {
        return Refused("RaidRemoveHotSpare");
    }
    RAIDCFG_LOG(4) << "Entering  " << kScope << "RaidRemoveHotSpare";
    std::uint32_t value = result::Success;
    if (out_of_band_) {
        QuillonConnection::ConnectionInfo info;
        value = ConnectBmc(info, false);
        if (value != 0) {
            RAIDCFG_LOG(4) << "Exiting  " << kScope << "RaidRemoveHotSpare";
            return value;
        }
        RaidClient client(option_, info);
        value = client.RemoveHotSpare();
        client.WriteResultPage(TesselResult(value, ""));
        client.TakeResults(results_);
    } else if (!option_.target.empty()) {
        InbandRaid inband(option_);
        value = inband.RemoveHotSpare();
        inband.TakeResults(results_);
    } else {
        RaidClient client(option_);
        value = client.RemoveHotSpare();
        client.TakeResults(results_);
    }
    RAIDCFG_LOG(4) << "Exiting  " << kScope << "RaidRemoveHotSpare";
    return value;
}

std::uint32_t ServiceRaidImpl::RaidFastInit() {
    // Fast initialisation exists on the out-of-band road alone, and not on a CFC system.
    if (!out_of_band_ || option_.cfc) {
        return Refused("RaidFastInit");
    }
    RAIDCFG_LOG(4) << "Entering  " << kScope << "RaidFastInit";
    QuillonConnection::ConnectionInfo info;
    std::uint32_t value = ConnectBmc(info, false);
    if (value != 0) {
        RAIDCFG_LOG(4) << "Exiting  " << kScope << "RaidFastInit";
        return value;
    }
    RaidClient client(option_, info);
    value = client.FastInit();
    client.WriteResultPage(TesselResult(value, ""));
    client.TakeResults(results_);
    RAIDCFG_LOG(4) << "Exiting  " << kScope << "RaidFastInit";
    return value;
}

std::uint32_t ServiceRaidImpl::RaidChangeConnectorMode() {
    // Connector modes are changed in-band only, and never on a CFC system.
    if (out_of_band_ || option_.cfc) {
        return Refused("RaidChangeConnectorMode");
    }
    RAIDCFG_LOG(4) << "Entering  " << kScope << "RaidChangeConnectorMode";
    // With or without a target: the client serves both roads itself.
    RaidClient client(option_);
    const std::uint32_t value = client.ChangeConnectorMode();
    client.TakeResults(results_);
    RAIDCFG_LOG(4) << "Exiting  " << kScope << "RaidChangeConnectorMode";
    return value;
}

std::uint32_t ServiceRaidImpl::RaidFirmwareDeviceOrder() {
    RAIDCFG_LOG(4) << "Entering  " << kScope << "RaidFirmwareDeviceOrder";
    std::uint32_t value = result::Success;
    if (!out_of_band_) {
        // With or without a target: the in-band LSI backend serves it, never the in-band driver.
        RaidClient client(option_);
        value = option_.mode_value.empty() ? client.ShowWithFirmwareDeviceOrder()
                                           : client.TurnFirmwareDeviceOrder();
        client.TakeResults(results_);
    } else {
        QuillonConnection::ConnectionInfo info;
        std::vector<QuillonConnection::ConnectionInfo> list;
        value = ConnectRestList(info, option_.cfc, list, true);
        if (value == result::Success) {
            RaidClient client(option_, info);
            value = option_.mode_value.empty() ? client.ShowOobWithFirmwareDeviceOrder(list)
                                               : client.TurnOobFirmwareDeviceOrder(list);
            client.TakeResults(results_);
        }
    }
    RAIDCFG_LOG(4) << "Exiting  " << kScope << "RaidFirmwareDeviceOrder";
    return value;
}

std::uint32_t ServiceRaidImpl::ConnectRestList(QuillonConnection::ConnectionInfo& info,
                                               bool use_rest,
                                               std::vector<QuillonConnection::ConnectionInfo>& list,
                                               bool list_failure_is_rest_data) {
    const std::uint32_t connected = ConnectBmc(info, use_rest);
    if (connected != 0) {
        return connected;
    }
    const TesselResult listed = TesselConnect::GetRESTConnectionList(option_.connect_option, list);
    if (listed != 0U || list.empty()) {
        // Out-of-band any failure of the list is the REST data failure; in-band the list call's
        // own value stands, so an empty list with success ends the action with success.
        return list_failure_is_rest_data ? result::RestDataFailed : listed.value();
    }
    return result::Success;
}

std::uint32_t ServiceRaidImpl::ExternKeyManage() {
    RAIDCFG_LOG(4) << "Entering  " << kScope << "ExternKeyManage";
    if (!out_of_band_ &&
        (option_.connect_option.user.empty() || option_.connect_option.password.empty())) {
        // In-band the BMC's REST interface is reached with credentials the user must give.
        std::cout << "Please specify bmc username and bmc password" << std::endl;
        RAIDCFG_LOG(3) << "Please specify bmc username and bmc password";
        RAIDCFG_LOG(4) << "Exiting  " << kScope << "ExternKeyManage";
        return result::InvalidParameter;
    }
    QuillonConnection::ConnectionInfo info;
    std::vector<QuillonConnection::ConnectionInfo> list;
    std::uint32_t value = ConnectRestList(info, out_of_band_ && option_.cfc, list, out_of_band_);
    if (value == result::Success && !list.empty()) {
        RaidClient client(option_, info);
        value =
            option_.mode_value.empty() ? client.ShowEKMOOB(list) : client.ChangeEKMModeOOB(list);
        client.TakeResults(results_);
    }
    RAIDCFG_LOG(4) << "Exiting  " << kScope << "ExternKeyManage";
    return value;
}

std::uint32_t ServiceRaidImpl::VolumeEncryption() {
    RAIDCFG_LOG(4) << "Entering  " << kScope << "VolumeEncryption";
    QuillonConnection::ConnectionInfo info;
    std::vector<QuillonConnection::ConnectionInfo> list;
    std::uint32_t value = ConnectRestList(info, out_of_band_ && option_.cfc, list, out_of_band_);
    if (value == result::Success && !list.empty()) {
        RaidClient client(option_, info);
        if (option_.mode_value.empty()) {
            value = client.ShowVolumeEncryptionOOB(list);
        } else if (boost::algorithm::to_lower_copy(option_.mode_value) == "enable") {
            value = client.ChangeVolModeOOB(list);
        } else {
            // Only enabling is offered; the word is judged once connected, intended, so that a
            // wrong word never hides a connection problem.
            value = result::RaidOnlyEnableEncryption;
        }
        client.TakeResults(results_);
    }
    RAIDCFG_LOG(4) << "Exiting  " << kScope << "VolumeEncryption";
    return value;
}

} // namespace detail
} // namespace service
