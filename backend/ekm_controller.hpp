#pragma once

#include <string>
#include <vector>

namespace Quillon {
namespace RaidConfig {

// One volume of a controller under key management.
struct EKMVolume {
    std::string name;
    std::string raid_type;
    std::string reserved_text;
    std::string reserved_text_2;
    int id = 0;
    int encrypted = 0; // 1 is encrypted; any other value is not
};

// One controller of the key management actions. Its volumes are filled only when they are asked
// for along with the controller.
struct EKMController {
    std::string product_name;
    std::string encryption_mode;
    std::string reserved_text;
    std::string reserved_text_2;
    std::string reserved_text_3;
    int slot = 0;
    std::vector<EKMVolume> volumes;
};

} // namespace RaidConfig
} // namespace Quillon
