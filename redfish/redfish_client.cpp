// The Redfish client: requests with their bounds and retries, log-in and log-out, writes and
// task monitors. Reads, the cache and $expand are in redfish_client_reads.cpp.
#include "redfish/redfish_client.hpp"

#include <algorithm>
#include <cctype>
#include <chrono>
#include <exception>
#include <initializer_list>
#include <string>
#include <string_view>
#include <thread>
#include <utility>

#include "collaborators/log.hpp"
#include "redfish/redfish_client_detail.hpp"

namespace redfish {

using Quillon::RaidConfig::RAID_AUTH_FAILED;
using Quillon::RaidConfig::RAID_CONNECT_FAILED;
using Quillon::RaidConfig::RaidErrorCode;
using std::chrono::milliseconds;

namespace {

constexpr const char* kServiceRoot = "/redfish/v1";
constexpr const char* kDefaultSessions = "/redfish/v1/SessionService/Sessions";
// Log-out is bounded on its own: a dead BMC must not hold the end of the run for long.
constexpr milliseconds kLogoutLimit{10000};

milliseconds ElapsedMs(std::chrono::steady_clock::time_point start) {
    return std::chrono::duration_cast<milliseconds>(std::chrono::steady_clock::now() - start);
}

std::string LinkOf(const nlohmann::json& object, const char* key) {
    if (!object.is_object()) {
        return std::string();
    }
    const auto found = object.find(key);
    if (found == object.end() || !found->is_object()) {
        return std::string();
    }
    const auto id = found->find("@odata.id");
    return id != found->end() && id->is_string() ? id->get<std::string>() : std::string();
}

std::string Concat(std::initializer_list<std::string_view> parts) {
    std::string text;
    for (const std::string_view part : parts) {
        text.append(part);
    }
    return text;
}

// When a write is put off until the server is reset: the answer's or task's
// @Redfish.OperationApplyTime other than "Immediate", or a pending task whose messages say it
// waits for a reset; empty for a write applied now.
std::string DeferredTo(const nlohmann::json& body) {
    if (!body.is_object()) {
        return {};
    }
    const auto time = body.find("@Redfish.OperationApplyTime");
    if (time != body.end() && time->is_string() && time->get<std::string>() != "Immediate") {
        return time->get<std::string>();
    }
    const auto state = body.find("TaskState");
    const auto messages = body.find("Messages");
    if (state == body.end() || *state != "Pending" || messages == body.end() ||
        !messages->is_array()) {
        return {};
    }
    for (const nlohmann::json& message : *messages) {
        std::string text =
            message.is_object() && message.contains("Message") && message["Message"].is_string()
                ? message["Message"].get<std::string>()
                : std::string();
        std::transform(text.begin(), text.end(), text.begin(),
                       [](unsigned char c) { return static_cast<char>(std::tolower(c)); });
        for (const char* word : {"reset", "reboot", "restart", "power cycle"}) {
            if (text.find(word) != std::string::npos) {
                return "OnReset";
            }
        }
    }
    return {};
}

bool TaskRunning(const std::string& state) {
    return state != "Completed" && state != "Exception" && state != "Killed" &&
           state != "Cancelled";
}

} // namespace

RedfishClient::RedfishClient(std::unique_ptr<HttpTransport> transport, ClientSettings settings)
    : transport_(std::move(transport)), settings_(std::move(settings)) {
    authority_ = transport_ ? transport_->Authority() : std::string();
    if (settings_.max_retries < 0) {
        settings_.max_retries = 0;
    }
    if (settings_.first_backoff.count() <= 0) {
        settings_.first_backoff = milliseconds(1);
    }
    if (settings_.max_poll_interval < settings_.first_backoff) {
        settings_.max_poll_interval = settings_.first_backoff;
    }
}

RedfishClient::~RedfishClient() {
    try {
        Close();
        if (requests_sent_ > 0) {
            RAIDCFG_LOG(3) << "Redfish: BMC " << authority_ << ": " << requests_sent_
                           << " requests on " << ConnectionsOpened() << " connections";
        }
    } catch (const std::exception&) {
        // Nothing can be done about a failed log-out while the client goes.
    }
}

std::string RedfishClient::Authority() const {
    return authority_;
}

std::size_t RedfishClient::ConnectionsOpened() const {
    return transport_ ? transport_->ConnectionsOpened() : 0;
}

std::chrono::steady_clock::time_point RedfishClient::Now() const {
    if (settings_.now) {
        return settings_.now();
    }
    return std::chrono::steady_clock::now() + slept_;
}

void RedfishClient::Sleep(milliseconds duration) {
    if (duration.count() <= 0) {
        return;
    }
    if (settings_.sleep) {
        settings_.sleep(duration);
        slept_ += duration;
    } else {
        std::this_thread::sleep_for(duration);
    }
}

RedfishClient::Budget RedfishClient::NewBudget(milliseconds limit) const {
    return Budget{Now() + limit, limit, settings_.max_retries};
}

RedfishClient::Budget RedfishClient::NewBudget() const {
    return NewBudget(std::chrono::duration_cast<milliseconds>(settings_.total_limit));
}

milliseconds RedfishClient::Remaining(const Budget& budget) const {
    return std::chrono::duration_cast<milliseconds>(budget.deadline - Now());
}

std::string RedfishClient::Scrub(std::string text) const {
    const auto mask = [&text](const std::string& secret) {
        if (secret.empty()) {
            return;
        }
        for (auto at = text.find(secret); at != std::string::npos; at = text.find(secret, at + 3)) {
            text.replace(at, secret.size(), "***");
        }
    };
    mask(session_token_);
    mask(settings_.password);
    if (!settings_.password.empty()) {
        mask(detail::Base64(settings_.user + ":" + settings_.password));
    }
    return text;
}

RedfishStatus RedfishClient::Fail(RaidErrorCode code, std::string text) const {
    RedfishStatus status{code, Scrub(std::move(text))};
    RAIDCFG_LOG(2) << "Redfish: " << status.text << " (code " << static_cast<int>(code) << ")";
    return status;
}

RedfishStatus RedfishClient::Failure(const std::string& method, const std::string& path,
                                     const HttpResponse& response) const {
    RedfishStatus status = detail::HttpFailure(authority_, method, path, response);
    return Fail(status.code, status.text);
}

RedfishStatus RedfishClient::Send(const std::string& method, const std::string& path,
                                  const std::string& body, Budget& budget, HttpResponse& response,
                                  bool authenticate,
                                  const std::vector<std::pair<std::string, std::string>>& extra) {
    milliseconds backoff = settings_.first_backoff;
    bool repeated_after_reset = false;
    for (int attempt = 0;; ++attempt) {
        const milliseconds remaining = Remaining(budget);
        if (remaining.count() <= 0) {
            return Fail(RAID_CONNECT_FAILED,
                        Concat({"BMC ", authority_, ": no answer within ",
                                detail::SecondsText(budget.limit), " (", method, " ", path, ")"}));
        }
        HttpRequest request;
        request.method = method;
        request.path = path;
        request.body = body;
        request.timeout = remaining;
        request.headers.emplace_back("Accept", "application/json");
        request.headers.emplace_back("OData-Version", "4.0");
        if (!body.empty()) {
            request.headers.emplace_back("Content-Type", "application/json");
        }
        if (authenticate && !session_token_.empty()) {
            request.headers.emplace_back("X-Auth-Token", session_token_);
        } else if (authenticate && basic_auth_) {
            request.headers.emplace_back(
                "Authorization",
                "Basic " + detail::Base64(settings_.user + ":" + settings_.password));
        }
        request.headers.insert(request.headers.end(), extra.begin(), extra.end());

        ++requests_sent_;
        const auto started = std::chrono::steady_clock::now();
        const TransportOutcome outcome = transport_->Perform(request, response);
        const milliseconds took = ElapsedMs(started);

        if (!outcome.ok()) {
            RAIDCFG_LOG(4) << method << ' ' << Scrub(path) << " -> " << Scrub(outcome.text) << " ("
                           << took.count() << " ms)";
            // Nothing of a request can have arrived when the BMC could not be reached; after a
            // reset, a request that is not a POST may be repeated; a timeout is never repeated.
            const bool repeatable = (outcome.error == TransportError::Connect && reached_) ||
                                    (outcome.error == TransportError::Reset && method != "POST");
            if (repeatable && attempt < budget.max_retries && backoff < Remaining(budget)) {
                RAIDCFG_LOG(2) << "Redfish: " << method << ' ' << Scrub(path) << ": "
                               << Scrub(outcome.text) << ", attempt " << attempt + 2 << " of "
                               << budget.max_retries + 1 << " in " << backoff.count() << " ms";
                repeated_after_reset =
                    repeated_after_reset || outcome.error == TransportError::Reset;
                Sleep(backoff);
                backoff *= 2;
                continue;
            }
            return Fail(RAID_CONNECT_FAILED, "BMC " + authority_ + ": " + outcome.text);
        }

        reached_ = true;
        RAIDCFG_LOG(4) << method << ' ' << Scrub(path) << " -> " << response.status << " ("
                       << took.count() << " ms)";
        if (response.status == 503 && method != "POST" && attempt < budget.max_retries) {
            const auto retry_after = detail::RetryAfterSeconds(response);
            const milliseconds wait = retry_after ? milliseconds(*retry_after * 1000) : backoff;
            if (wait < Remaining(budget)) {
                RAIDCFG_LOG(2) << "Redfish: " << method << ' ' << Scrub(path)
                               << ": HTTP 503, attempt " << attempt + 2 << " of "
                               << budget.max_retries + 1 << " in " << wait.count() << " ms";
                Sleep(wait);
                backoff *= 2;
                continue;
            }
        }
        if (method == "DELETE" && response.status == 404 && repeated_after_reset) {
            // The attempt that broke off had deleted it.
            RAIDCFG_LOG(3) << "Redfish: DELETE " << Scrub(path)
                           << ": gone after a broken-off attempt, taken as deleted";
            response.status = 204;
            response.body.clear();
        }
        return RedfishStatus{};
    }
}

RedfishStatus RedfishClient::Open() {
    if (opened_) {
        return RedfishStatus{};
    }
    Budget budget = NewBudget();
    HttpResponse response;
    std::string root_path = kServiceRoot;
    RedfishStatus status = Send("GET", root_path, "", budget, response, false);
    if (status.ok() && (response.status == 301 || response.status == 308)) {
        root_path = std::string(kServiceRoot) + "/";
        status = Send("GET", root_path, "", budget, response, false);
    }
    if (!status.ok()) {
        return status;
    }
    // The service root should answer without credentials; where it does not, log in with the
    // standard paths and read it afterwards.
    const bool root_needs_login = response.status == 401 || response.status == 403;
    if (!root_needs_login) {
        if (response.status >= 300) {
            return Failure("GET", root_path, response);
        }
        nlohmann::json root;
        if (!detail::ParseJson(response.body, root) || !root.is_object()) {
            return Fail(Quillon::RaidConfig::RAID_REST_FAILED,
                        detail::MalformedJson(authority_, "GET", root_path).text);
        }
        service_root_ = std::move(root);
        Store(root_path, service_root_, response);
    }

    status = LogIn(budget);
    if (status.ok() && root_needs_login) {
        nlohmann::json root;
        status = GetWithin(root_path, budget, root);
        if (status.ok()) {
            service_root_ = std::move(root);
        }
    }
    if (!status.ok()) {
        Close();
        return status;
    }
    opened_ = true;
    return RedfishStatus{};
}

RedfishStatus RedfishClient::LogIn(Budget& budget) {
    std::string sessions =
        LinkOf(service_root_.is_object() && service_root_.contains("Links") ? service_root_["Links"]
                                                                            : nlohmann::json(),
               "Sessions");
    if (sessions.empty()) {
        sessions = kDefaultSessions;
    }
    const nlohmann::json credentials = {{"UserName", settings_.user},
                                        {"Password", settings_.password}};
    HttpResponse response;
    // The body holds the password: it is never logged (Send logs the request line only).
    RedfishStatus status =
        Send("POST", sessions, detail::DumpJson(credentials), budget, response, false);
    if (!status.ok()) {
        return status;
    }
    if (response.status == 401 || response.status == 403) {
        return Fail(RAID_AUTH_FAILED, "BMC " + authority_ + ": authentication failed");
    }
    if (response.status == 404 || response.status == 405 || response.status == 501) {
        RAIDCFG_LOG(3) << "Redfish: BMC " << authority_ << " refuses sessions (HTTP "
                       << response.status << " on POST " << sessions
                       << "), using Basic authentication";
        basic_auth_ = true;
        return CheckCredentials(budget);
    }
    if (response.status >= 300) {
        return Failure("POST", sessions, response);
    }
    std::string location = detail::PathOf(response.Header("location"));
    if (location.empty()) {
        nlohmann::json body;
        if (detail::ParseJson(response.body, body) && body.is_object() &&
            body.contains("@odata.id") && body["@odata.id"].is_string()) {
            location = body["@odata.id"].get<std::string>();
        }
    }
    session_path_ = location;
    session_token_ = response.Header("x-auth-token");
    if (session_token_.empty()) {
        RAIDCFG_LOG(2) << "Redfish: BMC " << authority_
                       << " made a session without a token, using Basic authentication";
        basic_auth_ = true;
        return CheckCredentials(budget);
    }
    if (session_path_.empty()) {
        RAIDCFG_LOG(2) << "Redfish: BMC " << authority_
                       << " gave no session location; the session cannot be deleted at the end";
    }
    RAIDCFG_LOG(3) << "Redfish: BMC " << authority_ << ": session opened"
                   << (session_path_.empty() ? std::string() : " at " + Scrub(session_path_));
    return RedfishStatus{};
}

RedfishStatus RedfishClient::CheckCredentials(Budget& budget) {
    // Any collection that needs authentication tells whether the credentials pass.
    std::string systems;
    for (const char* name : {"Systems", "Managers", "Chassis"}) {
        systems = LinkOf(service_root_, name);
        if (!systems.empty()) {
            break;
        }
    }
    if (systems.empty()) {
        RAIDCFG_LOG(2) << "Redfish: BMC " << authority_
                       << " lists no collection to check the credentials with";
        return RedfishStatus{};
    }
    HttpResponse response;
    RedfishStatus status = Send("GET", systems, "", budget, response);
    if (!status.ok()) {
        return status;
    }
    if (response.status == 401 || response.status == 403) {
        return Fail(RAID_AUTH_FAILED, "BMC " + authority_ + ": authentication failed");
    }
    nlohmann::json body;
    if (response.status < 300 && detail::ParseJson(response.body, body)) {
        Store(systems, body, response);
    }
    RAIDCFG_LOG(3) << "Redfish: BMC " << authority_ << ": Basic authentication accepted";
    return RedfishStatus{};
}

void RedfishClient::Close() {
    if (session_path_.empty()) {
        session_token_.clear();
        return;
    }
    const std::string path = session_path_;
    Budget budget = NewBudget(
        std::min(std::chrono::duration_cast<milliseconds>(settings_.total_limit), kLogoutLimit));
    budget.max_retries = 0;
    HttpResponse response;
    RedfishStatus status = Send("DELETE", path, "", budget, response);
    if (!status.ok()) {
        RAIDCFG_LOG(2) << "Redfish: the session could not be deleted: " << status.text;
    } else if (response.status >= 300 && response.status != 404) {
        RAIDCFG_LOG(2) << "Redfish: the session could not be deleted: "
                       << Scrub(detail::HttpFailure(authority_, "DELETE", path, response).text);
    } else {
        RAIDCFG_LOG(3) << "Redfish: BMC " << authority_ << ": session closed";
    }
    session_token_.clear();
    session_path_.clear();
    opened_ = false;
}

RedfishStatus RedfishClient::Post(const std::string& path, const nlohmann::json& body,
                                  nlohmann::json* out) {
    return Write("POST", path, &body, out);
}

RedfishStatus RedfishClient::Patch(const std::string& path, const nlohmann::json& body,
                                   nlohmann::json* out) {
    return Write("PATCH", path, &body, out);
}

RedfishStatus RedfishClient::Delete(const std::string& path) {
    return Write("DELETE", path, nullptr, nullptr);
}

RedfishStatus RedfishClient::Write(const std::string& method, const std::string& path,
                                   const nlohmann::json* body, nlohmann::json* out) {
    if (out != nullptr) {
        *out = nlohmann::json();
    }
    std::vector<std::pair<std::string, std::string>> extra;
    if (method == "PATCH") {
        const auto etag = etags_.find(path);
        if (etag != etags_.end() && !etag->second.empty()) {
            extra.emplace_back("If-Match", etag->second);
        }
    }
    DropCache();
    last_location_.clear();
    Budget budget = NewBudget();
    HttpResponse response;
    RedfishStatus status = Send(method, path, body != nullptr ? detail::DumpJson(*body) : "",
                                budget, response, true, extra);
    if (!status.ok()) {
        return status;
    }
    if (response.status == 202) {
        return FollowTask(method, path, response, budget, out);
    }
    if (response.status >= 300) {
        return Failure(method, path, response);
    }
    last_location_ = detail::PathOf(response.Header("location"));
    nlohmann::json answer;
    if (!response.body.empty() && !detail::ParseJson(response.body, answer)) {
        return Fail(Quillon::RaidConfig::RAID_REST_FAILED,
                    detail::MalformedJson(authority_, method, path).text);
    }
    if (const std::string deferred = DeferredTo(answer); !deferred.empty()) {
        return Deferred(method, path, deferred);
    }
    if (out != nullptr) {
        *out = std::move(answer);
    }
    return RedfishStatus{};
}

RedfishStatus RedfishClient::Deferred(const std::string& method, const std::string& path,
                                      const std::string& apply_time) const {
    // Not done yet, and not failed: the row must not say the change is there.
    return Fail(
        Quillon::RaidConfig::RAID_OPERATION_FAILED,
        Concat({"BMC ", authority_, ": ", method, " ", path, " was accepted, ",
                "but the BMC applies it only at the next reset of the server (", apply_time, ")"}));
}

RedfishStatus RedfishClient::FollowTask(const std::string& method, const std::string& path,
                                        const HttpResponse& accepted, Budget& budget,
                                        nlohmann::json* out) {
    std::string monitor = detail::PathOf(accepted.Header("location"));
    nlohmann::json accepted_body;
    detail::ParseJson(accepted.body, accepted_body);
    if (monitor.empty() && accepted_body.is_object() && accepted_body.contains("@odata.id") &&
        accepted_body["@odata.id"].is_string()) {
        monitor = accepted_body["@odata.id"].get<std::string>();
    }
    if (monitor.empty()) {
        RAIDCFG_LOG(2) << "Redfish: " << method << ' ' << path
                       << " was accepted without a task monitor; taken as done";
        if (out != nullptr && !accepted_body.is_discarded()) {
            *out = accepted_body;
        }
        return RedfishStatus{};
    }
    RAIDCFG_LOG(3) << "Redfish: " << method << ' ' << path << " runs as a task, monitor "
                   << monitor;

    milliseconds backoff = settings_.first_backoff;
    const auto next_wait = [&](const HttpResponse& answer) {
        const auto retry_after = detail::RetryAfterSeconds(answer);
        milliseconds wait = retry_after ? milliseconds(*retry_after * 1000) : backoff;
        if (!retry_after) {
            backoff = std::min(backoff * 2, settings_.max_poll_interval);
        }
        return std::min(wait, settings_.max_poll_interval);
    };
    milliseconds wait = next_wait(accepted);
    for (;;) {
        if (wait >= Remaining(budget)) {
            return Fail(RAID_CONNECT_FAILED,
                        Concat({"BMC ", authority_, ": the task of ", method, " ", path,
                                " did not end within ", detail::SecondsText(budget.limit)}));
        }
        Sleep(wait);
        HttpResponse response;
        RedfishStatus status = Send("GET", monitor, "", budget, response);
        if (!status.ok()) {
            return status;
        }
        if (response.status == 202) {
            nlohmann::json pending;
            if (detail::ParseJson(response.body, pending)) {
                if (const std::string deferred = DeferredTo(pending); !deferred.empty()) {
                    return Deferred(method, path, deferred);
                }
            }
            wait = next_wait(response);
            continue;
        }
        if (response.status >= 300) {
            return Failure(method, path, response);
        }
        nlohmann::json body;
        if (!response.body.empty() && !detail::ParseJson(response.body, body)) {
            return Fail(Quillon::RaidConfig::RAID_REST_FAILED,
                        detail::MalformedJson(authority_, "GET", monitor).text);
        }
        if (const std::string deferred = DeferredTo(body); !deferred.empty()) {
            return Deferred(method, path, deferred);
        }
        if (body.is_object() && body.contains("TaskState") && body["TaskState"].is_string()) {
            const std::string state = body["TaskState"].get<std::string>();
            if (TaskRunning(state)) {
                wait = next_wait(response);
                continue;
            }
            const std::string task_status =
                body.contains("TaskStatus") && body["TaskStatus"].is_string()
                    ? body["TaskStatus"].get<std::string>()
                    : std::string();
            if (state != "Completed" || task_status == "Critical") {
                const detail::ErrorMessage messages = detail::ReadTaskMessages(body);
                if (messages.has_code && !messages.coded_message.empty()) {
                    return Fail(static_cast<RaidErrorCode>(messages.code), messages.coded_message);
                }
                std::string text = Concat(
                    {"BMC ", authority_, ": the task of ", method, " ", path, " ended in ", state,
                     task_status.empty() ? "" : " (", task_status, task_status.empty() ? "" : ")",
                     ": ", messages.message.empty() ? "no message" : messages.message});
                return Fail(messages.has_code ? static_cast<RaidErrorCode>(messages.code)
                                              : Quillon::RaidConfig::RAID_REST_FAILED,
                            text);
            }
        }
        last_location_ = detail::PathOf(response.Header("location"));
        if (out != nullptr) {
            *out = std::move(body);
        }
        return RedfishStatus{};
    }
}

} // namespace redfish
