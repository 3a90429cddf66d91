#include "redfish/redfish_encryption_driver.hpp"

#include "backend/ekm_controller.hpp"
#include "model/controller_reader.hpp"
#include "model/key_rules.hpp"
#include "model/mode_setting.hpp"
#include "redfish/redfish_connection.hpp"
#include "redfish/redfish_words.hpp"

namespace redfish {

using namespace Quillon::RaidConfig;
using nlohmann::json;

RedfishEncryptionDriver::RedfishEncryptionDriver(const RedfishConnection& connection)
    : access_(connection.shared_tree(), "OOB_LSI") {}

std::string RedfishEncryptionDriver::EncryptionMode(const std::string& mode) {
    const std::string word = model::ModeSetting::Lower(mode);
    if (word == "none") {
        return "Disabled";
    }
    if (word == "local") {
        return "UseLocalKey";
    }
    if (word == "external") {
        return "UseExternalKey";
    }
    return {};
}

RedfishEncryptionDriver::Code RedfishEncryptionDriver::GetController(int controller,
                                                                     EKMController& record,
                                                                     bool with_volumes,
                                                                     std::string& message) {
    return access_.Read("Encryption", "getController", controller, message,
                        [&](const model::Controller& c, const StorageTree&, std::string& text) {
                            return model::ControllerReader::KeyManagement(c, record, with_volumes,
                                                                          text);
                        });
}

RedfishEncryptionDriver::Code RedfishEncryptionDriver::ChangeEKMMode(int controller,
                                                                     const std::string& mode,
                                                                     std::string& message) {
    return access_.Write(
        controller, message,
        [&mode](const ControllerLinks& links, const model::Controller& model, RedfishClient& client,
                std::string& text) {
            const std::string standard = EncryptionMode(mode);
            if (!links.ours) {
                // Judged first, as the simulated machine judges it: nothing is
                // sent for a mode that stands already or that the Storage lacks.
                std::string spelled;
                const Code checked = model::KeyRules::ChangeMode(model, mode, spelled, text);
                if (checked != RAID_OK) {
                    return checked;
                }
                if (standard.empty()) {
                    text = "the mode " + mode + " has no standard EncryptionMode";
                    return RAID_OPERATION_FAILED;
                }
                return BmcAccess::Outcome(
                    client.Patch(links.storage, json{{"EncryptionMode", standard}}), text);
            }
            json body = {{"Oem", {{"Raidcfg", {{"EkmMode", mode}}}}}};
            if (!standard.empty()) {
                body["EncryptionMode"] = standard;
            }
            return BmcAccess::PatchMode(client, links.storage, body, model.ekm_mode,
                                        model.ekm_modes, mode, "key management", text);
        });
}

RedfishEncryptionDriver::Code
RedfishEncryptionDriver::EnableEncryption(int controller, const std::vector<int>& volumes,
                                          std::string& message) {
    return access_.Write(
        controller, message,
        [&volumes](const ControllerLinks& links, const model::Controller& model,
                   RedfishClient& client, std::string& text) {
            if (!links.ours) {
                // A BMC without our action: each volume's standard Encrypted property, after
                // the checks the simulated machine makes.
                std::vector<int> to_encrypt;
                const Code checked = model::KeyRules::Encrypt(model, volumes, to_encrypt, text);
                if (checked != RAID_OK) {
                    return checked;
                }
                for (int id : to_encrypt) {
                    const Code code = BmcAccess::Outcome(
                        client.Patch(BmcAccess::VolumePath(links, id), json{{"Encrypted", true}}),
                        text);
                    if (code != RAID_OK) {
                        return code;
                    }
                }
                text = model::KeyRules::EncryptedText(static_cast<int>(to_encrypt.size()));
                return RAID_OK;
            }
            json answer;
            const Code code = BmcAccess::Outcome(
                client.Post(links.storage + "/Actions/Oem/Raidcfg.EncryptVolumes",
                            json{{"Volumes", volumes}}, &answer),
                text);
            if (code != RAID_OK) {
                return code;
            }
            // The BMC's own words for what it did (" 2 volumes newly encrypted.").
            const json& info = answer.is_object() && answer.contains("@Message.ExtendedInfo")
                                   ? answer["@Message.ExtendedInfo"]
                                   : json();
            if (info.is_array() && !info.empty() &&
                RedfishWords::Text(info.front(), "MessageId") == "Raidcfg.1.0.Completed") {
                text = RedfishWords::Text(info.front(), "Message");
            }
            return code;
        });
}

} // namespace redfish
