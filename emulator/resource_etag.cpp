#include "emulator/resource_etag.hpp"

#include <array>
#include <cstdint>

namespace emulator {

std::string ResourceEtag::Of(const nlohmann::json& resource) {
    nlohmann::json body = resource;
    if (body.is_object()) {
        body.erase("@odata.etag");
    }
    // FNV-1a, 64 bits: stable across runs, so an ETag survives a restart of the emulator.
    std::uint64_t hash = 14695981039346656037ULL;
    for (unsigned char c : body.dump()) {
        hash ^= c;
        hash *= 1099511628211ULL;
    }
    static constexpr std::array<char, 16> kDigits{'0', '1', '2', '3', '4', '5', '6', '7',
                                                  '8', '9', 'a', 'b', 'c', 'd', 'e', 'f'};
    std::string text = "\"";
    for (int shift = 60; shift >= 0; shift -= 4) {
        text.push_back(kDigits.at((hash >> static_cast<unsigned int>(shift)) & 0xFU));
    }
    return text + "\"";
}

} // namespace emulator
