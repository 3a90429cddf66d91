#pragma once

#include <memory>
#include <mutex>
#include <optional>
#include <string>

#include <nlohmann/json.hpp>

#include "emulator/http_request.hpp"
#include "emulator/http_response.hpp"
#include "emulator/render_cache.hpp"
#include "emulator/request_handler.hpp"
#include "emulator/session_store.hpp"
#include "emulator/task_store.hpp"
#include "sim/machine_store.hpp"

namespace emulator {

// The Redfish service of a machine file: authentication, reads (with $expand and ETags) and
// writes, one request in and one response out, with no socket involved (docs/redfish.md).
// Requests are served one at a time: the machine file is read anew for each.
class RedfishService : public RequestHandler {
public:
    RedfishService(std::shared_ptr<sim::MachineStore> store, bool expand_supported);

    HttpResponse Handle(const HttpRequest& request) override;

    void Hold() override { mutex_.lock(); }

    // The strong ETag of a resource body: a hash of the body without its @odata.etag.
    static std::string ETag(const nlohmann::json& resource);

private:
    HttpResponse Dispatch(const HttpRequest& request, const std::string& path,
                          const std::string& query, const sim::Machine& machine);
    // Checks a session token or Basic credentials; the refusal when they do not pass.
    std::optional<HttpResponse> Authenticate(const HttpRequest& request,
                                             const sim::Machine& machine) const;
    // The 200 answer of a read: the resource (expanded as the query asks), its ETag and type
    // headers; a refusal when there is none.
    HttpResponse Render(const std::string& path, const std::string& query,
                        const sim::Machine& machine) const;
    HttpResponse Get(const HttpRequest& request, const std::string& path, const std::string& query,
                     const sim::Machine& machine);
    HttpResponse Login(const std::string& body, const sim::Machine& machine);
    // ComputerSystem.Reset: its ResetType checked, then accepted.
    static HttpResponse ResetSystem(const std::string& body);
    HttpResponse TaskMonitor(int task, const sim::Machine& machine);
    // Any resource of the service at path, with its @odata.etag; empty when there is none.
    std::optional<nlohmann::json> Resolve(const std::string& path,
                                          const sim::Machine& machine) const;
    std::optional<nlohmann::json> ServiceResource(const std::string& path) const;

    std::shared_ptr<sim::MachineStore> store_;
    bool expand_supported_;
    std::mutex mutex_;
    SessionStore sessions_;
    TaskStore tasks_;
    RenderCache cache_;
};

} // namespace emulator
