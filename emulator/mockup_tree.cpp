#include "emulator/mockup_tree.hpp"

#include <filesystem>
#include <fstream>
#include <sstream>

#include "emulator/request_text.hpp"

namespace emulator {

using nlohmann::json;
namespace fs = std::filesystem;

namespace {

constexpr const char* kServiceRoot = "/redfish/v1";

bool ReadText(const fs::path& file, std::string& text, std::string& error) {
    std::ifstream in(file, std::ios::binary);
    std::ostringstream buffer;
    buffer << in.rdbuf();
    if (!in) {
        error = "cannot read '" + file.string() + "'";
        return false;
    }
    text = buffer.str();
    return true;
}

// "/redfish/v1" and one segment per folder below the service root's folder.
std::string UriOf(const fs::path& relative) {
    std::string uri = kServiceRoot;
    for (const fs::path& part : relative) {
        const std::string name = part.string();
        if (!name.empty() && name != ".") {
            uri += "/" + name;
        }
    }
    return uri;
}

// Reads the index.json (and headers.json) of one folder, if it has one.
bool AddFolder(const fs::path& folder, const fs::path& base, MockupTree& tree, std::string& error) {
    std::error_code code;
    const fs::path index = folder / "index.json";
    if (!fs::is_regular_file(index, code)) {
        return true; // a folder on the way to resources, or one of other files ($metadata)
    }
    const std::string uri = UriOf(folder.lexically_relative(base));
    std::string text;
    if (!ReadText(index, text, error) || !tree.AddResource(uri, text, index.string(), error)) {
        return false;
    }
    const fs::path headers = folder / "headers.json";
    if (fs::is_regular_file(headers, code)) {
        if (!ReadText(headers, text, error) ||
            !tree.AddHeaders(uri, text, headers.string(), error)) {
            return false;
        }
    }
    return true;
}

} // namespace

bool MockupTree::Load(const std::string& dir, MockupTree& tree, std::string& error) {
    std::error_code code;
    const fs::path root(dir);
    if (!fs::is_directory(root, code)) {
        error = "'" + dir + "' is not a folder";
        return false;
    }
    // The long layout keeps the redfish/v1 folders; the short one starts at the service root.
    const fs::path base = fs::is_directory(root / "redfish", code) ? root / "redfish" / "v1" : root;
    if (!fs::is_regular_file(base / "index.json", code)) {
        error = "'" + dir + "' is not a Redfish mockup: '" + (base / "index.json").string() +
                "' is missing";
        return false;
    }
    tree = MockupTree();
    if (!AddFolder(base, base, tree, error)) {
        return false;
    }
    fs::recursive_directory_iterator walk(base, code);
    for (; !code && walk != fs::recursive_directory_iterator(); walk.increment(code)) {
        if (walk->is_directory(code) && !AddFolder(walk->path(), base, tree, error)) {
            return false;
        }
    }
    if (code) {
        error = "cannot read the folders of '" + dir + "': " + code.message();
        return false;
    }
    return true;
}

std::string MockupTree::Key(const std::string& uri) {
    std::string key = RequestText::DecodePath(uri);
    if (key.size() > 1 && key.back() == '/') {
        key.pop_back();
    }
    return key;
}

bool MockupTree::AddResource(const std::string& uri, const std::string& text,
                             const std::string& source, std::string& error) {
    json resource = json::parse(text, nullptr, false);
    if (resource.is_discarded() || !resource.is_object()) {
        error = "'" + source + "' does not hold a JSON object";
        return false;
    }
    resources_[Key(uri)] = std::move(resource);
    return true;
}

bool MockupTree::AddHeaders(const std::string& uri, const std::string& text,
                            const std::string& source, std::string& error) {
    const json recorded = json::parse(text, nullptr, false);
    if (recorded.is_discarded() || !recorded.is_object() ||
        (recorded.contains("GET") && !recorded["GET"].is_object())) {
        error = "'" + source + "' does not hold headers by method ({\"GET\": {...}})";
        return false;
    }
    Headers headers;
    if (recorded.contains("GET")) {
        for (const auto& [name, value] : recorded["GET"].items()) {
            headers.emplace_back(name, value.is_string() ? value.get<std::string>() : value.dump());
        }
    }
    get_headers_[Key(uri)] = std::move(headers);
    return true;
}

const json* MockupTree::Find(const std::string& key) const {
    const auto found = resources_.find(key);
    return found == resources_.end() ? nullptr : &found->second;
}

json* MockupTree::Find(const std::string& key) {
    const auto found = resources_.find(key);
    return found == resources_.end() ? nullptr : &found->second;
}

void MockupTree::Put(const std::string& key, json resource) {
    resources_[key] = std::move(resource);
}

std::size_t MockupTree::Erase(const std::string& key) {
    std::size_t erased = resources_.erase(key);
    get_headers_.erase(key);
    const std::string below = key + "/";
    for (auto entry = resources_.lower_bound(below);
         entry != resources_.end() && entry->first.compare(0, below.size(), below) == 0;) {
        get_headers_.erase(entry->first);
        entry = resources_.erase(entry);
        ++erased;
    }
    return erased;
}

MockupTree::Headers MockupTree::GetHeaders(const std::string& key) const {
    const auto found = get_headers_.find(key);
    return found == get_headers_.end() ? Headers() : found->second;
}

} // namespace emulator
