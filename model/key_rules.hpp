#pragma once

#include <string>
#include <vector>

#include "model/machine.hpp"
#include "result/raid_error_code.hpp"

namespace model {

// What a careful controller's key management allows, with the codes and texts it refuses
// with: the simulated machine applies these rules, and the Redfish road checks them before it
// writes to a BMC that would not judge the request itself.
class KeyRules {
public:
    using Code = Quillon::RaidConfig::RaidErrorCode;

    // A change of the key management mode to mode: 33 without key management, 3 for a mode the
    // controller does not take, 34 when it stands so already, else 0 with the mode as the
    // controller spells it in spelled.
    static Code ChangeMode(const Controller& controller, const std::string& mode,
                           std::string& spelled, std::string& error);

    // Encryption of the named volumes (all of them when none is named): 33 without key
    // management, 3 while it is off, 24 without volumes, 5 for a volume the controller lacks,
    // else 0 with the ids of the volumes not yet encrypted in to_encrypt.
    static Code Encrypt(const Controller& controller, const std::vector<int>& volumes,
                        std::vector<int>& to_encrypt, std::string& error);

    // " 2 volumes newly encrypted.": the detail a success row puts directly behind "Success.".
    static std::string EncryptedText(int count);
};

} // namespace model
