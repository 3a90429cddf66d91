#pragma once

#include <string>
#include <vector>

#include "backend/m2_controller_object.hpp"
#include "backend/microchip_config.hpp"
#include "backend/oob_micro_config.hpp"
#include "backend/vol_man_dev_config.hpp"
#include "backend/vol_raid_config.hpp"
#include "backend/volume_object.hpp"
#include "service/misc_raid_service/detail/raid_config_sections.hpp"

namespace service {
namespace detail {

// Turns a policy file section that passed its checks into the record its family's backend takes:
// numbers become numbers, disk lists become lists, sizes become megabytes. It holds no state and
// trusts its input: it tests nothing and reports nothing, since the checker ran first.
//
// A text that does not convert never fails a cast: a list piece or a policy code becomes -1, a
// size whose number does not read the empty text, and a size beyond int "-2147483648"; all are
// values the checker would refuse and no backend takes as a valid request.
class RaidConfigCaster {
public:
    // LSI, OOB_LSI and OOB_CFC. "REST" or "rest" as disks sets rest_disks and leaves disks empty;
    // policies left empty stay 0.
    Quillon::RaidConfig::VolumeObject ToVolumeObject(const CtrlVolSection& section) const;
    // MICROCHIP. Lists and sizes stay text as written; io_policy stays -1 when left empty.
    Quillon::protocol::MicrochipConfig ToMicrochipConfig(const MicroVolSection& section) const;
    // OOB_MICROCHIP. "1triple" and "10triple" become "1T" and "10T"; an empty write_policy
    // stays 3 and an empty read_policy 0.
    Quillon::protocol::OobMicroConfig ToOobMicroConfig(const OobMicroVolSection& section) const;
    // OOB_VROC.
    Quillon::protocol::VolManDevConfig ToVolManDevConfig(const OobVrocVolSection& section) const;
    // VROC_WIN: every field text; vol_strip_size loses its first "K".
    Quillon::RaidConfig::VolRaidConfig ToVolRaidConfig(const VrocWinVolSection& section) const;
    // M2 and OOB_M2; the strip size keeps its "K".
    Quillon::RaidConfig::M2ControllerObject ToM2ControllerObject(const M2Section& section) const;

    // The numbers of a comma list in their order. The empty text gives no number; an empty or
    // otherwise unreadable piece ("1,,2") gives -1 in its place.
    std::vector<int> ToIntList(const std::string& text) const;
    // A controller's global_hot_spares, read as ToIntList reads it.
    std::vector<int> ToHotSpareList(const std::string& global_hot_spares) const;
    // "512MB" or "1.5GB" as whole megabytes in decimal text, a fraction dropped; logs the result
    // at level 4. A text with neither "MB" nor "GB" gives the empty text.
    std::string ToMegabytes(const std::string& size) const;

private:
    // The disks text as span groups: one ToIntList per ":"-separated piece.
    std::vector<std::vector<int>> ToSpans(const std::string& disks) const;
    // The volume_size of the hardware families: a text holding "B" goes through ToMegabytes,
    // anything else (a share such as "50%") is kept as written.
    std::string ToVolumeSize(const std::string& volume_size) const;
};

} // namespace detail
} // namespace service
