#include "emulator/http_server.hpp"

#include <cerrno>
#include <chrono>
#include <cstring>
#include <thread>

#include <sys/socket.h>

#include "emulator/counting_task_queue.hpp"
#include "emulator/httplib_include.hpp"

namespace emulator {

namespace {

// Enough for a whole run of raidcfg on one connection.
constexpr std::size_t kKeepAliveRequests = 100000;
constexpr time_t kKeepAliveSeconds = 30;

} // namespace

HttpServer::HttpServer(RequestHandler& service, const EmulatorOptions& options, RequestLog* log)
    : service_(service), options_(options), log_(log) {}

HttpServer::~HttpServer() = default;

bool HttpServer::Bind(std::string& error) {
    if (!options_.tls_cert.empty()) {
        server_ = std::make_unique<httplib::SSLServer>(options_.tls_cert.c_str(),
                                                       options_.tls_key.c_str());
        if (!server_->is_valid()) {
            error = "cannot use the TLS certificate '" + options_.tls_cert + "' with key '" +
                    options_.tls_key + "'";
            return false;
        }
    } else {
        server_ = std::make_unique<httplib::Server>();
    }
    server_->new_task_queue = [this] {
        return new CountingTaskQueue(connections_, CPPHTTPLIB_THREAD_POOL_COUNT);
    };
    // Answers go out at once: with Nagle's algorithm each answer after the first on a kept-alive
    // connection waited for the client's delayed acknowledgement, some 40 ms a request.
    server_->set_tcp_nodelay(true);
    server_->set_keep_alive_max_count(kKeepAliveRequests);
    server_->set_keep_alive_timeout(kKeepAliveSeconds);
    const auto handler = [this](const httplib::Request& request, httplib::Response& response) {
        ++requests_;
        HttpRequest in;
        in.method = request.method;
        in.target = request.target;
        in.body = request.body;
        for (const auto& [name, value] : request.headers) {
            in.headers.emplace_back(name, value);
        }
        const HttpResponse out = service_.Handle(in);
        if (log_ != nullptr) {
            log_->Write(in.method, in.target, out.status);
        }
        if (options_.latency_ms > 0) {
            std::this_thread::sleep_for(std::chrono::milliseconds(options_.latency_ms));
        }
        response.status = out.status;
        std::string content_type = "application/json";
        for (const auto& [name, value] : out.headers) {
            if (name == "Content-Type") {
                content_type = value;
            } else {
                response.set_header(name, value);
            }
        }
        if (!out.body.empty()) {
            response.set_content(out.body, content_type);
        } else if (in.method == "HEAD" && !out.Header("Content-Type").empty()) {
            // A HEAD answer carries the headers of the GET, its type included.
            response.set_header("Content-Type", content_type);
        }
    };
    const std::string any = ".*";
    server_->Get(any, handler);
    server_->Post(any, handler);
    server_->Patch(any, handler);
    server_->Delete(any, handler);
    server_->Put(any, handler);
    // Address reuse lets a restarted emulator take its port back at once; port reuse is left
    // off, so that a port another server listens on is refused instead of shared with it.
    server_->set_socket_options([](int socket) {
        const int yes = 1;
        setsockopt(socket, SOL_SOCKET, SO_REUSEADDR, &yes, sizeof(yes));
    });
    errno = 0;
    if (options_.port == 0) {
        port_ = server_->bind_to_any_port(options_.host);
    } else if (server_->bind_to_port(options_.host, options_.port)) {
        port_ = options_.port;
    } else {
        port_ = -1;
    }
    const int bind_error = errno;
    if (port_ <= 0) {
        error = "cannot listen on " + options_.host + ":" + std::to_string(options_.port);
        if (bind_error != 0) {
            error += std::string(": ") + std::strerror(bind_error);
        }
        return false;
    }
    return true;
}

void HttpServer::Run() {
    server_->listen_after_bind();
}

void HttpServer::Stop() {
    server_->stop();
}

} // namespace emulator
