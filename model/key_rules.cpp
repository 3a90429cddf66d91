#include "model/key_rules.hpp"

#include <algorithm>

#include "model/controller_reader.hpp"
#include "model/mode_setting.hpp"

namespace model {

using namespace Quillon::RaidConfig;

KeyRules::Code KeyRules::ChangeMode(const Controller& controller, const std::string& mode,
                                    std::string& spelled, std::string& error) {
    if (!controller.ekm_mode) {
        return ControllerReader::NoKeyManagement(error);
    }
    spelled = *controller.ekm_mode;
    return ModeSetting::Change(spelled, controller.ekm_modes, mode, "key management", error);
}

KeyRules::Code KeyRules::Encrypt(const Controller& controller, const std::vector<int>& volumes,
                                 std::vector<int>& to_encrypt, std::string& error) {
    to_encrypt.clear();
    if (!controller.ekm_mode) {
        return ControllerReader::NoKeyManagement(error);
    }
    if (ModeSetting::Lower(*controller.ekm_mode) == "none") {
        error = "key management is off: turn it to local or external first";
        return RAID_OPERATION_FAILED;
    }
    if (controller.volumes.empty()) {
        error = "the controller has no volumes";
        return RAID_NO_VOLUMES;
    }
    for (int id : volumes) {
        if (std::none_of(controller.volumes.begin(), controller.volumes.end(),
                         [id](const Volume& volume) { return volume.id == id; })) {
            error = "volume " + std::to_string(id) + " does not exist";
            return RAID_TARGET_NOT_FOUND;
        }
    }
    for (const Volume& volume : controller.volumes) {
        const bool named = volumes.empty() ||
                           std::find(volumes.begin(), volumes.end(), volume.id) != volumes.end();
        if (named && !volume.encrypted) {
            to_encrypt.push_back(volume.id);
        }
    }
    return RAID_OK;
}

std::string KeyRules::EncryptedText(int count) {
    return " " + std::to_string(count) + (count == 1 ? " volume" : " volumes") +
           " newly encrypted.";
}

} // namespace model
