#pragma once

#include <atomic>
#include <memory>
#include <string>

#include "emulator/emulator_options.hpp"
#include "emulator/request_handler.hpp"
#include "emulator/request_log.hpp"

namespace emulator {

// The HTTP/1.1 layer around a Redfish service, plain or TLS: binds, reads every request whole
// (bodies on any method, pipelined requests in order), hands it to the service, answers after
// --latency-ms, counts requests and connections, and logs each request when given a log.
class HttpServer {
public:
    HttpServer(RequestHandler& service, const EmulatorOptions& options, RequestLog* log = nullptr);
    ~HttpServer();
    HttpServer(const HttpServer&) = delete;
    HttpServer& operator=(const HttpServer&) = delete;

    // Loads the TLS material (when asked for) and binds. False with a one-line reason.
    bool Bind(std::string& error);
    int port() const { return port_; }
    // Serves until Stop; call from one thread.
    void Run();
    // Ends Run: no new connections; a request being served finishes, open connections close.
    void Stop();

    unsigned long long requests() const { return requests_; }
    unsigned long long connections() const { return connections_; }

private:
    struct Network;

    void Accept();

    RequestHandler& service_;
    EmulatorOptions options_;
    RequestLog* log_;
    std::unique_ptr<Network> network_;
    int port_ = 0;
    std::atomic<unsigned long long> requests_{0};
    std::atomic<unsigned long long> connections_{0};
};

} // namespace emulator
