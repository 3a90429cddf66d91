#pragma once

#include <cstddef>
#include <string>
#include <vector>

namespace model {

// What the disks of a volume give at its RAID level: the arithmetic every controller applies,
// used to create a volume on the simulated machine and to show a pool's capacity on both roads.
class RaidCapacity {
public:
    // The usable megabytes of spans of disks whose smallest holds smallest_mb at level ("5",
    // "raid10", "1triple", ...); -1 with a reason when the disks do not suit the level.
    static long long UsableMegabytes(const std::string& level,
                                     const std::vector<std::vector<int>>& spans,
                                     long long smallest_mb, std::string& error);

    // The text without its leading and trailing blanks and tabs.
    static std::string Trim(const std::string& text);
    // How many disks the spans hold together.
    static std::size_t DiskCount(const std::vector<std::vector<int>>& spans);
    // "RAID 5": a level as the reasons name it.
    static std::string Name(const std::string& level);
};

} // namespace model
