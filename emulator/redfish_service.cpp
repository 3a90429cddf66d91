#include "emulator/redfish_service.hpp"

#include <array>
#include <cctype>
#include <cstdint>
#include <utility>
#include <vector>

#include "emulator/expander.hpp"
#include "emulator/redfish_errors.hpp"
#include "emulator/resource_builder.hpp"
#include "emulator/write_handlers.hpp"
#include "result/raid_error_code.hpp"

namespace emulator {

using nlohmann::json;
namespace rc = Quillon::RaidConfig;

namespace {

constexpr const char* kSessions = "/redfish/v1/SessionService/Sessions";

int HexValue(char c) {
    if (c >= '0' && c <= '9') {
        return c - '0';
    }
    const int lower = std::tolower(static_cast<unsigned char>(c));
    if (lower >= 'a' && lower <= 'f') {
        return lower - 'a' + 10;
    }
    return -1;
}

std::string PercentDecode(const std::string& text) {
    std::string decoded;
    for (std::size_t i = 0; i < text.size(); ++i) {
        if (text[i] == '%' && i + 2 < text.size() && HexValue(text[i + 1]) >= 0 &&
            HexValue(text[i + 2]) >= 0) {
            decoded.push_back(
                static_cast<char>(HexValue(text[i + 1]) * 16 + HexValue(text[i + 2])));
            i += 2;
        } else if (text[i] == '+') {
            decoded.push_back(' ');
        } else {
            decoded.push_back(text[i]);
        }
    }
    return decoded;
}

// The value of one query option ("$expand"), decoded; empty when absent.
std::optional<std::string> QueryValue(const std::string& query, const std::string& name) {
    std::size_t start = 0;
    while (start <= query.size()) {
        const std::size_t amp = query.find('&', start);
        const std::string pair =
            query.substr(start, amp == std::string::npos ? std::string::npos : amp - start);
        const std::size_t equals = pair.find('=');
        const std::string key = PercentDecode(pair.substr(0, equals));
        if (key == name) {
            return equals == std::string::npos ? std::string()
                                               : PercentDecode(pair.substr(equals + 1));
        }
        if (amp == std::string::npos) {
            break;
        }
        start = amp + 1;
    }
    return std::nullopt;
}

std::string Base64Decode(const std::string& text) {
    std::string decoded;
    unsigned int buffer = 0;
    int bits = 0;
    for (char c : text) {
        int value = -1;
        if (c >= 'A' && c <= 'Z') {
            value = c - 'A';
        } else if (c >= 'a' && c <= 'z') {
            value = c - 'a' + 26;
        } else if (c >= '0' && c <= '9') {
            value = c - '0' + 52;
        } else if (c == '+') {
            value = 62;
        } else if (c == '/') {
            value = 63;
        } else {
            break; // padding or the end
        }
        buffer = (buffer << 6U) | static_cast<unsigned int>(value);
        bits += 6;
        if (bits >= 8) {
            bits -= 8;
            decoded.push_back(
                static_cast<char>((buffer >> static_cast<unsigned int>(bits)) & 0xFFU));
        }
    }
    return decoded;
}

HttpResponse JsonResponse(int status, const json& body) {
    HttpResponse response;
    response.status = status;
    response.headers.emplace_back("Content-Type", "application/json");
    response.body = body.dump();
    return response;
}

HttpResponse Unauthorized(const std::string& message_id, const std::string& text) {
    HttpResponse response = RedfishErrors::Error(401, message_id, text, std::nullopt);
    response.headers.emplace_back("WWW-Authenticate", "Basic realm=\"raidcfg-bmc\"");
    return response;
}

HttpResponse NotFound(const std::string& path) {
    return RedfishErrors::Error(404, "Base.1.8.ResourceNotFound",
                                "The resource at " + path + " does not exist.",
                                rc::RAID_TARGET_NOT_FOUND);
}

HttpResponse NotAllowed(const std::string& method, const std::string& path) {
    return RedfishErrors::Error(405, "Base.1.8.OperationNotAllowed",
                                method + " is not allowed on " + path + ".",
                                rc::RAID_OPERATION_FAILED);
}

std::optional<int> TaskNumber(const std::string& text) {
    if (text.empty() || text.size() > 9 ||
        !std::all_of(text.begin(), text.end(),
                     [](unsigned char c) { return std::isdigit(c) != 0; })) {
        return std::nullopt;
    }
    return std::stoi(text);
}

} // namespace

RedfishService::RedfishService(std::shared_ptr<sim::MachineStore> store, bool expand_supported)
    : store_(std::move(store)), expand_supported_(expand_supported) {}

std::string RedfishService::ETag(const json& resource) {
    json body = resource;
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

HttpResponse RedfishService::Handle(const HttpRequest& request) {
    const std::lock_guard<std::mutex> lock(mutex_);
    const std::size_t mark = request.target.find('?');
    std::string path = request.target.substr(0, mark);
    const std::string query = mark == std::string::npos ? "" : request.target.substr(mark + 1);
    while (path.size() > 1 && path.back() == '/') {
        path.pop_back();
    }
    sim::Machine machine;
    std::string error;
    HttpResponse response;
    if (!store_->Read(machine, error)) {
        response =
            RedfishErrors::Error(500, "Base.1.8.InternalError", error, rc::RAID_INTERNAL_ERROR);
    } else {
        response = Dispatch(request, path, query, machine);
    }
    response.headers.emplace_back("OData-Version", "4.0");
    return response;
}

std::optional<HttpResponse> RedfishService::Authenticate(const HttpRequest& request,
                                                         const sim::Machine& machine) const {
    const std::string token = request.Header("X-Auth-Token");
    if (!token.empty()) {
        if (sessions_.FindByToken(token)) {
            return std::nullopt;
        }
        return Unauthorized("Base.1.8.ResourceAtUriUnauthorized",
                            "The session token is not valid.");
    }
    const std::string authorization = request.Header("Authorization");
    const std::string basic = "Basic ";
    if (authorization.rfind(basic, 0) == 0) {
        const std::string pair = Base64Decode(authorization.substr(basic.size()));
        const std::size_t colon = pair.find(':');
        if (colon != std::string::npos && pair.substr(0, colon) == machine.bmc.user &&
            pair.substr(colon + 1) == machine.bmc.password) {
            return std::nullopt;
        }
        return Unauthorized("Base.1.8.ResourceAtUriUnauthorized",
                            "The user name or password is not valid.");
    }
    return Unauthorized("Base.1.8.NoValidSession",
                        "There is no valid session established with the implementation.");
}

HttpResponse RedfishService::Dispatch(const HttpRequest& request, const std::string& path,
                                      const std::string& query, const sim::Machine& machine) {
    const std::string& method = request.method;
    const bool read = method == "GET" || method == "HEAD";
    // The service root and the login are open to everyone; an anonymous root is not expanded.
    if (read && (path == "/redfish" || path == "/redfish/v1")) {
        if (Authenticate(request, machine)) {
            return Get(request, path, "", machine);
        }
        return Get(request, path, query, machine);
    }
    if (method == "POST" && path == kSessions) {
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
    // Writes below a Storage resource; the owner of an action is the resource before /Actions.
    const bool storage = s.size() >= 6 && s[0] == "redfish" && s[1] == "v1" && s[2] == "Systems" &&
                         s[3] == "1" && s[4] == "Storage";
    if (storage && (method == "POST" || method == "PATCH" || method == "DELETE")) {
        const std::string if_match = request.Header("If-Match");
        if (!if_match.empty() && if_match != "*") {
            const std::string owner = path.substr(0, path.find("/Actions/"));
            const std::optional<json> current = Resolve(owner, machine);
            if (!current || ETag(*current) != if_match) {
                return RedfishErrors::Error(412, "Base.1.8.PreconditionFailed",
                                            "The ETag in If-Match does not match the resource.",
                                            rc::RAID_OPERATION_FAILED);
            }
        }
        json body = json::object();
        if (method != "DELETE" && !request.body.empty()) {
            body = json::parse(request.body, nullptr, false);
            if (body.is_discarded() || !body.is_object()) {
                return RedfishErrors::Error(400, "Base.1.8.MalformedJSON",
                                            "The request body is not a JSON object.",
                                            rc::RAID_OPERATION_FAILED);
            }
        }
        WriteHandlers writes(store_, tasks_);
        const std::vector<std::string> rest(s.begin() + 6, s.end());
        if (auto response = writes.Handle(method, s[5], rest, body)) {
            return std::move(*response);
        }
    }
    if (Resolve(path, machine)) {
        return NotAllowed(method, path);
    }
    return NotFound(path);
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
    const std::optional<json> resource = Resolve(path, machine);
    if (!resource) {
        return NotFound(path);
    }
    json body = *resource;
    if (const std::optional<std::string> expand = QueryValue(query, "$expand")) {
        if (!expand_supported_) {
            return RedfishErrors::Error(501, "Base.1.8.QueryNotSupported",
                                        "$expand is not supported by this service.",
                                        rc::RAID_REST_FAILED);
        }
        Expander::Mode mode = Expander::Mode::NoLinks;
        int levels = 1;
        if (!Expander::Parse(*expand, mode, levels)) {
            return RedfishErrors::Error(400, "Base.1.8.QueryParameterValueFormatError",
                                        "The value " + *expand + " of $expand is not supported.",
                                        rc::RAID_OPERATION_FAILED);
        }
        body = Expander::Expand(body, mode, levels,
                                [&](const std::string& uri) { return Resolve(uri, machine); });
    }
    const std::string etag = (*resource)["@odata.etag"].get<std::string>();
    HttpResponse response;
    response.headers.emplace_back("ETag", etag);
    if (request.Header("If-None-Match") == etag) {
        response.status = 304;
        return response;
    }
    response.headers.emplace_back("Content-Type", "application/json");
    if (request.method != "HEAD") {
        response.body = body.dump();
    }
    return response;
}

HttpResponse RedfishService::Login(const std::string& body, const sim::Machine& machine) {
    const json credentials = json::parse(body, nullptr, false);
    if (credentials.is_discarded() || !credentials.is_object()) {
        return RedfishErrors::Error(400, "Base.1.8.MalformedJSON",
                                    "The request body is not a JSON object.",
                                    rc::RAID_OPERATION_FAILED);
    }
    for (const char* name : {"UserName", "Password"}) {
        if (!credentials.contains(name) || !credentials[name].is_string()) {
            return RedfishErrors::Error(400, "Base.1.8.PropertyMissing",
                                        std::string("The property ") + name + " is missing.",
                                        rc::RAID_OPERATION_FAILED);
        }
    }
    const std::string user = credentials["UserName"].get<std::string>();
    if (user != machine.bmc.user ||
        credentials["Password"].get<std::string>() != machine.bmc.password) {
        return Unauthorized("Base.1.8.ResourceAtUriUnauthorized",
                            "The user name or password is not valid.");
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
            json body = ResourceBuilder::Head(path, "#SessionService.v1_1_8.SessionService");
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
            json body = ResourceBuilder::Head(kSessions, "#SessionCollection.SessionCollection");
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
        json body = ResourceBuilder::Head(path, "#Session.v1_6_0.Session");
        body["Id"] = session->id;
        body["Name"] = "User Session";
        body["UserName"] = session->user;
        return body;
    }
    if (s[2] == "TaskService") {
        if (s.size() == 3) {
            json body = ResourceBuilder::Head(path, "#TaskService.v1_2_0.TaskService");
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
            json body = ResourceBuilder::Head(path, "#TaskCollection.TaskCollection");
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
