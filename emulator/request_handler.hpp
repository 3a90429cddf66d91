#pragma once

#include "emulator/http_request.hpp"
#include "emulator/http_response.hpp"

namespace emulator {

// What the HTTP layer hands every request to: one of the emulator's Redfish services (a machine
// file, or a recorded mockup tree), free of any socket.
class RequestHandler {
public:
    virtual ~RequestHandler() = default;

    // One request in, one response out; safe to call from the server's worker threads.
    virtual HttpResponse Handle(const HttpRequest& request) = 0;

    // Waits for the request being served, if any, and serves none after it: for a process that
    // ends without waiting for idle connections. Intended to be called once, at the very end.
    virtual void Hold() = 0;
};

} // namespace emulator
