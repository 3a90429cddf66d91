#pragma once

#include <boost/beast/core/error.hpp>
#include <boost/beast/http/message.hpp>
#include <boost/beast/http/string_body.hpp>

#include "emulator/http_request.hpp"
#include "emulator/http_response.hpp"

namespace emulator {

// The wire side of one exchange: turns a parsed HTTP/1.1 request into the socket-free request
// the services take, and their answer into the message that goes back, with the framing
// headers (Content-Length, Connection) the protocol asks for.
class HttpExchange {
public:
    using WireRequest = boost::beast::http::request<boost::beast::http::string_body>;
    using WireResponse = boost::beast::http::response<boost::beast::http::string_body>;

    // What the service sees. A HEAD is handed on as the GET it mirrors, so that its answer
    // carries exactly the GET's status and headers.
    static HttpRequest ToService(const WireRequest& request);

    // The message for the service's answer. A HEAD answer drops the body but keeps the GET's
    // Content-Length; keep_alive false adds "Connection: close".
    static WireResponse ToWire(const HttpResponse& response, bool head, bool keep_alive,
                               unsigned version);

    // The Redfish error for a request that could not be read as HTTP: 413 for a body over the
    // limit, 431 for headers over theirs, 400 for the rest. The connection is closed after it.
    static HttpResponse FramingError(const boost::beast::error_code& error);
};

} // namespace emulator
