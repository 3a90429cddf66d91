#pragma once

#include <string>
#include <vector>

namespace Quillon {
namespace RaidConfig {

// A volume of the LSI and CFC families: the request to create one, and a volume read back for
// saving as policy. Policy values left out of the file stay 0.
struct VolumeObject {
    int controller_id = 0;
    int volume_id = 0;
    std::vector<std::vector<int>> disks; // disk ids, in span groups
    bool rest_disks = false;             // use all remaining disks; disks then stays empty
    std::string raid_level;
    std::vector<int> hot_spares;
    std::string vol_name;
    std::string volume_size;
    std::string strip_size;
    int write_policy = 0;
    int read_policy = 0;
    int io_policy = 0;
    int access_policy = 0;
    int cache_policy = 0;
    int initialization = 0;
};

} // namespace RaidConfig
} // namespace Quillon
