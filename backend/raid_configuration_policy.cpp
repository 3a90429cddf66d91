// The policy file part of the in-band driver: applying a read policy file to the targets, and
// the targets' configuration as policy file text. Sections carry a controller's flat number, and
// each family writes the keys its add reads back.
#include <sstream>
#include <string>
#include <vector>

#include <boost/algorithm/string/classification.hpp>
#include <boost/algorithm/string/split.hpp>
#include <boost/algorithm/string/trim.hpp>

#include "backend/arcconf_volume_cfg.hpp"
#include "backend/hw_raid_arcconf.hpp"
#include "backend/hw_raid_storcli.hpp"
#include "backend/inband_m2_raid.hpp"
#include "backend/m2_volume_info.hpp"
#include "backend/raid_configuration.hpp"
#include "backend/raid_configuration_names.hpp"
#include "backend/raid_policy.hpp"
#include "backend/sw_raid_win.hpp"
#include "backend/sw_win_controller.hpp"
#include "collaborators/log.hpp"

namespace Quillon {
namespace RaidConfig {

RaidPolicy::~RaidPolicy() = default;

namespace {

using namespace configuration_names;
using Member = RaidConfiguration::Member;

// The same words as the add of the road without targets.
// The spelling is the one users and scripts have always seen; it stays.
constexpr const char* kHotSpareText = "Disk has been assigned global hot spare sucessfully.";
constexpr const char* kVolumeText = "Volume has been created successfully.";
constexpr const char* kMissingDisksText = "One or more disks do not exist.";
// Every key line of a policy file is indented by four blanks.
constexpr const char* kKey = "    ";

std::string Join(const std::vector<int>& ids) {
    std::string text;
    for (const int id : ids) {
        text += text.empty() ? std::to_string(id) : "," + std::to_string(id);
    }
    return text;
}

std::string Join(const std::vector<std::string>& ids) {
    std::string text;
    bool first = true;
    for (const std::string& id : ids) {
        text += first ? id : "," + id;
        first = false;
    }
    return text;
}

// Spans as the policy file writes them: "1,2:3,4".
std::string JoinGroups(const std::vector<std::vector<int>>& groups) {
    std::string text;
    bool first = true;
    for (const std::vector<int>& group : groups) {
        text += first ? Join(group) : ":" + Join(group);
        first = false;
    }
    return text;
}

// The first word of a size reported with its unit ("100 GB"), which the policy file carries
// with the unit glued on.
std::string FirstWord(const std::string& value) {
    const std::string trimmed = boost::algorithm::trim_copy(value);
    std::vector<std::string> words;
    boost::algorithm::split(words, trimmed, boost::algorithm::is_any_of(" "));
    return words.empty() ? std::string() : words.front();
}

// A controller's global hot spares section, written after its volumes; nothing without any.
std::string GlobalHotSpares(int number, const std::string& ids) {
    if (ids.empty()) {
        return {};
    }
    return "[ctrl" + std::to_string(number) + "]\n" + kKey + "global_hot_spares=" + ids + "\n\n";
}

std::string LsiText(int number, const std::vector<VolumeObject>& volumes,
                    const std::vector<int>& hot_spares) {
    std::ostringstream out;
    int volume_number = 0;
    for (const VolumeObject& volume : volumes) {
        out << "[ctrl" << number << "-vol" << volume_number++ << "]\n";
        out << kKey << "disks=" << JoinGroups(volume.disks) << '\n';
        out << kKey << "hot_spares=" << Join(volume.hot_spares) << '\n';
        out << kKey << "raid_level=" << volume.raid_level << '\n';
        out << kKey << "vol_name=" << volume.vol_name << '\n';
        out << kKey << "write_policy=" << volume.write_policy << '\n';
        out << kKey << "read_policy=" << volume.read_policy << '\n';
        out << kKey << "io_policy=" << volume.io_policy << '\n';
        out << kKey << "access_policy=" << volume.access_policy << '\n';
        out << kKey << "cache_policy=" << volume.cache_policy << '\n';
        out << kKey << "volume_size=" << volume.volume_size << '\n';
        out << kKey << "strip_size=" << volume.strip_size << "\n\n";
    }
    out << GlobalHotSpares(number, Join(hot_spares));
    return out.str();
}

std::string MicrochipText(int number, const std::vector<ARCCONF::VolumeCfg>& volumes,
                          const std::vector<std::string>& hot_spares) {
    std::ostringstream out;
    for (const ARCCONF::VolumeCfg& volume : volumes) {
        out << "[ctrl" << number << "-vol" << volume.volume_id << "]\n";
        out << kKey << "disks=" << Join(volume.disks) << '\n';
        if (!volume.hot_spares.empty()) {
            out << kKey << "hot_spares=" << Join(volume.hot_spares) << '\n';
        }
        out << kKey << "raid_level=" << volume.raid_level << '\n';
        out << kKey << "vol_name=" << volume.vol_name << '\n';
        if (volume.io_policy != -1) {
            out << kKey << "io_policy=" << volume.io_policy << '\n';
        }
        out << kKey << "volume_size=" << volume.volume_size << '\n';
        // The backend reports the strip in KiB without its unit.
        out << kKey << "strip_size=" << volume.strip_size << "K\n\n";
    }
    out << GlobalHotSpares(number, Join(hot_spares));
    return out.str();
}

std::string M2Text(int number, const M2VolumeInfo& volume) {
    std::ostringstream out;
    out << "[ctrl" << number << "-vol0]\n";
    out << kKey << "raid_level=" << volume.raid_level << '\n';
    out << kKey << "vol_name=" << volume.name << '\n';
    out << kKey << "strip_size=" << volume.stripe_size << "\n\n";
    return out.str();
}

std::string VrocText(int number, const std::vector<SWWinArray>& arrays,
                     const std::vector<int>& hot_spares) {
    std::ostringstream out;
    int volume_number = 0;
    for (const SWWinArray& array : arrays) {
        for (const SWWinVolume& volume : array.volumes) {
            out << "[ctrl" << number << "-vol" << volume_number++ << "]\n";
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
            out << kKey << "RAID_write_hole=" << volume.rwh_closure_policy << "\n\n";
        }
    }
    out << GlobalHotSpares(number, Join(hot_spares));
    return out.str();
}

} // namespace

int RaidConfiguration::RaidAdd(const RaidPolicy& policy) {
    RAIDCFG_LOG(4) << "Entering  Quillon::RaidConfig::RaidConfiguration::RaidAdd";
    results_.clear();
    for (const Member& member : members_) {
        AddTo(member, policy);
    }
    RAIDCFG_LOG(4) << "Exiting  Quillon::RaidConfig::RaidConfiguration::RaidAdd";
    return RAID_OK;
}

void RaidConfiguration::AddTo(const Member& member, const RaidPolicy& policy) {
    if (Missing(member)) {
        return;
    }
    const std::string device = Device(member);
    if (member.container) {
        // Sections belong to controllers; a container has none of its own.
        AddRow(device, "The target " + device + " does not support.", RAID_DEVICE_UNSUPPORTED);
        return;
    }
    if (!policy.HasSections(member.flat)) {
        // A controller the user named must be in the file; the others of a whole family are
        // left alone when the file says nothing of them.
        if (member.named) {
            AddRow(device, "Policy file doesn't contain controller " + device + " raid policy.",
                   RAID_POLICY_ERROR);
        }
        return;
    }
    Raid& backend = *member.backend;
    const auto add_hot_spares = [&](const std::vector<int>& disks) {
        for (const int disk : disks) {
            const std::string disk_device = DiskDevice(member, std::to_string(disk));
            const RaidErrorCode code = backend.AddGlobalHotSpare(member.id, std::to_string(disk));
            if (code == RAID_OK) {
                AddRow(disk_device, kHotSpareText, code);
            } else if (code == RAID_TARGET_NOT_FOUND) {
                TakeError(backend);
                AddRow(disk_device, NoTargetText(disk_device), code);
            } else if (code == RAID_ADDHSP_REFUSED) {
                TakeError(backend);
                AddRow(disk_device, "The target " + disk_device + " can't do addhsp operation",
                       code);
            } else {
                AddRow(disk_device, TakeError(backend), code);
            }
        }
    };
    // The row of one volume request after the backend answered code.
    const auto volume_row = [&](int volume, RaidErrorCode code) {
        if (code == RAID_OK) {
            AddRow(VolumeDevice(member, volume), kVolumeText, code);
        } else if (code == RAID_TARGET_NOT_FOUND) {
            TakeError(backend);
            AddRow(VolumeDevice(member, volume), NoTargetText(device), code);
        } else if (code == RAID_DISK_NOT_FOUND && member.family == RaidTarget::VROC_WIN) {
            TakeError(backend);
            AddRow(VolumeDevice(member, volume), kMissingDisksText, code);
        } else {
            AddRow(VolumeDevice(member, volume), TakeError(backend), code);
        }
    };

    std::string refusal;
    std::vector<int> hot_spares;
    if (auto* const lsi = dynamic_cast<HWRaidStorcli*>(&backend); lsi != nullptr) {
        std::vector<VolumeObject> volumes;
        if (!policy.ReadLsi(member.flat, hot_spares, volumes, refusal)) {
            AddRow(device, refusal, RAID_POLICY_ERROR);
            return;
        }
        add_hot_spares(hot_spares);
        for (VolumeObject& volume : volumes) {
            volume.controller_id = member.id;
            volume_row(volume.volume_id, lsi->Add(volume));
        }
    } else if (auto* const microchip = dynamic_cast<HWRaidArcconf*>(&backend);
               microchip != nullptr) {
        std::vector<protocol::MicrochipConfig> volumes;
        if (!policy.ReadMicrochip(member.flat, hot_spares, volumes, refusal)) {
            AddRow(device, refusal, RAID_POLICY_ERROR);
            return;
        }
        // Intended: this family creates its volumes before it assigns the hot spares.
        for (protocol::MicrochipConfig& volume : volumes) {
            volume.controller_id = member.id;
            volume_row(volume.volume_id, microchip->Add(volume));
        }
        add_hot_spares(hot_spares);
    } else if (auto* const m2 = dynamic_cast<InbandM2Raid*>(&backend); m2 != nullptr) {
        M2ControllerObject volume;
        int volume_id = 0;
        if (!policy.ReadM2(member.flat, volume, volume_id, refusal)) {
            AddRow(device, refusal, RAID_POLICY_ERROR);
            return;
        }
        volume.controller_id = member.id;
        volume_row(volume_id, m2->AddRaidIndex(volume));
    } else if (auto* const vroc = dynamic_cast<SWRaidWin*>(&backend); vroc != nullptr) {
        std::vector<VolRaidConfig> volumes;
        if (!policy.ReadVrocWin(member.flat, hot_spares, volumes, refusal)) {
            AddRow(device, refusal, RAID_POLICY_ERROR);
            return;
        }
        // As on Microchip, the volumes come before the hot spares.
        for (VolRaidConfig& volume : volumes) {
            volume.controller_id = std::to_string(member.id);
            int number = 0;
            std::istringstream(volume.volume_id) >> number;
            volume_row(number, vroc->Add(volume));
        }
        add_hot_spares(hot_spares);
    }
}

int RaidConfiguration::GetConfigString(std::string& text) {
    RAIDCFG_LOG(4) << "Entering  Quillon::RaidConfig::RaidConfiguration::GetConfigString";
    results_.clear();
    text.clear();
    for (const Member& member : members_) {
        if (!Missing(member)) {
            ConfigOf(member, text);
        }
    }
    RAIDCFG_LOG(4) << "Exiting  Quillon::RaidConfig::RaidConfiguration::GetConfigString";
    return RAID_OK;
}

void RaidConfiguration::ConfigOf(const Member& member, std::string& text) {
    const std::string device = Device(member);
    if (member.container) {
        // A container is saved with its controller: name the controller to save it.
        AddRow(device, "The target " + device + " does not support.", RAID_DEVICE_UNSUPPORTED);
        return;
    }
    Raid& backend = *member.backend;
    RaidErrorCode code = RAID_FUNCTION_UNSUPPORTED;
    std::string part;
    if (auto* const lsi = dynamic_cast<HWRaidStorcli*>(&backend); lsi != nullptr) {
        std::vector<VolumeObject> volumes;
        std::vector<int> hot_spares;
        code = lsi->GetConfig(member.id, volumes, hot_spares);
        if (code == RAID_OK) {
            part = LsiText(member.flat, volumes, hot_spares);
        }
    } else if (auto* const microchip = dynamic_cast<HWRaidArcconf*>(&backend);
               microchip != nullptr) {
        std::vector<ARCCONF::VolumeCfg> volumes;
        std::vector<std::string> hot_spares;
        code = microchip->GetConfig(member.id, volumes, hot_spares);
        if (code == RAID_OK) {
            part = MicrochipText(member.flat, volumes, hot_spares);
        }
    } else if (auto* const m2 = dynamic_cast<InbandM2Raid*>(&backend); m2 != nullptr) {
        M2VolumeInfo volume;
        code = m2->GetConfig(member.id, volume);
        if (code == RAID_OK) {
            part = M2Text(member.flat, volume);
        }
    } else if (auto* const vroc = dynamic_cast<SWRaidWin*>(&backend); vroc != nullptr) {
        std::vector<SWWinArray> arrays;
        std::vector<int> hot_spares;
        code = vroc->GetConfig(member.id, arrays, hot_spares);
        if (code == RAID_OK) {
            part = VrocText(member.flat, arrays, hot_spares);
        }
    }
    if (code == RAID_OK) {
        text += part;
        AddRow(device, kSuccessText, code);
    } else if (code == RAID_TARGET_NOT_FOUND) {
        TakeError(backend);
        AddRow(device, NoTargetText(device), code);
    } else if (code == RAID_NO_CONFIG) {
        TakeError(backend);
        // A controller of a whole family without configuration is simply not in the file; one
        // the user named is a row.
        if (member.named) {
            AddRow(device, "The target " + device + " doesn't have config.", code);
        }
    } else {
        AddRow(device, TakeError(backend), code);
    }
}

} // namespace RaidConfig
} // namespace Quillon
