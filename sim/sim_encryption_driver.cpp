#include "sim/sim_encryption_driver.hpp"

#include <algorithm>
#include <utility>

#include "backend/ekm_controller.hpp"
#include "model/controller_reader.hpp"
#include "model/key_rules.hpp"

namespace sim {

using namespace Quillon::RaidConfig;

SimEncryptionDriver::SimEncryptionDriver(std::shared_ptr<MachineStore> store)
    : access_(std::move(store), "OOB_LSI") {}

SimEncryptionDriver::Code SimEncryptionDriver::GetController(int controller, EKMController& record,
                                                             bool with_volumes,
                                                             std::string& message) {
    // Each contract operation answers to its own name: a fault for one never fires for the other.
    return access_.Act(with_volumes ? "getControllerWithVolumes" : "getController", controller,
                       std::nullopt, false, message, [&](Controller& c, std::string& error) {
                           return model::ControllerReader::KeyManagement(c, record, with_volumes,
                                                                         error);
                       });
}

SimEncryptionDriver::Code
SimEncryptionDriver::ChangeEKMMode(int controller, const std::string& mode, std::string& message) {
    return access_.Act("changeEKMmode", controller, std::nullopt, true, message,
                       [&mode](Controller& c, std::string& error) {
                           std::string spelled;
                           const Code code = model::KeyRules::ChangeMode(c, mode, spelled, error);
                           if (code == RAID_OK) {
                               c.ekm_mode = spelled;
                           }
                           return code;
                       });
}

SimEncryptionDriver::Code SimEncryptionDriver::EnableEncryption(int controller,
                                                                const std::vector<int>& volumes,
                                                                std::string& message) {
    // An empty list is enableEncryptionAllVolumes; a fault for one volume names it.
    const std::optional<std::string> arg =
        volumes.size() == 1 ? std::optional<std::string>(std::to_string(volumes.front()))
                            : std::nullopt;
    const char* op = volumes.empty() ? "enableEncryptionAllVolumes" : "enableEncryptionVolume";
    int encrypted = 0;
    const Code code =
        access_.Act(op, controller, arg, true, message, [&](Controller& c, std::string& error) {
            std::vector<int> to_encrypt;
            const Code checked = model::KeyRules::Encrypt(c, volumes, to_encrypt, error);
            for (Volume& volume : c.volumes) {
                if (std::find(to_encrypt.begin(), to_encrypt.end(), volume.id) !=
                    to_encrypt.end()) {
                    volume.encrypted = true;
                    ++encrypted;
                }
            }
            return checked;
        });
    if (code == RAID_OK) {
        message = model::KeyRules::EncryptedText(encrypted);
    }
    return code;
}

} // namespace sim
