// The in-band driver: resolving the targets into controllers and containers, the rows, and the
// operations that change disks and volumes without a policy file.
#include "backend/raid_configuration.hpp"

#include <algorithm>
#include <cctype>
#include <set>
#include <utility>

#include "backend/hw_raid_arcconf.hpp"
#include "backend/hw_raid_storcli.hpp"
#include "backend/inband_m2_raid.hpp"
#include "backend/raid_configuration_names.hpp"
#include "backend/sw_raid_win.hpp"
#include "backend/sw_win_controller.hpp"
#include "collaborators/log.hpp"
#include "collaborators/trace_scope.hpp"

namespace Quillon {
namespace RaidConfig {

namespace configuration_names {

std::string Device(const RaidConfiguration::Member& member) {
    const std::string number = std::to_string(member.number);
    if (member.container) {
        return "md[" + number + "]";
    }
    switch (member.named_as) {
    case RaidTarget::M2:
        return "m2[" + number + "]";
    case RaidTarget::VROC_WIN:
        return "vroc[" + number + "]";
    default:
        return "ctrl[" + number + "]";
    }
}

namespace {

// The device of a volume or disk: prefix, "[", the controller's name, "-", the item, "]".
std::string ItemDevice(const RaidConfiguration::Member& member, const std::string& item,
                       const std::string& item_word) {
    if (member.named_as == RaidTarget::M2) {
        return "m2-" + item_word + "[" + std::to_string(member.number) + "-" + item + "]";
    }
    if (member.named_as == RaidTarget::VROC_WIN) {
        // A container's volumes and disks are the controller's: named after its id.
        return "vroc-" + item_word + "[" + std::to_string(member.id) + "-" + item + "]";
    }
    return item_word + "[" + std::to_string(member.number) + "-" + item + "]";
}

} // namespace

std::string VolumeDevice(const RaidConfiguration::Member& member, int volume) {
    return ItemDevice(member, std::to_string(volume), "vol");
}

std::string DiskDevice(const RaidConfiguration::Member& member, const std::string& disk) {
    return ItemDevice(member, disk, "disk");
}

std::string NoTargetText(const std::string& device) {
    return "The target " + device + " does not exist.";
}

std::string TakeError(Raid& backend) {
    std::string text = std::move(backend.error_text);
    backend.error_text.clear();
    return text;
}

int ContainerNumber(const std::string& array_name) {
    std::size_t start = array_name.size();
    while (start > 0 && std::isdigit(static_cast<unsigned char>(array_name[start - 1])) != 0) {
        --start;
    }
    // Nine digits always fit an int.
    if (start == array_name.size() || array_name.size() - start > 9) {
        return -1;
    }
    return std::stoi(array_name.substr(start));
}

} // namespace configuration_names

namespace {

using namespace configuration_names;

using Member = RaidConfiguration::Member;

bool IsDigits(const std::string& text) {
    return !text.empty() && std::all_of(text.begin(), text.end(), [](unsigned char letter) {
        return std::isdigit(letter) != 0;
    });
}

// The member a whole family lists for one controller.
Member Listed(RaidTarget::Type family, RaidTarget::Type named_as, int number, int id, int flat,
              const std::shared_ptr<Raid>& backend) {
    Member member;
    member.family = family;
    member.named_as = named_as;
    member.number = number;
    member.id = id;
    member.flat = flat;
    member.backend = backend;
    return member;
}

// A name the user gave that stands for nothing.
Member Nothing(RaidTarget::Type named_as, int number, bool container) {
    Member member;
    member.named_as = named_as;
    member.number = number;
    member.container = container;
    member.named = true;
    return member;
}

// Each id of ids as the member of that number in listed, or as nothing.
void Pick(const std::vector<Member>& listed, const std::vector<int>& ids, RaidTarget::Type named_as,
          std::vector<Member>& members) {
    for (const int id : ids) {
        const auto found = std::find_if(listed.begin(), listed.end(),
                                        [id](const Member& member) { return member.number == id; });
        if (found == listed.end()) {
            members.push_back(Nothing(named_as, id, false));
            continue;
        }
        members.push_back(*found);
        members.back().named = true;
    }
}

} // namespace

RaidConfiguration::RaidConfiguration(const std::vector<RaidTarget>& targets) : targets_(targets) {
    RAIDCFG_TRACE("Quillon::RaidConfig::RaidConfiguration::RaidConfiguration");
    const auto lsi = std::make_shared<HWRaidStorcli>();
    const auto microchip = std::make_shared<HWRaidArcconf>();
    const auto m2 = std::make_shared<InbandM2Raid>();
    const auto vroc = std::make_shared<SWRaidWin>();

    // The flat numbers of the policy file, and the names each family's controllers go by.
    int flat = 1;
    std::vector<Member> hardware;
    std::vector<int> ids;
    lsi->GetControllerIds(ids);
    hardware.reserve(ids.size());
    int number = 0;
    for (const int id : ids) {
        hardware.push_back(Listed(RaidTarget::LSI, RaidTarget::LSI, number++, id, flat++, lsi));
    }
    // The number left out between the two families is the one the show of the road without
    // targets leaves out too, so a controller keeps its number on both roads.
    ++number;
    ids.clear();
    microchip->GetControllerIds(ids);
    hardware.reserve(hardware.size() + ids.size());
    for (const int id : ids) {
        hardware.push_back(
            Listed(RaidTarget::MICROCHIP, RaidTarget::LSI, number++, id, flat++, microchip));
    }
    std::vector<Member> m2s;
    ids.clear();
    m2->GetControllerIds(ids);
    m2s.reserve(ids.size());
    for (const int id : ids) {
        m2s.push_back(Listed(RaidTarget::M2, RaidTarget::M2, id, id, flat++, m2));
    }
    std::vector<Member> vrocs;
    ids.clear();
    vroc->GetControllerIds(ids);
    vrocs.reserve(ids.size());
    for (const int id : ids) {
        vrocs.push_back(Listed(RaidTarget::VROC_WIN, RaidTarget::VROC_WIN, id, id, flat++, vroc));
    }

    for (const RaidTarget& target : targets_) {
        switch (target.type) {
        case RaidTarget::LSI:
            if (target.ids.empty()) {
                members_.insert(members_.end(), hardware.begin(), hardware.end());
            } else {
                Pick(hardware, target.ids, RaidTarget::LSI, members_);
            }
            break;
        case RaidTarget::M2:
            if (target.ids.empty()) {
                members_.insert(members_.end(), m2s.begin(), m2s.end());
            } else {
                Pick(m2s, target.ids, RaidTarget::M2, members_);
            }
            break;
        case RaidTarget::VROC_WIN:
            if (target.ids.empty() && target.container_ids.empty()) {
                members_.insert(members_.end(), vrocs.begin(), vrocs.end());
            }
            Pick(vrocs, target.ids, RaidTarget::VROC_WIN, members_);
            for (const int container : target.container_ids) {
                Member found = Nothing(RaidTarget::VROC_WIN, container, true);
                for (const Member& controller : vrocs) {
                    SWWinController record;
                    if (vroc->GetController(controller.id, record) != RAID_OK) {
                        TakeError(*vroc);
                        continue;
                    }
                    for (const SWWinArray& array : record.arrays) {
                        if (ContainerNumber(array.name) == container && !found.backend) {
                            found = controller;
                            found.number = container;
                            found.container = true;
                            found.named = true;
                        }
                    }
                }
                members_.push_back(found);
            }
            break;
        default:
            // The out-of-band families have no in-band driver; such targets name nothing here.
            RAIDCFG_LOG(3) << "raid_target.type " << static_cast<int>(target.type)
                           << " is not served in-band.";
            break;
        }
    }
}

RaidConfiguration::~RaidConfiguration() = default;

void RaidConfiguration::AddRow(const std::string& device, const std::string& text,
                               RaidErrorCode code) {
    results_.push_back(RaidResult{device, text, code});
}

bool RaidConfiguration::Missing(const Member& member) {
    if (member.backend) {
        return false;
    }
    const std::string device = Device(member);
    AddRow(device, NoTargetText(device), RAID_TARGET_NOT_FOUND);
    return true;
}

const RaidConfiguration::Member* RaidConfiguration::Single(RaidTarget::Type type) const {
    if (members_.size() != 1 || !members_.front().named || members_.front().named_as != type) {
        return nullptr;
    }
    return &members_.front();
}

void RaidConfiguration::GetRaidResults(std::vector<RaidResult>& results) {
    results = results_;
}

int RaidConfiguration::RaidClear() {
    RAIDCFG_TRACE("Quillon::RaidConfig::RaidConfiguration::RaidClear");
    results_.clear();
    for (const Member& member : members_) {
        if (Missing(member)) {
            continue;
        }
        if (member.container) {
            ClearContainer(member);
            continue;
        }
        const std::string device = Device(member);
        const RaidErrorCode code = member.backend->ClearConfig(member.id);
        if (code == RAID_OK) {
            AddRow(device, kSuccessText, code);
        } else if (code == RAID_TARGET_NOT_FOUND) {
            TakeError(*member.backend);
            AddRow(device, NoTargetText(device), code);
        } else {
            AddRow(device, TakeError(*member.backend), code);
        }
    }
    return RAID_OK;
}

void RaidConfiguration::ClearContainer(const Member& member) {
    const std::string device = Device(member);
    auto* const vroc = dynamic_cast<SWRaidWin*>(member.backend.get());
    SWWinController record;
    const RaidErrorCode read =
        vroc == nullptr ? RAID_TARGET_NOT_FOUND : vroc->GetController(member.id, record);
    if (read != RAID_OK) {
        AddRow(device, vroc == nullptr ? NoTargetText(device) : TakeError(*vroc), read);
        return;
    }
    // One row for the container: its first failure, or success when every volume went.
    RaidErrorCode outcome = RAID_OK;
    std::string text = kSuccessText;
    bool any = false;
    for (const SWWinArray& array : record.arrays) {
        if (ContainerNumber(array.name) != member.number) {
            continue;
        }
        for (const SWWinVolume& volume : array.volumes) {
            any = true;
            const RaidErrorCode code = vroc->RemoveVolume(member.id, volume.id);
            if (code != RAID_OK && outcome == RAID_OK) {
                outcome = code;
                text = TakeError(*vroc);
            }
        }
    }
    if (!any) {
        AddRow(device, "The target " + device + " has no volumes.", RAID_NO_VOLUMES);
        return;
    }
    AddRow(device, text, outcome);
}

int RaidConfiguration::RaidRemoveVol(RaidTarget::Type type, const std::vector<int>& volumes) {
    RAIDCFG_TRACE("Quillon::RaidConfig::RaidConfiguration::RaidRemoveVol");
    results_.clear();
    const Member* const member = Single(type);
    if (member == nullptr || volumes.empty()) {
        return RAID_BAD_PARAMETER;
    }
    if (Missing(*member)) {
        return RAID_OK;
    }
    // A container gives up only its own volumes; another id of the controller does not exist
    // for it.
    std::set<int> own;
    if (member->container) {
        auto* const vroc = dynamic_cast<SWRaidWin*>(member->backend.get());
        SWWinController record;
        if (vroc != nullptr && vroc->GetController(member->id, record) == RAID_OK) {
            for (const SWWinArray& array : record.arrays) {
                if (ContainerNumber(array.name) == member->number) {
                    for (const SWWinVolume& volume : array.volumes) {
                        own.insert(volume.id);
                    }
                }
            }
        }
    }
    for (const int volume : volumes) {
        const std::string device = VolumeDevice(*member, volume);
        if (member->container && own.count(volume) == 0) {
            AddRow(device, NoTargetText(device), RAID_TARGET_NOT_FOUND);
            continue;
        }
        const RaidErrorCode code = member->backend->RemoveVolume(member->id, volume);
        if (code == RAID_OK) {
            AddRow(device, kSuccessText, code);
        } else if (code == RAID_TARGET_NOT_FOUND) {
            TakeError(*member->backend);
            AddRow(device, NoTargetText(device), code);
        } else {
            AddRow(device, TakeError(*member->backend), code);
        }
    }
    return RAID_OK;
}

int RaidConfiguration::RaidAddHotSpare(RaidTarget::Type type, const std::vector<std::string>& disks,
                                       const std::vector<std::string>& volumes) {
    RAIDCFG_TRACE("Quillon::RaidConfig::RaidConfiguration::RaidAddHotSpare");
    results_.clear();
    const Member* const member = Single(type);
    if (member == nullptr || disks.empty() || !std::all_of(disks.begin(), disks.end(), IsDigits)) {
        return RAID_BAD_PARAMETER;
    }
    if (!volumes.empty()) {
        // Dedicated hot spares exist on the hardware RAID controllers alone.
        if (type != RaidTarget::LSI) {
            return RAID_FUNCTION_UNSUPPORTED;
        }
        if (!std::all_of(volumes.begin(), volumes.end(), IsDigits)) {
            return RAID_BAD_PARAMETER;
        }
    }
    if (Missing(*member)) {
        return RAID_OK;
    }
    Raid& backend = *member->backend;
    for (const std::string& disk : disks) {
        const std::string device = DiskDevice(*member, disk);
        const RaidErrorCode code = volumes.empty()
                                       ? backend.AddGlobalHotSpare(member->id, disk)
                                       : backend.AddDedicatedHotSpare(member->id, disk, volumes);
        AddHotSpareRow(device, code, RAID_ADDHSP_REFUSED, "addhsp", backend);
    }
    return RAID_OK;
}

void RaidConfiguration::AddHotSpareRow(const std::string& device, RaidErrorCode code,
                                       RaidErrorCode refused, const char* word, Raid& backend) {
    // The backend's own text is kept only where no row text of ours says more.
    std::string text = TakeError(backend);
    if (code == RAID_OK) {
        text = kSuccessText;
    } else if (code == RAID_TARGET_NOT_FOUND) {
        text = NoTargetText(device);
    } else if (code == refused) {
        text = "The target " + device + " can't do " + word + " operation";
    } else if (code == RAID_FUNCTION_UNSUPPORTED) {
        text = "The controller does not support.";
    }
    AddRow(device, text, code);
}

int RaidConfiguration::RaidRemoveHotSpare(RaidTarget::Type type,
                                          const std::vector<std::string>& disks) {
    RAIDCFG_TRACE("Quillon::RaidConfig::RaidConfiguration::RaidRemoveHotSpare");
    results_.clear();
    const Member* const member = Single(type);
    if (member == nullptr || disks.empty() || !std::all_of(disks.begin(), disks.end(), IsDigits)) {
        return RAID_BAD_PARAMETER;
    }
    if (Missing(*member)) {
        return RAID_OK;
    }
    Raid& backend = *member->backend;
    for (const std::string& disk : disks) {
        const std::string device = DiskDevice(*member, disk);
        const RaidErrorCode code = backend.RemoveHotSpare(member->id, disk);
        AddHotSpareRow(device, code, RAID_RMHSP_REFUSED, "rmhsp", backend);
    }
    return RAID_OK;
}

} // namespace RaidConfig
} // namespace Quillon
