#include "sim/sim_encryption_driver.hpp"

#include <algorithm>
#include <utility>

#include "backend/ekm_controller.hpp"
#include "model/controller_reader.hpp"
#include "model/mode_setting.hpp"

namespace sim {

using namespace Quillon::RaidConfig;

namespace {

RaidErrorCode NoKeyManagement(std::string& message) {
    return model::ControllerReader::NoKeyManagement(message);
}

} // namespace

SimEncryptionDriver::SimEncryptionDriver(std::shared_ptr<MachineStore> store)
    : access_(std::move(store), "OOB_LSI") {}

SimEncryptionDriver::Code SimEncryptionDriver::GetController(int controller, EKMController& record,
                                                             bool with_volumes,
                                                             std::string& message) {
    return access_.Act("getController", controller, std::nullopt, false, message,
                       [&](Controller& c, std::string& error) {
                           return model::ControllerReader::KeyManagement(c, record, with_volumes,
                                                                         error);
                       });
}

SimEncryptionDriver::Code
SimEncryptionDriver::ChangeEKMMode(int controller, const std::string& mode, std::string& message) {
    return access_.Act("changeEKMmode", controller, std::nullopt, true, message,
                       [&mode](Controller& c, std::string& error) {
                           if (!c.ekm_mode) {
                               return NoKeyManagement(error);
                           }
                           return model::ModeSetting::Change(*c.ekm_mode, c.ekm_modes, mode, error);
                       });
}

SimEncryptionDriver::Code SimEncryptionDriver::EnableEncryption(int controller,
                                                                const std::vector<int>& volumes,
                                                                std::string& message) {
    // A fault for one volume names it; one for all volumes names none.
    const std::optional<std::string> arg =
        volumes.size() == 1 ? std::optional<std::string>(std::to_string(volumes.front()))
                            : std::nullopt;
    int encrypted = 0;
    const Code code =
        access_.Act("enableEncryptionVolume", controller, arg, true, message,
                    [&](Controller& c, std::string& error) {
                        if (!c.ekm_mode) {
                            return NoKeyManagement(error);
                        }
                        if (model::ModeSetting::Lower(*c.ekm_mode) == "none") {
                            error = "key management is off: turn it to local or external first";
                            return RAID_OPERATION_FAILED;
                        }
                        if (c.volumes.empty()) {
                            error = "the controller has no volumes";
                            return RAID_NO_VOLUMES;
                        }
                        std::vector<Volume*> chosen;
                        for (Volume& volume : c.volumes) {
                            if (volumes.empty() || std::find(volumes.begin(), volumes.end(),
                                                             volume.id) != volumes.end()) {
                                chosen.push_back(&volume);
                            }
                        }
                        for (int id : volumes) {
                            if (std::none_of(chosen.begin(), chosen.end(),
                                             [id](const Volume* v) { return v->id == id; })) {
                                error = "volume " + std::to_string(id) + " does not exist";
                                return RAID_TARGET_NOT_FOUND;
                            }
                        }
                        for (Volume* volume : chosen) {
                            encrypted += volume->encrypted ? 0 : 1;
                            volume->encrypted = true;
                        }
                        return RAID_OK;
                    });
    if (code == RAID_OK) {
        // The detail stands directly behind "Success." in a row, so it brings its own blank.
        message = " " + std::to_string(encrypted) + (encrypted == 1 ? " volume" : " volumes") +
                  " newly encrypted.";
    }
    return code;
}

} // namespace sim
