// The volume requests of every family, read into the one form the simulated controllers create
// volumes from. Texts arrive as the cast of the policy file leaves them; what cannot be read is
// refused here with a reason, what can be read but not built is left to VolumeCreator.
#include "sim/volume_request.hpp"

#include <algorithm>
#include <cctype>
#include <charconv>
#include <cstddef>

namespace sim {

namespace {

namespace rc = Quillon::RaidConfig;
namespace pc = Quillon::protocol;

std::string Trim(const std::string& text) {
    const auto first = text.find_first_not_of(" \t\r\n");
    if (first == std::string::npos) {
        return {};
    }
    const auto last = text.find_last_not_of(" \t\r\n");
    return text.substr(first, last - first + 1);
}

std::string Lower(std::string text) {
    std::transform(text.begin(), text.end(), text.begin(),
                   [](unsigned char c) { return static_cast<char>(std::tolower(c)); });
    return text;
}

bool AllDigits(const std::string& text) {
    return !text.empty() && std::all_of(text.begin(), text.end(),
                                        [](unsigned char c) { return std::isdigit(c) != 0; });
}

// A whole non-negative number that fits an int, digits only.
bool ParseNumber(const std::string& text, int& number) {
    if (!AllDigits(text)) {
        return false;
    }
    const char* end = text.data() + text.size();
    const auto [stop, problem] = std::from_chars(text.data(), end, number);
    return problem == std::errc() && stop == end;
}

// The texts of every refusal, in one place.
namespace message {

std::string NotADisk(const std::string& what, const std::string& list, const std::string& piece) {
    return what + " \"" + list + "\": \"" + piece + "\" is not a disk id";
}
std::string EmptyEntry(const std::string& what, const std::string& list) {
    return what + " \"" + list + "\" has an empty entry";
}
std::string NegativeDisk(const std::string& what, int id) {
    return what + ": " + std::to_string(id) + " is not a disk id";
}
std::string NoDisks() {
    return "the volume request names no disks";
}
std::string NoLevel() {
    return "the volume request names no RAID level";
}
std::string LevelNotNumber(const std::string& level) {
    return "RAID level \"" + level + "\" is not a number";
}
std::string ControllerNotNumber(const std::string& id) {
    return "controller id \"" + id + "\" is not a number";
}

} // namespace message

constexpr const char* kDisks = "disk list";
constexpr const char* kHotSpares = "hot spare list";
// The bays of an M.2 RAID adapter: its volumes, RAID 0 or RAID 1, span both.
constexpr int kM2Bays = 2;

bool IsRest(const std::string& text) {
    const std::string word = Trim(text);
    return word == "REST" || word == "rest";
}

// "1,2,3": ids with "," between them, each piece digits only (blanks around it allowed). The
// empty text is no disk at all.
bool ParseCommaList(const std::string& text, const char* what, std::vector<int>& ids,
                    std::string& error) {
    ids.clear();
    if (Trim(text).empty()) {
        return true;
    }
    std::size_t start = 0;
    while (true) {
        const std::size_t comma = text.find(',', start);
        const std::string piece = Trim(
            text.substr(start, comma == std::string::npos ? std::string::npos : comma - start));
        if (piece.empty()) {
            error = message::EmptyEntry(what, text);
            return false;
        }
        int id = 0;
        if (!ParseNumber(piece, id)) {
            error = message::NotADisk(what, text, piece);
            return false;
        }
        ids.push_back(id);
        if (comma == std::string::npos) {
            return true;
        }
        start = comma + 1;
    }
}

// "1,2 3" or "1, 2": the software RAID form, where "," and blanks both separate and a run of
// them counts as one.
bool ParseBlankList(const std::string& text, std::vector<int>& ids, std::string& error) {
    ids.clear();
    std::string piece;
    auto take = [&]() {
        if (piece.empty()) {
            return true;
        }
        int id = 0;
        if (!ParseNumber(piece, id)) {
            error = message::NotADisk(kDisks, text, piece);
            return false;
        }
        ids.push_back(id);
        piece.clear();
        return true;
    };
    for (const char c : text) {
        if (c == ',' || std::isspace(static_cast<unsigned char>(c)) != 0) {
            if (!take()) {
                return false;
            }
        } else {
            piece += c;
        }
    }
    return take();
}

// Disk ids of a record that holds them as numbers: none may be negative.
bool CheckIds(const std::vector<int>& ids, const char* what, std::string& error) {
    const auto bad = std::find_if(ids.begin(), ids.end(), [](int id) { return id < 0; });
    if (bad != ids.end()) {
        error = message::NegativeDisk(what, *bad);
        return false;
    }
    return true;
}

// Spans of a record that holds them as numbers; unless the request takes the rest, at least one
// disk must be named.
bool TakeSpans(const std::vector<std::vector<int>>& spans, bool rest, VolumeRequest& request,
               std::string& error) {
    request.rest_disks = rest;
    if (rest) {
        request.spans.clear();
        return true;
    }
    bool any = false;
    for (const auto& span : spans) {
        if (!CheckIds(span, kDisks, error)) {
            return false;
        }
        any = any || !span.empty();
    }
    if (!any) {
        error = message::NoDisks();
        return false;
    }
    request.spans = spans;
    return true;
}

// A disk list held as text: "REST" or "rest" takes the rest; otherwise one span.
bool TakeDiskText(const std::string& text, bool blanks_separate, VolumeRequest& request,
                  std::string& error) {
    if (IsRest(text)) {
        request.rest_disks = true;
        request.spans.clear();
        return true;
    }
    std::vector<int> ids;
    if (!(blanks_separate ? ParseBlankList(text, ids, error)
                          : ParseCommaList(text, kDisks, ids, error))) {
        return false;
    }
    if (ids.empty()) {
        error = message::NoDisks();
        return false;
    }
    request.rest_disks = false;
    request.spans = {ids};
    return true;
}

bool TakeLevel(const std::string& level, VolumeRequest& request, std::string& error) {
    request.raid_level = Trim(level);
    if (request.raid_level.empty()) {
        error = message::NoLevel();
        return false;
    }
    return true;
}

// The value of a run of at most eighteen digits.
long long Digits(const std::string& digits) {
    long long value = 0;
    std::from_chars(digits.data(), digits.data() + digits.size(), value);
    return value;
}

// A size with a fraction ("1.5GB", "931.5126953125GB") in whole megabytes, a fraction of a
// megabyte dropped as the policy cast drops it; every other text stays as it is, for
// VolumeCreator to read or refuse.
std::string SizeText(const std::string& raw) {
    std::string text = Trim(raw);
    const std::size_t dot = text.find('.');
    if (dot == std::string::npos) {
        return text;
    }
    const std::string whole = text.substr(0, dot);
    std::size_t end = dot + 1;
    while (end < text.size() && std::isdigit(static_cast<unsigned char>(text[end])) != 0) {
        ++end;
    }
    std::string fraction = text.substr(dot + 1, end - dot - 1);
    const std::string unit = Lower(Trim(text.substr(end)));
    long long factor = 0;
    if (unit.empty() || unit == "m" || unit == "mb") {
        factor = 1;
    } else if (unit == "g" || unit == "gb") {
        factor = 1024;
    } else if (unit == "t" || unit == "tb") {
        factor = 1024LL * 1024;
    }
    constexpr std::size_t kMaxWholeDigits = 9;
    if (factor == 0 || !AllDigits(whole) || whole.size() > kMaxWholeDigits || fraction.empty()) {
        return text;
    }
    // Twelve decimals are finer than a megabyte in any unit here, and keep the sums in range.
    fraction = fraction.substr(0, 12);
    long long scale = 1;
    for (std::size_t i = 0; i < fraction.size(); ++i) {
        scale *= 10;
    }
    const long long megabytes = Digits(whole) * factor + Digits(fraction) * factor / scale;
    return std::to_string(megabytes);
}

void TakeCommon(const std::string& name, const std::string& size, const std::string& strip,
                VolumeRequest& request) {
    request.name = name;
    request.size = SizeText(size);
    request.strip = Trim(strip);
}

} // namespace

bool VolumeRequest::From(const rc::VolumeObject& record, VolumeRequest& request,
                         std::string& error) {
    request = VolumeRequest();
    request.controller_id = record.controller_id;
    if (!TakeSpans(record.disks, record.rest_disks, request, error) ||
        !CheckIds(record.hot_spares, kHotSpares, error) ||
        !TakeLevel(record.raid_level, request, error)) {
        return false;
    }
    request.hot_spares = record.hot_spares;
    TakeCommon(record.vol_name, record.volume_size, record.strip_size, request);
    request.write_policy = record.write_policy;
    request.read_policy = record.read_policy;
    request.io_policy = record.io_policy;
    request.access_policy = record.access_policy;
    request.cache_policy = record.cache_policy;
    request.initialization = record.initialization;
    return true;
}

bool VolumeRequest::From(const pc::MicrochipConfig& record, VolumeRequest& request,
                         std::string& error) {
    request = VolumeRequest();
    request.controller_id = record.controller_id;
    if (!TakeDiskText(record.disks, false, request, error) ||
        !ParseCommaList(record.hot_spares, kHotSpares, request.hot_spares, error) ||
        !TakeLevel(record.raid_level, request, error)) {
        return false;
    }
    TakeCommon(record.vol_name, record.volume_size, record.strip_size, request);
    request.io_policy = std::max(record.io_policy, 0); // -1: not given
    return true;
}

bool VolumeRequest::From(const rc::M2ControllerObject& record, VolumeRequest& request,
                         std::string& error) {
    request = VolumeRequest();
    request.controller_id = record.controller_id;
    request.rest_disks = true;
    // A saved M.2 volume names no disks; taking every free disk would grow a mirror of two
    // into four on the way back.
    request.rest_count = kM2Bays;
    if (!TakeLevel(record.raid_level, request, error)) {
        return false;
    }
    TakeCommon(record.vol_name, "", record.strip_size, request);
    return true;
}

bool VolumeRequest::From(const pc::OobMicroConfig& record, VolumeRequest& request,
                         std::string& error) {
    request = VolumeRequest();
    request.controller_id = record.controller_id;
    if (!TakeSpans(record.disks, false, request, error) ||
        !CheckIds(record.hot_spares, kHotSpares, error) ||
        !TakeLevel(record.raid_level, request, error)) {
        return false;
    }
    // The cast hands this family "1T" and "10T" for the triple-mirror levels.
    if (request.raid_level == "1T") {
        request.raid_level = "1triple";
    } else if (request.raid_level == "10T") {
        request.raid_level = "10triple";
    }
    request.hot_spares = record.hot_spares;
    TakeCommon(record.vol_name, record.volume_size, record.strip_size, request);
    request.write_policy = record.write_policy;
    request.read_policy = record.read_policy;
    return true;
}

bool VolumeRequest::From(const pc::VolManDevConfig& record, VolumeRequest& request,
                         std::string& error) {
    request = VolumeRequest();
    request.controller_id = record.controller_id;
    if (!TakeSpans(record.disks, false, request, error) ||
        !TakeLevel(record.raid_level, request, error)) {
        return false;
    }
    TakeCommon(record.vol_name, record.volume_size, record.strip_size, request);
    return true;
}

bool VolumeRequest::From(const rc::VolRaidConfig& record, VolumeRequest& request,
                         std::string& error) {
    request = VolumeRequest();
    const std::string controller = Trim(record.controller_id);
    if (!ParseNumber(controller, request.controller_id)) {
        request.controller_id = -1;
        error = message::ControllerNotNumber(record.controller_id);
        return false;
    }
    if (!TakeDiskText(record.disks, true, request, error) ||
        !TakeLevel(record.raid_level, request, error)) {
        return false;
    }
    if (!AllDigits(request.raid_level)) {
        error = message::LevelNotNumber(record.raid_level);
        return false;
    }
    // The cast has cut the strip size's "K": what is left is kilobytes.
    TakeCommon(record.vol_name, record.vol_capacity, record.vol_strip_size, request);
    return true;
}

} // namespace sim
