#include "emulator/mockup_service.hpp"

#include <utility>

#include <strings.h>

#include "emulator/expander.hpp"
#include "emulator/protocol_headers.hpp"
#include "emulator/redfish_errors.hpp"
#include "emulator/request_text.hpp"
#include "emulator/resource_etag.hpp"

namespace emulator {

using nlohmann::json;

namespace {

constexpr const char* kServiceRoot = "/redfish/v1";
constexpr const char* kDefaultSessions = "/redfish/v1/SessionService/Sessions";

// Replaces a header of that name (in any letter case), or adds it.
void SetHeader(HttpResponse& response, const std::string& name, const std::string& value) {
    for (auto& [key, old] : response.headers) {
        if (strcasecmp(key.c_str(), name.c_str()) == 0) {
            old = value;
            return;
        }
    }
    response.headers.emplace_back(name, value);
}

bool HasHeader(const HttpResponse& response, const std::string& name) {
    for (const auto& [key, value] : response.headers) {
        if (strcasecmp(key.c_str(), name.c_str()) == 0) {
            return true;
        }
    }
    return false;
}

// Recorded headers the HTTP layer or the service itself owns: framing, and the ETag, which
// follows the body as it changes.
bool OwnHeader(const std::string& name) {
    for (const char* own :
         {"ETag", "Content-Length", "Transfer-Encoding", "Connection", "Keep-Alive"}) {
        if (strcasecmp(name.c_str(), own) == 0) {
            return true;
        }
    }
    return false;
}

// The key in ExpandQuery that offers this form of $expand.
const char* ExpandFeature(Expander::Mode mode) {
    switch (mode) {
    case Expander::Mode::NoLinks:
        return "NoLinks";
    case Expander::Mode::LinksOnly:
        return "Links";
    case Expander::Mode::All:
        return "ExpandAll";
    }
    return "ExpandAll";
}

} // namespace

MockupService::MockupService(MockupTree tree, std::optional<Credentials> credentials)
    : tree_(std::move(tree)), credentials_(std::move(credentials)) {}

HttpResponse MockupService::Handle(const HttpRequest& request) {
    const std::lock_guard<std::mutex> lock(mutex_);
    std::string path;
    std::string query;
    RequestText::SplitTarget(request.target, path, query);
    std::optional<HttpResponse> refusal = ProtocolHeaders::UnknownMethod(request.method);
    if (!refusal) {
        refusal = RedfishErrors::Protocol(request.Header("OData-Version"),
                                          RequestText::QueryNames(query), std::nullopt);
    }
    const std::string key = MockupTree::Key(path);
    HttpResponse response = refusal ? std::move(*refusal) : Dispatch(request, key, query);
    ProtocolHeaders::Complete(response, request.method, AllowedMethods(key));
    if (!HasHeader(response, "OData-Version")) {
        response.headers.emplace_back("OData-Version", "4.0");
    }
    return response;
}

HttpResponse MockupService::Dispatch(const HttpRequest& request, const std::string& path,
                                     const std::string& query) {
    const std::string& method = request.method;
    const bool read = method == "GET" || method == "HEAD";
    // The service root and the login are open to everyone; an anonymous root is not expanded.
    if (read && (path == "/redfish" || path == kServiceRoot)) {
        return Get(request, path, Authenticate(request) ? "" : query);
    }
    if (method == "POST" && (path == SessionsUri() || path == SessionsUri() + "/Members")) {
        return Login(request.body);
    }
    if (auto refusal = Authenticate(request)) {
        return std::move(*refusal);
    }
    if (read) {
        return Get(request, path, query);
    }
    return Write(request, path);
}

bool MockupService::Admits(const std::string& user, const std::string& password) const {
    return !credentials_ || (user == credentials_->user && password == credentials_->password);
}

std::optional<HttpResponse> MockupService::Authenticate(const HttpRequest& request) const {
    return sessions_.Check(request, [this](const std::string& user, const std::string& password) {
        return Admits(user, password);
    });
}

HttpResponse MockupService::Get(const HttpRequest& request, const std::string& path,
                                const std::string& query) const {
    const std::optional<json> resource = Resolve(path);
    if (!resource) {
        return RedfishErrors::NotFound(path, std::nullopt);
    }
    json body = *resource;
    if (const std::optional<std::string> expand = RequestText::QueryValue(query, "$expand")) {
        const json* offer = ExpandOffer();
        if (offer == nullptr) {
            return RedfishErrors::ExpandNotSupported(std::nullopt);
        }
        Expander::Mode mode = Expander::Mode::NoLinks;
        int levels = 1;
        if (!Expander::Parse(*expand, mode, levels)) {
            return RedfishErrors::BadExpand(*expand, std::nullopt);
        }
        // A root may offer some forms only ("Links": false).
        const char* feature = ExpandFeature(mode);
        if (offer->is_object() && offer->contains(feature) && (*offer)[feature] == false) {
            return RedfishErrors::ExpandNotSupported(std::nullopt);
        }
        body = Expander::Expand(body, mode, levels, [this](const std::string& uri) {
            return Resolve(MockupTree::Key(uri));
        });
    }
    const std::string etag = ResourceEtag::Of(*resource);
    HttpResponse response;
    response.headers.emplace_back("ETag", etag);
    if (request.Header("If-None-Match") == etag) {
        response.status = 304;
        return response;
    }
    for (const auto& [name, value] : tree_.GetHeaders(path)) {
        if (!OwnHeader(name)) {
            SetHeader(response, name, value);
        }
    }
    if (!HasHeader(response, "Content-Type")) {
        response.headers.emplace_back("Content-Type", "application/json");
    }
    if (!HasHeader(response, "Link")) {
        ProtocolHeaders::Describe(response, *resource);
    }
    if (request.method != "HEAD") {
        response.body = body.dump();
    }
    return response;
}

HttpResponse MockupService::Login(const std::string& body) {
    const json credentials = json::parse(body, nullptr, false);
    if (credentials.is_discarded() || !credentials.is_object()) {
        return RedfishErrors::MalformedJson(std::nullopt);
    }
    for (const char* name : {"UserName", "Password"}) {
        if (!credentials.contains(name) || !credentials[name].is_string()) {
            return RedfishErrors::PropertyMissing(name, std::nullopt);
        }
    }
    const std::string user = credentials["UserName"].get<std::string>();
    if (!Admits(user, credentials["Password"].get<std::string>())) {
        return RedfishErrors::BadCredentials();
    }
    std::string token;
    const std::string id = sessions_.Open(user, token);
    const std::string uri = SessionsUri() + "/" + id;
    const json session = *Resolve(uri);
    HttpResponse response;
    response.status = 201;
    response.headers.emplace_back("Content-Type", "application/json");
    response.headers.emplace_back("ETag", ResourceEtag::Of(session));
    response.headers.emplace_back("X-Auth-Token", token);
    response.headers.emplace_back("Location", uri);
    response.body = session.dump();
    return response;
}

std::optional<json> MockupService::Resolve(const std::string& path) const {
    if (path == "/redfish") {
        return json{{"v1", "/redfish/v1/"}};
    }
    // The open sessions live beside the recorded tree; their collection lists both.
    const std::string sessions = SessionsUri();
    if (path == sessions) {
        const json* recorded = tree_.Find(sessions);
        json collection = recorded != nullptr
                              ? *recorded
                              : json{{"@odata.id", sessions},
                                     {"@odata.type", "#SessionCollection.SessionCollection"},
                                     {"Name", "Session Collection"}};
        if (!collection.contains("Members") || !collection["Members"].is_array()) {
            collection["Members"] = json::array();
        }
        for (const SessionStore::Session& session : sessions_.All()) {
            collection["Members"].push_back({{"@odata.id", sessions + "/" + session.id}});
        }
        collection["Members@odata.count"] = collection["Members"].size();
        return collection;
    }
    if (path.rfind(sessions + "/", 0) == 0) {
        if (const std::optional<SessionStore::Session> session =
                sessions_.FindById(path.substr(sessions.size() + 1))) {
            return json{{"@odata.id", path},
                        {"@odata.type", "#Session.v1_6_0.Session"},
                        {"Id", session->id},
                        {"Name", "User Session"},
                        {"UserName", session->user}};
        }
    }
    if (const json* resource = tree_.Find(path)) {
        return *resource;
    }
    return std::nullopt;
}

std::string MockupService::SessionsUri() const {
    const json* root = tree_.Find(kServiceRoot);
    if (root != nullptr && root->contains("Links") && (*root)["Links"].is_object()) {
        const json& links = (*root)["Links"];
        if (links.contains("Sessions") && links["Sessions"].is_object() &&
            links["Sessions"].contains("@odata.id") && links["Sessions"]["@odata.id"].is_string()) {
            return MockupTree::Key(links["Sessions"]["@odata.id"].get<std::string>());
        }
    }
    return kDefaultSessions;
}

const json* MockupService::ExpandOffer() const {
    const json* root = tree_.Find(kServiceRoot);
    if (root == nullptr || !root->contains("ProtocolFeaturesSupported")) {
        return nullptr;
    }
    const json& features = (*root)["ProtocolFeaturesSupported"];
    if (!features.is_object() || !features.contains("ExpandQuery")) {
        return nullptr;
    }
    const json& offer = features["ExpandQuery"];
    return offer.is_object() || offer == true ? &offer : nullptr;
}

} // namespace emulator
