#include "service/misc_raid_service/detail/raid_config_caster.hpp"

#include <climits>
#include <cmath>
#include <sstream>

#include <boost/algorithm/string/classification.hpp>
#include <boost/algorithm/string/erase.hpp>
#include <boost/algorithm/string/split.hpp>

#include "collaborators/log.hpp"
#include "collaborators/trace_scope.hpp"

namespace service {
namespace detail {
namespace {

// What a list piece or a policy code that does not read as a number becomes. No disk and no
// policy has this number, so the checker would refuse it and a backend rejects the request
// rather than acting on a disk or a code that the file never named.
constexpr int kUnreadable = -1;

// The number at the start of text by stream extraction, with what the standard library gives
// where it fails: 0 where nothing converts, the limit of int where the number is beyond it, and
// the leading number of "12a".
int ReadInt(const std::string& text) {
    std::istringstream stream(text);
    int value = 0;
    stream >> value;
    return value;
}

// One piece of a disk list. Intended: a piece with nothing to convert (an empty piece of
// "1,,2", or "x") becomes kUnreadable, an id every backend refuses, and never the 0 the stream
// would give, which would name a real disk the user did not name.
int ReadListPiece(const std::string& piece) {
    std::istringstream stream(piece);
    int value = 0;
    if (!(stream >> value) && value == 0) {
        return kUnreadable;
    }
    return value;
}

// A policy code: when_empty where the key was left out or left blank, else the number.
int ReadCode(const std::string& text, int when_empty) {
    return text.empty() ? when_empty : ReadInt(text);
}

// The number before a size unit times factor, truncated toward zero, as decimal text. A number
// the stream cannot read gives the empty text, as a size with no unit does. A product beyond
// int gives INT_MIN, which is what the truncating conversion yields on the hardware this runs
// on; a negative size is refused by every backend, and the conversion itself stays defined.
std::string WholeMegabytes(const std::string& number, double factor) {
    std::istringstream stream(number);
    double value = 0.0;
    if (!(stream >> value)) {
        return "";
    }
    const double megabytes = std::trunc(value * factor);
    if (!(megabytes > static_cast<double>(INT_MIN) - 1.0 &&
          megabytes < static_cast<double>(INT_MAX) + 1.0)) {
        return std::to_string(INT_MIN);
    }
    return std::to_string(static_cast<int>(megabytes));
}

// The raid levels of OOB_MICROCHIP in the backend's short form; the policy writer turns them
// back into the words of the file.
std::string OobMicroRaidLevel(const std::string& raid_level) {
    if (raid_level == "1triple") {
        return "1T";
    }
    if (raid_level == "10triple") {
        return "10T";
    }
    return raid_level;
}

} // namespace

Quillon::RaidConfig::VolumeObject
RaidConfigCaster::ToVolumeObject(const CtrlVolSection& section) const {
    RAIDCFG_TRACE("service::detail::RaidConfigCaster::ToVolumeObject");
    Quillon::RaidConfig::VolumeObject volume;
    volume.controller_id = section.ctrlid;
    volume.volume_id = section.volid;
    // Only the exact words: the checker lets no other spelling of it through on OOB_LSI.
    if (section.disks == "REST" || section.disks == "rest") {
        volume.rest_disks = true;
    } else {
        volume.rest_disks = false;
        volume.disks = ToSpans(section.disks);
    }
    volume.hot_spares = ToIntList(section.hot_spares);
    volume.raid_level = section.raid_level;
    volume.vol_name = section.vol_name;
    volume.volume_size = ToVolumeSize(section.volume_size);
    volume.strip_size = section.strip_size;
    volume.write_policy = ReadCode(section.write_policy, 0);
    volume.read_policy = ReadCode(section.read_policy, 0);
    volume.io_policy = ReadCode(section.io_policy, 0);
    volume.access_policy = ReadCode(section.access_policy, 0);
    volume.cache_policy = ReadCode(section.cache_policy, 0);
    volume.initialization = ReadCode(section.initialization, 0);
    return volume;
}

Quillon::protocol::MicrochipConfig
RaidConfigCaster::ToMicrochipConfig(const MicroVolSection& section) const {
    RAIDCFG_TRACE("service::detail::RaidConfigCaster::ToMicrochipConfig");
    Quillon::protocol::MicrochipConfig config;
    config.controller_id = section.ctrlid;
    config.volume_id = section.volid;
    // This backend takes lists and sizes as the file wrote them, intended: "512MB" and "128K"
    // reach it unchanged, and so does a disk list.
    config.disks = section.disks;
    config.hot_spares = section.hot_spares;
    config.raid_level = section.raid_level;
    config.vol_name = section.vol_name;
    config.io_policy = ReadCode(section.io_policy, -1);
    config.volume_size = section.volume_size;
    config.strip_size = section.strip_size;
    return config;
}

Quillon::protocol::OobMicroConfig
RaidConfigCaster::ToOobMicroConfig(const OobMicroVolSection& section) const {
    RAIDCFG_TRACE("service::detail::RaidConfigCaster::ToOobMicroConfig");
    Quillon::protocol::OobMicroConfig config;
    config.controller_id = section.ctrlid;
    config.volume_id = section.volid;
    config.disks = ToSpans(section.disks);
    config.hot_spares = ToIntList(section.hot_spares);
    config.raid_level = OobMicroRaidLevel(section.raid_level);
    config.vol_name = section.vol_name;
    config.volume_size = ToVolumeSize(section.volume_size);
    config.strip_size = section.strip_size;
    config.write_policy = ReadCode(section.write_policy, 3);
    config.read_policy = ReadCode(section.read_policy, 0);
    return config;
}

Quillon::protocol::VolManDevConfig
RaidConfigCaster::ToVolManDevConfig(const OobVrocVolSection& section) const {
    RAIDCFG_TRACE("service::detail::RaidConfigCaster::ToVolManDevConfig");
    Quillon::protocol::VolManDevConfig config;
    config.controller_id = section.ctrlid;
    config.volume_id = section.volid;
    config.disks = ToSpans(section.disks);
    config.raid_level = section.raid_level;
    config.vol_name = section.vol_name;
    config.volume_size = ToVolumeSize(section.volume_size);
    config.strip_size = section.strip_size;
    return config;
}

Quillon::RaidConfig::VolRaidConfig
RaidConfigCaster::ToVolRaidConfig(const VrocWinVolSection& section) const {
    RAIDCFG_TRACE("service::detail::RaidConfigCaster::ToVolRaidConfig");
    Quillon::RaidConfig::VolRaidConfig config;
    config.raid_level = std::to_string(section.raid_level);
    config.vol_name = section.vol_name;
    config.disks = section.disks;
    // Kept with its unit and its case, intended: this backend reads the capacity itself.
    config.vol_capacity = section.vol_capacity;
    // The parser upper-cased it, so only an upper-case "K" is looked for.
    config.vol_strip_size = boost::algorithm::erase_first_copy(section.vol_strip_size, "K");
    config.raid_write_hole = section.RAID_write_hole;
    config.volume_id = std::to_string(section.volid);
    config.controller_id = std::to_string(section.ctrlid);
    return config;
}

Quillon::RaidConfig::M2ControllerObject
RaidConfigCaster::ToM2ControllerObject(const M2Section& section) const {
    RAIDCFG_TRACE("service::detail::RaidConfigCaster::ToM2ControllerObject");
    Quillon::RaidConfig::M2ControllerObject controller;
    controller.controller_id = section.m2id;
    controller.vol_name = section.vol_name;
    controller.raid_level = section.raid_level;
    controller.strip_size = section.strip_size;
    return controller;
}

std::vector<int> RaidConfigCaster::ToIntList(const std::string& text) const {
    std::vector<int> numbers;
    if (text.empty()) {
        return numbers;
    }
    // Empty pieces are kept, intended: the checker lets "1,,2" through, and the hole must reach
    // the backend as an id it refuses rather than vanish from the list.
    std::vector<std::string> pieces;
    boost::algorithm::split(pieces, text, boost::algorithm::is_any_of(","));
    numbers.reserve(pieces.size());
    for (const std::string& piece : pieces) {
        numbers.push_back(ReadListPiece(piece));
    }
    return numbers;
}

std::vector<int> RaidConfigCaster::ToHotSpareList(const std::string& global_hot_spares) const {
    return ToIntList(global_hot_spares);
}

std::string RaidConfigCaster::ToMegabytes(const std::string& size) const {
    RAIDCFG_TRACE("service::detail::RaidConfigCaster::ToMegabytes");
    std::string result;
    if (size.size() >= 2) {
        const auto mb = size.find("MB");
        if (mb != std::string::npos) {
            result = WholeMegabytes(size.substr(0, mb), 1.0);
        }
    }
    if (size.size() >= 2) {
        const auto gb = size.find("GB");
        if (gb != std::string::npos) {
            result = WholeMegabytes(size.substr(0, gb), 1024.0);
        }
    }
    RAIDCFG_LOG(4) << "result: " << result << "MB";
    return result;
}

std::vector<std::vector<int>> RaidConfigCaster::ToSpans(const std::string& disks) const {
    // Every ":"-separated piece is one group, even an empty one: "" gives a single empty group.
    // The checker refuses an empty disks text on every family that has spans, so only a caller
    // that skipped it meets that.
    std::vector<std::string> pieces;
    boost::algorithm::split(pieces, disks, boost::algorithm::is_any_of(":"));
    std::vector<std::vector<int>> groups;
    groups.reserve(pieces.size());
    for (const std::string& piece : pieces) {
        groups.push_back(ToIntList(piece));
    }
    return groups;
}

std::string RaidConfigCaster::ToVolumeSize(const std::string& volume_size) const {
    if (volume_size.find('B') != std::string::npos) {
        return ToMegabytes(volume_size);
    }
    // A share such as "50%" reaches the backend with its "%", intended: OOB_LSI takes it so.
    return volume_size;
}

} // namespace detail
} // namespace service
