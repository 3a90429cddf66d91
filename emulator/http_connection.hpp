#pragma once

#include <array>
#include <atomic>
#include <chrono>
#include <cstdint>
#include <memory>
#include <optional>
#include <string>
#include <type_traits>
#include <utility>

#include <boost/asio/ssl/stream_base.hpp>
#include <boost/asio/steady_timer.hpp>
#include <boost/beast/core.hpp>
#include <boost/beast/http.hpp>

#include "emulator/http_exchange.hpp"
#include "emulator/request_handler.hpp"
#include "emulator/request_log.hpp"

namespace emulator {

// What every connection of one server shares: the service, the request log and the counters.
struct HttpConnectionContext {
    RequestHandler& service;
    RequestLog* log;
    int latency_ms;
    std::atomic<unsigned long long>& requests;
};

// One client connection, plain or TLS (Stream is a beast::tcp_stream or an ssl_stream over
// one): reads requests one after the other, bodies included whatever the method, answers each
// in order (so pipelined requests are answered as sent), and closes after an answer that says
// "Connection: close", after a request it cannot read (answered with a Redfish error first),
// or when the client stays idle.
template <typename Stream>
class HttpConnection : public std::enable_shared_from_this<HttpConnection<Stream>> {
public:
    static constexpr std::chrono::seconds kIdle{30};
    // A policy's writes are small; this only stops a runaway client.
    static constexpr std::uint64_t kBodyLimit = 16ULL * 1024 * 1024;

    HttpConnection(Stream stream, const HttpConnectionContext& context)
        : stream_(std::move(stream)), context_(context),
          timer_(boost::beast::get_lowest_layer(stream_).get_executor()) {}

    // Shakes hands first on TLS, then reads the first request.
    void Start() {
        if constexpr (kTls) {
            boost::beast::get_lowest_layer(stream_).expires_after(kIdle);
            stream_.async_handshake(
                boost::asio::ssl::stream_base::server,
                [self = this->shared_from_this()](boost::beast::error_code error) {
                    if (error) {
                        self->Close();
                        return;
                    }
                    self->ReadNext();
                });
        } else {
            ReadNext();
        }
    }

private:
    static constexpr bool kTls = !std::is_same_v<Stream, boost::beast::tcp_stream>;

    void ReadNext() {
        parser_.emplace();
        parser_->body_limit(kBodyLimit);
        boost::beast::get_lowest_layer(stream_).expires_after(kIdle);
        boost::beast::http::async_read_header(
            stream_, buffer_, *parser_,
            [self = this->shared_from_this()](boost::beast::error_code error, std::size_t) {
                self->OnHeader(error);
            });
    }

    void OnHeader(boost::beast::error_code error) {
        if (error) {
            Fail(error);
            return;
        }
        // A client that waits for leave to send its body gets it at once.
        if (boost::beast::iequals(parser_->get()[boost::beast::http::field::expect],
                                  "100-continue")) {
            auto go_on = std::make_shared<HttpExchange::WireResponse>(
                boost::beast::http::status::continue_, parser_->get().version());
            boost::beast::http::async_write(stream_, *go_on,
                                            [self = this->shared_from_this(),
                                             go_on](boost::beast::error_code written, std::size_t) {
                                                if (written) {
                                                    self->Close();
                                                    return;
                                                }
                                                self->ReadBody();
                                            });
            return;
        }
        ReadBody();
    }

    void ReadBody() {
        boost::beast::http::async_read(
            stream_, buffer_, *parser_,
            [self = this->shared_from_this()](boost::beast::error_code error, std::size_t) {
                if (error) {
                    self->Fail(error);
                    return;
                }
                self->Serve();
            });
    }

    // A read that ended: quietly when the client closed, went away or stayed idle; with a
    // Redfish error when what it sent is not HTTP the parser takes.
    void Fail(boost::beast::error_code error) {
        namespace http = boost::beast::http;
        const bool unreadable =
            error.category() == http::make_error_code(http::error::bad_method).category() &&
            error != http::error::end_of_stream && error != http::error::partial_message;
        if (!unreadable) {
            Close();
            return;
        }
        const HttpResponse answer = HttpExchange::FramingError(error);
        if (context_.log != nullptr) {
            context_.log->Write("-", "-", answer.status);
        }
        Send(HttpExchange::ToWire(answer, false, false, 11));
    }

    void Serve() {
        ++context_.requests;
        const HttpExchange::WireRequest& request = parser_->get();
        const HttpResponse answer = context_.service.Handle(HttpExchange::ToService(request));
        if (context_.log != nullptr) {
            context_.log->Write(std::string(request.method_string()), std::string(request.target()),
                                answer.status);
        }
        const bool head = request.method() == boost::beast::http::verb::head;
        HttpExchange::WireResponse response =
            HttpExchange::ToWire(answer, head, request.keep_alive(), request.version());
        if (context_.latency_ms <= 0) {
            Send(std::move(response));
            return;
        }
        timer_.expires_after(std::chrono::milliseconds(context_.latency_ms));
        auto pending = std::make_shared<HttpExchange::WireResponse>(std::move(response));
        timer_.async_wait([self = this->shared_from_this(), pending](boost::beast::error_code) {
            self->Send(std::move(*pending));
        });
    }

    void Send(HttpExchange::WireResponse response) {
        auto message = std::make_shared<HttpExchange::WireResponse>(std::move(response));
        boost::beast::get_lowest_layer(stream_).expires_after(kIdle);
        boost::beast::http::async_write(stream_, *message,
                                        [self = this->shared_from_this(),
                                         message](boost::beast::error_code error, std::size_t) {
                                            if (error || !message->keep_alive()) {
                                                self->Close();
                                                return;
                                            }
                                            self->ReadNext();
                                        });
    }

    // Ends the connection: a TLS one says close_notify first (bounded by the timer).
    void Close() {
        if constexpr (kTls) {
            boost::beast::get_lowest_layer(stream_).expires_after(std::chrono::seconds(1));
            stream_.async_shutdown([self = this->shared_from_this()](boost::beast::error_code) {
                boost::beast::error_code ignored;
                boost::beast::get_lowest_layer(self->stream_).socket().close(ignored);
            });
        } else {
            // A lingering close: what the client still sends is read and dropped for a moment,
            // so that closing with unread data does not reset the connection before the
            // client has read the last answer.
            boost::beast::error_code ignored;
            stream_.socket().shutdown(boost::asio::ip::tcp::socket::shutdown_send, ignored);
            stream_.expires_after(std::chrono::seconds(1));
            Drain();
        }
    }

    void Drain() {
        if constexpr (!kTls) {
            stream_.async_read_some(
                boost::asio::buffer(drain_),
                [self = this->shared_from_this()](boost::beast::error_code error, std::size_t) {
                    if (error) {
                        boost::beast::error_code ignored;
                        self->stream_.socket().close(ignored);
                        return;
                    }
                    self->Drain();
                });
        }
    }

    Stream stream_;
    HttpConnectionContext context_;
    boost::asio::steady_timer timer_;
    boost::beast::flat_buffer buffer_;
    std::array<char, 4096> drain_{};
    std::optional<boost::beast::http::request_parser<boost::beast::http::string_body>> parser_;
};

} // namespace emulator
