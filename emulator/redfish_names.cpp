#include "emulator/redfish_names.hpp"

#include <algorithm>
#include <array>
#include <cctype>
#include <utility>

namespace emulator {

namespace {

std::string Lower(std::string text) {
    std::transform(text.begin(), text.end(), text.begin(),
                   [](unsigned char c) { return static_cast<char>(std::tolower(c)); });
    return text;
}

// The model's level words that have a standard RAIDType, in policy file form.
constexpr std::array<std::pair<const char*, const char*>, 10> kLevels{{
    {"0", "RAID0"},
    {"1", "RAID1"},
    {"5", "RAID5"},
    {"6", "RAID6"},
    {"10", "RAID10"},
    {"50", "RAID50"},
    {"60", "RAID60"},
    {"00", "RAID00"},
    {"1triple", "RAID1Triple"},
    {"10triple", "RAID10Triple"},
}};

constexpr std::array<const char*, 3> kWriteCache{"WriteThrough", "ProtectedWriteBack",
                                                 "UnprotectedWriteBack"};
constexpr std::array<const char*, 3> kReadCache{"Off", "ReadAhead", "AdaptiveReadAhead"};

int WriteBase(const std::string& family) {
    // The out-of-band Microchip family counts its write policy codes from 1.
    return family == "OOB_MICROCHIP" ? 1 : 0;
}

} // namespace

std::string RedfishNames::RaidType(const std::string& level) {
    std::string word = Lower(level);
    if (word.rfind("raid", 0) == 0) {
        word = word.substr(4);
    }
    for (const auto& [model, standard] : kLevels) {
        if (word == model) {
            return standard;
        }
    }
    return {};
}

std::string RedfishNames::LevelOfRaidType(const std::string& raid_type) {
    for (const auto& [model, standard] : kLevels) {
        if (raid_type == standard) {
            return model;
        }
    }
    return {};
}

std::string RedfishNames::WriteCachePolicy(const std::string& family, int code) {
    const int index = code - WriteBase(family);
    if (index < 0 || index >= static_cast<int>(kWriteCache.size())) {
        return {};
    }
    return kWriteCache.at(static_cast<std::size_t>(index));
}

std::optional<int> RedfishNames::WritePolicyCode(const std::string& family,
                                                 const std::string& name) {
    for (std::size_t i = 0; i < kWriteCache.size(); ++i) {
        if (name == kWriteCache.at(i)) {
            return static_cast<int>(i) + WriteBase(family);
        }
    }
    return std::nullopt;
}

std::string RedfishNames::ReadCachePolicy(int code) {
    if (code < 0 || code >= static_cast<int>(kReadCache.size())) {
        return {};
    }
    return kReadCache.at(static_cast<std::size_t>(code));
}

std::optional<int> RedfishNames::ReadPolicyCode(const std::string& name) {
    for (std::size_t i = 0; i < kReadCache.size(); ++i) {
        if (name == kReadCache.at(i)) {
            return static_cast<int>(i);
        }
    }
    return std::nullopt;
}

std::string RedfishNames::EncryptionMode(const std::string& ekm_mode) {
    const std::string word = Lower(ekm_mode);
    if (word == "none") {
        return "Disabled";
    }
    if (word == "local") {
        return "UseLocalKey";
    }
    if (word == "external") {
        return "UseExternalKey";
    }
    return {};
}

std::string RedfishNames::EkmWord(const std::string& encryption_mode) {
    if (encryption_mode == "Disabled") {
        return "none";
    }
    if (encryption_mode == "UseLocalKey") {
        return "local";
    }
    if (encryption_mode == "UseExternalKey") {
        return "external";
    }
    return {};
}

std::string RedfishNames::Manufacturer(const sim::Controller& controller) {
    const std::string& family = controller.family;
    if (family == "OOB_LSI") {
        return "Broadcom";
    }
    if (family == "OOB_MICROCHIP") {
        return "Microchip";
    }
    if (family == "OOB_M2") {
        return "Marvell";
    }
    if (family == "OOB_VROC") {
        return "Intel";
    }
    return controller.vendor; // OOB_CFC: marked in Oem, so any vendor is fine here
}

std::string RedfishNames::Model(const sim::Controller& controller) {
    std::string model = controller.model.empty() ? controller.product_name : controller.model;
    if (controller.family != "OOB_VROC" || model.find("VROC") != std::string::npos) {
        return model;
    }
    // A client tells VROC from other Intel controllers by the model.
    return model.empty() ? "VROC" : "VROC " + model;
}

std::string RedfishNames::StorageId(const sim::Controller& controller) {
    return controller.family + "-" + std::to_string(controller.id);
}

bool RedfishNames::IsServedFamily(const std::string& family) {
    return family == "OOB_LSI" || family == "OOB_CFC" || family == "OOB_M2" ||
           family == "OOB_MICROCHIP" || family == "OOB_VROC";
}

} // namespace emulator
