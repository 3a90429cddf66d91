#include "emulator/http_server.hpp"

#include <optional>
#include <thread>
#include <vector>

#include <boost/asio/io_context.hpp>
#include <boost/asio/ip/tcp.hpp>
#include <boost/asio/post.hpp>
#include <boost/asio/ssl/context.hpp>
#include <boost/asio/strand.hpp>
#include <boost/beast/core/tcp_stream.hpp>
#include <boost/beast/ssl/ssl_stream.hpp>

#include "emulator/http_connection.hpp"

namespace emulator {

namespace asio = boost::asio;
namespace beast = boost::beast;
using tcp = asio::ip::tcp;

namespace {

// Requests wait on the service's lock and on --latency-ms timers, not on these threads; a few
// let a slow answer (a large machine file) not hold up the other connections.
constexpr unsigned kThreads = 4;

} // namespace

// The sockets side: declared in this file so that the header stays free of Asio.
struct HttpServer::Network {
    std::optional<asio::ssl::context> tls;
    asio::io_context io{static_cast<int>(kThreads)};
    // Accepting and closing run on one strand, so that Stop never closes the acceptor under an
    // accept that is being started on another thread.
    tcp::acceptor acceptor{asio::make_strand(io)};
};

HttpServer::HttpServer(RequestHandler& service, const EmulatorOptions& options, RequestLog* log)
    : service_(service), options_(options), log_(log), network_(std::make_unique<Network>()) {}

HttpServer::~HttpServer() = default;

bool HttpServer::Bind(std::string& error) {
    beast::error_code failed;
    if (!options_.tls_cert.empty()) {
        network_->tls.emplace(asio::ssl::context::tls_server);
        asio::ssl::context& tls = *network_->tls;
        tls.set_options(asio::ssl::context::default_workarounds | asio::ssl::context::no_sslv2 |
                        asio::ssl::context::no_sslv3 | asio::ssl::context::no_tlsv1 |
                        asio::ssl::context::no_tlsv1_1);
        tls.use_certificate_chain_file(options_.tls_cert, failed);
        if (!failed) {
            tls.use_private_key_file(options_.tls_key, asio::ssl::context::pem, failed);
        }
        if (failed) {
            error = "cannot use the TLS certificate '" + options_.tls_cert + "' with key '" +
                    options_.tls_key + "'";
            return false;
        }
    }
    const std::string where = options_.host + ":" + std::to_string(options_.port);
    tcp::resolver resolver(network_->io);
    const auto endpoints =
        resolver.resolve(options_.host, std::to_string(options_.port),
                         tcp::resolver::passive | tcp::resolver::numeric_service, failed);
    if (failed || endpoints.empty()) {
        error = "cannot listen on " + where + ": " + failed.message();
        return false;
    }
    const tcp::endpoint endpoint = endpoints.begin()->endpoint();
    tcp::acceptor& acceptor = network_->acceptor;
    // Address reuse lets a restarted emulator take its port back at once; port reuse is left
    // off, so that a port another server listens on is refused instead of shared with it.
    acceptor.open(endpoint.protocol(), failed);
    if (!failed) {
        acceptor.set_option(asio::socket_base::reuse_address(true), failed);
    }
    if (!failed) {
        acceptor.bind(endpoint, failed);
    }
    if (!failed) {
        acceptor.listen(asio::socket_base::max_listen_connections, failed);
    }
    if (failed) {
        error = "cannot listen on " + where + ": " + failed.message();
        return false;
    }
    port_ = acceptor.local_endpoint().port();
    return true;
}

void HttpServer::Accept() {
    network_->acceptor.async_accept(asio::make_strand(network_->io), [this](beast::error_code error,
                                                                            tcp::socket socket) {
        if (error) {
            if (error != asio::error::operation_aborted && network_->acceptor.is_open()) {
                Accept();
            }
            return;
        }
        ++connections_;
        // Answers go out at once: with Nagle's algorithm each answer after the first on a
        // kept-alive connection waits for the client's delayed acknowledgement.
        beast::error_code ignored;
        socket.set_option(tcp::no_delay(true), ignored);
        const HttpConnectionContext context{service_, log_, options_.latency_ms, requests_};
        if (network_->tls) {
            std::make_shared<HttpConnection<beast::ssl_stream<beast::tcp_stream>>>(
                beast::ssl_stream<beast::tcp_stream>(std::move(socket), *network_->tls), context)
                ->Start();
        } else {
            std::make_shared<HttpConnection<beast::tcp_stream>>(
                beast::tcp_stream(std::move(socket)), context)
                ->Start();
        }
        Accept();
    });
}

void HttpServer::Run() {
    asio::post(network_->acceptor.get_executor(), [this] { Accept(); });
    std::vector<std::thread> workers;
    for (unsigned i = 1; i < kThreads; ++i) {
        workers.emplace_back([this] { network_->io.run(); });
    }
    network_->io.run();
    for (std::thread& worker : workers) {
        worker.join();
    }
}

void HttpServer::Stop() {
    asio::post(network_->acceptor.get_executor(), [this] {
        beast::error_code ignored;
        network_->acceptor.close(ignored);
        network_->io.stop();
    });
}

} // namespace emulator
