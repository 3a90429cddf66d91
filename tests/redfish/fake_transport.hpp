#pragma once

// A canned BMC for tests of code that sits on redfish::HttpTransport (the Redfish client and
// whatever is built on it). Header only.
//
//   auto bmc = std::make_shared<raidcfg_test::FakeBmc>();
//   bmc->StandardService();                                   // root, sessions, log-out
//   bmc->On("GET", "/redfish/v1/Systems", raidcfg_test::Json(200, R"({"Members": []})"));
//   redfish::RedfishClient client(bmc->Transport(), settings);
//   ... bmc->Count("DELETE", bmc->session_path) ...
//
// Answers are looked up by method and exact path (query included). Each route holds a queue:
// every request takes the next answer, and the last one stays for all further requests. A
// route may also be a function of the request. Requests without a route get 404 with a Redfish
// error body. Every request is recorded, also after the client that sent it is gone (the
// FakeBmc is shared with the transport).

#include <cstddef>
#include <deque>
#include <functional>
#include <map>
#include <memory>
#include <string>
#include <utility>
#include <vector>

#include "redfish/http_transport.hpp"

namespace raidcfg_test {

// One canned answer: an HTTP response, or a transport failure when error is not None.
struct FakeReply {
    long status = 200;
    std::string body;
    std::map<std::string, std::string> headers; // lower-case names
    redfish::TransportError error = redfish::TransportError::None;
    std::string error_text;
};

inline FakeReply Json(long status, std::string body,
                      std::map<std::string, std::string> headers = {}) {
    FakeReply reply;
    reply.status = status;
    reply.body = std::move(body);
    reply.headers = std::move(headers);
    return reply;
}

inline FakeReply Status(long status, std::map<std::string, std::string> headers = {}) {
    return Json(status, std::string(), std::move(headers));
}

inline FakeReply Broken(redfish::TransportError error, std::string text) {
    FakeReply reply;
    reply.error = error;
    reply.error_text = std::move(text);
    return reply;
}

// A Redfish error body with one extended info message.
inline std::string ErrorBody(const std::string& message, const std::string& extra_info = "") {
    return R"({"error": {"code": "Base.1.8.GeneralError", "message": "See extended info.",)"
           R"( "@Message.ExtendedInfo": [{"MessageId": "Base.1.8.GeneralError", "Message": ")" +
           message + "\"" + (extra_info.empty() ? std::string() : ", " + extra_info) + "}]}}";
}

class FakeBmc : public std::enable_shared_from_this<FakeBmc> {
public:
    using Handler = std::function<FakeReply(const redfish::HttpRequest&)>;

    std::string authority = "10.0.0.5";
    std::size_t connections = 1;
    std::vector<redfish::HttpRequest> requests;
    std::string token = "tok-5f2e9a71c3";
    std::string session_path = "/redfish/v1/SessionService/Sessions/7";

    // Appends an answer to the route's queue.
    void On(const std::string& method, const std::string& path, FakeReply reply) {
        routes_[Key(method, path)].replies.push_back(std::move(reply));
    }
    // Replaces the route by a function of the request.
    void On(const std::string& method, const std::string& path, Handler handler) {
        Route& route = routes_[Key(method, path)];
        route.replies.clear();
        route.handler = std::move(handler);
    }
    // Forgets the route's answers.
    void Clear(const std::string& method, const std::string& path) {
        routes_.erase(Key(method, path));
    }

    // The service root (with ProtocolFeaturesSupported.ExpandQuery when expand), a session
    // service that answers 201 with token and Location, and the session's DELETE.
    void StandardService(bool expand = false, int max_levels = 2) {
        std::string root =
            R"({"@odata.id": "/redfish/v1", "@odata.type": "#ServiceRoot.v1_15_0.ServiceRoot",)"
            R"( "Systems": {"@odata.id": "/redfish/v1/Systems"},)"
            R"( "Managers": {"@odata.id": "/redfish/v1/Managers"},)"
            R"( "SessionService": {"@odata.id": "/redfish/v1/SessionService"},)"
            R"( "Links": {"Sessions": {"@odata.id": "/redfish/v1/SessionService/Sessions"}})";
        if (expand) {
            root += R"(, "ProtocolFeaturesSupported": {"ExpandQuery": {"ExpandAll": true,)"
                    R"( "Levels": true, "Links": true, "NoLinks": true, "MaxLevels": )" +
                    std::to_string(max_levels) + "}}";
        }
        root += "}";
        On("GET", "/redfish/v1", Json(200, root));
        On("POST", "/redfish/v1/SessionService/Sessions",
           Json(201, R"({"@odata.id": ")" + session_path + R"(", "Id": "7"})",
                {{"x-auth-token", token}, {"location", "https://10.0.0.5" + session_path}}));
        On("DELETE", session_path, Status(204));
    }

    std::size_t Count(const std::string& method, const std::string& path) const {
        std::size_t count = 0;
        for (const auto& request : requests) {
            if (request.method == method && request.path == path) {
                ++count;
            }
        }
        return count;
    }

    // The value of a header of a recorded request, empty when it had none.
    static std::string HeaderOf(const redfish::HttpRequest& request, const std::string& name) {
        for (const auto& header : request.headers) {
            if (header.first == name) {
                return header.second;
            }
        }
        return std::string();
    }

    std::unique_ptr<redfish::HttpTransport> Transport();

    redfish::TransportOutcome Answer(const redfish::HttpRequest& request,
                                     redfish::HttpResponse& response) {
        requests.push_back(request);
        response = redfish::HttpResponse();
        FakeReply reply;
        const auto found = routes_.find(Key(request.method, request.path));
        if (found == routes_.end()) {
            reply =
                Json(404, ErrorBody("The resource at the URI " + request.path + " was not found."));
        } else if (found->second.handler) {
            reply = found->second.handler(request);
        } else if (found->second.replies.empty()) {
            reply = Json(404, ErrorBody("no answer left"));
        } else {
            reply = found->second.replies.front();
            if (found->second.replies.size() > 1) {
                found->second.replies.pop_front();
            }
        }
        if (reply.error != redfish::TransportError::None) {
            return redfish::TransportOutcome{reply.error, reply.error_text};
        }
        response.status = reply.status;
        response.body = reply.body;
        response.headers = reply.headers;
        return redfish::TransportOutcome{};
    }

private:
    struct Route {
        std::deque<FakeReply> replies;
        Handler handler;
    };
    static std::string Key(const std::string& method, const std::string& path) {
        return method + " " + path;
    }
    std::map<std::string, Route> routes_;
};

// The transport side: forwards to a FakeBmc it shares.
class FakeTransport : public redfish::HttpTransport {
public:
    explicit FakeTransport(std::shared_ptr<FakeBmc> bmc) : bmc_(std::move(bmc)) {}

    redfish::TransportOutcome Perform(const redfish::HttpRequest& request,
                                      redfish::HttpResponse& response) override {
        return bmc_->Answer(request, response);
    }
    std::string Authority() const override { return bmc_->authority; }
    std::size_t ConnectionsOpened() const override { return bmc_->connections; }

private:
    std::shared_ptr<FakeBmc> bmc_;
};

inline std::unique_ptr<redfish::HttpTransport> FakeBmc::Transport() {
    return std::make_unique<FakeTransport>(shared_from_this());
}

} // namespace raidcfg_test
