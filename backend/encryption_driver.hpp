#pragma once

#include <string>
#include <vector>

#include "result/raid_error_code.hpp"

namespace Quillon {
namespace RaidConfig {

struct EKMController;

// What stands behind RaidEncryption. message is the text of the last failure, or on success an
// optional detail; the defaults describe a BMC without controllers.
class EncryptionDriver {
public:
    EncryptionDriver() = default;
    virtual ~EncryptionDriver() = default;
    EncryptionDriver(const EncryptionDriver&) = delete;
    EncryptionDriver& operator=(const EncryptionDriver&) = delete;

    virtual RaidErrorCode GetController(int controller, EKMController& record, bool with_volumes,
                                        std::string& message);
    virtual RaidErrorCode ChangeEKMMode(int controller, const std::string& mode,
                                        std::string& message);
    // An empty list means every volume of the controller.
    virtual RaidErrorCode EnableEncryption(int controller, const std::vector<int>& volumes,
                                           std::string& message);
};

} // namespace RaidConfig
} // namespace Quillon
