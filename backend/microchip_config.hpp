#pragma once

#include <string>

namespace Quillon {
namespace protocol {

// The volume request of the in-band Microchip backend. The disk lists stay text as written in
// the policy file.
struct MicrochipConfig {
    int controller_id = -1;
    int volume_id = -1;
    std::string disks;
    std::string hot_spares;
    std::string raid_level;
    std::string vol_name;
    int io_policy = -1; // -1: not given
    std::string volume_size;
    std::string strip_size;
};

} // namespace protocol
} // namespace Quillon
