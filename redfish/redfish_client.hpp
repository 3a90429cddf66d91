#pragma once

#include <chrono>
#include <cstddef>
#include <functional>
#include <map>
#include <memory>
#include <string>
#include <utility>
#include <vector>

#include <nlohmann/json.hpp>

#include "redfish/http_transport.hpp"
#include "result/raid_error_code.hpp"

namespace redfish {

// The outcome of one Redfish operation in the backend contract's terms: a RaidErrorCode and,
// on failure, a text that says what happened.
struct RedfishStatus {
    Quillon::RaidConfig::RaidErrorCode code = Quillon::RaidConfig::RAID_OK;
    std::string text;

    bool ok() const { return code == Quillon::RaidConfig::RAID_OK; }
};

struct ClientSettings {
    std::string user;
    std::string password;
    // Bound on the whole of one operation, retries and task polling included.
    std::chrono::seconds total_limit{120};
    // Attempts after the first one, for resets and 503 answers of requests that are safe to repeat.
    int max_retries = 3;
    std::chrono::milliseconds first_backoff{200};
    // How the client waits between attempts and task polls; tests put a recorder here.
    std::function<void(std::chrono::milliseconds)> sleep;
    // The clock the bounds are measured with. Empty: the steady clock, to which the waits of an
    // injected sleep are added (so a recorder that does not really sleep still uses up time).
    std::function<std::chrono::steady_clock::time_point()> now;
    // Longest wait between two polls of a task monitor (Retry-After and back-off are capped).
    std::chrono::milliseconds max_poll_interval{5000};
};

// A Redfish session with one BMC over one transport: log-in (a session, or Basic
// authentication where sessions are refused), log-out, reads through a cache of the BMC's
// resources that any write drops, $expand when the service offers it, bounded retries and
// polling of task monitors. Every failure becomes a RaidErrorCode with a text:
//   RAID_CONNECT_FAILED (4)  the BMC could not be reached, TLS failed, or time ran out
//                            ("BMC 10.0.0.5: connection refused", "BMC 10.0.0.5: no answer
//                            within 30 s")
//   RAID_AUTH_FAILED (1)     401/403 on log-in or later ("BMC 10.0.0.5: authentication failed")
//   RAID_TARGET_NOT_FOUND (5) 404
//   RAID_REST_FAILED (32)    any other HTTP failure, malformed JSON, a failed task
// The texts of 404 and of other HTTP failures read
//   "BMC 10.0.0.5: HTTP 500 on POST /redfish/v1/Systems/1/Storage/1/Volumes: <message>"
// with the first @Message.ExtendedInfo Message of the error body (else error.message, else the
// status's reason phrase, else "no message"); malformed JSON reads
//   "BMC 10.0.0.5: malformed JSON in the answer to GET /redfish/v1/Systems".
// Where the BMC's error carries an "Oem": {"Raidcfg": {"Code": N}} extended info (the
// emulator does), that code N with the info's Message as the whole text: a refusal by the
// controller, worded for the user.
// The password and the session token are never written to the log or into a text.
//
// Bounds and retries. Every request carries the transport's per-request limit, shortened to
// what is left of the operation's total_limit (log-in, retries and task polling included).
// GET, PATCH and DELETE are repeated up to max_retries times, after first_backoff doubled each
// time, when the connection broke off (Reset), when the BMC could not be reached after it had
// answered once this run (Connect), and on 503 (waiting Retry-After seconds when given; when
// that wait does not fit into the total, the 503 is the answer). A POST is repeated only when
// nothing of it can have reached the BMC (Connect after a first answer); never after a
// timeout, a reset or a 503. A DELETE that answers 404 on a repetition after a reset counts as
// done. A timeout is never repeated.
//
// Tasks. A write answered with 202 is followed to its task monitor (Location header, else
// the body's @odata.id), polled with GET after Retry-After or a back-off (capped by
// max_poll_interval) until it answers anything but 202: a task resource still running is polled
// on; TaskState Completed (TaskStatus not Critical) or a plain answer is success; Exception,
// Killed, Cancelled or Critical are failures with the task's messages; an HTTP error is the
// write's error. Running out of the total gives RAID_CONNECT_FAILED. A write that the BMC puts
// off until the server is reset (@Redfish.OperationApplyTime other than "Immediate" in the
// answer or the task, or a Pending task whose messages say it waits for a reset) is
// RAID_OPERATION_FAILED (3) with a text that says so: it is not done.
//
// Cache and ETags. GET answers are kept by path (with their ETag header or @odata.etag) until
// the next POST, PATCH or DELETE, which drops the whole cache. A PATCH of a path whose cached
// copy has an ETag carries If-Match with it (412 then means someone else changed it).
class RedfishClient {
public:
    RedfishClient(std::unique_ptr<HttpTransport> transport, ClientSettings settings);
    // Logs out when a session is open.
    ~RedfishClient();
    RedfishClient(const RedfishClient&) = delete;
    RedfishClient& operator=(const RedfishClient&) = delete;

    // Reads the service root and logs in; checks the credentials before anything else is done.
    RedfishStatus Open();
    // Deletes the session, if one is open. Safe to call more than once.
    void Close();

    // A resource by its path, from the cache when it was read since the last write.
    RedfishStatus Get(const std::string& path, nlohmann::json& out);
    // A resource with its links expanded levels deep (1 or 2), outside "Links": with "$expand"
    // when the service root advertises it, otherwise (or when the BMC answers 400 or 501 to it,
    // from then on for the whole run) link by link; what a service leaves unexpanded is followed
    // link by link too. Links that answer with an HTTP error stay unexpanded ({"@odata.id": ...}
    // alone); a transport or authentication failure fails the whole read. The result is cached
    // like a GET, and so are the deepest resources of a service-side expansion.
    RedfishStatus GetExpanded(const std::string& path, int levels, nlohmann::json& out);
    // Writes. A 202 answer is followed to its task monitor until the task ends. out, when given,
    // receives the final answer's JSON (empty for none). Each drops the read cache.
    RedfishStatus Post(const std::string& path, const nlohmann::json& body,
                       nlohmann::json* out = nullptr);
    RedfishStatus Patch(const std::string& path, const nlohmann::json& body,
                        nlohmann::json* out = nullptr);
    RedfishStatus Delete(const std::string& path);

    const nlohmann::json& ServiceRoot() const { return service_root_; }
    bool ExpandSupported() const;
    std::size_t RequestsSent() const { return requests_sent_; }
    std::size_t ConnectionsOpened() const;

    // The BMC as texts name it (the transport's authority).
    std::string Authority() const;
    // True after Open when the BMC refused sessions and Basic authentication is used.
    bool UsesBasicAuth() const { return basic_auth_; }
    // True while a session is open.
    bool HasSession() const { return !session_token_.empty(); }
    // The path of the last successful write's Location header (a 201 Created's new resource),
    // as a path without scheme and host; empty when it had none.
    const std::string& LastLocation() const { return last_location_; }
    // Forgets every cached read.
    void DropCache();

private:
    // The bound of one operation: its deadline on the client's clock, its length for texts, and
    // how many times one request of it may be repeated.
    struct Budget {
        std::chrono::steady_clock::time_point deadline;
        std::chrono::milliseconds limit;
        int max_retries;
    };
    Budget NewBudget() const;
    Budget NewBudget(std::chrono::milliseconds limit) const;
    std::chrono::milliseconds Remaining(const Budget& budget) const;

    // One request with authentication, the retry policy and the bound; transport failures and
    // an exhausted bound come back as a failed status, any HTTP answer as ok with response set.
    RedfishStatus Send(const std::string& method, const std::string& path, const std::string& body,
                       Budget& budget, HttpResponse& response, bool authenticate = true,
                       const std::vector<std::pair<std::string, std::string>>& extra = {});
    RedfishStatus Write(const std::string& method, const std::string& path,
                        const nlohmann::json* body, nlohmann::json* out);
    RedfishStatus FollowTask(const std::string& method, const std::string& path,
                             const HttpResponse& accepted, Budget& budget, nlohmann::json* out);
    RedfishStatus GetWithin(const std::string& path, Budget& budget, nlohmann::json& out);
    // The failure of a write that the BMC puts off until the server is reset.
    RedfishStatus Deferred(const std::string& method, const std::string& path,
                           const std::string& apply_time) const;
    // Client-side expansion: the properties of a resource (outside "Links" and annotations)
    // levels deep, and one property value found at that level.
    RedfishStatus ExpandProperties(nlohmann::json& resource, int levels, Budget& budget);
    RedfishStatus ExpandValue(nlohmann::json& value, int levels, Budget& budget);
    RedfishStatus LogIn(Budget& budget);
    RedfishStatus CheckCredentials(Budget& budget);
    // Puts the resources that a service-side $expand answer holds at depth levels (those that
    // read as a plain GET would give them) into the cache.
    void SeedCache(const nlohmann::json& node, int depth, int levels);
    void Store(const std::string& path, const nlohmann::json& value, const HttpResponse& response);
    // The $expand query for levels, "" when the service does not offer one; server_levels
    // receives how deep the service will expand (the rest is done link by link).
    std::string ExpandQuery(int levels, int& server_levels) const;

    std::chrono::steady_clock::time_point Now() const;
    void Sleep(std::chrono::milliseconds duration);
    // The text with the password and the session token masked.
    std::string Scrub(std::string text) const;
    // A failure, its text scrubbed and logged.
    RedfishStatus Fail(Quillon::RaidConfig::RaidErrorCode code, std::string text) const;
    // The failure of an HTTP answer with status >= 300 to method path.
    RedfishStatus Failure(const std::string& method, const std::string& path,
                          const HttpResponse& response) const;

    std::unique_ptr<HttpTransport> transport_;
    ClientSettings settings_;
    nlohmann::json service_root_;
    std::string session_token_;
    std::string session_path_;
    bool basic_auth_ = false;
    std::map<std::string, nlohmann::json> cache_;
    std::size_t requests_sent_ = 0;

    std::map<std::string, std::string> etags_; // ETags of the cached reads, by path
    std::string authority_;
    std::string last_location_;
    bool opened_ = false;
    bool reached_ = false;               // the BMC answered at least once this run
    bool expand_refused_ = false;        // $expand answered 400/501: link by link from now on
    std::chrono::milliseconds slept_{0}; // waits of an injected sleep (for the default clock)
};

} // namespace redfish
