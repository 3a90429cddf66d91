#include "emulator/redfish_service.hpp"

#include <algorithm>
#include <cctype>
#include <utility>
#include <vector>

#include "emulator/drive_uris.hpp"
#include "emulator/expander.hpp"
#include "emulator/metadata_document.hpp"
#include "emulator/odata_service_document.hpp"
#include "emulator/oem_schema.hpp"
#include "emulator/protocol_headers.hpp"
#include "emulator/redfish_errors.hpp"
#include "emulator/redfish_types.hpp"
#include "emulator/request_text.hpp"
#include "emulator/resource_builder.hpp"
#include "emulator/resource_etag.hpp"
#include "emulator/write_handlers.hpp"
#include "result/raid_error_code.hpp"

namespace emulator {

using nlohmann::json;
namespace rc = Quillon::RaidConfig;

namespace {

constexpr const char* kSessions = "/redfish/v1/SessionService/Sessions";

HttpResponse JsonResponse(int status, const json& body) {
    HttpResponse response;
    response.status = status;
    response.headers.emplace_back("Content-Type", "application/json");
    response.body = body.dump();
    return response;
}

// A document read without authentication: its body, left out for HEAD.
HttpResponse OpenDocument(const HttpRequest& request, const std::string& type,
                          const std::string& body) {
    HttpResponse response;
    response.headers.emplace_back("Content-Type", type);
    if (request.method != "HEAD") {
        response.body = body;
    }
    return response;
}

HttpResponse NotFound(const std::string& path) {
    return RedfishErrors::NotFound(path, rc::RAID_TARGET_NOT_FOUND);
}

HttpResponse NotAllowed(const std::string& method, const std::string& path) {
    return RedfishErrors::NotAllowed(method, path, rc::RAID_OPERATION_FAILED);
}

// The methods a URI of this service takes, for the Allow header: reads everywhere, the writes
// the write handlers serve, and POST alone on an action.
std::string AllowedMethods(const std::string& path) {
    const std::vector<std::string> s = ResourceBuilder::Segments(path);
    if (path.find("/Actions/") != std::string::npos) {
        return "POST";
    }
    const std::string last = s.empty() ? "" : s.back();
    const std::string parent = s.size() < 2 ? "" : s[s.size() - 2];
    if (last == "Sessions" || (last == "Members" && parent == "Sessions") || last == "Volumes") {
        return "GET, HEAD, POST";
    }
    if (parent == "Sessions") {
        return "GET, HEAD, DELETE";
    }
    if (parent == "Volumes") {
        return "GET, HEAD, PATCH, DELETE";
    }
    if (parent == "Drives" || (parent == "Controllers" && s.size() > 5 && s[4] == "Storage") ||
        (parent == "Storage" && s.size() == 6)) {
        return "GET, HEAD, PATCH";
    }
    return "GET, HEAD";
}

std::optional<int> TaskNumber(const std::string& text) {
    if (text.empty() || text.size() > 9 ||
        !std::all_of(text.begin(), text.end(),
                     [](unsigned char c) { return std::isdigit(c) != 0; })) {
        return std::nullopt;
    }
    return std::stoi(text);
}

// The Storage id a write addresses and the segments after it: below a Storage as they stand,
// for a drive under the Chassis "Drives", its disk part and the rest. False for other places.
bool WriteTarget(const std::vector<std::string>& s, const sim::Machine& machine, std::string& sid,
                 std::vector<std::string>& rest) {
    if (s.size() < 6 || s[0] != "redfish" || s[1] != "v1") {
        return false;
    }
    if (s[2] == "Systems" && s[3] == "1" && s[4] == "Storage") {
        sid = s[5];
        rest.assign(s.begin() + 6, s.end());
        return true;
    }
    if (s[2] == "Chassis" && s[3] == "1" && s[4] == "Drives") {
        const std::optional<DriveUris::Parts> parts = DriveUris::Split(machine, s[5]);
        if (!parts) {
            return false;
        }
        sid = parts->sid;
        rest = {"Drives", parts->disk};
        rest.insert(rest.end(), s.begin() + 6, s.end());
        return true;
    }
    return false;
}

} // namespace

RedfishService::RedfishService(std::shared_ptr<sim::MachineStore> store, bool expand_supported)
    : store_(std::move(store)), expand_supported_(expand_supported) {}

std::string RedfishService::ETag(const json& resource) {
    return ResourceEtag::Of(resource);
}

HttpResponse RedfishService::Handle(const HttpRequest& request) {
    const std::lock_guard<std::mutex> lock(mutex_);
    std::string path;
    std::string query;
    RequestText::SplitTarget(request.target, path, query);
    while (path.size() > 1 && path.back() == '/') {
        path.pop_back();
    }
    std::string error;
    HttpResponse response;
    const sim::Machine* machine = nullptr;
    if (auto unknown = ProtocolHeaders::UnknownMethod(request.method)) {
        response = std::move(*unknown);
    } else if ((machine = cache_.Machine(*store_, error)) == nullptr) {
        response =
            RedfishErrors::Error(500, "Base.1.8.InternalError", error, rc::RAID_INTERNAL_ERROR);
    } else if (auto refusal = RedfishErrors::Protocol(request.Header("OData-Version"),
                                                      RequestText::QueryNames(query),
                                                      rc::RAID_OPERATION_FAILED)) {
        response = std::move(*refusal);
    } else {
        response = Dispatch(request, path, query, *machine);
    }
    // Anything but a read may have changed the file, the sessions or the tasks.
    if (request.method != "GET" && request.method != "HEAD") {
        cache_.Clear();
    }
    ProtocolHeaders::Complete(response, request.method, AllowedMethods(path));
    response.headers.emplace_back("OData-Version", "4.0");
    return response;
}

std::optional<HttpResponse> RedfishService::Authenticate(const HttpRequest& request,
                                                         const sim::Machine& machine) const {
    return sessions_.Check(request,
                           [&machine](const std::string& user, const std::string& password) {
                               return user == machine.bmc.user && password == machine.bmc.password;
                           });
}

HttpResponse RedfishService::Dispatch(const HttpRequest& request, const std::string& path,
                                      const std::string& query, const sim::Machine& machine) {
    const std::string& method = request.method;
    const bool read = method == "GET" || method == "HEAD";
    // The service root, the OData documents, our Oem schema and the login are open to everyone;
    // an anonymous root is not expanded.
    if (read && RequestText::DecodePath(path) == MetadataDocument::kUri) {
        return OpenDocument(request, "application/xml", MetadataDocument::Xml());
    }
    if (read && path == OemSchema::kUri) {
        return OpenDocument(request, "application/xml", OemSchema::Xml());
    }
    if (read && path == ODataServiceDocument::kUri) {
        const json root = *ResourceBuilder(machine, expand_supported_).Build("/redfish/v1");
        return OpenDocument(request, "application/json", ODataServiceDocument::Of(root).dump());
    }
    if (read && (path == "/redfish" || path == "/redfish/v1")) {
        if (Authenticate(request, machine)) {
            return Get(request, path, "", machine);
        }
        return Get(request, path, query, machine);
    }
    if (method == "POST" && (path == kSessions || path == std::string(kSessions) + "/Members")) {
        return Login(request.body, machine);
    }
    if (auto refusal = Authenticate(request, machine)) {
        return std::move(*refusal);
    }
    if (read) {
        return Get(request, path, query, machine);
    }
    const std::vector<std::string> s = ResourceBuilder::Segments(path);
    if (method == "DELETE" && s.size() == 5 && path.rfind(std::string(kSessions) + "/", 0) == 0) {
        if (!sessions_.Close(s[4])) {
            return NotFound(path);
        }
        HttpResponse response;
        response.status = 204;
        return response;
    }
    if (method == "POST" && path == ResourceBuilder::kSystemReset) {
        return ResetSystem(request.body);
    }
    // Writes below a Storage resource or to a drive under the Chassis; the owner of an action is
    // the resource before /Actions.
    std::string sid;
    std::vector<std::string> rest;
    if ((method == "POST" || method == "PATCH" || method == "DELETE") &&
        WriteTarget(s, machine, sid, rest)) {
        const std::string if_match = request.Header("If-Match");
        if (!if_match.empty() && if_match != "*") {
            const std::string owner = path.substr(0, path.find("/Actions/"));
            const std::optional<json> current = Resolve(owner, machine);
            if (!current || ETag(*current) != if_match) {
                return RedfishErrors::PreconditionFailed(rc::RAID_OPERATION_FAILED);
            }
        }
        json body = json::object();
        if (method != "DELETE" && !request.body.empty()) {
            body = json::parse(request.body, nullptr, false);
            if (body.is_discarded() || !body.is_object()) {
                return RedfishErrors::MalformedJson(rc::RAID_OPERATION_FAILED);
            }
        }
        WriteHandlers writes(store_, tasks_);
        if (auto response = writes.Handle(method, sid, rest, body)) {
            return std::move(*response);
        }
    }
    if (Resolve(path, machine)) {
        return NotAllowed(method, path);
    }
    return NotFound(path);
}

HttpResponse RedfishService::ResetSystem(const std::string& body) {
    const json request = json::parse(body.empty() ? std::string("{}") : body, nullptr, false);
    if (request.is_discarded() || !request.is_object()) {
        return RedfishErrors::MalformedJson(rc::RAID_OPERATION_FAILED);
    }
    if (!request.contains("ResetType") || !request["ResetType"].is_string()) {
        return RedfishErrors::PropertyMissing("ResetType", rc::RAID_OPERATION_FAILED);
    }
    const std::string type = request["ResetType"].get<std::string>();
    const std::vector<std::string>& types = ResourceBuilder::SystemResetTypes();
    if (std::find(types.begin(), types.end(), type) == types.end()) {
        return RedfishErrors::Error(400, "Base.1.8.ActionParameterValueNotInList",
                                    "The value " + type +
                                        " of ResetType is not one the reset takes.",
                                    rc::RAID_OPERATION_FAILED);
    }
    // Intended: accepted and nothing changes, since a simulated server has no power to cycle.
    HttpResponse response;
    response.status = 204;
    return response;
}

HttpResponse RedfishService::Get(const HttpRequest& request, const std::string& path,
                                 const std::string& query, const sim::Machine& machine) {
    if (path == "/redfish") {
        return JsonResponse(200, json{{"v1", "/redfish/v1/"}});
    }
    const std::vector<std::string> s = ResourceBuilder::Segments(path);
    if (s.size() == 6 && s[2] == "TaskService" && s[3] == "Tasks" && s[5] == "Monitor") {
        if (const std::optional<int> task = TaskNumber(s[4])) {
            return TaskMonitor(*task, machine);
        }
    }
    // Sessions and tasks live in this process and may end without a request: never kept.
    const bool keep = path.rfind("/redfish/v1/SessionService", 0) != 0 &&
                      path.rfind("/redfish/v1/TaskService", 0) != 0;
    const std::string target = path + "?" + query;
    const HttpResponse* kept = keep ? cache_.Find(target) : nullptr;
    HttpResponse response = kept != nullptr ? *kept : Render(path, query, machine);
    if (response.status != 200) {
        return response;
    }
    if (keep && kept == nullptr) {
        cache_.Keep(target, response);
    }
    if (request.Header("If-None-Match") == response.Header("ETag")) {
        response.status = 304;
        response.body.clear();
        response.headers = {{"ETag", response.Header("ETag")}};
        return response;
    }
    if (request.method == "HEAD") {
        response.body.clear();
    }
    return response;
}

HttpResponse RedfishService::Render(const std::string& path, const std::string& query,
                                    const sim::Machine& machine) const {
    const std::optional<json> resource = Resolve(path, machine);
    if (!resource) {
        return NotFound(path);
    }
    json body = *resource;
    if (const std::optional<std::string> expand = RequestText::QueryValue(query, "$expand")) {
        if (!expand_supported_) {
            return RedfishErrors::ExpandNotSupported(rc::RAID_REST_FAILED);
        }
        Expander::Mode mode = Expander::Mode::NoLinks;
        int levels = 1;
        if (!Expander::Parse(*expand, mode, levels)) {
            return RedfishErrors::BadExpand(*expand, rc::RAID_OPERATION_FAILED);
        }
        body = Expander::Expand(body, mode, levels,
                                [&](const std::string& uri) { return Resolve(uri, machine); });
    }
    HttpResponse response;
    response.headers.emplace_back("ETag", (*resource)["@odata.etag"].get<std::string>());
    response.headers.emplace_back("Content-Type", "application/json");
    ProtocolHeaders::Describe(response, *resource);
    response.body = body.dump();
    return response;
}

HttpResponse RedfishService::Login(const std::string& body, const sim::Machine& machine) {
    const json credentials = json::parse(body, nullptr, false);
    if (credentials.is_discarded() || !credentials.is_object()) {
        return RedfishErrors::MalformedJson(rc::RAID_OPERATION_FAILED);
    }
    for (const char* name : {"UserName", "Password"}) {
        if (!credentials.contains(name) || !credentials[name].is_string()) {
            return RedfishErrors::PropertyMissing(name, rc::RAID_OPERATION_FAILED);
        }
    }
    const std::string user = credentials["UserName"].get<std::string>();
    if (user != machine.bmc.user ||
        credentials["Password"].get<std::string>() != machine.bmc.password) {
        return RedfishErrors::BadCredentials();
    }
    std::string token;
    const std::string id = sessions_.Open(user, token);
    const std::string uri = std::string(kSessions) + "/" + id;
    HttpResponse response = JsonResponse(201, *ServiceResource(uri));
    response.headers.emplace_back("X-Auth-Token", token);
    response.headers.emplace_back("Location", uri);
    return response;
}

HttpResponse RedfishService::TaskMonitor(int task, const sim::Machine& machine) {
    const std::optional<TaskStore::Task> found = tasks_.Find(task);
    if (!found) {
        return NotFound(TaskStore::Uri(task) + "/Monitor");
    }
    // The work is done before the 202 goes out: the monitor answers as the finished request.
    const std::optional<json> volume =
        found->volume_uri.empty() ? std::nullopt : Resolve(found->volume_uri, machine);
    if (!volume) {
        HttpResponse response;
        response.status = 204;
        return response;
    }
    HttpResponse response = JsonResponse(201, *volume);
    response.headers.emplace_back("Location", found->volume_uri);
    return response;
}

std::optional<json> RedfishService::Resolve(const std::string& path,
                                            const sim::Machine& machine) const {
    std::optional<json> resource = ServiceResource(path);
    if (!resource) {
        resource = ResourceBuilder(machine, expand_supported_).Build(path);
    }
    if (resource) {
        (*resource)["@odata.etag"] = ETag(*resource);
    }
    return resource;
}

std::optional<json> RedfishService::ServiceResource(const std::string& path) const {
    const std::vector<std::string> s = ResourceBuilder::Segments(path);
    if (s.size() < 3 || s[0] != "redfish" || s[1] != "v1") {
        return std::nullopt;
    }
    if (s[2] == "SessionService") {
        if (s.size() == 3) {
            json body = ResourceBuilder::Head(path, RedfishTypes::kSessionService);
            body["Id"] = "SessionService";
            body["Name"] = "Session Service";
            body["ServiceEnabled"] = true;
            body["Sessions"] = ResourceBuilder::Reference(kSessions);
            return body;
        }
        if (s[3] != "Sessions") {
            return std::nullopt;
        }
        if (s.size() == 4) {
            json body = ResourceBuilder::Head(kSessions, RedfishTypes::kSessionCollection);
            body["Name"] = "Session Collection";
            body["Members"] = json::array();
            for (const SessionStore::Session& session : sessions_.All()) {
                body["Members"].push_back(
                    ResourceBuilder::Reference(std::string(kSessions) + "/" + session.id));
            }
            body["Members@odata.count"] = body["Members"].size();
            return body;
        }
        const std::optional<SessionStore::Session> session =
            s.size() == 5 ? sessions_.FindById(s[4]) : std::nullopt;
        if (!session) {
            return std::nullopt;
        }
        json body = ResourceBuilder::Head(path, RedfishTypes::kSession);
        body["Id"] = session->id;
        body["Name"] = "User Session";
        body["UserName"] = session->user;
        return body;
    }
    if (s[2] == "TaskService") {
        if (s.size() == 3) {
            json body = ResourceBuilder::Head(path, RedfishTypes::kTaskService);
            body["Id"] = "TaskService";
            body["Name"] = "Task Service";
            body["ServiceEnabled"] = true;
            body["Tasks"] = ResourceBuilder::Reference("/redfish/v1/TaskService/Tasks");
            return body;
        }
        if (s[3] != "Tasks") {
            return std::nullopt;
        }
        if (s.size() == 4) {
            json body = ResourceBuilder::Head(path, RedfishTypes::kTaskCollection);
            body["Name"] = "Task Collection";
            body["Members"] = json::array();
            for (const TaskStore::Task& task : tasks_.All()) {
                body["Members"].push_back(ResourceBuilder::Reference(TaskStore::Uri(task.id)));
            }
            body["Members@odata.count"] = body["Members"].size();
            return body;
        }
        const std::optional<int> id = s.size() == 5 ? TaskNumber(s[4]) : std::nullopt;
        const std::optional<TaskStore::Task> task = id ? tasks_.Find(*id) : std::nullopt;
        if (!task) {
            return std::nullopt;
        }
        return TaskStore::Resource(*task);
    }
    return std::nullopt;
}

} // namespace emulator
