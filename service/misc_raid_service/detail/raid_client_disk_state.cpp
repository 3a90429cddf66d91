// The makegood and makejbod actions: one algorithm with a flag. Named disks are changed one by
// one; where no disk is named, the backend is asked which disks can take the new state, and all
// of them are changed.
#include <cstdint>
#include <memory>
#include <string>
#include <vector>

#include "collaborators/log.hpp"
#include "result/result_values.hpp"
#include "service/misc_raid_service/detail/raid_client.hpp"
#include "service/misc_raid_service/detail/raid_option_processor.hpp"

namespace service {
namespace detail {

namespace {

using Quillon::RaidConfig::Raid;
using Quillon::RaidConfig::RAID_FUNCTION_UNSUPPORTED;
using Quillon::RaidConfig::RAID_MAKEGOOD_REFUSED;
using Quillon::RaidConfig::RAID_MAKEJBOD_REFUSED;
using Quillon::RaidConfig::RAID_NO_MAKEGOOD_DISKS;
using Quillon::RaidConfig::RAID_NO_MAKEJBOD_DISKS;
using Quillon::RaidConfig::RAID_OK;
using Quillon::RaidConfig::RAID_TARGET_NOT_FOUND;
using Quillon::RaidConfig::RaidErrorCode;
using Quillon::RaidConfig::RaidTarget;

// The disks that can take the new state.
RaidErrorCode Eligible(Raid& backend, int controller, std::vector<int>& disks, bool good) {
    return good ? backend.GetCanMakeGoodDiskIds(controller, disks)
                : backend.GetCanMakeJbodDiskIds(controller, disks);
}

RaidErrorCode Change(Raid& backend, int controller, int disk, bool good) {
    return good ? backend.MakeGood(controller, disk) : backend.MakeJbod(controller, disk);
}

// The code a controller answers when the disk cannot take the new state.
RaidErrorCode RefusalCode(bool good) {
    return good ? RAID_MAKEGOOD_REFUSED : RAID_MAKEJBOD_REFUSED;
}

std::string RefusalPiece(bool good) {
    return good ? " can't do makegood operation" : " can't do makejbod operation";
}

RaidErrorCode NoDisksCode(bool good) {
    return good ? RAID_NO_MAKEGOOD_DISKS : RAID_NO_MAKEJBOD_DISKS;
}

std::string NoDisksText(bool good) {
    return good ? "There are no disks to makegood." : "There are no disks to makejbod.";
}

// Device names of the target road: the controller's id as the user named it.
std::string TargetLabel(int id) {
    return "ctrl[" + std::to_string(id) + "]";
}

std::string TargetDiskLabel(int id, int disk) {
    return "disk[" + std::to_string(id) + "-" + std::to_string(disk) + "]";
}

std::string NoTargetText(const std::string& device) {
    return "The target " + device + " does not exist.";
}

std::string UnsupportedTargetText(const std::string& device) {
    return "The target " + device + " does not support.";
}

bool ServesDiskStates(RaidTarget::Type type) {
    return type == RaidTarget::LSI || type == RaidTarget::OOB_LSI;
}

} // namespace

std::uint32_t RaidClient::MakeGood() {
    RAIDCFG_LOG(4) << "Entering  service::detail::RaidClient::MakeGood";
    if (option_.console_output) {
        Tell("\nraidconfig makegood:");
    }
    if (!local_) {
        result_page_->SetPageTitle("RaidConfig MakeGood");
    }
    std::uint32_t value = result::Success;
    if (option_.target.empty()) {
        value = MakeStateWithDriveIndex(true);
    } else if (!option_.disk_ids.empty()) {
        value = MakeStateWithDrive(true);
    } else {
        value = MakeStateWithoutDrive(true);
    }
    RAIDCFG_LOG(4) << "Exiting  service::detail::RaidClient::MakeGood";
    return value;
}

std::uint32_t RaidClient::MakeJbod() {
    RAIDCFG_LOG(4) << "Entering  service::detail::RaidClient::MakeJbod";
    if (option_.console_output) {
        Tell("\nraidconfig makejbod:");
    }
    if (!local_) {
        result_page_->SetPageTitle("RaidConfig MakeJbod");
    }
    std::uint32_t value = result::Success;
    if (option_.target.empty()) {
        value = MakeStateWithDriveIndex(false);
    } else if (!option_.disk_ids.empty()) {
        value = MakeStateWithDrive(false);
    } else {
        value = MakeStateWithoutDrive(false);
    }
    RAIDCFG_LOG(4) << "Exiting  service::detail::RaidClient::MakeJbod";
    return value;
}

std::uint32_t RaidClient::MakeStateWithDrive(bool good) {
    RAIDCFG_LOG(4) << "Entering  service::detail::RaidClient::MakeStateWithDrive";
    const RaidOptionProcessor processor;
    // Disks belong to one controller: an M.2 name, a list and "all" are refused.
    const RaidTarget::Type type = processor.ClassifyTarget(option_.target, local_);
    if (!ServesDiskStates(type)) {
        const char* refusal =
            "target must be specified by only one target when drive is specified.";
        if (option_.console_output) {
            Tell(refusal);
        } else {
            RAIDCFG_LOG(3) << refusal;
        }
        RAIDCFG_LOG(4) << "Exiting  service::detail::RaidClient::MakeStateWithDrive";
        return result::InvalidParameter;
    }
    // A declined change is no failure: nothing was asked of a controller.
    if (!option_.assume_yes && !ConfirmOperation(good ? make_good_prompt_ : make_jbod_prompt_)) {
        RAIDCFG_LOG(4) << "Exiting  service::detail::RaidClient::MakeStateWithDrive";
        return result::Success;
    }
    const int id = processor.StringToInt(option_.target);
    const std::vector<int> disks = processor.ParseIdList(option_.disk_ids);

    std::shared_ptr<Raid> backend;
    int real_id = id;
    if (local_) {
        // In-band the user names an LSI or Microchip controller by its shown number.
        const auto found = lsi_microchip_index_map_.find(id);
        if (found != lsi_microchip_index_map_.end()) {
            real_id = found->second.id;
            backend = found->second.backend;
        }
    } else {
        backend = GetRaidBackend(type);
    }

    if (disks.empty()) {
        // "all": the disks the backend offers.
        MakeStateOfController(backend, id, real_id, good);
    } else {
        for (const int disk : disks) {
            const std::string device = TargetDiskLabel(id, disk);
            if (!backend) {
                AddRow(device, NoTargetText(device), RAID_TARGET_NOT_FOUND);
                continue;
            }
            const RaidErrorCode code = Change(*backend, real_id, disk, good);
            std::string text;
            if (code == RAID_OK) {
                text = success_text_;
            } else if (code == RAID_TARGET_NOT_FOUND) {
                text = NoTargetText(device);
            } else if (code == RefusalCode(good)) {
                text = "The " + device + RefusalPiece(good);
            } else if (code == RAID_FUNCTION_UNSUPPORTED) {
                text = UnsupportedTargetText(device);
            } else {
                text = TakeError(*backend);
            }
            AddRow(device, text, code);
        }
    }
    const std::uint32_t value = FinishMakeState(good);
    RAIDCFG_LOG(4) << "Exiting  service::detail::RaidClient::MakeStateWithDrive";
    return value;
}

std::uint32_t RaidClient::MakeStateWithDriveIndex(bool good) {
    RAIDCFG_LOG(4) << "Entering  service::detail::RaidClient::MakeStateWithDriveIndex";
    const auto found = index_map_.find(target_index_);
    if (found == index_map_.end()) {
        AddRow(CtrlLabel(target_index_), NoControllerText(target_index_), RAID_TARGET_NOT_FOUND);
        PrintResultTable(good ? make_good_title_ : make_jbod_title_);
        const std::uint32_t value = SummaryResults();
        RAIDCFG_LOG(4) << "Exiting  service::detail::RaidClient::MakeStateWithDriveIndex";
        return value;
    }
    const RaidIndex& record = found->second;
    if (!ServesDiskStates(record.type)) {
        RAIDCFG_LOG(4) << "Exiting  service::detail::RaidClient::MakeStateWithDriveIndex";
        return result::FunctionNotSupported;
    }
    if (!option_.assume_yes && !ConfirmOperation(good ? make_good_prompt_ : make_jbod_prompt_)) {
        RAIDCFG_LOG(4) << "Exiting  service::detail::RaidClient::MakeStateWithDriveIndex";
        return result::Success;
    }
    const std::vector<int> disks = RaidOptionProcessor().ParseIdList(option_.disk_ids);
    if (disks.empty()) {
        MakeStateOfIndex(record.backend, record.id, good);
    } else {
        for (const int disk : disks) {
            const RaidErrorCode code = Change(*record.backend, record.id, disk, good);
            std::string text;
            // Intended: code 29 has no words of its own on this road; the backend's text stands.
            if (code == RAID_OK) {
                text = success_text_;
            } else if (code == RAID_TARGET_NOT_FOUND) {
                text = NoDiskText(disk);
            } else if (code == RefusalCode(good)) {
                text = "The disk " + std::to_string(disk) + RefusalPiece(good);
            } else {
                text = TakeError(*record.backend);
            }
            AddRow(DiskLabel(target_index_, disk), text, code);
        }
    }
    const std::uint32_t value = FinishMakeState(good);
    RAIDCFG_LOG(4) << "Exiting  service::detail::RaidClient::MakeStateWithDriveIndex";
    return value;
}

std::uint32_t RaidClient::MakeStateWithoutDrive(bool good) {
    RAIDCFG_LOG(4) << "Entering  service::detail::RaidClient::MakeStateWithoutDrive";
    if (!option_.assume_yes && !ConfirmOperation(good ? make_good_prompt_ : make_jbod_prompt_)) {
        RAIDCFG_LOG(4) << "Exiting  service::detail::RaidClient::MakeStateWithoutDrive";
        return result::Success;
    }
    for (const RaidTarget& target : targets_) {
        // Disk states are the business of the LSI families only; other targets pass silently.
        if (!ServesDiskStates(target.type)) {
            continue;
        }
        const std::shared_ptr<Raid> entry = GetRaidBackend(target.type);
        if (!target.ids.empty()) {
            for (const int id : target.ids) {
                std::shared_ptr<Raid> backend = entry;
                int real_id = id;
                if (local_) {
                    const auto found = lsi_microchip_index_map_.find(id);
                    backend =
                        found != lsi_microchip_index_map_.end() ? found->second.backend : nullptr;
                    if (found != lsi_microchip_index_map_.end()) {
                        real_id = found->second.id;
                    }
                }
                MakeStateOfController(backend, id, real_id, good);
            }
            continue;
        }
        std::vector<int> controllers;
        entry->GetControllerIds(controllers);
        if (controllers.empty()) {
            // Intended: whatever earlier targets did, no controller ends the action here.
            RAIDCFG_LOG(4) << "Exiting  service::detail::RaidClient::MakeStateWithoutDrive";
            return result::RaidNoControllers;
        }
        for (const int controller : controllers) {
            std::vector<int> disks;
            const RaidErrorCode queried = Eligible(*entry, controller, disks, good);
            if (queried != RAID_OK) {
                AddRow(TargetLabel(controller), TakeError(*entry), queried);
                continue;
            }
            // A controller without eligible disks leaves no row on this road.
            for (const int disk : disks) {
                const RaidErrorCode code = Change(*entry, controller, disk, good);
                AddRow(TargetDiskLabel(controller, disk),
                       code == RAID_OK ? success_text_ : TakeError(*entry), code);
            }
        }
    }
    const std::uint32_t value = FinishMakeState(good);
    RAIDCFG_LOG(4) << "Exiting  service::detail::RaidClient::MakeStateWithoutDrive";
    return value;
}

void RaidClient::MakeStateOfController(const std::shared_ptr<Raid>& backend, int id, int real_id,
                                       bool good) {
    RAIDCFG_LOG(4) << "Entering  service::detail::RaidClient::MakeStateOfController";
    const std::string device = TargetLabel(id);
    if (!backend) {
        AddRow(device, NoTargetText(device), RAID_TARGET_NOT_FOUND);
        RAIDCFG_LOG(4) << "Exiting  service::detail::RaidClient::MakeStateOfController";
        return;
    }
    std::vector<int> disks;
    const RaidErrorCode queried = Eligible(*backend, real_id, disks, good);
    if (queried != RAID_OK) {
        std::string text;
        if (queried == RAID_TARGET_NOT_FOUND) {
            text = NoTargetText(device);
        } else if (queried == RAID_FUNCTION_UNSUPPORTED) {
            text = UnsupportedTargetText(device);
        } else {
            text = TakeError(*backend);
        }
        AddRow(device, text, queried);
        RAIDCFG_LOG(4) << "Exiting  service::detail::RaidClient::MakeStateOfController";
        return;
    }
    if (disks.empty()) {
        AddRow(device, NoDisksText(good), NoDisksCode(good));
        RAIDCFG_LOG(4) << "Exiting  service::detail::RaidClient::MakeStateOfController";
        return;
    }
    for (const int disk : disks) {
        // Here every failed change shows the backend's own text, whatever its code.
        const RaidErrorCode code = Change(*backend, real_id, disk, good);
        AddRow(TargetDiskLabel(id, disk), code == RAID_OK ? success_text_ : TakeError(*backend),
               code);
    }
    RAIDCFG_LOG(4) << "Exiting  service::detail::RaidClient::MakeStateOfController";
}

void RaidClient::MakeStateOfIndex(const std::shared_ptr<Raid>& backend, int real_id, bool good) {
    RAIDCFG_LOG(4) << "Entering  service::detail::RaidClient::MakeStateOfIndex";
    std::vector<int> disks;
    const RaidErrorCode queried = Eligible(*backend, real_id, disks, good);
    if (queried != RAID_OK) {
        AddRow(CtrlLabel(target_index_), TakeError(*backend), queried);
    } else if (disks.empty()) {
        AddRow(CtrlLabel(target_index_), NoDisksText(good), NoDisksCode(good));
    } else {
        for (const int disk : disks) {
            const RaidErrorCode code = Change(*backend, real_id, disk, good);
            AddRow(DiskLabel(target_index_, disk),
                   code == RAID_OK ? success_text_ : TakeError(*backend), code);
        }
    }
    RAIDCFG_LOG(4) << "Exiting  service::detail::RaidClient::MakeStateOfIndex";
}

std::uint32_t RaidClient::FinishMakeState(bool good) {
    if (rows_.empty()) {
        return good ? result::RaidNoDisksToGood : result::RaidNoDisksToJbod;
    }
    PrintResultTable(good ? make_good_title_ : make_jbod_title_);
    return SummaryResults();
}

} // namespace detail
} // namespace service
