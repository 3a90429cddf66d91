#pragma once

#include <memory>
#include <string>
#include <vector>

#include "backend/encryption_driver.hpp"
#include "collaborators/connection_info.hpp"
#include "result/raid_error_code.hpp"

namespace Quillon {
namespace RaidConfig {

struct EKMController;

// Key management and volume encryption of the controllers behind a BMC.
class RaidEncryption {
public:
    explicit RaidEncryption(const QuillonConnection::ConnectionInfo& connection);
    ~RaidEncryption();
    RaidEncryption(const RaidEncryption&) = delete;
    RaidEncryption& operator=(const RaidEncryption&) = delete;

    RaidErrorCode getController(const int& controller, EKMController& record);
    // As getController, with the controller's volumes filled in.
    RaidErrorCode getControllerWithVolumes(const int& controller, EKMController& record);
    RaidErrorCode changeEKMmode(const int& controller, const std::string& mode);
    RaidErrorCode enableEncryptionVolume(const int& controller, const std::vector<int>& volumes);
    RaidErrorCode enableEncryptionAllVolumes(const int& controller);

    // The text of the last failure, or after a success a detail to show behind "Success.".
    std::string GetErrorMsg();

private:
    std::shared_ptr<EncryptionDriver> driver_;
    std::string message_;
};

} // namespace RaidConfig
} // namespace Quillon
