#include "service/misc_raid_service/detail/raid_client.hpp"

#include <iostream>
#include <utility>
#include <vector>

#include "backend/cfc_hw_raid_storage.hpp"
#include "backend/hw_raid_arcconf.hpp"
#include "backend/hw_raid_storage.hpp"
#include "backend/hw_raid_storcli.hpp"
#include "backend/inband_m2_raid.hpp"
#include "backend/oob_m2_raid.hpp"
#include "backend/oob_microchip_raid.hpp"
#include "backend/oob_vroc_raid.hpp"
#include "backend/sw_raid_win.hpp"
#include "collaborators/ambit_type_acquire.hpp"
#include "collaborators/log.hpp"
#include "collaborators/system_check.hpp"
#include "collaborators/tessel_connect.hpp"
#include "result/result_values.hpp"
#include "service/misc_raid_service/detail/action_outcome.hpp"
#include "service/misc_raid_service/detail/raid_option_processor.hpp"

namespace service {
namespace detail {

using Quillon::RaidConfig::RaidTarget;

RaidClient::RaidClient(const RaidConfig::RaidConfigOption& option)
    : local_(true), option_(option), input_(&std::cin) {
    RAIDCFG_LOG(4) << "Entering  service::detail::RaidClient::RaidClient";
    FillTexts();
    for (const RaidTarget::Type type :
         {RaidTarget::LSI, RaidTarget::MICROCHIP, RaidTarget::M2, RaidTarget::VROC_WIN}) {
        RegisterFamily(type);
    }

    const RaidOptionProcessor processor;
    if (!option_.target.empty()) {
        targets_ = processor.ParseInbandTargets(option_.target);
        for (const RaidTarget& target : targets_) {
            if (target.type != RaidTarget::LSI) {
                // M.2 and software RAID targets get no backend here: an action that asks for one
                // meets GetRaidBackend's out-of-range error, which ends that action.
                continue;
            }
            backends_[RaidTarget::LSI] = MakeBackend(RaidTarget::LSI);
            InitLsiMicrochipIndexMap(backends_[RaidTarget::LSI],
                                     MakeBackend(RaidTarget::MICROCHIP));
        }
    } else {
        int counter = 1;
        for (const RaidTarget::Type type :
             {RaidTarget::LSI, RaidTarget::MICROCHIP, RaidTarget::M2, RaidTarget::VROC_WIN}) {
            InitRaidIndexMap(type, counter);
        }
        if (!option_.ctrl_index.empty()) {
            target_index_ = processor.StringToInt(option_.ctrl_index);
        }
        InitLsiMicrochipIndexMap(MakeBackend(RaidTarget::LSI), MakeBackend(RaidTarget::MICROCHIP));
    }
    RAIDCFG_LOG(4) << "Exiting  service::detail::RaidClient::RaidClient";
}

RaidClient::RaidClient(const RaidConfig::RaidConfigOption& option,
                       const QuillonConnection::ConnectionInfo& connection)
    : option_(option), connection_(connection), input_(&std::cin) {
    RAIDCFG_LOG(4) << "Entering  service::detail::RaidClient::RaidClient";
    result_page_ = std::make_shared<HtmlPrint::BasicElementPage>(
        option_.output_dir + "raid_result.html", std::string());
    FillTexts();
    if (option_.cfc) {
        RegisterFamily(RaidTarget::OOB_CFC);
    } else {
        for (const RaidTarget::Type type : {RaidTarget::OOB_LSI, RaidTarget::OOB_MICROCHIP,
                                            RaidTarget::OOB_M2, RaidTarget::OOB_VROC}) {
            RegisterFamily(type);
        }
    }

    const RaidOptionProcessor processor;
    if (!option_.target.empty()) {
        targets_ = processor.ParseOobTargets(option_.target);
        for (const RaidTarget& target : targets_) {
            // A second target of a type replaces the backend of the first.
            if (target.type == RaidTarget::OOB_LSI || target.type == RaidTarget::OOB_M2) {
                backends_[target.type] = MakeBackend(target.type);
            }
        }
    } else {
        int counter = 1;
        if (option_.cfc) {
            InitRaidIndexMap(RaidTarget::OOB_CFC, counter);
        } else {
            // The numbering order: LSI, Microchip, VROC, then M.2.
            for (const RaidTarget::Type type : {RaidTarget::OOB_LSI, RaidTarget::OOB_MICROCHIP,
                                                RaidTarget::OOB_VROC, RaidTarget::OOB_M2}) {
                InitRaidIndexMap(type, counter);
            }
        }
        if (!option_.ctrl_index.empty()) {
            target_index_ = processor.StringToInt(option_.ctrl_index);
        }
    }

    std::vector<QuillonConnection::ConnectionInfo> rest_connect_list;
    const TesselResult listed =
        TesselConnect::GetRESTConnectionList(option_.connect_option, rest_connect_list);
    RAIDCFG_LOG(3) << "GetRESTConnectionList ret: " << listed
                   << ", rest_connect_list size = " << rest_connect_list.size();
    // Without the helper the client still works; it only leaves out the support information.
    if (listed.code() == 0 && !rest_connect_list.empty()) {
        redfish_helper_ =
            std::make_shared<Quillon::RaidConfig::RaidRedfishHelper>(rest_connect_list.front());
    }
    RAIDCFG_LOG(4) << "Exiting  service::detail::RaidClient::RaidClient";
}

RaidClient::~RaidClient() {
    // Both lines are written first; the members are released after the body.
    RAIDCFG_LOG(4) << "Entering  service::detail::RaidClient::~RaidClient";
    RAIDCFG_LOG(4) << "Exiting  service::detail::RaidClient::~RaidClient";
}

void RaidClient::FillTexts() {
    show_title_ = "Show Configuration Result";
    add_title_ = "Add Configuration Result";
    save_title_ = "Save Configuration Result";
    clear_title_ = "Clear Configuration Result";
    make_good_title_ = "Make Good Result";
    make_jbod_title_ = "Make JBOD Result";
    add_hot_spare_title_ = "Add Hot Spare Result";
    remove_hot_spare_title_ = "Remove Hot Spare Result";
    fast_init_title_ = "Fast Init Result";
    change_connector_mode_title_ = "Change connector mode Result";
    show_fw_device_order_title_ = "Show Firmware Device Order Result";
    change_fw_device_order_title_ = "Change Firmware Device Order Mode Result";
    ekm_title_ = "External Key Management Result";
    volume_encryption_title_ = "Volume Encryption Result";

    add_prompt_ = "Are you sure you want to continue creating the config.";
    clear_prompt_ = "This operation will remove all the data on your disk(s), are you sure you "
                    "want to continue clearing the RAID.";
    make_good_prompt_ = "Are you sure you want to continue doing makegood operation.";
    make_jbod_prompt_ = "Are you sure you want to continue doing makejbod operation.";
    add_hot_spare_prompt_ = "Are you sure you want to continue doing add hot spare operation.";
    remove_hot_spare_prompt_ =
        "Are you sure you want to continue doing remove hot spare operation.";
    fast_init_prompt_ = "Are you sure you want to continue doing fast init operation.";
    change_connector_mode_prompt_ = "This operation will change the status of your disk(s), are "
                                    "you sure you want to continue doing change connector mode "
                                    "operation.";
    volume_encryption_prompt_ = "Enable Volume Encryption is irreversible, the data on the volume "
                                "will be encrypted after the operation is completed.";

    success_text_ = "Success.";
    // The spelling is the one users and scripts have always seen; it stays.
    global_hot_spare_text_ = "Disk has been assigned global hot spare sucessfully.";
    volume_created_text_ = "Volume has been created successfully.";
    not_supported_text_ = "Function isn't supported on the target device.";
}

std::array<std::string, 14> RaidClient::Titles() const {
    return {show_title_,
            add_title_,
            save_title_,
            clear_title_,
            make_good_title_,
            make_jbod_title_,
            add_hot_spare_title_,
            remove_hot_spare_title_,
            fast_init_title_,
            change_connector_mode_title_,
            show_fw_device_order_title_,
            change_fw_device_order_title_,
            ekm_title_,
            volume_encryption_title_};
}

std::array<std::string, 9> RaidClient::Prompts() const {
    return {add_prompt_,
            clear_prompt_,
            make_good_prompt_,
            make_jbod_prompt_,
            add_hot_spare_prompt_,
            remove_hot_spare_prompt_,
            fast_init_prompt_,
            change_connector_mode_prompt_,
            volume_encryption_prompt_};
}

std::array<std::string, 4> RaidClient::ResultWords() const {
    return {success_text_, global_hot_spare_text_, volume_created_text_, not_supported_text_};
}

void RaidClient::RegisterFamily(RaidTarget::Type type) {
    RegisterShowMembers(type);
    RegisterAddMembers(type);
    RegisterSaveMembers(type);
}

void RaidClient::RegisterShowMembers(RaidTarget::Type type) {
    switch (type) {
    case RaidTarget::LSI:
        show_functions_[type] = [this](const RaidIndex& index) { ShowLSIController(index); };
        break;
    case RaidTarget::MICROCHIP:
        show_functions_[type] = [this](const RaidIndex& index) { ShowMicrochipController(index); };
        break;
    case RaidTarget::M2:
        show_functions_[type] = [this](const RaidIndex& index) { ShowM2Controller(index); };
        break;
    case RaidTarget::VROC_WIN:
        show_functions_[type] = [this](const RaidIndex& index) { ShowVrocController_win(index); };
        break;
    case RaidTarget::OOB_LSI:
        show_functions_[type] = [this](const RaidIndex& index) { ShowOobLSIController(index); };
        break;
    case RaidTarget::OOB_CFC:
        show_functions_[type] = [this](const RaidIndex& index) {
            ShowOobLSIMicrochipM2ControllerCFC(index);
        };
        break;
    case RaidTarget::OOB_M2:
        show_functions_[type] = [this](const RaidIndex& index) { ShowOobM2Controller(index); };
        break;
    case RaidTarget::OOB_MICROCHIP:
        show_functions_[type] = [this](const RaidIndex& index) {
            ShowOobMicrochipController(index);
        };
        break;
    case RaidTarget::OOB_VROC:
        show_functions_[type] = [this](const RaidIndex& index) { ShowOobVrocController(index); };
        break;
    case RaidTarget::INVALID:
        break;
    }
}

std::shared_ptr<RaidClient::Raid> RaidClient::MakeBackend(RaidTarget::Type type) const {
    using namespace Quillon::RaidConfig;
    switch (type) {
    case RaidTarget::LSI:
        return std::make_shared<HWRaidStorcli>();
    case RaidTarget::MICROCHIP:
        return std::make_shared<HWRaidArcconf>();
    case RaidTarget::M2:
        return std::make_shared<InbandM2Raid>();
    case RaidTarget::VROC_WIN:
        return std::make_shared<SWRaidWin>();
    case RaidTarget::OOB_LSI:
        return std::make_shared<HWRaidStorage>(connection_);
    case RaidTarget::OOB_CFC:
        return std::make_shared<CFCHWRaidStorage>(connection_);
    case RaidTarget::OOB_M2:
        return std::make_shared<OOBM2Raid>(connection_);
    case RaidTarget::OOB_MICROCHIP:
        return std::make_shared<OobMicrochipRaid>(connection_);
    case RaidTarget::OOB_VROC:
        return std::make_shared<OobVrocRaid>(connection_);
    case RaidTarget::INVALID:
        break;
    }
    return nullptr;
}

void RaidClient::InitRaidIndexMap(RaidTarget::Type type, int& counter) {
    RAIDCFG_LOG(4) << "Entering  service::detail::RaidClient::InitRaidIndexMap";
    const std::shared_ptr<Raid> backend = MakeBackend(type);
    std::vector<int> ids;
    backend->GetControllerIds(ids);
    for (const int id : ids) {
        index_map_[counter] = RaidIndex{counter, id, type, backend};
        ++counter;
    }
    RAIDCFG_LOG(4) << "Exiting  service::detail::RaidClient::InitRaidIndexMap";
}

void RaidClient::InitLsiMicrochipIndexMap(const std::shared_ptr<Raid>& lsi,
                                          const std::shared_ptr<Raid>& microchip) {
    RAIDCFG_LOG(4) << "Entering  service::detail::RaidClient::InitLsiMicrochipIndexMap";
    int number = 0;
    std::vector<int> ids;
    lsi->GetControllerIds(ids);
    for (const int id : ids) {
        lsi_microchip_index_map_[number] = RaidIndex{number, id, RaidTarget::LSI, lsi};
        ++number;
    }
    // Intended: one number is skipped between the two families, so with two LSI controllers the
    // first Microchip one is 2 + 1 = 3. Shown numbers and policy file sections rely on it.
    ++number;
    ids.clear();
    microchip->GetControllerIds(ids);
    for (const int id : ids) {
        lsi_microchip_index_map_[number] = RaidIndex{number, id, RaidTarget::MICROCHIP, microchip};
        ++number;
    }
    RAIDCFG_LOG(4) << "Exiting  service::detail::RaidClient::InitLsiMicrochipIndexMap";
}

int RaidClient::LsiMicrochipOrdinal(RaidTarget::Type type, int id) const {
    int ordinal = 0;
    for (const auto& [key, record] : lsi_microchip_index_map_) {
        if (record.type == type && record.id == id) {
            ordinal = key; // the last match stands
        }
    }
    return ordinal;
}

int RaidClient::LsiMicrochipOrdinal(RaidTarget::Type type, const std::string& id) const {
    int ordinal = 0;
    for (const auto& [key, record] : lsi_microchip_index_map_) {
        if (record.type == type && std::to_string(record.id) == id) {
            ordinal = key; // the last match stands
        }
    }
    return ordinal;
}

RaidIndex RaidClient::GetRaidIndex(int index) const {
    const auto found = index_map_.find(index);
    if (found == index_map_.end()) {
        return RaidIndex{};
    }
    return found->second;
}

std::shared_ptr<RaidClient::Raid> RaidClient::GetRaidBackend(RaidTarget::Type type) const {
    const auto found = backends_.find(type);
    if (found == backends_.end()) {
        // The same text whatever the standard library's own map::at would say: callers and logs
        // know this one.
        throw std::out_of_range("invalid map<K, T> key");
    }
    return found->second;
}

void RaidClient::AddRow(const std::string& device, const std::string& text, RaidErrorCode code) {
    rows_.push_back(RaidResult{device, text, code});
}

void RaidClient::AddQueryRow(int number, RaidErrorCode code, const std::string& failure_text) {
    std::string text = failure_text;
    if (code == Quillon::RaidConfig::RAID_OK) {
        text = success_text_;
    } else if (code == Quillon::RaidConfig::RAID_TARGET_NOT_FOUND) {
        text = NoControllerText(number);
    }
    AddRow(CtrlLabel(number), text, code);
}

std::string RaidClient::TakeError(Raid& backend) {
    std::string text = std::move(backend.error_text);
    backend.error_text.clear();
    return text;
}

void RaidClient::Tell(const std::string& text) {
    std::cout << text << std::endl;
    RAIDCFG_LOG(3) << text;
}

bool RaidClient::ConfirmOperation(const std::string& prompt) {
    RAIDCFG_LOG(4) << "Entering  service::detail::RaidClient::ConfirmOperation";
    const bool confirmed = ActionOutcome::Confirm(*input_, prompt);
    RAIDCFG_LOG(4) << "Exiting  service::detail::RaidClient::ConfirmOperation";
    return confirmed;
}

std::uint32_t RaidClient::GetBmcType(int& out) {
    RAIDCFG_LOG(4) << "Entering  service::detail::RaidClient::GetBmcType";
    QuillonConnection::ConnectionInfo info;
    if (TesselConnect::GetRESTConnection(option_.connect_option, info) != result::Success) {
        const std::uint32_t value = GetAmbitTypeViaCIM(out);
        RAIDCFG_LOG(4) << "Exiting  service::detail::RaidClient::GetBmcType";
        return value;
    }
    Quillon::Agentless::AmbitTypeValue type = Quillon::Agentless::AMBIT_TYPE_UNKNOWN;
    if (Quillon::Agentless::AmbitTypeAcquire(info).GetAmbitType(type) == 0) {
        out = type;
        RAIDCFG_LOG(3) << "raid succeeded in getting bmc_type: " << out;
        RAIDCFG_LOG(4) << "Exiting  service::detail::RaidClient::GetBmcType";
        return result::Success;
    }
    if (Quillon::SystemCheck::IsVantorV3(info)) {
        RAIDCFG_LOG(4) << "target server is Vantor v3 System.";
        out = Quillon::Agentless::AMBIT_TYPE_VANTOR_V3;
        RAIDCFG_LOG(4) << "Exiting  service::detail::RaidClient::GetBmcType";
        return result::Success;
    }
    const std::uint32_t value = GetAmbitTypeViaCIM(out);
    RAIDCFG_LOG(4) << "Exiting  service::detail::RaidClient::GetBmcType";
    return value;
}

std::uint32_t RaidClient::GetAmbitTypeViaCIM(int& out) {
    RAIDCFG_LOG(4) << "Entering  service::detail::RaidClient::GetAmbitTypeViaCIM";
    QuillonConnection::ConnectionInfo info;
    const TesselResult fetched = TesselConnect::FetchCIMConnection(option_.connect_option, info);
    if (fetched != result::Success) {
        RAIDCFG_LOG(4) << "Exiting  service::detail::RaidClient::GetAmbitTypeViaCIM";
        return fetched.value();
    }
    Quillon::Agentless::AmbitTypeValue type = Quillon::Agentless::AMBIT_TYPE_UNKNOWN;
    if (Quillon::Agentless::AmbitTypeAcquire(info).GetAmbitType(type) == 0) {
        out = type;
        RAIDCFG_LOG(3) << "raid succeeded in getting bmc_type: " << out;
        RAIDCFG_LOG(4) << "Exiting  service::detail::RaidClient::GetAmbitTypeViaCIM";
        return result::Success;
    }
    RAIDCFG_LOG(4) << "Exiting  service::detail::RaidClient::GetAmbitTypeViaCIM";
    return result::ConnectionFailed;
}

void RaidClient::TakeResults(std::map<std::string, std::string>& results) const {
    RAIDCFG_LOG(4) << "Entering  service::detail::RaidClient::TakeResults";
    for (const RaidResult& row : rows_) {
        results[row.device] = row.result;
    }
    RAIDCFG_LOG(4) << "Exiting  service::detail::RaidClient::TakeResults";
}

std::string RaidClient::CtrlLabel(int index) {
    return "ctrl" + std::to_string(index);
}

std::string RaidClient::VolLabel(int index, int volume) {
    return CtrlLabel(index) + "-vol" + std::to_string(volume);
}

std::string RaidClient::DiskLabel(int index, int disk) {
    return DiskLabel(index, std::to_string(disk));
}

std::string RaidClient::DiskLabel(int index, const std::string& disk) {
    return CtrlLabel(index) + "-disk" + disk;
}

std::string RaidClient::ConnectorLabel(int index, int connector) {
    return CtrlLabel(index) + "-connector" + std::to_string(connector);
}

std::string RaidClient::NoControllerText(int index) {
    return "The controller ID " + std::to_string(index) + " does not exist.";
}

std::string RaidClient::NoConfigText(int index) {
    return "The controller ID " + std::to_string(index) + " doesn't have config.";
}

std::string RaidClient::NoDiskText(int disk) {
    return NoDiskText(std::to_string(disk));
}

std::string RaidClient::NoDiskText(const std::string& disk) {
    return "The disk ID " + disk + " does not exist.";
}

std::string RaidClient::NoVolumeText(int volume) {
    return "The volume ID " + std::to_string(volume) + " does not exist.";
}

std::string RaidClient::NoConnectorText(int connector) {
    return "The connector ID " + std::to_string(connector) + " does not exist.";
}

std::string RaidClient::NoPolicyText(int index) {
    return "Policy file doesn't contain controller " + std::to_string(index) + " raid policy.";
}

std::string RaidClient::OrderChangedText(int index) {
    return "The firmware device order mode for controller ID " + std::to_string(index) +
           " has been successfully changed. Please reboot the system for the changes to take "
           "effect.";
}

std::string RaidClient::OrderUnchangedText(int index) const {
    return "The firmware device order mode for controller ID " + std::to_string(index) +
           " is already " + option_.mode_value + ".";
}

} // namespace detail
} // namespace service
