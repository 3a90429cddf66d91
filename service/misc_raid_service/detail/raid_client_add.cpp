// The add action: a policy file applied to the controllers it names. Each family member reads
// its section, has it checked, and assigns the global hot spares and creates the volumes in the
// family's own order, leaving one row per hot spare, volume or refused controller.
#include <algorithm>
#include <cstdint>
#include <iostream>
#include <map>
#include <memory>
#include <regex>
#include <string>
#include <vector>

#include <boost/algorithm/string/case_conv.hpp>
#include <boost/algorithm/string/erase.hpp>

#include "backend/cfc_hw_raid_storage.hpp"
#include "backend/controller.hpp"
#include "backend/hw_raid_arcconf.hpp"
#include "backend/hw_raid_storage.hpp"
#include "backend/hw_raid_storcli.hpp"
#include "backend/inband_m2_raid.hpp"
#include "backend/oob_m2_raid.hpp"
#include "backend/oob_microchip_raid.hpp"
#include "backend/oob_vroc_raid.hpp"
#include "backend/sw_raid_win.hpp"
#include "collaborators/log.hpp"
#include "result/result_values.hpp"
#include "service/misc_raid_service/detail/policy_file_preview.hpp"
#include "service/misc_raid_service/detail/raid_client.hpp"
#include "service/misc_raid_service/detail/raid_config_caster.hpp"
#include "service/misc_raid_service/detail/raid_config_checker.hpp"
#include "service/misc_raid_service/detail/raid_config_parser.hpp"
#include "service/misc_raid_service/detail/raid_config_sections.hpp"
#include "service/misc_raid_service/detail/raid_option_processor.hpp"

namespace service {
namespace detail {

namespace {

using Quillon::RaidConfig::RAID_ADDHSP_REFUSED;
using Quillon::RaidConfig::RAID_DISK_NOT_FOUND;
using Quillon::RaidConfig::RAID_OK;
using Quillon::RaidConfig::RAID_POLICY_ERROR;
using Quillon::RaidConfig::RAID_TARGET_NOT_FOUND;
using Quillon::RaidConfig::RaidErrorCode;
using Quillon::RaidConfig::RaidTarget;

constexpr const char* kMissingDisksText = "One or more disks do not exist.";

// Named targets carry their controller's own id in brackets.
std::string TargetLabel(int id) {
    return "ctrl[" + std::to_string(id) + "]";
}

std::string TargetDiskLabel(int id, int disk) {
    return "disk[" + std::to_string(id) + "-" + std::to_string(disk) + "]";
}

std::string TargetVolLabel(int ctrlid, int volid) {
    return "vol[" + std::to_string(ctrlid) + "-" + std::to_string(volid) + "]";
}

std::string M2TargetLabel(int id) {
    return "M2-" + std::to_string(id);
}

std::string NoTargetText(const std::string& device) {
    return "The target " + device + " does not exist.";
}

std::string NoTargetPolicyText(const std::string& device) {
    return "Policy file doesn't contain controller " + device + " raid policy.";
}

bool HasController(const Quillon::RaidConfig::Raid& backend, int id) {
    std::vector<int> ids;
    backend.GetControllerIds(ids);
    return std::find(ids.begin(), ids.end(), id) != ids.end();
}

} // namespace

void RaidClient::RegisterAddMembers(RaidTarget::Type type) {
    switch (type) {
    case RaidTarget::LSI:
        add_functions_[type] = [this](const RaidIndex& index, RaidConfigParser& parser) {
            AddLSIConfig(index, parser);
        };
        break;
    case RaidTarget::MICROCHIP:
        add_functions_[type] = [this](const RaidIndex& index, RaidConfigParser& parser) {
            AddMicrochipConfig(index, parser);
        };
        break;
    case RaidTarget::M2:
        add_functions_[type] = [this](const RaidIndex& index, RaidConfigParser& parser) {
            AddM2Config(index, parser);
        };
        break;
    case RaidTarget::VROC_WIN:
        add_functions_[type] = [this](const RaidIndex& index, RaidConfigParser& parser) {
            AddVroc_winConfig(index, parser);
        };
        break;
    case RaidTarget::OOB_LSI:
        add_functions_[type] = [this](const RaidIndex& index, RaidConfigParser& parser) {
            AddOobLSIConfig(index, parser);
        };
        break;
    case RaidTarget::OOB_CFC:
        add_functions_[type] = [this](const RaidIndex& index, RaidConfigParser& parser) {
            AddOobLSIMicrochipM2ConfigCFC(index, parser);
        };
        break;
    case RaidTarget::OOB_M2:
        add_functions_[type] = [this](const RaidIndex& index, RaidConfigParser& parser) {
            AddOobM2Config(index, parser);
        };
        break;
    case RaidTarget::OOB_MICROCHIP:
        add_functions_[type] = [this](const RaidIndex& index, RaidConfigParser& parser) {
            AddOobMicrochipConfig(index, parser);
        };
        break;
    case RaidTarget::OOB_VROC:
        add_functions_[type] = [this](const RaidIndex& index, RaidConfigParser& parser) {
            AddOobVrocConfig(index, parser);
        };
        break;
    case RaidTarget::INVALID:
        break;
    }
}

std::uint32_t RaidClient::ShowPolicyFile(const std::string& path) {
    return PolicyFilePreview::ShowPolicyFile(path, std::cout);
}

std::string RaidClient::ReplaceControllerId(const std::string& text, int id, int index) {
    const std::regex own_id("ctrl\\[" + std::to_string(id) + "\\]");
    return std::regex_replace(text, own_id, "ctrl[" + std::to_string(index) + "]");
}

std::uint32_t RaidClient::Add() {
    RAIDCFG_LOG(4) << "Entering  service::detail::RaidClient::Add";
    if (option_.console_output) {
        Tell("\nraidconfig add:");
    }
    if (!local_) {
        result_page_->SetPageTitle("RaidConfig Add");
    }
    std::string path;
    if (!RaidOptionProcessor().GetPolicyFile(option_.policy_file, path)) {
        RAIDCFG_LOG(4) << "Exiting  service::detail::RaidClient::Add";
        return result::InvalidParameter;
    }
    RaidConfigParser parser;
    if (!parser.ReadIniFile(path)) {
        RAIDCFG_LOG(4) << "Exiting  service::detail::RaidClient::Add";
        return result::RaidIniFileError;
    }
    const std::uint32_t shown = ShowPolicyFile(path);
    if (shown != result::Success) {
        RAIDCFG_LOG(4) << "Exiting  service::detail::RaidClient::Add";
        return shown;
    }
    // A declined add is no failure: nothing was asked of a controller.
    if (!option_.assume_yes && !ConfirmOperation(add_prompt_)) {
        RAIDCFG_LOG(4) << "Exiting  service::detail::RaidClient::Add";
        return result::Success;
    }
    const std::uint32_t value = option_.target.empty() ? AddIndex(parser) : AddTarget(parser);
    RAIDCFG_LOG(4) << "Exiting  service::detail::RaidClient::Add";
    return value;
}

std::uint32_t RaidClient::AddTarget(RaidConfigParser& parser) {
    RAIDCFG_LOG(4) << "Entering  service::detail::RaidClient::AddTarget";
    using Quillon::RaidConfig::HWRaidStorage;
    using Quillon::RaidConfig::OOBM2Raid;
    const RaidConfigCaster caster;
    // One checker serves every target of the action.
    RaidConfigChecker checker;

    // An LSI controller's section from its check on: the hot spares, then the volumes.
    const auto add_lsi = [&](HWRaidStorage& backend, int id, const CtrlSection& section) {
        const std::string device = TargetLabel(id);
        if (!checker.CheckOobCtrlSection(section)) {
            AddRow(device, checker.TakeErrorText(), RAID_POLICY_ERROR);
            return;
        }
        if (!HasController(backend, id)) {
            AddRow(device, NoTargetText(device), RAID_TARGET_NOT_FOUND);
            return;
        }
        for (const int disk : caster.ToHotSpareList(section.global_hot_spares)) {
            const std::string disk_device = TargetDiskLabel(id, disk);
            const RaidErrorCode code = backend.AddGlobalHotSpare(id, std::to_string(disk));
            std::string text;
            if (code == RAID_OK) {
                text = global_hot_spare_text_;
            } else if (code == RAID_TARGET_NOT_FOUND) {
                text = NoTargetText(disk_device);
            } else if (code == RAID_ADDHSP_REFUSED) {
                text = "The target " + disk_device + " can't do addhsp operation";
            } else {
                text = TakeError(backend);
            }
            AddRow(disk_device, text, code);
        }
        for (const CtrlVolSection& volume : section.volumes) {
            // The request keeps the section's controller id: on this road it is the real one.
            const RaidErrorCode code = backend.Add(caster.ToVolumeObject(volume));
            AddRow(TargetVolLabel(volume.ctrlid, volume.volid),
                   code == RAID_OK ? volume_created_text_ : TakeError(backend), code);
        }
    };

    // An M.2 controller's one volume from its check on.
    const auto add_m2 = [&](OOBM2Raid& backend, int id, const M2Section& section) {
        const std::string device = M2TargetLabel(id);
        if (!checker.CheckM2Section(section)) {
            AddRow(device, checker.TakeErrorText(), RAID_POLICY_ERROR);
            return;
        }
        if (!HasController(backend, id)) {
            AddRow(device, NoTargetText(device), RAID_TARGET_NOT_FOUND);
            return;
        }
        const RaidErrorCode code = backend.Add(caster.ToM2ControllerObject(section));
        AddRow(device, code == RAID_OK ? volume_created_text_ : TakeError(backend), code);
    };

    for (const RaidTarget& target : targets_) {
        const std::shared_ptr<Raid> backend = GetRaidBackend(target.type);
        if (target.type == RaidTarget::OOB_LSI) {
            const auto lsi = std::dynamic_pointer_cast<HWRaidStorage>(backend);
            if (!lsi) {
                continue;
            }
            if (target.ids.empty()) {
                // Only the controllers the file names; the others are left alone.
                std::map<int, CtrlSection> sections;
                parser.ParseCtrlSections(sections);
                for (const auto& [id, section] : sections) {
                    add_lsi(*lsi, id, section);
                }
                continue;
            }
            for (const int id : target.ids) {
                // Read anew for each id.
                std::map<int, CtrlSection> sections;
                parser.ParseCtrlSections(sections);
                const auto found = sections.find(id);
                if (found == sections.end()) {
                    const std::string device = TargetLabel(id);
                    AddRow(device, NoTargetPolicyText(device), RAID_POLICY_ERROR);
                    continue;
                }
                add_lsi(*lsi, id, found->second);
            }
        } else if (target.type == RaidTarget::OOB_M2) {
            const auto m2 = std::dynamic_pointer_cast<OOBM2Raid>(backend);
            if (!m2) {
                continue;
            }
            if (target.ids.empty()) {
                std::map<int, M2Section> sections;
                parser.ParseM2Sections(sections);
                for (const auto& [id, section] : sections) {
                    add_m2(*m2, id, section);
                }
                continue;
            }
            for (const int id : target.ids) {
                std::map<int, M2Section> sections;
                parser.ParseM2Sections(sections);
                const auto found = sections.find(id);
                if (found == sections.end()) {
                    const std::string device = M2TargetLabel(id);
                    AddRow(device, NoTargetPolicyText(device), RAID_POLICY_ERROR);
                    continue;
                }
                add_m2(*m2, id, found->second);
            }
        }
    }

    // Intended: a walk that left no row ends as a file that asked for nothing, even when the
    // file's sections merely held no work; callers take this value as "nothing was applied".
    if (rows_.empty()) {
        RAIDCFG_LOG(4) << "Exiting  service::detail::RaidClient::AddTarget";
        return result::RaidIniFileError;
    }
    PrintResultTable(add_title_);
    const std::uint32_t value = SummaryResults();
    RAIDCFG_LOG(4) << "Exiting  service::detail::RaidClient::AddTarget";
    return value;
}

std::uint32_t RaidClient::AddIndex(RaidConfigParser& parser) {
    RAIDCFG_LOG(4) << "Entering  service::detail::RaidClient::AddIndex";
    const std::vector<int> ids = parser.GetSectionIds();
    if (target_index_ != -1) {
        // The file is asked before the controllers: a number it lacks is a policy error even
        // where no such controller exists.
        if (std::find(ids.begin(), ids.end(), target_index_) == ids.end()) {
            AddRow(CtrlLabel(target_index_), NoPolicyText(target_index_), RAID_POLICY_ERROR);
        } else {
            DispatchIndex(target_index_, add_functions_, parser);
        }
    } else {
        for (const int id : ids) {
            DispatchIndex(id, add_functions_, parser);
        }
    }
    if (rows_.empty()) {
        RAIDCFG_LOG(4) << "Exiting  service::detail::RaidClient::AddIndex";
        return result::RaidIniFileError;
    }
    PrintResultTable(add_title_);
    const std::uint32_t value = SummaryResults();
    RAIDCFG_LOG(4) << "Exiting  service::detail::RaidClient::AddIndex";
    return value;
}

void RaidClient::AddIndexHotSpares(const RaidIndex& index, const std::string& global_hot_spares,
                                   bool refusal_text) {
    const RaidConfigCaster caster;
    for (const int disk : caster.ToHotSpareList(global_hot_spares)) {
        const std::string disk_text = std::to_string(disk);
        const RaidErrorCode code = index.backend->AddGlobalHotSpare(index.id, disk_text);
        std::string text;
        if (code == RAID_OK) {
            text = global_hot_spare_text_;
        } else if (code == RAID_TARGET_NOT_FOUND) {
            text = NoDiskText(disk);
        } else if (code == RAID_ADDHSP_REFUSED && refusal_text) {
            text = "The disk " + disk_text + " can't do addhsp operation";
        } else {
            text = TakeError(*index.backend);
        }
        AddRow(DiskLabel(index.index, disk), text, code);
    }
}

void RaidClient::AddLSIConfig(const RaidIndex& index, RaidConfigParser& parser) {
    RAIDCFG_LOG(4) << "Entering  service::detail::RaidClient::AddLSIConfig";
    const auto backend =
        std::dynamic_pointer_cast<Quillon::RaidConfig::HWRaidStorcli>(index.backend);
    if (!backend) {
        RAIDCFG_LOG(4) << "Exiting  service::detail::RaidClient::AddLSIConfig";
        return;
    }
    CtrlSection section;
    parser.ParseCtrlSection(index.index, section);
    RaidConfigChecker checker;
    if (!checker.CheckLsiCtrlSection(section)) {
        AddRow(CtrlLabel(index.index), checker.TakeErrorText(), RAID_POLICY_ERROR);
        RAIDCFG_LOG(4) << "Exiting  service::detail::RaidClient::AddLSIConfig";
        return;
    }
    AddIndexHotSpares(index, section.global_hot_spares, false);
    const RaidConfigCaster caster;
    for (const CtrlVolSection& volume : section.volumes) {
        Quillon::RaidConfig::VolumeObject request = caster.ToVolumeObject(volume);
        request.controller_id = index.id;
        const RaidErrorCode code = backend->Add(request);
        AddRow(VolLabel(index.index, volume.volid),
               code == RAID_OK ? volume_created_text_ : TakeError(*backend), code);
    }
    RAIDCFG_LOG(4) << "Exiting  service::detail::RaidClient::AddLSIConfig";
}

void RaidClient::AddMicrochipConfig(const RaidIndex& index, RaidConfigParser& parser) {
    RAIDCFG_LOG(4) << "Entering  service::detail::RaidClient::AddMicrochipConfig";
    const auto backend =
        std::dynamic_pointer_cast<Quillon::RaidConfig::HWRaidArcconf>(index.backend);
    if (!backend) {
        RAIDCFG_LOG(4) << "Exiting  service::detail::RaidClient::AddMicrochipConfig";
        return;
    }
    MicroCtrlSection section;
    parser.ParseMicroSection(index.index, section);
    RaidConfigChecker checker;
    if (!checker.CheckMicroSection(section)) {
        AddRow(CtrlLabel(index.index), checker.TakeErrorText(), RAID_POLICY_ERROR);
        RAIDCFG_LOG(4) << "Exiting  service::detail::RaidClient::AddMicrochipConfig";
        return;
    }
    // Intended: this family creates its volumes before it assigns the hot spares, and its rows
    // come in that order.
    const RaidConfigCaster caster;
    for (const MicroVolSection& volume : section.volumes) {
        Quillon::protocol::MicrochipConfig request = caster.ToMicrochipConfig(volume);
        request.controller_id = index.id;
        const RaidErrorCode code = backend->Add(request);
        AddRow(VolLabel(index.index, volume.volid),
               code == RAID_OK ? volume_created_text_ : TakeError(*backend), code);
    }
    AddIndexHotSpares(index, section.global_hot_spares, false);
    RAIDCFG_LOG(4) << "Exiting  service::detail::RaidClient::AddMicrochipConfig";
}

void RaidClient::AddM2Config(const RaidIndex& index, RaidConfigParser& parser) {
    RAIDCFG_LOG(4) << "Entering  service::detail::RaidClient::AddM2Config";
    const auto backend =
        std::dynamic_pointer_cast<Quillon::RaidConfig::InbandM2Raid>(index.backend);
    if (!backend) {
        RAIDCFG_LOG(4) << "Exiting  service::detail::RaidClient::AddM2Config";
        return;
    }
    M2Section section;
    parser.ParseM2Section(index.index, section);
    // The check knows the sizes in capitals only; "128k" is read as "128K".
    boost::algorithm::to_upper(section.strip_size);
    RaidConfigChecker checker;
    if (!checker.CheckM2Section(section)) {
        AddRow(CtrlLabel(index.index), checker.TakeErrorText(), RAID_POLICY_ERROR);
        RAIDCFG_LOG(4) << "Exiting  service::detail::RaidClient::AddM2Config";
        return;
    }
    // The in-band M.2 backend takes the strip size as a bare number of KiB.
    boost::algorithm::erase_all(section.strip_size, "K");
    Quillon::RaidConfig::M2ControllerObject request =
        RaidConfigCaster().ToM2ControllerObject(section);
    request.controller_id = index.id;
    const RaidErrorCode code = backend->AddRaidIndex(request);
    std::string text;
    if (code == RAID_OK) {
        text = volume_created_text_;
    } else if (code == RAID_TARGET_NOT_FOUND) {
        text = NoControllerText(index.index);
    } else {
        text = TakeError(*backend);
    }
    AddRow(VolLabel(index.index, section.volid), text, code);
    RAIDCFG_LOG(4) << "Exiting  service::detail::RaidClient::AddM2Config";
}

void RaidClient::AddVroc_winConfig(const RaidIndex& index, RaidConfigParser& parser) {
    RAIDCFG_LOG(4) << "Entering  service::detail::RaidClient::AddVroc_winConfig";
    const auto backend = std::dynamic_pointer_cast<Quillon::RaidConfig::SWRaidWin>(index.backend);
    if (!backend) {
        RAIDCFG_LOG(4) << "Exiting  service::detail::RaidClient::AddVroc_winConfig";
        return;
    }
    VrocWinCtrlSection section;
    parser.ParseVrocWinSection(index.index, section);
    RaidConfigChecker checker;
    if (!checker.CheckVroc_winSection(section)) {
        AddRow(CtrlLabel(index.index), checker.TakeErrorText(), RAID_POLICY_ERROR);
        RAIDCFG_LOG(4) << "Exiting  service::detail::RaidClient::AddVroc_winConfig";
        return;
    }
    // Intended: as on Microchip, the volumes come before the hot spares, rows included.
    const RaidConfigCaster caster;
    for (const VrocWinVolSection& volume : section.volumes) {
        Quillon::RaidConfig::VolRaidConfig request = caster.ToVolRaidConfig(volume);
        request.controller_id = std::to_string(index.id);
        const RaidErrorCode code = backend->Add(request);
        std::string text;
        if (code == RAID_OK) {
            text = volume_created_text_;
        } else if (code == RAID_TARGET_NOT_FOUND) {
            text = NoControllerText(index.index);
        } else if (code == RAID_DISK_NOT_FOUND) {
            text = kMissingDisksText;
        } else {
            text = TakeError(*backend);
        }
        AddRow(VolLabel(index.index, volume.volid), text, code);
    }
    AddIndexHotSpares(index, section.global_hot_spares, false);
    RAIDCFG_LOG(4) << "Exiting  service::detail::RaidClient::AddVroc_winConfig";
}

void RaidClient::AddOobLSIConfig(const RaidIndex& index, RaidConfigParser& parser) {
    RAIDCFG_LOG(4) << "Entering  service::detail::RaidClient::AddOobLSIConfig";
    const auto backend =
        std::dynamic_pointer_cast<Quillon::RaidConfig::HWRaidStorage>(index.backend);
    if (!backend) {
        RAIDCFG_LOG(4) << "Exiting  service::detail::RaidClient::AddOobLSIConfig";
        return;
    }
    CtrlSection section;
    parser.ParseCtrlSection(index.index, section);
    RaidConfigChecker checker;
    if (!checker.CheckOobCtrlSection(section)) {
        AddRow(CtrlLabel(index.index), checker.TakeErrorText(), RAID_POLICY_ERROR);
        RAIDCFG_LOG(4) << "Exiting  service::detail::RaidClient::AddOobLSIConfig";
        return;
    }
    AddIndexHotSpares(index, section.global_hot_spares, true);
    const RaidConfigCaster caster;
    for (const CtrlVolSection& volume : section.volumes) {
        Quillon::RaidConfig::VolumeObject request = caster.ToVolumeObject(volume);
        request.controller_id = index.id;
        const RaidErrorCode code = backend->Add(request);
        AddRow(VolLabel(index.index, volume.volid),
               code == RAID_OK ? volume_created_text_ : TakeError(*backend), code);
    }
    RAIDCFG_LOG(4) << "Exiting  service::detail::RaidClient::AddOobLSIConfig";
}

void RaidClient::AddOobLSIMicrochipM2ConfigCFC(const RaidIndex& index, RaidConfigParser& parser) {
    RAIDCFG_LOG(4) << "Entering  service::detail::RaidClient::AddOobLSIMicrochipM2ConfigCFC";
    const auto backend =
        std::dynamic_pointer_cast<Quillon::RaidConfig::CFCHWRaidStorage>(index.backend);
    if (!backend) {
        RAIDCFG_LOG(4) << "Exiting  service::detail::RaidClient::AddOobLSIMicrochipM2ConfigCFC";
        return;
    }
    CtrlSection section;
    parser.ParseCtrlSection(index.index, section);

    // The check needs what the controller offers: its levels and its vendor.
    const auto found = index_map_.find(index.index);
    const int real_id = found == index_map_.end() ? 0 : found->second.id;
    std::vector<std::string> levels;
    Quillon::RaidConfig::Controller controller;
    // Intended: a controller that can't tell its levels or itself leaves no row; the reason
    // stays in the backend's error text, and the summary does not count the controller.
    if (backend->GetSupportedRaidLevels(real_id, levels) != RAID_OK ||
        backend->GetController(real_id, controller) != RAID_OK) {
        RAIDCFG_LOG(4) << "Exiting  service::detail::RaidClient::AddOobLSIMicrochipM2ConfigCFC";
        return;
    }
    RaidConfigChecker checker;
    if (!checker.CheckCtrlSectionCFC(section, levels, controller.vendor)) {
        AddRow(CtrlLabel(index.index), checker.TakeErrorText(), RAID_POLICY_ERROR);
        RAIDCFG_LOG(4) << "Exiting  service::detail::RaidClient::AddOobLSIMicrochipM2ConfigCFC";
        return;
    }
    AddIndexHotSpares(index, section.global_hot_spares, false);
    const RaidConfigCaster caster;
    for (const CtrlVolSection& volume : section.volumes) {
        Quillon::RaidConfig::VolumeObject request = caster.ToVolumeObject(volume);
        request.controller_id = index.id;
        const RaidErrorCode code = backend->Add(request);
        AddRow(VolLabel(index.index, volume.volid),
               code == RAID_OK ? volume_created_text_ : TakeError(*backend), code);
    }
    RAIDCFG_LOG(4) << "Exiting  service::detail::RaidClient::AddOobLSIMicrochipM2ConfigCFC";
}

void RaidClient::AddOobM2Config(const RaidIndex& index, RaidConfigParser& parser) {
    RAIDCFG_LOG(4) << "Entering  service::detail::RaidClient::AddOobM2Config";
    const auto backend = std::dynamic_pointer_cast<Quillon::RaidConfig::OOBM2Raid>(index.backend);
    if (!backend) {
        RAIDCFG_LOG(4) << "Exiting  service::detail::RaidClient::AddOobM2Config";
        return;
    }
    // Unlike the in-band member, the section goes on as the file wrote it: the out-of-band
    // backend takes the strip size with its "K".
    M2Section section;
    parser.ParseM2Section(index.index, section);
    RaidConfigChecker checker;
    if (!checker.CheckM2Section(section)) {
        AddRow(CtrlLabel(index.index), checker.TakeErrorText(), RAID_POLICY_ERROR);
        RAIDCFG_LOG(4) << "Exiting  service::detail::RaidClient::AddOobM2Config";
        return;
    }
    Quillon::RaidConfig::M2ControllerObject request =
        RaidConfigCaster().ToM2ControllerObject(section);
    request.controller_id = index.id;
    const RaidErrorCode code = backend->Add(request);
    AddRow(VolLabel(index.index, section.volid),
           code == RAID_OK ? volume_created_text_ : TakeError(*backend), code);
    RAIDCFG_LOG(4) << "Exiting  service::detail::RaidClient::AddOobM2Config";
}

void RaidClient::AddOobMicrochipConfig(const RaidIndex& index, RaidConfigParser& parser) {
    RAIDCFG_LOG(4) << "Entering  service::detail::RaidClient::AddOobMicrochipConfig";
    const auto backend =
        std::dynamic_pointer_cast<Quillon::RaidConfig::OobMicrochipRaid>(index.backend);
    if (!backend) {
        RAIDCFG_LOG(4) << "Exiting  service::detail::RaidClient::AddOobMicrochipConfig";
        return;
    }
    OobMicroCtrlSection section;
    parser.ParseOobMicroSection(index.index, section);
    RaidConfigChecker checker;
    if (!checker.CheckOobMicroSection(section)) {
        AddRow(CtrlLabel(index.index), checker.TakeErrorText(), RAID_POLICY_ERROR);
        RAIDCFG_LOG(4) << "Exiting  service::detail::RaidClient::AddOobMicrochipConfig";
        return;
    }
    // The family keeps no global hot spares: volumes only.
    const RaidConfigCaster caster;
    for (const OobMicroVolSection& volume : section.volumes) {
        Quillon::protocol::OobMicroConfig request = caster.ToOobMicroConfig(volume);
        request.controller_id = index.id;
        const RaidErrorCode code = backend->Add(request);
        std::string text;
        if (code == RAID_OK) {
            text = volume_created_text_;
        } else if (code == RAID_DISK_NOT_FOUND) {
            text = kMissingDisksText;
        } else {
            text = ReplaceControllerId(TakeError(*backend), index.id, index.index);
        }
        AddRow(VolLabel(index.index, volume.volid), text, code);
    }
    RAIDCFG_LOG(4) << "Exiting  service::detail::RaidClient::AddOobMicrochipConfig";
}

void RaidClient::AddOobVrocConfig(const RaidIndex& index, RaidConfigParser& parser) {
    RAIDCFG_LOG(4) << "Entering  service::detail::RaidClient::AddOobVrocConfig";
    const auto backend = std::dynamic_pointer_cast<Quillon::RaidConfig::OobVrocRaid>(index.backend);
    if (!backend) {
        RAIDCFG_LOG(4) << "Exiting  service::detail::RaidClient::AddOobVrocConfig";
        return;
    }
    OobVrocCtrlSection section;
    parser.ParseOobVrocSection(index.index, section);
    RaidConfigChecker checker;
    if (!checker.CheckOobVrocSection(section)) {
        AddRow(CtrlLabel(index.index), checker.TakeErrorText(), RAID_POLICY_ERROR);
        RAIDCFG_LOG(4) << "Exiting  service::detail::RaidClient::AddOobVrocConfig";
        return;
    }
    AddIndexHotSpares(index, section.global_hot_spares, true);
    const RaidConfigCaster caster;
    for (const OobVrocVolSection& volume : section.volumes) {
        Quillon::protocol::VolManDevConfig request = caster.ToVolManDevConfig(volume);
        request.controller_id = index.id;
        const RaidErrorCode code = backend->Add(request);
        std::string text;
        if (code == RAID_OK) {
            text = volume_created_text_;
        } else if (code == RAID_DISK_NOT_FOUND) {
            text = kMissingDisksText;
        } else {
            text = ReplaceControllerId(TakeError(*backend), index.id, index.index);
        }
        AddRow(VolLabel(index.index, volume.volid), text, code);
    }
    RAIDCFG_LOG(4) << "Exiting  service::detail::RaidClient::AddOobVrocConfig";
}

} // namespace detail
} // namespace service
