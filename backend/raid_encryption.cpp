#include "backend/raid_encryption.hpp"

#include "backend/backend_platform.hpp"

namespace Quillon {
namespace RaidConfig {

RaidEncryption::RaidEncryption(const QuillonConnection::ConnectionInfo& connection)
    : driver_(CurrentBackendPlatform().MakeEncryptionDriver(connection)) {
    if (!driver_) {
        driver_ = std::make_shared<EncryptionDriver>();
    }
}

RaidEncryption::~RaidEncryption() = default;

RaidErrorCode RaidEncryption::getController(const int& controller, EKMController& record) {
    message_.clear();
    return driver_->GetController(controller, record, false, message_);
}

RaidErrorCode RaidEncryption::getControllerWithVolumes(const int& controller,
                                                       EKMController& record) {
    message_.clear();
    return driver_->GetController(controller, record, true, message_);
}

RaidErrorCode RaidEncryption::changeEKMmode(const int& controller, const std::string& mode) {
    message_.clear();
    return driver_->ChangeEKMMode(controller, mode, message_);
}

RaidErrorCode RaidEncryption::enableEncryptionVolume(const int& controller,
                                                     const std::vector<int>& volumes) {
    message_.clear();
    if (volumes.empty()) {
        // An empty list would mean every volume to the driver; here it means none.
        return RAID_OK;
    }
    return driver_->EnableEncryption(controller, volumes, message_);
}

RaidErrorCode RaidEncryption::enableEncryptionAllVolumes(const int& controller) {
    message_.clear();
    return driver_->EnableEncryption(controller, {}, message_);
}

std::string RaidEncryption::GetErrorMsg() {
    return message_;
}

} // namespace RaidConfig
} // namespace Quillon
