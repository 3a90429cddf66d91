#include "model/raid_capacity.hpp"

#include "model/mode_setting.hpp"

namespace model {

std::size_t RaidCapacity::DiskCount(const std::vector<std::vector<int>>& spans) {
    std::size_t count = 0;
    for (const auto& span : spans) {
        count += span.size();
    }
    return count;
}

std::string RaidCapacity::Name(const std::string& level) {
    return "RAID " + level;
}

std::string RaidCapacity::Trim(const std::string& text) {
    const auto first = text.find_first_not_of(" \t");
    if (first == std::string::npos) {
        return {};
    }
    const auto last = text.find_last_not_of(" \t");
    return text.substr(first, last - first + 1);
}

long long RaidCapacity::UsableMegabytes(const std::string& raw_level,
                                        const std::vector<std::vector<int>>& spans,
                                        long long smallest_mb, std::string& error) {
    std::string level = ModeSetting::Lower(Trim(raw_level));
    if (level.rfind("raid", 0) == 0) {
        level = Trim(level.substr(4));
    }
    const auto n = static_cast<long long>(DiskCount(spans));
    const auto span_count = static_cast<long long>(spans.size());
    auto refuse = [&](const std::string& why) {
        error = Name(raw_level) + " " + why + ", got " + std::to_string(n);
        return -1LL;
    };
    if (level == "0") {
        return n >= 1 ? n * smallest_mb : refuse("needs at least 1 disk");
    }
    if (level == "1") {
        return n >= 2 && n % 2 == 0 ? n / 2 * smallest_mb : refuse("needs an even number of disks");
    }
    if (level == "5") {
        return n >= 3 ? (n - 1) * smallest_mb : refuse("needs at least 3 disks");
    }
    if (level == "6") {
        return n >= 4 ? (n - 2) * smallest_mb : refuse("needs at least 4 disks");
    }
    if (level == "10") {
        return n >= 4 && n % 2 == 0 ? n / 2 * smallest_mb
                                    : refuse("needs an even number of disks, at least 4");
    }
    if (level == "1triple") {
        return n >= 3 && n % 3 == 0 ? n / 3 * smallest_mb : refuse("needs a multiple of 3 disks");
    }
    if (level == "10triple") {
        return n >= 6 && n % 3 == 0 ? n / 3 * smallest_mb
                                    : refuse("needs a multiple of 3 disks, at least 6");
    }
    if (level == "50" || level == "60") {
        const long long parity = level == "50" ? 1 : 2;
        const long long per_span = parity + 2;
        if (span_count < 2) {
            error = Name(raw_level) + " needs at least 2 spans, got " + std::to_string(span_count);
            return -1;
        }
        long long usable = 0;
        for (const auto& span : spans) {
            if (static_cast<long long>(span.size()) < per_span) {
                error = Name(raw_level) + " needs at least " + std::to_string(per_span) +
                        " disks in every span, got " + std::to_string(span.size());
                return -1;
            }
            usable += (static_cast<long long>(span.size()) - parity) * smallest_mb;
        }
        return usable;
    }
    error = "RAID level \"" + raw_level + "\" is not known";
    return -1;
}

} // namespace model
