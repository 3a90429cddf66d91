#pragma once

#include <mutex>
#include <optional>
#include <string>

#include <nlohmann/json.hpp>

#include "emulator/http_request.hpp"
#include "emulator/http_response.hpp"
#include "emulator/mockup_tree.hpp"
#include "emulator/request_handler.hpp"
#include "emulator/session_store.hpp"

namespace emulator {

// The Redfish service of a recorded mockup tree: reads as recorded (with $expand where the
// recorded root offers it, and ETags), sessions and Basic authentication, and writes applied to
// the tree in memory the way a BMC applies them (docs/emulator.md). Requests are served one at
// a time.
class MockupService : public RequestHandler {
public:
    struct Credentials {
        std::string user;
        std::string password;
    };

    // Without credentials, any user name and password are let in.
    MockupService(MockupTree tree, std::optional<Credentials> credentials);

    HttpResponse Handle(const HttpRequest& request) override;

    void Hold() override { mutex_.lock(); }

private:
    HttpResponse Dispatch(const HttpRequest& request, const std::string& path,
                          const std::string& query);
    // Checks a session token or Basic credentials; the refusal when they do not pass.
    std::optional<HttpResponse> Authenticate(const HttpRequest& request) const;
    bool Admits(const std::string& user, const std::string& password) const;
    HttpResponse Get(const HttpRequest& request, const std::string& path,
                     const std::string& query) const;
    HttpResponse Login(const std::string& body);

    // Writes (mockup_service_write.cpp).
    HttpResponse Write(const HttpRequest& request, const std::string& path);
    // The methods a URI takes, for the Allow header: what Write would carry out there.
    std::string AllowedMethods(const std::string& path) const;
    HttpResponse AddMember(const std::string& collection, nlohmann::json body);
    HttpResponse Patch(const std::string& path, const nlohmann::json& body);
    HttpResponse Delete(const std::string& path);
    // The resource an action URI belongs to ("" when there is none): the part before
    // "/Actions/", or before "/Oem/" for the actions a vendor adds under Oem.
    std::string ActionOwner(const std::string& path) const;

    // Any resource at path (a tree key): the tree's, the live sessions', "/redfish".
    std::optional<nlohmann::json> Resolve(const std::string& path) const;
    // The Sessions collection: the root's Links.Sessions, else the usual place.
    std::string SessionsUri() const;
    // The recorded root's ProtocolFeaturesSupported.ExpandQuery; nullptr when it offers none.
    const nlohmann::json* ExpandOffer() const;

    MockupTree tree_;
    std::optional<Credentials> credentials_;
    std::mutex mutex_;
    SessionStore sessions_;
};

} // namespace emulator
