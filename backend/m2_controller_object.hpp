#pragma once

#include <string>

namespace Quillon {
namespace RaidConfig {

// The volume request of the M.2 backends, in band and out of band.
struct M2ControllerObject {
    int controller_id = 0;
    std::string vol_name;
    std::string raid_level;
    std::string strip_size; // keeps its "K"
};

} // namespace RaidConfig
} // namespace Quillon
