// The Redfish client's reads: the cache, ETags and $expand (on the service or link by link).
#include <algorithm>
#include <map>
#include <string>
#include <utility>

#include "collaborators/log.hpp"
#include "redfish/redfish_client.hpp"
#include "redfish/redfish_client_detail.hpp"

namespace redfish {

using Quillon::RaidConfig::RAID_AUTH_FAILED;
using Quillon::RaidConfig::RAID_CONNECT_FAILED;
using Quillon::RaidConfig::RAID_REST_FAILED;

namespace {

bool BoolField(const nlohmann::json& object, const char* key) {
    const auto found = object.find(key);
    return found != object.end() && found->is_boolean() && found->get<bool>();
}

// Properties that client-side expansion and cache seeding leave alone: "Links" (references to
// related resources, not parts of this one) and annotations ("@odata.id", "Members@odata.count",
// "@Redfish.Settings", ...).
bool SkippedProperty(const std::string& key) {
    return key == "Links" || key.find('@') != std::string::npos;
}

// The @odata.id of an object that stands for a resource of its own ("#" marks a part of another
// resource); empty otherwise.
std::string ResourceId(const nlohmann::json& object) {
    const auto id = object.find("@odata.id");
    if (id == object.end() || !id->is_string()) {
        return std::string();
    }
    const std::string text = id->get<std::string>();
    return text.find('#') == std::string::npos ? text : std::string();
}

// {"@odata.id": "/redfish/v1/..."} alone: a link still to be followed.
bool BareLink(const nlohmann::json& object) {
    return object.size() == 1 && !ResourceId(object).empty();
}

std::string ETagOf(const nlohmann::json& value, const HttpResponse* response) {
    if (response != nullptr) {
        std::string header = response->Header("etag");
        if (!header.empty()) {
            return header;
        }
    }
    if (value.is_object()) {
        const auto etag = value.find("@odata.etag");
        if (etag != value.end() && etag->is_string()) {
            return etag->get<std::string>();
        }
    }
    return std::string();
}

void SeedProperties(const nlohmann::json& node, int depth, int levels,
                    std::map<std::string, nlohmann::json>& cache,
                    std::map<std::string, std::string>& etags);

// One value inside an expanded answer, depth resources below its top.
void SeedValue(const nlohmann::json& value, int depth, int levels,
               std::map<std::string, nlohmann::json>& cache,
               std::map<std::string, std::string>& etags) {
    if (value.is_array()) {
        for (const auto& element : value) {
            SeedValue(element, depth, levels, cache, etags);
        }
        return;
    }
    if (!value.is_object()) {
        return;
    }
    const std::string id = ResourceId(value);
    if (id.empty() || value.size() == 1) {
        SeedProperties(value, depth, levels, cache, etags);
        return;
    }
    if (depth + 1 < levels) {
        SeedProperties(value, depth + 1, levels, cache, etags);
    } else if (depth + 1 == levels && cache.find(id) == cache.end()) {
        cache[id] = value;
        const std::string etag = ETagOf(value, nullptr);
        if (!etag.empty()) {
            etags[id] = etag;
        }
    }
}

void SeedProperties(const nlohmann::json& node, int depth, int levels,
                    std::map<std::string, nlohmann::json>& cache,
                    std::map<std::string, std::string>& etags) {
    if (node.is_array()) {
        SeedValue(node, depth, levels, cache, etags);
        return;
    }
    if (!node.is_object()) {
        return;
    }
    for (const auto& property : node.items()) {
        if (!SkippedProperty(property.key())) {
            SeedValue(property.value(), depth, levels, cache, etags);
        }
    }
}

} // namespace

void RedfishClient::DropCache() {
    cache_.clear();
    etags_.clear();
}

void RedfishClient::Store(const std::string& path, const nlohmann::json& value,
                          const HttpResponse& response) {
    cache_[path] = value;
    const std::string etag = ETagOf(value, &response);
    if (etag.empty()) {
        etags_.erase(path);
    } else {
        etags_[path] = etag;
    }
}

RedfishStatus RedfishClient::Get(const std::string& path, nlohmann::json& out) {
    Budget budget = NewBudget();
    return GetWithin(path, budget, out);
}

RedfishStatus RedfishClient::GetWithin(const std::string& path, Budget& budget,
                                       nlohmann::json& out) {
    const auto hit = cache_.find(path);
    if (hit != cache_.end()) {
        out = hit->second;
        return RedfishStatus{};
    }
    HttpResponse response;
    RedfishStatus status = Send("GET", path, "", budget, response);
    if (!status.ok()) {
        return status;
    }
    if (response.status >= 300) {
        return Failure("GET", path, response);
    }
    nlohmann::json value;
    if (!detail::ParseJson(response.body, value)) {
        return Fail(RAID_REST_FAILED, detail::MalformedJson(authority_, "GET", path).text);
    }
    Store(path, value, response);
    out = std::move(value);
    return RedfishStatus{};
}

std::string RedfishClient::ExpandQuery(int levels, int& server_levels) const {
    server_levels = 0;
    if (!service_root_.is_object()) {
        return std::string();
    }
    const auto features = service_root_.find("ProtocolFeaturesSupported");
    if (features == service_root_.end() || !features->is_object()) {
        return std::string();
    }
    const auto expand = features->find("ExpandQuery");
    if (expand == features->end() || !expand->is_object()) {
        return std::string();
    }
    // "." expands every link outside "Links" (what this client wants); "*" expands those in
    // "Links" as well, more than needed but still the same resources.
    const std::string option = BoolField(*expand, "NoLinks")     ? "."
                               : BoolField(*expand, "ExpandAll") ? "*"
                                                                 : "";
    if (option.empty()) {
        return std::string();
    }
    if (!BoolField(*expand, "Levels")) {
        server_levels = 1;
        return "$expand=" + option;
    }
    int max_levels = 1;
    const auto max = expand->find("MaxLevels");
    if (max != expand->end() && max->is_number_integer()) {
        max_levels = std::max(1, std::min(max->get<int>(), 6));
    }
    server_levels = std::min(levels, max_levels);
    // DSP0266 writes the option as "$expand=.($levels=2)": "$", "(", ")", "=" and "." are all
    // valid in a URI query (RFC 3986 sub-delims and unreserved), so it is sent as written.
    return "$expand=" + option + "($levels=" + std::to_string(server_levels) + ")";
}

bool RedfishClient::ExpandSupported() const {
    int server_levels = 0;
    return !expand_refused_ && !ExpandQuery(1, server_levels).empty();
}

RedfishStatus RedfishClient::GetExpanded(const std::string& path, int levels, nlohmann::json& out) {
    if (levels <= 0) {
        return Get(path, out);
    }
    const std::string key = "expand(" + std::to_string(levels) + ") " + path;
    const auto hit = cache_.find(key);
    if (hit != cache_.end()) {
        out = hit->second;
        return RedfishStatus{};
    }
    Budget budget = NewBudget();
    nlohmann::json value;
    bool fetched = false;
    int server_levels = 0;
    const std::string query = expand_refused_ ? std::string() : ExpandQuery(levels, server_levels);
    if (!query.empty()) {
        const std::string full = path + (path.find('?') == std::string::npos ? "?" : "&") + query;
        HttpResponse response;
        RedfishStatus status = Send("GET", full, "", budget, response);
        if (!status.ok()) {
            return status;
        }
        if (response.status == 400 || response.status == 501) {
            RAIDCFG_LOG(3) << "Redfish: BMC " << authority_ << " answers HTTP " << response.status
                           << " to $expand; links are followed one by one from now on";
            expand_refused_ = true;
        } else if (response.status >= 300) {
            return Failure("GET", full, response);
        } else {
            if (!detail::ParseJson(response.body, value)) {
                return Fail(RAID_REST_FAILED, detail::MalformedJson(authority_, "GET", full).text);
            }
            fetched = true;
            SeedCache(value, 0, server_levels);
        }
    }
    if (!fetched) {
        RedfishStatus status = GetWithin(path, budget, value);
        if (!status.ok()) {
            return status;
        }
    }
    // Also after a service-side expansion: what the service left unexpanded (a service that
    // ignores $expand, or expands fewer levels than asked) is followed here; a complete answer
    // costs nothing more.
    RedfishStatus status = ExpandProperties(value, levels, budget);
    if (!status.ok()) {
        return status;
    }
    cache_[key] = value;
    out = std::move(value);
    return RedfishStatus{};
}

RedfishStatus RedfishClient::ExpandProperties(nlohmann::json& resource, int levels,
                                              Budget& budget) {
    if (levels <= 0) {
        return RedfishStatus{};
    }
    if (resource.is_array()) {
        for (auto& element : resource) {
            RedfishStatus status = ExpandValue(element, levels, budget);
            if (!status.ok()) {
                return status;
            }
        }
        return RedfishStatus{};
    }
    if (!resource.is_object()) {
        return RedfishStatus{};
    }
    for (auto& property : resource.items()) {
        if (SkippedProperty(property.key()) ||
            (!property.value().is_object() && !property.value().is_array())) {
            continue;
        }
        RedfishStatus status = ExpandValue(property.value(), levels, budget);
        if (!status.ok()) {
            return status;
        }
    }
    return RedfishStatus{};
}

RedfishStatus RedfishClient::ExpandValue(nlohmann::json& value, int levels, Budget& budget) {
    if (value.is_array()) {
        return ExpandProperties(value, levels, budget);
    }
    if (!value.is_object()) {
        return RedfishStatus{};
    }
    if (BareLink(value)) {
        const std::string id = ResourceId(value);
        nlohmann::json linked;
        RedfishStatus status = GetWithin(id, budget, linked);
        if (!status.ok()) {
            // The BMC gone, time out or credentials refused end the read; a link that answers
            // with an error is left as it stands.
            if (status.code == RAID_CONNECT_FAILED || status.code == RAID_AUTH_FAILED) {
                return status;
            }
            RAIDCFG_LOG(2) << "Redfish: link " << id << " left unexpanded: " << status.text;
            return RedfishStatus{};
        }
        value = std::move(linked);
        return ExpandProperties(value, levels - 1, budget);
    }
    // An expanded resource is one level further; any other object (Status, Oem, a "#" part of
    // this resource) belongs to the same level.
    return ExpandProperties(value, ResourceId(value).empty() ? levels : levels - 1, budget);
}

void RedfishClient::SeedCache(const nlohmann::json& node, int depth, int levels) {
    SeedProperties(node, depth, levels, cache_, etags_);
}

} // namespace redfish
