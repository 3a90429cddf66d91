// The writes of the mockup service: applied to the tree in memory, as a BMC applies them.
#include <algorithm>
#include <charconv>
#include <optional>
#include <utility>

#include "emulator/mockup_service.hpp"
#include "emulator/redfish_errors.hpp"
#include "emulator/request_text.hpp"
#include "emulator/resource_etag.hpp"

namespace emulator {

using nlohmann::json;

namespace {

constexpr const char* kServiceRoot = "/redfish/v1";
constexpr const char* kActions = "/Actions/";

HttpResponse Answer(int status, const std::string& location, const json& resource) {
    HttpResponse response;
    response.status = status;
    response.headers.emplace_back("Content-Type", "application/json");
    response.headers.emplace_back("ETag", ResourceEtag::Of(resource));
    if (!location.empty()) {
        response.headers.emplace_back("Location", location);
    }
    response.body = resource.dump();
    return response;
}

HttpResponse NoContent() {
    HttpResponse response;
    response.status = 204;
    return response;
}

bool HasMembers(const json& resource) {
    return resource.contains("Members") && resource["Members"].is_array();
}

// The tree key a {"@odata.id": uri} names; empty when the node is no such reference.
std::string ReferenceKey(const json& node) {
    if (!node.is_object() || !node.contains("@odata.id") || !node["@odata.id"].is_string()) {
        return {};
    }
    return MockupTree::Key(node["@odata.id"].get<std::string>());
}

// The whole number of an Id ("12"), when it is one.
std::optional<unsigned long> WholeNumber(const std::string& text) {
    unsigned long value = 0;
    const char* end = text.data() + text.size();
    const auto [stop, problem] = std::from_chars(text.data(), end, value);
    if (text.empty() || problem != std::errc() || stop != end) {
        return std::nullopt;
    }
    return value;
}

// An Id a client may choose: one path segment of its own.
bool UsableId(const std::string& id) {
    return !id.empty() && id != "." && id != ".." && id.find_first_of("/?#%") == std::string::npos;
}

// "#VolumeCollection.VolumeCollection" -> "#Volume.v1_0_0.Volume"; empty when the collection's
// type is not of that form.
std::string MemberType(const json& collection) {
    if (!collection.contains("@odata.type") || !collection["@odata.type"].is_string()) {
        return {};
    }
    const std::string type = collection["@odata.type"].get<std::string>();
    const std::string suffix = "Collection";
    const std::size_t dot = type.find('.');
    if (type.empty() || type.front() != '#' || dot == std::string::npos) {
        return {};
    }
    const std::string name = type.substr(1, dot - 1);
    if (type.substr(dot + 1) != name || name.size() <= suffix.size() ||
        name.compare(name.size() - suffix.size(), suffix.size(), suffix) != 0) {
        return {};
    }
    const std::string member = name.substr(0, name.size() - suffix.size());
    return "#" + member + ".v1_0_0." + member;
}

// Whether an Actions object (vendor actions under Oem included) lists this target.
bool ListsTarget(const json& node, const std::string& path) {
    if (!node.is_object()) {
        return false;
    }
    for (auto item = node.begin(); item != node.end(); ++item) {
        if (item.key() == "target" && item.value().is_string() &&
            MockupTree::Key(item.value().get<std::string>()) == path) {
            return true;
        }
        if (ListsTarget(item.value(), path)) {
            return true;
        }
    }
    return false;
}

} // namespace

HttpResponse MockupService::Write(const HttpRequest& request, const std::string& path) {
    const std::string& method = request.method;
    const std::string sessions = SessionsUri();
    if (method == "DELETE" && path.rfind(sessions + "/", 0) == 0 &&
        sessions_.Close(path.substr(sessions.size() + 1))) {
        return NoContent();
    }
    // The resource the request acts on: the target itself, or the owner of an action.
    const bool action = method == "POST" && path.find(kActions) != std::string::npos;
    const std::string owner = action ? ActionOwner(path) : path;
    if (owner.empty() || !Resolve(owner)) {
        return RedfishErrors::NotFound(path, std::nullopt);
    }
    const json* resource = tree_.Find(owner);
    const bool allowed = resource != nullptr && (action || method == "PATCH" ||
                                                 (method == "DELETE" && path != kServiceRoot) ||
                                                 (method == "POST" && HasMembers(*resource)));
    if (!allowed) {
        return RedfishErrors::NotAllowed(method, path, std::nullopt);
    }
    if (action && (!resource->contains("Actions") || !ListsTarget((*resource)["Actions"], path))) {
        const std::string name = path.substr(path.rfind(kActions) + std::string(kActions).size());
        return RedfishErrors::ActionNotSupported(name, owner, std::nullopt);
    }
    const std::string if_match = request.Header("If-Match");
    if (!if_match.empty() && if_match != "*" && if_match != ResourceEtag::Of(*resource)) {
        return RedfishErrors::PreconditionFailed(std::nullopt);
    }
    json body = json::object();
    if (method != "DELETE" && !request.body.empty()) {
        body = json::parse(request.body, nullptr, false);
        if (body.is_discarded() || !body.is_object()) {
            return RedfishErrors::MalformedJson(std::nullopt);
        }
    }
    if (action) {
        return NoContent(); // a recording cannot carry an action out
    }
    if (method == "POST") {
        return AddMember(path, std::move(body));
    }
    if (method == "PATCH") {
        return Patch(path, body);
    }
    return Delete(path);
}

std::string MockupService::AllowedMethods(const std::string& path) const {
    if (path.find(kActions) != std::string::npos) {
        return "POST";
    }
    const json* resource = tree_.Find(path);
    if (resource == nullptr || path == kServiceRoot) {
        return "GET, HEAD";
    }
    return HasMembers(*resource) ? "GET, HEAD, POST, PATCH, DELETE" : "GET, HEAD, PATCH, DELETE";
}

std::string MockupService::ActionOwner(const std::string& path) const {
    std::string owner = path.substr(0, path.find(kActions));
    if (!tree_.Find(owner)) {
        const std::size_t oem = owner.find("/Oem/");
        owner = oem == std::string::npos ? "" : owner.substr(0, oem);
    }
    return owner;
}

HttpResponse MockupService::AddMember(const std::string& collection, json body) {
    json& holder = *tree_.Find(collection);
    json& members = holder["Members"];
    auto taken = [&](const std::string& id) {
        const std::string key = collection + "/" + id;
        if (tree_.Find(key) != nullptr) {
            return true;
        }
        for (const json& member : members) {
            if (ReferenceKey(member) == key) {
                return true;
            }
        }
        return false;
    };
    std::string id;
    if (body.contains("Id") && body["Id"].is_string()) {
        id = body["Id"].get<std::string>();
    }
    if (!UsableId(id) || taken(id)) {
        // The next whole number after the highest one in use, as BMCs number new members.
        unsigned long next = 1;
        const std::string prefix = collection + "/";
        for (const json& member : members) {
            const std::string key = ReferenceKey(member);
            if (key.rfind(prefix, 0) == 0) {
                if (const auto number = WholeNumber(key.substr(prefix.size()))) {
                    next = std::max(next, *number + 1);
                }
            }
        }
        while (taken(std::to_string(next))) {
            ++next;
        }
        id = std::to_string(next);
    }
    const std::string uri = RequestText::EncodePath(collection + "/" + id);
    json resource = std::move(body);
    resource["@odata.id"] = uri;
    resource["Id"] = id;
    if (!resource.contains("Name")) {
        resource["Name"] = id;
    }
    const std::string type = MemberType(holder);
    if (!type.empty()) {
        resource["@odata.type"] = type;
    }
    members.push_back({{"@odata.id", uri}});
    holder["Members@odata.count"] = members.size();
    tree_.Put(MockupTree::Key(uri), resource);
    return Answer(201, uri, resource);
}

HttpResponse MockupService::Patch(const std::string& path, const json& body) {
    json& resource = *tree_.Find(path);
    json patched = resource;
    patched.merge_patch(body);
    // What names the resource stays as it is, as on a BMC.
    for (const char* fixed : {"@odata.id", "@odata.type", "Id"}) {
        if (resource.contains(fixed)) {
            patched[fixed] = resource[fixed];
        }
    }
    resource = std::move(patched);
    return Answer(200, "", resource);
}

HttpResponse MockupService::Delete(const std::string& path) {
    tree_.Erase(path);
    // No collection keeps a member that is gone.
    const std::string below = path + "/";
    for (auto& [key, resource] : tree_.resources()) {
        if (!HasMembers(resource)) {
            continue;
        }
        json& members = resource["Members"];
        const std::size_t before = members.size();
        for (auto member = members.begin(); member != members.end();) {
            const std::string target = ReferenceKey(*member);
            if (target == path || target.rfind(below, 0) == 0) {
                member = members.erase(member);
            } else {
                ++member;
            }
        }
        if (members.size() != before) {
            resource["Members@odata.count"] = members.size();
        }
    }
    return NoContent();
}

} // namespace emulator
