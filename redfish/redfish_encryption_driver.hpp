#pragma once

#include <string>
#include <vector>

#include "backend/encryption_driver.hpp"
#include "redfish/bmc_access.hpp"

namespace redfish {

class RedfishConnection;

// Key management and volume encryption of the BMC's OOB_LSI controllers: the Storage's
// EncryptionMode and the Volumes' Encrypted property.
class RedfishEncryptionDriver : public Quillon::RaidConfig::EncryptionDriver {
public:
    using Code = Quillon::RaidConfig::RaidErrorCode;

    explicit RedfishEncryptionDriver(const RedfishConnection& connection);

    Code GetController(int controller, Quillon::RaidConfig::EKMController& record,
                       bool with_volumes, std::string& message) override;
    Code ChangeEKMMode(int controller, const std::string& mode, std::string& message) override;
    Code EnableEncryption(int controller, const std::vector<int>& volumes,
                          std::string& message) override;

    // The standard EncryptionMode of a key management word ("local" -> "UseLocalKey"); empty
    // for a word that has none.
    static std::string EncryptionMode(const std::string& mode);

private:
    BmcAccess access_;
};

} // namespace redfish
