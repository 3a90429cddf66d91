#pragma once

#include <string>
#include <vector>

#include "backend/disk.hpp"
#include "backend/pool.hpp"

namespace Quillon {
namespace RaidConfig {

// One out-of-band LSI or CFC controller. Built empty by the caller and filled by the backend;
// the stripe sizes and RAID levels come from the controller's support information.
struct Controller {
    std::string reserved_text;
    int id = 0; // the controller's slot
    std::string product_name;
    std::string serial_no;
    std::string fru_no;
    std::string part_no;
    std::string vendor;   // e.g. "Broadcom" or "Microchip"; picks the table and XML kind for CFC
    std::string raid_url; // the controller's URL on the BMC
    std::string max_stripe_size;
    std::string min_stripe_size;
    std::vector<std::string> support_raid_levels;
    std::vector<Disk> disks; // every disk of the controller, pooled or not
    std::vector<Pool> pools;
};

} // namespace RaidConfig
} // namespace Quillon
