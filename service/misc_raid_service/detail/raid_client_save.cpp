// The save action: the configuration of the controllers written as a policy file that add can
// apply later, on the same machine or another one. Each family member reads one controller's
// volumes from its backend and turns them into sections; the text of all of them is written once,
// at the end.
#include <cstddef>
#include <fstream>
#include <functional>
#include <map>
#include <sstream>
#include <string>
#include <vector>

#include <boost/algorithm/string/classification.hpp>
#include <boost/algorithm/string/split.hpp>
#include <boost/algorithm/string/trim.hpp>

#include "backend/cfc_hw_raid_storage.hpp"
#include "backend/hw_raid_arcconf.hpp"
#include "backend/hw_raid_storage.hpp"
#include "backend/hw_raid_storcli.hpp"
#include "backend/inband_m2_raid.hpp"
#include "backend/not_reported.hpp"
#include "backend/oob_m2_raid.hpp"
#include "backend/oob_microchip_raid.hpp"
#include "backend/oob_vroc_raid.hpp"
#include "backend/records.hpp"
#include "backend/sw_raid_win.hpp"
#include "collaborators/log.hpp"
#include "result/result_values.hpp"
#include "service/misc_raid_service/detail/raid_client.hpp"
#include "service/misc_raid_service/detail/raid_option_processor.hpp"

namespace service {
namespace detail {

namespace {

// A policy code as the file writes it. One the controller does not report is left empty, so
// that add takes the controller's own default rather than one this file made up.
std::string Code(int value) {
    return value == Quillon::RaidConfig::kNotReported ? std::string() : std::to_string(value);
}

using Quillon::RaidConfig::RAID_NO_CONFIG;
using Quillon::RaidConfig::RAID_OK;
using Quillon::RaidConfig::RAID_TARGET_NOT_FOUND;
using Quillon::RaidConfig::RAID_UNKNOWN_ERROR;
using Quillon::RaidConfig::RaidErrorCode;
using Quillon::RaidConfig::RaidTarget;

// The volume number of software RAID sections. Intended: one count for the whole process that is
// never reset, so the numbers run on across controllers and across saves. add keeps the number
// without ordering by it, so a gap or a high first number reads back the same.
int vroc_win_volume_counter = 0;

// Every key line of a policy file is indented by four blanks.
constexpr const char* kKey = "    ";

std::string Join(const std::vector<int>& ids) {
    std::string text;
    for (const int id : ids) {
        if (!text.empty()) {
            text += ',';
        }
        text += std::to_string(id);
    }
    return text;
}

std::string Join(const std::vector<std::string>& ids) {
    std::string text;
    for (std::size_t i = 0; i < ids.size(); ++i) {
        if (i != 0) {
            text += ',';
        }
        text += ids[i];
    }
    return text;
}

// Spans as the policy file writes them: "1,2:3,4".
std::string JoinGroups(const std::vector<std::vector<int>>& groups) {
    std::string text;
    for (std::size_t i = 0; i < groups.size(); ++i) {
        if (i != 0) {
            text += ':';
        }
        text += Join(groups[i]);
    }
    return text;
}

// The first word of a size the software RAID backend reports with its unit ("100.00 GB"), which
// the policy file carries with the unit glued on ("100.00GB").
std::string FirstWord(const std::string& value) {
    const std::string trimmed = boost::algorithm::trim_copy(value);
    std::vector<std::string> words;
    boost::algorithm::split(words, trimmed, boost::algorithm::is_any_of(" "));
    return words.empty() ? std::string() : words.front();
}

// The out-of-band Microchip backend may report the triple mirror levels in their short form; the
// policy file spells them out.
std::string LongRaidLevel(const std::string& level) {
    if (level == "1T") {
        return "1triple";
    }
    if (level == "10T") {
        return "10triple";
    }
    return level;
}

// The section of a controller's global hot spares, written after its volumes; nothing when there
// are none.
std::string GlobalHotSpares(int number, const std::string& ids) {
    if (ids.empty()) {
        return {};
    }
    return "[ctrl" + std::to_string(number) + "]\n" + kKey + "global_hot_spares=" + ids + "\n\n";
}

// The section number of a controller: its flat number, or its own id when it was named by target
// and has none.
int SectionNumber(int index, int id) {
    return index != -1 ? index : id;
}

const RaidClient::SaveFunction& MemberOf(const std::map<int, RaidClient::SaveFunction>& functions,
                                         RaidTarget::Type type) {
    const auto found = functions.find(static_cast<int>(type));
    if (found == functions.end() || !found->second) {
        throw std::bad_function_call();
    }
    return found->second;
}

} // namespace

void RaidClient::RegisterSaveMembers(RaidTarget::Type type) {
    switch (type) {
    case RaidTarget::LSI:
        save_functions_[type] = [this](const RaidIndex& index, std::string& text) {
            return SaveLSIConfig(index, text);
        };
        save_without_index_functions_[type] = [this](const RaidIndex& index, std::string& text) {
            return SaveLSIConfigWithoutIndex(index, text);
        };
        break;
    case RaidTarget::MICROCHIP:
        save_functions_[type] = [this](const RaidIndex& index, std::string& text) {
            return SaveMicrochipConfig(index, text);
        };
        save_without_index_functions_[type] = [this](const RaidIndex& index, std::string& text) {
            return SaveMicrochipConfigWithoutIndex(index, text);
        };
        break;
    case RaidTarget::M2:
        save_functions_[type] = [this](const RaidIndex& index, std::string& text) {
            return SaveM2Config(index, text);
        };
        save_without_index_functions_[type] = [this](const RaidIndex& index, std::string& text) {
            return SaveM2ConfigWithoutIndex(index, text);
        };
        break;
    case RaidTarget::VROC_WIN:
        save_functions_[type] = [this](const RaidIndex& index, std::string& text) {
            return SaveVroc_winConfig(index, text);
        };
        save_without_index_functions_[type] = [this](const RaidIndex& index, std::string& text) {
            return SaveVroc_winConfigWithoutIndex(index, text);
        };
        break;
    case RaidTarget::OOB_LSI:
        save_functions_[type] = [this](const RaidIndex& index, std::string& text) {
            return SaveOobLSIConfig(index, text);
        };
        save_without_index_functions_[type] = [this](const RaidIndex& index, std::string& text) {
            return SaveOobLSIConfigWithoutIndex(index, text);
        };
        break;
    case RaidTarget::OOB_CFC:
        save_functions_[type] = [this](const RaidIndex& index, std::string& text) {
            return SaveOobLSIMicrochipM2ConfigCFC(index, text);
        };
        save_without_index_functions_[type] = [this](const RaidIndex& index, std::string& text) {
            return SaveOobLSIMicrochipM2ConfigCFCWithoutIndex(index, text);
        };
        break;
    case RaidTarget::OOB_M2:
        save_functions_[type] = [this](const RaidIndex& index, std::string& text) {
            return SaveOobM2Config(index, text);
        };
        save_without_index_functions_[type] = [this](const RaidIndex& index, std::string& text) {
            return SaveOobM2ConfigWithoutIndex(index, text);
        };
        break;
    case RaidTarget::OOB_MICROCHIP:
        save_functions_[type] = [this](const RaidIndex& index, std::string& text) {
            return SaveOobMicrochipConfig(index, text);
        };
        save_without_index_functions_[type] = [this](const RaidIndex& index, std::string& text) {
            return SaveOobMicrochipConfigWithoutIndex(index, text);
        };
        break;
    case RaidTarget::OOB_VROC:
        save_functions_[type] = [this](const RaidIndex& index, std::string& text) {
            return SaveOobVrocConfig(index, text);
        };
        save_without_index_functions_[type] = [this](const RaidIndex& index, std::string& text) {
            return SaveOobVrocConfigWithoutIndex(index, text);
        };
        break;
    case RaidTarget::INVALID:
        break;
    }
}

int RaidClient::NextVrocWinVolumeNumber() {
    return vroc_win_volume_counter;
}

// --- The action ---

std::uint32_t RaidClient::Save() {
    RAIDCFG_LOG(4) << "Entering  service::detail::RaidClient::Save";
    if (option_.console_output) {
        Tell("\nraidconfig save:");
    }
    if (!local_) {
        result_page_->SetPageTitle("RaidConfig Save");
    }
    std::string path;
    if (!RaidOptionProcessor().GetPolicyFile(option_.policy_file, path)) {
        RAIDCFG_LOG(4) << "Exiting  service::detail::RaidClient::Save";
        return result::InvalidParameter;
    }
    if (!local_) {
        // The out-of-band LSI backends need the BMC's type before they can read a configuration.
        const std::uint32_t value = GetBmcType(bmc_type_);
        if (value != result::Success) {
            RAIDCFG_LOG(4) << "Exiting  service::detail::RaidClient::Save";
            return value;
        }
    }
    if (option_.target.empty()) {
        if (option_.save_to_output_dir) {
            path = option_.output_dir + path;
        }
        const std::uint32_t value = SaveIndex(path);
        RAIDCFG_LOG(4) << "Exiting  service::detail::RaidClient::Save";
        return value;
    }

    // Named targets: the path stands as given, output_dir has no part in it.
    std::string text;
    for (const RaidTarget& target : targets_) {
        // Only the out-of-band LSI and M.2 targets have a backend of their own to save from.
        if (target.type != RaidTarget::OOB_LSI && target.type != RaidTarget::OOB_M2) {
            continue;
        }
        const std::shared_ptr<Raid> backend = GetRaidBackend(target.type);
        std::vector<int> ids = target.ids;
        const bool named = !ids.empty();
        if (!named) {
            backend->GetControllerIds(ids);
        }
        for (const int id : ids) {
            SaveTargetConfig(target.type, id, named, *backend, text);
        }
    }
    const std::uint32_t value = FinishSave(path, text);
    RAIDCFG_LOG(4) << "Exiting  service::detail::RaidClient::Save";
    return value;
}

std::uint32_t RaidClient::SaveIndex(const std::string& path) {
    RAIDCFG_LOG(4) << "Entering  service::detail::RaidClient::SaveIndex";
    std::string text;
    if (target_index_ == -1) {
        for (const auto& [number, record] : index_map_) {
            std::string part;
            if (MemberOf(save_without_index_functions_, record.type)(record, part) == RAID_OK) {
                text += part;
            }
        }
    } else {
        const auto found = index_map_.find(target_index_);
        if (found == index_map_.end()) {
            AddRow(CtrlLabel(target_index_), NoControllerText(target_index_),
                   RAID_TARGET_NOT_FOUND);
        } else {
            std::string part;
            if (MemberOf(save_functions_, found->second.type)(found->second, part) == RAID_OK) {
                text += part;
            }
        }
    }
    const std::uint32_t value = FinishSave(path, text);
    RAIDCFG_LOG(4) << "Exiting  service::detail::RaidClient::SaveIndex";
    return value;
}

void RaidClient::SaveTargetConfig(RaidTarget::Type type, int id, bool named, Raid& backend,
                                  std::string& text) {
    using namespace Quillon::RaidConfig;
    std::string part;
    std::string device;
    RaidErrorCode code = RAID_OK;
    if (type == RaidTarget::OOB_LSI) {
        auto* const lsi = dynamic_cast<HWRaidStorage*>(&backend);
        if (lsi == nullptr) {
            return;
        }
        device = "ctrl[" + std::to_string(id) + "]";
        lsi->SetBmcType(bmc_type_);
        std::vector<VolumeObject> volumes;
        std::vector<int> hot_spares;
        code = lsi->GetConfig(id, volumes, hot_spares);
        if (code == RAID_OK) {
            part = CastLSIConfig(-1, id, volumes, hot_spares, "Broadcom");
        }
    } else {
        auto* const m2 = dynamic_cast<OOBM2Raid*>(&backend);
        if (m2 == nullptr) {
            return;
        }
        device = "M2-" + std::to_string(id);
        M2VolumeInfo volume;
        code = m2->GetConfig(id, volume);
        if (code == RAID_OK) {
            part = CastM2Config(-1, id, volume);
        }
    }

    std::string row;
    if (code == RAID_OK) {
        text += part;
        row = success_text_;
    } else if (named && code == RAID_TARGET_NOT_FOUND) {
        TakeError(backend);
        row = "The target " + device + " does not exist.";
    } else if (code == RAID_NO_CONFIG) {
        TakeError(backend);
        if (!named) {
            // A controller of a whole family without configuration is simply not in the file.
            return;
        }
        row = "The target " + device + " doesn't have config.";
    } else {
        row = TakeError(backend);
    }
    AddRow(device, row, code);
}

std::uint32_t RaidClient::FinishSave(const std::string& path, const std::string& text) {
    if (rows_.empty()) {
        return result::RaidNoPolicyToSave;
    }
    // Written once, after all controllers: a controller that failed leaves the others' sections
    // in the file, and a save with nothing to write leaves an existing file as it was.
    if (!text.empty()) {
        std::ofstream file(path, std::ios::out | std::ios::trunc | std::ios::binary);
        if (!file.is_open()) {
            RAIDCFG_LOG(1) << "The file '" << path << "' can't be opened.";
            return result::FailedOpenFile;
        }
        file << text;
    }
    PrintResultTable(save_title_);
    return SummaryResults();
}

// --- One controller by flat number ---

RaidErrorCode RaidClient::SaveOutcome(const RaidIndex& index, RaidErrorCode code, bool named,
                                      Raid& backend) {
    std::string row;
    if (code == RAID_OK) {
        row = success_text_;
    } else if (code == RAID_TARGET_NOT_FOUND) {
        TakeError(backend);
        row = NoControllerText(index.index);
    } else if (code == RAID_NO_CONFIG) {
        TakeError(backend);
        if (!named) {
            // Intended: in the walk over all controllers a controller without configuration is
            // left out without a row; it is a failure only when the user named it.
            return code;
        }
        row = NoConfigText(index.index);
    } else {
        row = TakeError(backend);
    }
    AddRow(CtrlLabel(index.index), row, code);
    return code;
}

RaidErrorCode RaidClient::SaveLSIFamily(const RaidIndex& index, std::string& text, bool named) {
    const auto backend =
        std::dynamic_pointer_cast<Quillon::RaidConfig::HWRaidStorcli>(index.backend);
    if (!backend) {
        return RAID_UNKNOWN_ERROR;
    }
    std::vector<Quillon::RaidConfig::VolumeObject> volumes;
    std::vector<int> hot_spares;
    const RaidErrorCode code = backend->GetConfig(index.id, volumes, hot_spares);
    if (code == RAID_OK) {
        text = CastLSIConfig(index.index, index.id, volumes, hot_spares, "Broadcom");
    }
    return SaveOutcome(index, code, named, *backend);
}

RaidErrorCode RaidClient::SaveMicrochipFamily(const RaidIndex& index, std::string& text,
                                              bool named) {
    const auto backend =
        std::dynamic_pointer_cast<Quillon::RaidConfig::HWRaidArcconf>(index.backend);
    if (!backend) {
        return RAID_UNKNOWN_ERROR;
    }
    std::vector<Quillon::ARCCONF::VolumeCfg> volumes;
    std::vector<std::string> hot_spares;
    const RaidErrorCode code = backend->GetConfig(index.id, volumes, hot_spares);
    if (code == RAID_OK) {
        text = CastMicrochipConfig(index.index, index.id, volumes, hot_spares);
    }
    return SaveOutcome(index, code, named, *backend);
}

RaidErrorCode RaidClient::SaveM2Family(const RaidIndex& index, std::string& text, bool named) {
    const auto backend =
        std::dynamic_pointer_cast<Quillon::RaidConfig::InbandM2Raid>(index.backend);
    if (!backend) {
        return RAID_UNKNOWN_ERROR;
    }
    Quillon::RaidConfig::M2VolumeInfo volume;
    const RaidErrorCode code = backend->GetConfig(index.id, volume);
    if (code == RAID_OK) {
        // Named by the user, the flat number asked for heads the section; in the walk, the
        // record's own. Both are the same number.
        text = CastM2Config(named ? target_index_ : index.index, index.id, volume);
    }
    return SaveOutcome(index, code, named, *backend);
}

RaidErrorCode RaidClient::SaveVrocWinFamily(const RaidIndex& index, std::string& text, bool named) {
    const auto backend = std::dynamic_pointer_cast<Quillon::RaidConfig::SWRaidWin>(index.backend);
    if (!backend) {
        return RAID_UNKNOWN_ERROR;
    }
    std::vector<Quillon::RaidConfig::SWWinArray> arrays;
    std::vector<int> hot_spares;
    const RaidErrorCode code = backend->GetConfig(index.id, arrays, hot_spares);
    if (code == RAID_OK) {
        text = Castvroc_winConfig(index.index, index.id, arrays, hot_spares);
    }
    return SaveOutcome(index, code, named, *backend);
}

RaidErrorCode RaidClient::SaveOobLSIFamily(const RaidIndex& index, std::string& text, bool named) {
    const auto backend =
        std::dynamic_pointer_cast<Quillon::RaidConfig::HWRaidStorage>(index.backend);
    if (!backend) {
        return RAID_UNKNOWN_ERROR;
    }
    backend->SetBmcType(bmc_type_);
    std::vector<Quillon::RaidConfig::VolumeObject> volumes;
    std::vector<int> hot_spares;
    const RaidErrorCode code = backend->GetConfig(index.id, volumes, hot_spares);
    if (code == RAID_OK) {
        text = CastLSIConfig(index.index, index.id, volumes, hot_spares, "Broadcom");
    }
    return SaveOutcome(index, code, named, *backend);
}

RaidErrorCode RaidClient::SaveCfcFamily(const RaidIndex& index, std::string& text, bool named) {
    const auto backend =
        std::dynamic_pointer_cast<Quillon::RaidConfig::CFCHWRaidStorage>(index.backend);
    if (!backend) {
        return RAID_UNKNOWN_ERROR;
    }
    backend->SetBmcType(bmc_type_);
    // The vendor decides which lines the sections get, so a controller that cannot be read is
    // not saved at all rather than saved with the wrong lines.
    Quillon::RaidConfig::Controller controller;
    RaidErrorCode code = backend->GetController(index.id, controller);
    if (code == RAID_OK) {
        std::vector<Quillon::RaidConfig::VolumeObject> volumes;
        std::vector<int> hot_spares;
        code = backend->GetConfig(index.id, volumes, hot_spares);
        if (code == RAID_OK) {
            text = CastLSIConfig(index.index, index.id, volumes, hot_spares, controller.vendor);
        }
    }
    return SaveOutcome(index, code, named, *backend);
}

RaidErrorCode RaidClient::SaveOobM2Family(const RaidIndex& index, std::string& text, bool named) {
    const auto backend = std::dynamic_pointer_cast<Quillon::RaidConfig::OOBM2Raid>(index.backend);
    if (!backend) {
        return RAID_UNKNOWN_ERROR;
    }
    Quillon::RaidConfig::M2VolumeInfo volume;
    const RaidErrorCode code = backend->GetConfig(index.id, volume);
    if (code == RAID_OK) {
        text = CastM2Config(named ? target_index_ : index.index, index.id, volume);
    }
    return SaveOutcome(index, code, named, *backend);
}

RaidErrorCode RaidClient::SaveOobMicrochipFamily(const RaidIndex& index, std::string& text,
                                                 bool named) {
    const auto backend =
        std::dynamic_pointer_cast<Quillon::RaidConfig::OobMicrochipRaid>(index.backend);
    if (!backend) {
        return RAID_UNKNOWN_ERROR;
    }
    std::vector<Quillon::protocol::OobMicroConfig> volumes;
    const RaidErrorCode code = backend->GetConfig(index.id, volumes);
    if (code == RAID_OK) {
        text = CastOobMicrochipConfig(index.index, index.id, volumes);
    }
    return SaveOutcome(index, code, named, *backend);
}

RaidErrorCode RaidClient::SaveOobVrocFamily(const RaidIndex& index, std::string& text, bool named) {
    const auto backend = std::dynamic_pointer_cast<Quillon::RaidConfig::OobVrocRaid>(index.backend);
    if (!backend) {
        return RAID_UNKNOWN_ERROR;
    }
    std::vector<Quillon::protocol::VolManDevConfig> volumes;
    std::vector<int> hot_spares;
    const RaidErrorCode code = backend->GetConfig(index.id, volumes, hot_spares);
    if (code == RAID_OK) {
        text = CastOobVrocConfig(index.index, index.id, volumes, hot_spares);
    }
    return SaveOutcome(index, code, named, *backend);
}

// The pairs of the function maps: the member for a controller the user named by its flat number,
// and the twin for the walk over all controllers.

RaidErrorCode RaidClient::SaveLSIConfig(const RaidIndex& index, std::string& text) {
    return SaveLSIFamily(index, text, true);
}
RaidErrorCode RaidClient::SaveLSIConfigWithoutIndex(const RaidIndex& index, std::string& text) {
    return SaveLSIFamily(index, text, false);
}
RaidErrorCode RaidClient::SaveMicrochipConfig(const RaidIndex& index, std::string& text) {
    return SaveMicrochipFamily(index, text, true);
}
RaidErrorCode RaidClient::SaveMicrochipConfigWithoutIndex(const RaidIndex& index,
                                                          std::string& text) {
    return SaveMicrochipFamily(index, text, false);
}
RaidErrorCode RaidClient::SaveM2Config(const RaidIndex& index, std::string& text) {
    return SaveM2Family(index, text, true);
}
RaidErrorCode RaidClient::SaveM2ConfigWithoutIndex(const RaidIndex& index, std::string& text) {
    return SaveM2Family(index, text, false);
}
RaidErrorCode RaidClient::SaveVroc_winConfig(const RaidIndex& index, std::string& text) {
    return SaveVrocWinFamily(index, text, true);
}
RaidErrorCode RaidClient::SaveVroc_winConfigWithoutIndex(const RaidIndex& index,
                                                         std::string& text) {
    return SaveVrocWinFamily(index, text, false);
}
RaidErrorCode RaidClient::SaveOobLSIConfig(const RaidIndex& index, std::string& text) {
    return SaveOobLSIFamily(index, text, true);
}
RaidErrorCode RaidClient::SaveOobLSIConfigWithoutIndex(const RaidIndex& index, std::string& text) {
    return SaveOobLSIFamily(index, text, false);
}
RaidErrorCode RaidClient::SaveOobLSIMicrochipM2ConfigCFC(const RaidIndex& index,
                                                         std::string& text) {
    return SaveCfcFamily(index, text, true);
}
RaidErrorCode RaidClient::SaveOobLSIMicrochipM2ConfigCFCWithoutIndex(const RaidIndex& index,
                                                                     std::string& text) {
    return SaveCfcFamily(index, text, false);
}
RaidErrorCode RaidClient::SaveOobM2Config(const RaidIndex& index, std::string& text) {
    return SaveOobM2Family(index, text, true);
}
RaidErrorCode RaidClient::SaveOobM2ConfigWithoutIndex(const RaidIndex& index, std::string& text) {
    return SaveOobM2Family(index, text, false);
}
RaidErrorCode RaidClient::SaveOobMicrochipConfig(const RaidIndex& index, std::string& text) {
    return SaveOobMicrochipFamily(index, text, true);
}
RaidErrorCode RaidClient::SaveOobMicrochipConfigWithoutIndex(const RaidIndex& index,
                                                             std::string& text) {
    return SaveOobMicrochipFamily(index, text, false);
}
RaidErrorCode RaidClient::SaveOobVrocConfig(const RaidIndex& index, std::string& text) {
    return SaveOobVrocFamily(index, text, true);
}
RaidErrorCode RaidClient::SaveOobVrocConfigWithoutIndex(const RaidIndex& index, std::string& text) {
    return SaveOobVrocFamily(index, text, false);
}

// --- Records to policy text ---

std::string RaidClient::CastLSIConfig(int index, int id,
                                      const std::vector<Quillon::RaidConfig::VolumeObject>& volumes,
                                      const std::vector<int>& hot_spares,
                                      const std::string& vendor) const {
    const int number = SectionNumber(index, id);
    // A CFC system writes what its vendor's controllers take: the policies only for Broadcom,
    // and never hot spares or the I/O policy; add reads the missing keys as empty.
    const bool cfc = option_.cfc;
    const bool policies = !cfc || vendor == "Broadcom";
    std::ostringstream out;
    int volume_number = 0;
    for (const Quillon::RaidConfig::VolumeObject& volume : volumes) {
        out << "[ctrl" << number << "-vol" << volume_number << "]\n";
        ++volume_number;
        out << kKey << "disks=" << JoinGroups(volume.disks) << '\n';
        if (!cfc) {
            out << kKey << "hot_spares=" << Join(volume.hot_spares) << '\n';
        }
        out << kKey << "raid_level=" << volume.raid_level << '\n';
        out << kKey << "vol_name=" << volume.vol_name << '\n';
        if (policies) {
            out << kKey << "write_policy=" << Code(volume.write_policy) << '\n';
            out << kKey << "read_policy=" << Code(volume.read_policy) << '\n';
        }
        if (!cfc) {
            out << kKey << "io_policy=" << Code(volume.io_policy) << '\n';
        }
        if (policies) {
            out << kKey << "access_policy=" << Code(volume.access_policy) << '\n';
            out << kKey << "cache_policy=" << Code(volume.cache_policy) << '\n';
        }
        out << kKey << "volume_size=" << volume.volume_size << '\n';
        out << kKey << "strip_size=" << volume.strip_size << '\n';
        if (cfc && policies) {
            out << kKey << "initialization=" << Code(volume.initialization) << '\n';
        }
        out << '\n';
    }
    out << GlobalHotSpares(number, Join(hot_spares));
    return out.str();
}

std::string RaidClient::CastMicrochipConfig(int index, int id,
                                            const std::vector<Quillon::ARCCONF::VolumeCfg>& volumes,
                                            const std::vector<std::string>& hot_spares) {
    const int number = SectionNumber(index, id);
    std::ostringstream out;
    for (const Quillon::ARCCONF::VolumeCfg& volume : volumes) {
        // This family's sections carry the volume's own id.
        out << "[ctrl" << number << "-vol" << volume.volume_id << "]\n";
        out << kKey << "disks=" << Join(volume.disks) << '\n';
        if (!volume.hot_spares.empty()) {
            out << kKey << "hot_spares=" << Join(volume.hot_spares) << '\n';
        }
        out << kKey << "raid_level=" << volume.raid_level << '\n';
        out << kKey << "vol_name=" << volume.vol_name << '\n';
        if (volume.io_policy != -1) {
            out << kKey << "io_policy=" << Code(volume.io_policy) << '\n';
        }
        out << kKey << "volume_size=" << volume.volume_size << '\n';
        // The backend reports the strip in KiB without its unit.
        out << kKey << "strip_size=" << volume.strip_size << "K\n";
        out << '\n';
    }
    out << GlobalHotSpares(number, Join(hot_spares));
    return out.str();
}

std::string RaidClient::CastM2Config(int index, int id,
                                     const Quillon::RaidConfig::M2VolumeInfo& volume) {
    std::ostringstream out;
    // Saved by flat number, the section is the one the per-controller read of add looks for;
    // saved through a named target, it is the "m.2" form that add reads for named targets.
    if (index != -1) {
        out << "[ctrl" << index << "-vol0]\n";
    } else {
        out << "[m.2-" << id << "]\n";
    }
    out << kKey << "raid_level=" << volume.raid_level << '\n';
    out << kKey << "vol_name=" << volume.name << '\n';
    out << kKey << "strip_size=" << volume.stripe_size << '\n';
    out << '\n';
    return out.str();
}

std::string
RaidClient::CastOobMicrochipConfig(int index, int id,
                                   const std::vector<Quillon::protocol::OobMicroConfig>& volumes) {
    const int number = SectionNumber(index, id);
    std::ostringstream out;
    int volume_number = 0;
    for (const Quillon::protocol::OobMicroConfig& volume : volumes) {
        out << "[ctrl" << number << "-vol" << volume_number << "]\n";
        ++volume_number;
        out << kKey << "disks=" << JoinGroups(volume.disks) << '\n';
        // Always written, also when empty.
        out << kKey << "hot_spares=" << Join(volume.hot_spares) << '\n';
        out << kKey << "raid_level=" << LongRaidLevel(volume.raid_level) << '\n';
        out << kKey << "vol_name=" << volume.vol_name << '\n';
        out << kKey << "write_policy=" << Code(volume.write_policy) << '\n';
        out << kKey << "read_policy=" << Code(volume.read_policy) << '\n';
        out << kKey << "volume_size=" << volume.volume_size << '\n';
        out << kKey << "strip_size=" << volume.strip_size << '\n';
        out << '\n';
    }
    // This family's reading holds no global hot spares, so none are written.
    return out.str();
}

std::string
RaidClient::CastOobVrocConfig(int index, int id,
                              const std::vector<Quillon::protocol::VolManDevConfig>& volumes,
                              const std::vector<int>& hot_spares) {
    const int number = SectionNumber(index, id);
    std::ostringstream out;
    int volume_number = 0;
    for (const Quillon::protocol::VolManDevConfig& volume : volumes) {
        out << "[ctrl" << number << "-vol" << volume_number << "]\n";
        ++volume_number;
        out << kKey << "disks=" << JoinGroups(volume.disks) << '\n';
        out << kKey << "raid_level=" << volume.raid_level << '\n';
        out << kKey << "vol_name=" << volume.vol_name << '\n';
        out << kKey << "volume_size=" << volume.volume_size << '\n';
        out << kKey << "strip_size=" << volume.strip_size << '\n';
        out << '\n';
    }
    out << GlobalHotSpares(number, Join(hot_spares));
    return out.str();
}

std::string
RaidClient::Castvroc_winConfig(int index, int id,
                               const std::vector<Quillon::RaidConfig::SWWinArray>& arrays,
                               const std::vector<int>& hot_spares) {
    const int number = SectionNumber(index, id);
    std::ostringstream out;
    for (const Quillon::RaidConfig::SWWinArray& array : arrays) {
        for (const Quillon::RaidConfig::SWWinVolume& volume : array.volumes) {
            out << "[ctrl" << number << "-vol" << vroc_win_volume_counter << "]\n";
            ++vroc_win_volume_counter;
            out << kKey << "disks=" << volume.disks_in_volume << '\n';
            out << kKey << "raid_level=" << volume.raid_level << '\n';
            out << kKey << "vol_name=" << volume.name << '\n';
            if (!volume.size.empty()) {
                out << kKey << "vol_capacity=" << FirstWord(volume.size) << "GB\n";
            }
            if (!volume.stripe_size.empty()) {
                out << kKey << "vol_strip_size=" << FirstWord(volume.stripe_size) << "K\n";
            }
            // Always a line, maybe empty: add looks at it for level 5 only.
            out << kKey << "RAID_write_hole=" << volume.rwh_closure_policy << '\n';
            out << '\n';
        }
    }
    out << GlobalHotSpares(number, Join(hot_spares));
    return out.str();
}

} // namespace detail
} // namespace service
