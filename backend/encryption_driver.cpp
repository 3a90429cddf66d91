#include "backend/encryption_driver.hpp"

namespace Quillon {
namespace RaidConfig {

namespace {

RaidErrorCode NoController(int controller, std::string& message) {
    message = "controller " + std::to_string(controller) + " does not exist";
    return RAID_TARGET_NOT_FOUND;
}

} // namespace

// The defaults describe a BMC without controllers.
RaidErrorCode EncryptionDriver::GetController(int controller, EKMController& /*record*/,
                                              bool /*with_volumes*/, std::string& message) {
    return NoController(controller, message);
}
RaidErrorCode EncryptionDriver::ChangeEKMMode(int controller, const std::string& /*mode*/,
                                              std::string& message) {
    return NoController(controller, message);
}
RaidErrorCode EncryptionDriver::EnableEncryption(int controller,
                                                 const std::vector<int>& /*volumes*/,
                                                 std::string& message) {
    return NoController(controller, message);
}

} // namespace RaidConfig
} // namespace Quillon
