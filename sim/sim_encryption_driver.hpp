#pragma once

#include <memory>

#include "backend/encryption_driver.hpp"
#include "sim/machine_access.hpp"

namespace sim {

// Key management and volume encryption of the simulated machine's out-of-band LSI controllers.
class SimEncryptionDriver : public Quillon::RaidConfig::EncryptionDriver {
public:
    using Code = Quillon::RaidConfig::RaidErrorCode;

    explicit SimEncryptionDriver(std::shared_ptr<MachineStore> store);

    Code GetController(int controller, Quillon::RaidConfig::EKMController& record,
                       bool with_volumes, std::string& message) override;
    Code ChangeEKMMode(int controller, const std::string& mode, std::string& message) override;
    Code EnableEncryption(int controller, const std::vector<int>& volumes,
                          std::string& message) override;

private:
    MachineAccess access_;
};

} // namespace sim
