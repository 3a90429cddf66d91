#pragma once

#include <atomic>
#include <memory>
#include <string>

#include "emulator/emulator_options.hpp"
#include "emulator/redfish_service.hpp"

namespace httplib {
class Server;
}

namespace emulator {

// The thin HTTP(S) layer around the Redfish service: binds, hands every request to the service
// (after --latency-ms), and counts requests and connections.
class HttpServer {
public:
    HttpServer(RedfishService& service, const EmulatorOptions& options);
    ~HttpServer();
    HttpServer(const HttpServer&) = delete;
    HttpServer& operator=(const HttpServer&) = delete;

    // Loads the TLS material (when asked for) and binds. False with a one-line reason.
    bool Bind(std::string& error);
    int port() const { return port_; }
    // Serves until Stop; call from one thread.
    void Run();
    // Ends Run: no new connections, open ones are closed.
    void Stop();

    unsigned long long requests() const { return requests_; }
    unsigned long long connections() const { return connections_; }

private:
    RedfishService& service_;
    EmulatorOptions options_;
    std::unique_ptr<httplib::Server> server_;
    int port_ = 0;
    std::atomic<unsigned long long> requests_{0};
    std::atomic<unsigned long long> connections_{0};
};

} // namespace emulator
