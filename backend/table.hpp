#pragma once

#include <string>
#include <vector>

namespace Quillon {
namespace RaidConfig {

// One ready-made table of the in-band show path.
struct Table {
    int columns = 0;
    // cells[0] is the title; then the cells in reading order, column heads first.
    std::vector<std::string> cells;
};

} // namespace RaidConfig
} // namespace Quillon
