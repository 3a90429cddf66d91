#include "sim/volume_creator.hpp"

#include <algorithm>
#include <cctype>
#include <charconv>
#include <set>

#include "model/mode_setting.hpp"
#include "model/raid_capacity.hpp"

namespace sim {

using Quillon::RaidConfig::RAID_DISK_NOT_FOUND;
using Quillon::RaidConfig::RAID_DISK_STATE_ERROR;
using Quillon::RaidConfig::RAID_OK;
using Quillon::RaidConfig::RAID_OPERATION_FAILED;
using Quillon::RaidConfig::RaidErrorCode;

namespace {

constexpr int kDefaultStripKb = 256;

std::string Trim(const std::string& text) {
    return model::RaidCapacity::Trim(text);
}

// A whole number at the front of text; the rest is left in unit.
bool SplitNumber(const std::string& text, long long& number, std::string& unit) {
    const char* begin = text.data();
    const char* end = begin + text.size();
    const auto [stop, problem] = std::from_chars(begin, end, number);
    if (problem != std::errc() || number < 0) {
        return false;
    }
    unit = model::ModeSetting::Lower(Trim(std::string(stop, end)));
    return true;
}

} // namespace

bool VolumeCreator::ParseSize(const std::string& raw, long long all_mb, long long& megabytes,
                              std::string& error) {
    const std::string text = Trim(raw);
    if (text.empty()) {
        megabytes = all_mb;
        return true;
    }
    long long number = 0;
    std::string unit;
    if (!SplitNumber(text, number, unit)) {
        error = "volume size \"" + raw + "\" is not a size";
        return false;
    }
    if (unit == "%") {
        if (number < 1 || number > 100) {
            error = "volume size \"" + raw + "\" is not a share from 1% to 100%";
            return false;
        }
        megabytes = all_mb * number / 100;
        return true;
    }
    long long factor = 0;
    if (unit.empty() || unit == "m" || unit == "mb") {
        factor = 1;
    } else if (unit == "g" || unit == "gb") {
        factor = 1024;
    } else if (unit == "t" || unit == "tb") {
        factor = 1024LL * 1024;
    } else {
        error = "volume size \"" + raw + "\" has an unknown unit";
        return false;
    }
    megabytes = number * factor;
    return true;
}

bool VolumeCreator::ParseStrip(const std::string& raw, int& kilobytes, std::string& error) {
    const std::string text = Trim(raw);
    if (text.empty()) {
        kilobytes = 0;
        return true;
    }
    long long number = 0;
    std::string unit;
    if (!SplitNumber(text, number, unit) || number > 1024LL * 1024) {
        error = "strip size \"" + raw + "\" is not a size";
        return false;
    }
    if (unit.empty() || unit == "k" || unit == "kb") {
        kilobytes = static_cast<int>(number);
    } else if (unit == "m" || unit == "mb") {
        kilobytes = static_cast<int>(number * 1024);
    } else {
        error = "strip size \"" + raw + "\" has an unknown unit";
        return false;
    }
    return true;
}

RaidErrorCode VolumeCreator::Create(Controller& controller, const VolumeRequest& request,
                                    std::string& error) {
    auto find_disk = [&controller](int id) -> Disk* {
        for (Disk& disk : controller.disks) {
            if (disk.id == id) {
                return &disk;
            }
        }
        return nullptr;
    };

    std::vector<std::vector<int>> spans = request.spans;
    if (request.rest_disks) {
        std::vector<int> rest;
        for (const Disk& disk : controller.disks) {
            const bool spare = std::find(request.hot_spares.begin(), request.hot_spares.end(),
                                         disk.id) != request.hot_spares.end();
            if (disk.state == "UGood" && !spare) {
                rest.push_back(disk.id);
            }
        }
        std::sort(rest.begin(), rest.end());
        if (request.rest_count > 0) {
            if (rest.size() < static_cast<std::size_t>(request.rest_count)) {
                error = "the volume needs " + std::to_string(request.rest_count) +
                        " unconfigured-good disks, the controller has " +
                        std::to_string(rest.size());
                return RAID_OPERATION_FAILED;
            }
            rest.resize(static_cast<std::size_t>(request.rest_count));
        }
        spans = {rest};
    }
    spans.erase(std::remove_if(spans.begin(), spans.end(),
                               [](const std::vector<int>& span) { return span.empty(); }),
                spans.end());
    if (model::RaidCapacity::DiskCount(spans) == 0) {
        error = "no unconfigured-good disk to build the volume from";
        return RAID_OPERATION_FAILED;
    }

    std::set<int> seen;
    long long smallest = -1;
    for (const auto& span : spans) {
        for (int id : span) {
            Disk* disk = find_disk(id);
            if (disk == nullptr) {
                error = "disk " + std::to_string(id) + " does not exist";
                return RAID_DISK_NOT_FOUND;
            }
            if (!seen.insert(id).second) {
                error = "disk " + std::to_string(id) + " is named twice";
                return RAID_OPERATION_FAILED;
            }
            if (disk->state != "UGood") {
                error = "disk " + std::to_string(id) + " is " + disk->state + ", not UGood";
                return RAID_DISK_STATE_ERROR;
            }
            smallest = smallest < 0 ? disk->capacity_mb : std::min(smallest, disk->capacity_mb);
        }
    }
    for (int id : request.hot_spares) {
        Disk* disk = find_disk(id);
        if (disk == nullptr) {
            error = "hot spare disk " + std::to_string(id) + " does not exist";
            return RAID_DISK_NOT_FOUND;
        }
        if (seen.count(id) != 0) {
            error = "disk " + std::to_string(id) + " cannot be a member and a hot spare";
            return RAID_OPERATION_FAILED;
        }
        if (disk->state != "UGood") {
            error = "hot spare disk " + std::to_string(id) + " is " + disk->state + ", not UGood";
            return RAID_DISK_STATE_ERROR;
        }
    }

    if (!controller.raid_levels.empty()) {
        const std::string wanted = model::ModeSetting::Lower(Trim(request.raid_level));
        const bool offered =
            std::any_of(controller.raid_levels.begin(), controller.raid_levels.end(),
                        [&wanted](const std::string& level) {
                            return model::ModeSetting::Lower(level) == wanted;
                        });
        if (!offered) {
            error =
                "the controller does not offer " + model::RaidCapacity::Name(request.raid_level);
            return RAID_OPERATION_FAILED;
        }
    }
    const long long usable =
        model::RaidCapacity::UsableMegabytes(request.raid_level, spans, smallest, error);
    if (usable < 0) {
        return RAID_OPERATION_FAILED;
    }
    long long size_mb = 0;
    if (!ParseSize(request.size, usable, size_mb, error)) {
        return RAID_OPERATION_FAILED;
    }
    if (size_mb > usable || size_mb <= 0) {
        error = "volume size " + std::to_string(size_mb) + " MB does not fit the " +
                std::to_string(usable) + " MB the disks give";
        return RAID_OPERATION_FAILED;
    }
    int strip_kb = 0;
    if (!ParseStrip(request.strip, strip_kb, error)) {
        return RAID_OPERATION_FAILED;
    }
    if (strip_kb == 0) {
        strip_kb =
            std::clamp(kDefaultStripKb, controller.min_stripe_kb > 0 ? controller.min_stripe_kb : 1,
                       controller.max_stripe_kb > 0 ? controller.max_stripe_kb : kDefaultStripKb);
    }
    if ((strip_kb & (strip_kb - 1)) != 0 ||
        (controller.min_stripe_kb > 0 && strip_kb < controller.min_stripe_kb) ||
        (controller.max_stripe_kb > 0 && strip_kb > controller.max_stripe_kb)) {
        error = "strip size " + std::to_string(strip_kb) + "K is not one the controller takes (" +
                std::to_string(controller.min_stripe_kb) + "K to " +
                std::to_string(controller.max_stripe_kb) + "K, powers of two)";
        return RAID_OPERATION_FAILED;
    }

    Volume volume;
    while (std::any_of(controller.volumes.begin(), controller.volumes.end(),
                       [&volume](const Volume& other) { return other.id == volume.id; })) {
        ++volume.id;
    }
    volume.name = request.name;
    volume.raid_level = Trim(request.raid_level);
    volume.spans = spans;
    volume.size_mb = size_mb;
    volume.strip_kb = strip_kb;
    volume.write_policy = request.write_policy;
    volume.read_policy = request.read_policy;
    volume.io_policy = request.io_policy;
    volume.access_policy = request.access_policy;
    volume.cache_policy = request.cache_policy;
    volume.initialization = request.initialization;
    volume.dedicated_spares = request.hot_spares;
    for (int id : seen) {
        find_disk(id)->state = "Online";
    }
    for (int id : request.hot_spares) {
        find_disk(id)->state = "DHS";
    }
    controller.volumes.push_back(volume);
    return RAID_OK;
}

} // namespace sim
