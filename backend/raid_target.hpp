#pragma once

#include <vector>

namespace Quillon {
namespace RaidConfig {

// One target of the in-band driver: a family and, optionally, which of its controllers.
struct RaidTarget {
    // The family number; it also selects the backend class.
    enum Type {
        LSI = 0,
        MICROCHIP = 1,
        M2 = 2,
        VROC_WIN = 3,
        OOB_LSI = 4,
        OOB_CFC = 5,
        OOB_M2 = 6,
        OOB_MICROCHIP = 7,
        OOB_VROC = 8,
        INVALID = 9, // a text of no known form; only target classification gives it
    };

    Type type = LSI;
    std::vector<int> ids;           // controller ids; empty means every controller of the type
    std::vector<int> container_ids; // software RAID containers, with type VROC_WIN
};

} // namespace RaidConfig
} // namespace Quillon
