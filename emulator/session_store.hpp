#pragma once

#include <functional>
#include <map>
#include <optional>
#include <string>
#include <vector>

#include "emulator/http_request.hpp"
#include "emulator/http_response.hpp"

namespace emulator {

// The open Redfish sessions of the emulator, in memory: they end with DELETE or with the
// process. A session has a public id (its URL) and a secret token; the token is never shown.
class SessionStore {
public:
    struct Session {
        std::string id;
        std::string user;
    };

    SessionStore();

    // Opens a session for user; returns its id and sets token.
    std::string Open(const std::string& user, std::string& token);
    // The session of a token, if it is open.
    std::optional<Session> FindByToken(const std::string& token) const;
    std::optional<Session> FindById(const std::string& id) const;
    // Ends the session with that id; false when there is none.
    bool Close(const std::string& id);
    std::vector<Session> All() const;

    // Checks a request's session token, else its Basic credentials with admits; the refusal
    // (401 with a Redfish error) when neither passes.
    std::optional<HttpResponse>
    Check(const HttpRequest& request,
          const std::function<bool(const std::string& user, const std::string& password)>& admits)
        const;

private:
    std::string RandomHex();

    std::map<std::string, Session> by_token_;
    unsigned long long counter_ = 0;
    unsigned long long seed_ = 0;
};

} // namespace emulator
