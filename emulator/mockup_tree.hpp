#pragma once

#include <map>
#include <string>
#include <utility>
#include <vector>

#include <nlohmann/json.hpp>

namespace emulator {

// A recorded Redfish service in DMTF's mockup layout, held in memory: one folder per URI with
// its index.json (the resource) and, optionally, headers.json (the recorded answer headers).
// The folders may start at /redfish/v1 (DIR/index.json is the service root) or carry the
// redfish/v1 folders themselves. Changes stay in memory; the folder is only ever read.
class MockupTree {
public:
    using Headers = std::vector<std::pair<std::string, std::string>>;

    // Reads every resource under dir. False with a one-line reason that names the folder or
    // file at fault.
    static bool Load(const std::string& dir, MockupTree& tree, std::string& error);

    // The key of a URI in the tree: percent-decoded, one trailing "/" removed
    // ("/redfish/v1/" -> "/redfish/v1").
    static std::string Key(const std::string& uri);

    // Adds the resource at uri from the text of its index.json; source names the file in the
    // reason when the text is not a JSON object.
    bool AddResource(const std::string& uri, const std::string& text, const std::string& source,
                     std::string& error);
    // Adds the recorded headers of uri from the text of its headers.json ({"GET": {...}}).
    bool AddHeaders(const std::string& uri, const std::string& text, const std::string& source,
                    std::string& error);

    // The resource with that key; nullptr when there is none.
    const nlohmann::json* Find(const std::string& key) const;
    nlohmann::json* Find(const std::string& key);
    // Adds or replaces the resource with that key.
    void Put(const std::string& key, nlohmann::json resource);
    // Removes the resource with that key and every resource below it; how many went.
    std::size_t Erase(const std::string& key);
    // The recorded headers of GET answers of the resource with that key.
    Headers GetHeaders(const std::string& key) const;

    // Every resource by key, in key order.
    std::map<std::string, nlohmann::json>& resources() { return resources_; }
    const std::map<std::string, nlohmann::json>& resources() const { return resources_; }

private:
    std::map<std::string, nlohmann::json> resources_;
    std::map<std::string, Headers> get_headers_;
};

} // namespace emulator
