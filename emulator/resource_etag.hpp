#pragma once

#include <string>

#include <nlohmann/json.hpp>

namespace emulator {

// The strong ETag both services give a resource, so that a client's If-Match and If-None-Match
// work alike on a machine file and on a recorded tree.
class ResourceEtag {
public:
    // A quoted hash of the body without its @odata.etag: stable across runs and restarts.
    static std::string Of(const nlohmann::json& resource);
};

} // namespace emulator
