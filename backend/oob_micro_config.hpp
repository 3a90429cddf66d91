#pragma once

#include <string>
#include <vector>

namespace Quillon {
namespace protocol {

// A volume of the out-of-band Microchip backend: the request to create one, and a volume read
// back for saving as policy.
struct OobMicroConfig {
    int controller_id = -1;
    int volume_id = -1;
    std::vector<std::vector<int>> disks; // disk ids, in span groups
    std::vector<int> hot_spares;
    std::string raid_level;
    std::string vol_name;
    std::string volume_size;
    std::string strip_size;
    int write_policy = 3;
    int read_policy = 0;
};

} // namespace protocol
} // namespace Quillon
