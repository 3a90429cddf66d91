#include "redfish/bmc_access.hpp"

#include <algorithm>
#include <charconv>
#include <utility>

#include "model/mode_setting.hpp"
#include "redfish/redfish_words.hpp"

namespace redfish {

using Quillon::RaidConfig::RAID_OK;
using Quillon::RaidConfig::RAID_OK_UNCHANGED;
using Quillon::RaidConfig::RAID_TARGET_NOT_FOUND;

namespace {

bool WholeNumber(const std::string& text) {
    int value = 0;
    const char* end = text.data() + text.size();
    const auto [stop, problem] = std::from_chars(text.data(), end, value);
    return !text.empty() && problem == std::errc() && stop == end && value >= 0;
}

bool Pending(const ControllerLinks& links, const std::string& op) {
    return std::any_of(links.pending_faults.begin(), links.pending_faults.end(),
                       [&op](const auto& fault) { return fault.first == op && !fault.second; });
}

} // namespace

BmcAccess::BmcAccess(std::shared_ptr<StorageTreeReader> reader, std::string family)
    : reader_(std::move(reader)), family_(std::move(family)) {}

std::vector<int> BmcAccess::ControllerIds() const {
    std::vector<int> ids;
    std::shared_ptr<const StorageTree> tree;
    if (!reader_->Load(tree).ok()) {
        return ids;
    }
    for (const model::Controller& controller : tree->machine.controllers) {
        if (controller.family == family_) {
            ids.push_back(controller.id);
        }
    }
    return ids;
}

BmcAccess::Code BmcAccess::Outcome(const RedfishStatus& status, std::string& error_text) {
    if (!status.ok()) {
        error_text = status.text;
    }
    return status.code;
}

BmcAccess::Code BmcAccess::SuccessCode(const nlohmann::json& answer) {
    if (!answer.is_object()) {
        return RAID_OK;
    }
    const auto info = answer.find("@Message.ExtendedInfo");
    if (info == answer.end() || !info->is_array()) {
        return RAID_OK;
    }
    for (const nlohmann::json& entry : *info) {
        if (RedfishWords::Number(RedfishWords::Oem(entry), "Code", 0) == RAID_OK_UNCHANGED) {
            return RAID_OK_UNCHANGED;
        }
    }
    return RAID_OK;
}

std::string BmcAccess::SuccessText(const nlohmann::json& answer) {
    if (!answer.is_object()) {
        return "";
    }
    const auto info = answer.find("@Message.ExtendedInfo");
    if (info == answer.end() || !info->is_array()) {
        return "";
    }
    for (const nlohmann::json& entry : *info) {
        const std::string id = RedfishWords::Text(entry, "MessageId");
        if (id == "Raidcfg.1.0.Completed" || id == "Raidcfg.1.0.AlreadySet") {
            return RedfishWords::Text(entry, "Message");
        }
    }
    return "";
}

BmcAccess::Code BmcAccess::PatchMode(RedfishClient& client, const std::string& path,
                                     const nlohmann::json& body,
                                     const std::optional<std::string>& current,
                                     const std::vector<std::string>& modes, const std::string& mode,
                                     const std::string& subject, std::string& text) {
    nlohmann::json answer;
    const Code code = Outcome(client.Patch(path, body, &answer), text);
    if (code != RAID_OK) {
        return code;
    }
    if (std::string detail = SuccessText(answer); !detail.empty()) {
        text = std::move(detail);
    }
    // A PATCH to the mode the controller has is accepted and changes nothing: 34.
    std::string value = current.value_or("");
    std::string already;
    if (current &&
        model::ModeSetting::Change(value, modes, mode, subject, already) == RAID_OK_UNCHANGED) {
        text = already;
        return RAID_OK_UNCHANGED;
    }
    return code;
}

std::string BmcAccess::ControllerNotFound(int controller) {
    return "controller " + std::to_string(controller) + " does not exist";
}

std::string BmcAccess::DrivePath(const ControllerLinks& links, const std::string& disk) {
    int id = -1;
    if (WholeNumber(disk)) {
        std::from_chars(disk.data(), disk.data() + disk.size(), id);
    }
    const auto found = links.drives.find(id);
    return found != links.drives.end() ? found->second : links.storage + "/Drives/" + disk;
}

std::string BmcAccess::VolumePath(const ControllerLinks& links, int volume) {
    const auto found = links.volume_paths.find(volume);
    return found != links.volume_paths.end() ? found->second
                                             : VolumesPath(links) + "/" + std::to_string(volume);
}

std::string BmcAccess::VolumesPath(const ControllerLinks& links) {
    return links.volumes.empty() ? links.storage + "/Volumes" : links.volumes;
}

std::string BmcAccess::ControllerPath(const ControllerLinks& links) {
    // A controller known only from the deprecated inline array has no resource of its own.
    if (links.controller.empty() || links.controller.find('#') != std::string::npos) {
        return links.storage + "/Controllers/0";
    }
    return links.controller;
}

BmcAccess::Code BmcAccess::Probe(const char* driver, const std::string& op,
                                 const ControllerLinks& links, std::string& error_text) const {
    const nlohmann::json body = {{"Operation", op}, {"Driver", driver}};
    return Outcome(reader_->client().Post(links.storage + "/Actions/Oem/Raidcfg.Probe", body),
                   error_text);
}

BmcAccess::Code BmcAccess::Read(const char* driver, const std::string& op, int controller,
                                std::string& error_text, const Derive& derive) const {
    std::shared_ptr<const StorageTree> tree;
    RedfishStatus status = reader_->Load(tree);
    if (!status.ok()) {
        return Outcome(status, error_text);
    }
    const ControllerLinks* links = tree->LinksOf(family_, controller);
    if (links != nullptr && links->ours && Pending(*links, op)) {
        // The fault answers first, as on the simulated machine; a counted one is used up, so
        // the tree is read anew afterwards.
        const Code probed = Probe(driver, op, *links, error_text);
        reader_->Drop(links->storage);
        if (probed != RAID_OK) {
            return probed;
        }
        status = reader_->Load(tree);
        if (!status.ok()) {
            return Outcome(status, error_text);
        }
        links = tree->LinksOf(family_, controller);
    }
    const model::Controller* model = tree->Find(family_, controller);
    if (model == nullptr) {
        // The simulated machine's words for a controller it does not have.
        error_text = ControllerNotFound(controller);
        return RAID_TARGET_NOT_FOUND;
    }
    std::string derived_text;
    const Code code = derive(*model, *tree, derived_text);
    if (code == RAID_OK || code == RAID_OK_UNCHANGED) {
        return code;
    }
    if (links != nullptr && links->ours) {
        // The BMC's own answer wins over what the client made of the tree.
        std::string probed_text;
        const Code probed = Probe(driver, op, *links, probed_text);
        if (probed != RAID_OK) {
            error_text = probed_text;
            return probed;
        }
    }
    error_text = derived_text;
    return code;
}

BmcAccess::Code BmcAccess::Write(int controller, std::string& error_text,
                                 const Change& change) const {
    std::shared_ptr<const StorageTree> tree;
    const RedfishStatus status = reader_->Load(tree);
    if (!status.ok()) {
        return Outcome(status, error_text);
    }
    const ControllerLinks* links = tree->LinksOf(family_, controller);
    const model::Controller* model = tree->Find(family_, controller);
    if (links == nullptr || model == nullptr) {
        error_text = ControllerNotFound(controller);
        return RAID_TARGET_NOT_FOUND;
    }
    const Code code = change(*links, *model, reader_->client(), error_text);
    reader_->Drop(links->storage);
    return code;
}

} // namespace redfish
