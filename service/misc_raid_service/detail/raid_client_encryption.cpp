// The ekm and envol actions: key management mode of LSI controllers and encryption of volumes.
// Both always go through the BMC's REST interface, also when the tool runs on the machine
// itself. Encrypting a volume cannot be undone, hence the prompt.
#include <memory>
#include <string>
#include <vector>

#include <boost/algorithm/string/case_conv.hpp>

#include "backend/raid_encryption.hpp"
#include "backend/records.hpp"
#include "collaborators/log.hpp"
#include "result/result_values.hpp"
#include "service/misc_raid_service/detail/raid_client.hpp"
#include "service/misc_raid_service/detail/raid_option_processor.hpp"

namespace service {
namespace detail {

namespace {

using Quillon::RaidConfig::EKMController;
using Quillon::RaidConfig::RAID_NO_VOLUMES;
using Quillon::RaidConfig::RAID_OK;
using Quillon::RaidConfig::RAID_REST_FAILED;
using Quillon::RaidConfig::RAID_TARGET_NOT_FOUND;
using Quillon::RaidConfig::RaidEncryption;
using Quillon::RaidConfig::RaidErrorCode;
using Quillon::RaidConfig::RaidTarget;

constexpr const char* kScope = "service::detail::RaidClient::";

std::shared_ptr<RaidEncryption>
MakeEncryption(const std::vector<QuillonConnection::ConnectionInfo>& connections) {
    return std::make_shared<RaidEncryption>(
        connections.empty() ? QuillonConnection::ConnectionInfo() : connections.front());
}

// The row text of a change, by the backend's code. "may no exist" is the wording users and
// their scripts know: intended. A success carries the backend's detail right behind it.
std::string ChangeText(RaidErrorCode code, RaidEncryption& encryption,
                       const std::string& no_volumes_text) {
    if (code == RAID_OK) {
        return "Success." + encryption.GetErrorMsg();
    }
    if (code == RAID_REST_FAILED) {
        return "Failed to operate Rest API.";
    }
    if (code == RAID_TARGET_NOT_FOUND) {
        return "The target controller may no exist.";
    }
    if (code == RAID_NO_VOLUMES && !no_volumes_text.empty()) {
        return no_volumes_text;
    }
    return encryption.GetErrorMsg();
}

} // namespace

std::uint32_t
RaidClient::ShowEKMOOB(const std::vector<QuillonConnection::ConnectionInfo>& connections) {
    RAIDCFG_LOG(4) << "Entering  " << kScope << "ShowEKMOOB";
    const std::shared_ptr<RaidEncryption> encryption = MakeEncryption(connections);
    if (target_index_ == -1) {
        std::vector<int> ids;
        std::vector<EKMController> records;
        for (const auto& entry : index_map_) {
            if (entry.second.type != RaidTarget::OOB_LSI) {
                continue;
            }
            EKMController found;
            const RaidErrorCode code = encryption->getController(entry.second.id, found);
            if (code == RAID_OK) {
                ids.push_back(entry.first);
                records.push_back(found);
            }
            AddQueryRow(entry.first, code, encryption->GetErrorMsg());
        }
        utils_.PrintEKM(ids, records);
        if (rows_.empty()) {
            RAIDCFG_LOG(4) << "Exiting  " << kScope << "ShowEKMOOB";
            return result::RaidNoControllers;
        }
    } else {
        const RaidIndex record = GetRaidIndex(target_index_);
        if (record.index == -1) {
            AddRow(CtrlLabel(target_index_), NoControllerText(target_index_),
                   RAID_TARGET_NOT_FOUND);
        } else if (record.type != RaidTarget::OOB_LSI) {
            AddRow(CtrlLabel(target_index_), "Function isn't supported on the target device.",
                   Quillon::RaidConfig::RAID_FUNCTION_UNSUPPORTED);
        } else {
            EKMController found;
            const RaidErrorCode code = encryption->getController(record.id, found);
            if (code == RAID_OK) {
                utils_.PrintEKM({target_index_}, {found});
            }
            AddQueryRow(target_index_, code, encryption->GetErrorMsg());
        }
    }
    PrintResultTable(ekm_title_);
    RAIDCFG_LOG(4) << "Exiting  " << kScope << "ShowEKMOOB";
    return SummaryResults();
}

std::uint32_t
RaidClient::ChangeEKMModeOOB(const std::vector<QuillonConnection::ConnectionInfo>& connections) {
    RAIDCFG_LOG(4) << "Entering  " << kScope << "ChangeEKMModeOOB";
    const std::shared_ptr<RaidEncryption> encryption = MakeEncryption(connections);
    // A change names one controller; there is no walk over all of them.
    if (target_index_ == -1) {
        AddRow(CtrlLabel(-1), NoControllerText(-1), RAID_TARGET_NOT_FOUND);
    } else {
        // Intended: a number the map lacks is not caught here; its empty record's id 0 goes to
        // the backend, and the row keeps the number the user gave.
        const RaidIndex record = GetRaidIndex(target_index_);
        const std::string mode = boost::algorithm::to_lower_copy(option_.mode_value);
        const RaidErrorCode code = encryption->changeEKMmode(record.id, mode);
        AddRow(CtrlLabel(target_index_), ChangeText(code, *encryption, ""), code);
    }
    PrintResultTable(ekm_title_);
    RAIDCFG_LOG(4) << "Exiting  " << kScope << "ChangeEKMModeOOB";
    return SummaryResults();
}

std::uint32_t RaidClient::ShowVolumeEncryptionOOB(
    const std::vector<QuillonConnection::ConnectionInfo>& connections) {
    RAIDCFG_LOG(4) << "Entering  " << kScope << "ShowVolumeEncryptionOOB";
    const std::shared_ptr<RaidEncryption> encryption = MakeEncryption(connections);
    if (target_index_ == -1) {
        for (const auto& entry : index_map_) {
            EKMController found;
            // A controller that does not answer is left out without a word.
            if (encryption->getControllerWithVolumes(entry.second.id, found) != RAID_OK) {
                continue;
            }
            // "Success" without a full stop, unlike the other rows: intended, as readers of
            // this table know it.
            const std::string text = utils_.PrintVolumesEncryption(entry.first, found) != 0
                                         ? "Success"
                                         : "The controllers may not have volumes";
            AddRow(CtrlLabel(entry.first), text, RAID_OK);
        }
        if (rows_.empty()) {
            RAIDCFG_LOG(4) << "Exiting  " << kScope << "ShowVolumeEncryptionOOB";
            return result::RaidNoVolumes;
        }
    } else {
        const RaidIndex record = GetRaidIndex(target_index_);
        if (record.index == -1) {
            AddRow(CtrlLabel(target_index_), NoControllerText(target_index_),
                   RAID_TARGET_NOT_FOUND);
        } else {
            EKMController found;
            const RaidErrorCode code = encryption->getControllerWithVolumes(record.id, found);
            const std::vector<int> volumes = RaidOptionProcessor().ParseIdList(option_.volume_ids);
            // The text follows what was printed, not the code: a failed query leaves an empty
            // record, so its row shows a "not found" text with the failure's code. "may not
            // has" is the wording users know: intended.
            std::string text;
            if (!volumes.empty()) {
                text = utils_.PrintVolumeEncryption(target_index_, volumes, found) != 0
                           ? "Success"
                           : "The specified volume may not exist";
            } else {
                text = utils_.PrintVolumesEncryption(target_index_, found) != 0
                           ? "Success"
                           : "This controller may not has volumes";
            }
            AddRow(CtrlLabel(target_index_), text, code);
        }
    }
    PrintResultTable(volume_encryption_title_);
    RAIDCFG_LOG(4) << "Exiting  " << kScope << "ShowVolumeEncryptionOOB";
    return SummaryResults();
}

std::uint32_t
RaidClient::ChangeVolModeOOB(const std::vector<QuillonConnection::ConnectionInfo>& connections) {
    RAIDCFG_LOG(4) << "Entering  " << kScope << "ChangeVolModeOOB";
    const std::shared_ptr<RaidEncryption> encryption = MakeEncryption(connections);
    if (target_index_ == -1) {
        // No controller named: no prompt, only the row.
        AddRow(CtrlLabel(-1), NoControllerText(-1), RAID_TARGET_NOT_FOUND);
    } else {
        const std::vector<int> volumes = RaidOptionProcessor().ParseIdList(option_.volume_ids);
        if (!option_.assume_yes && !ConfirmOperation(volume_encryption_prompt_)) {
            RAIDCFG_LOG(4) << "Exiting  " << kScope << "ChangeVolModeOOB";
            return result::Success;
        }
        // As for the key management mode, a number the map lacks goes on with id 0.
        const RaidIndex record = GetRaidIndex(target_index_);
        RaidErrorCode code = RAID_OK;
        std::string text;
        // The two texts of code 24 differ on purpose: one names the volumes asked for, the
        // other the whole controller.
        if (!volumes.empty()) {
            code = encryption->enableEncryptionVolume(record.id, volumes);
            text = ChangeText(code, *encryption, "The target controller has no volumes");
        } else {
            code = encryption->enableEncryptionAllVolumes(record.id);
            text = ChangeText(code, *encryption, "There is no volumes under this controller");
        }
        AddRow(CtrlLabel(target_index_), text, code);
    }
    PrintResultTable(volume_encryption_title_);
    RAIDCFG_LOG(4) << "Exiting  " << kScope << "ChangeVolModeOOB";
    return SummaryResults();
}

} // namespace detail
} // namespace service
