#include "model/disk_rules.hpp"

#include <algorithm>
#include <charconv>

namespace model {

using namespace Quillon::RaidConfig;

DiskRules::Code DiskRules::Check(const Controller& controller, const std::string& disk,
                                 Change change, int& id, std::string& error) {
    int parsed = 0;
    const char* end = disk.data() + disk.size();
    const auto [stop, problem] = std::from_chars(disk.data(), end, parsed);
    const auto found =
        std::find_if(controller.disks.begin(), controller.disks.end(),
                     [parsed](const Disk& candidate) { return candidate.id == parsed; });
    if (problem != std::errc() || stop != end || parsed < 0 || found == controller.disks.end()) {
        error = "disk " + disk + " does not exist";
        return RAID_TARGET_NOT_FOUND;
    }
    const std::string& state = found->state;
    const auto refuse = [&](const char* wanted, Code code) {
        error = "disk " + disk + " is " + state + ", not " + wanted;
        return code;
    };
    switch (change) {
    case Change::Good:
        if (state != "UBad" && state != "JBOD") {
            return refuse("UBad or JBOD", RAID_MAKEGOOD_REFUSED);
        }
        break;
    case Change::Jbod:
        if (state != "UGood") {
            return refuse("UGood", RAID_MAKEJBOD_REFUSED);
        }
        break;
    case Change::Spare:
        if (state != "UGood") {
            return refuse("UGood", RAID_ADDHSP_REFUSED);
        }
        break;
    case Change::SpareRemoval:
        if (state != "GHS" && state != "DHS") {
            return refuse("a hot spare", RAID_RMHSP_REFUSED);
        }
        break;
    }
    id = parsed;
    return RAID_OK;
}

} // namespace model
