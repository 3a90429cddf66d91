#pragma once

#include <chrono>
#include <cstddef>
#include <map>
#include <string>
#include <utility>
#include <vector>

namespace redfish {

// One HTTP request towards a BMC. path is absolute ("/redfish/v1/Systems?$expand=.") and body
// is JSON text, empty for none.
struct HttpRequest {
    std::string method; // "GET", "POST", "PATCH" or "DELETE"
    std::string path;
    std::string body;
    std::vector<std::pair<std::string, std::string>> headers;
    // Upper bound for this request; the transport applies the smaller of it and its own
    // per-request limit. Zero: the transport's own limit alone.
    std::chrono::milliseconds timeout{0};
};

// The answer to one request. Header names are lower-case.
struct HttpResponse {
    long status = 0;
    std::string body;
    std::map<std::string, std::string> headers;

    // The value of a header, empty when the response has none.
    std::string Header(const std::string& lower_case_name) const {
        const auto found = headers.find(lower_case_name);
        return found == headers.end() ? std::string() : found->second;
    }
};

// Why a request got no HTTP answer at all.
enum class TransportError {
    None,    // an HTTP answer came, whatever its status
    Connect, // the BMC could not be reached (refused, unknown host, no route)
    Timeout, // no complete answer within the request's time limit
    Tls,     // the TLS handshake or the certificate check failed
    Reset,   // the connection broke off before the answer was complete
    Other,
};

struct TransportOutcome {
    TransportError error = TransportError::None;
    std::string text; // what happened, in words; empty with TransportError::None

    bool ok() const { return error == TransportError::None; }
};

// Moves requests to one BMC and back. The Redfish client sits on this interface so that tests
// can answer with canned responses; CurlTransport is the real one.
class HttpTransport {
public:
    HttpTransport() = default;
    virtual ~HttpTransport() = default;
    HttpTransport(const HttpTransport&) = delete;
    HttpTransport& operator=(const HttpTransport&) = delete;

    virtual TransportOutcome Perform(const HttpRequest& request, HttpResponse& response) = 0;
    // The BMC as error texts name it: the host, with ":port" when the port was given.
    virtual std::string Authority() const = 0;
    // How many connections were opened so far (one when keep-alive held for the whole run).
    virtual std::size_t ConnectionsOpened() const = 0;
};

} // namespace redfish
