#include "tests/emulator/raw_client.hpp"

#include <cctype>
#include <stdexcept>

#include <arpa/inet.h>
#include <fcntl.h>
#include <netinet/in.h>
#include <openssl/ssl.h>
#include <poll.h>
#include <sys/socket.h>
#include <unistd.h>

namespace emulator_test {

struct RawClient::Tls {
    SSL_CTX* context = nullptr;
    SSL* ssl = nullptr;
    ~Tls() {
        if (ssl != nullptr) {
            SSL_free(ssl);
        }
        if (context != nullptr) {
            SSL_CTX_free(context);
        }
    }
};

RawClient::RawClient(int port, bool tls) {
    socket_ = ::socket(AF_INET, SOCK_STREAM, 0);
    sockaddr_in address{};
    address.sin_family = AF_INET;
    address.sin_port = htons(static_cast<std::uint16_t>(port));
    address.sin_addr.s_addr = htonl(INADDR_LOOPBACK);
    // NOLINTNEXTLINE(cppcoreguidelines-pro-type-reinterpret-cast): the socket API's own cast
    if (socket_ < 0 ||
        ::connect(socket_, reinterpret_cast<sockaddr*>(&address), sizeof(address)) != 0) {
        if (socket_ >= 0) {
            ::close(socket_);
        }
        throw std::runtime_error("cannot connect to 127.0.0.1:" + std::to_string(port));
    }
    if (tls) {
        tls_ = std::make_unique<Tls>();
        tls_->context = SSL_CTX_new(TLS_client_method());
        tls_->ssl = SSL_new(tls_->context);
        SSL_set_fd(tls_->ssl, socket_);
        if (SSL_connect(tls_->ssl) != 1) {
            ::close(socket_);
            throw std::runtime_error("no TLS handshake with 127.0.0.1:" + std::to_string(port));
        }
        // Records that carry no data (TLS 1.3 session tickets) make a read that waits block
        // forever; reads and writes wait in poll instead.
        ::fcntl(socket_, F_SETFL, ::fcntl(socket_, F_GETFL) | O_NONBLOCK);
    }
}

RawClient::~RawClient() {
    tls_.reset();
    ::close(socket_);
}

void RawClient::Send(const std::string& bytes) {
    std::size_t sent = 0;
    while (sent < bytes.size()) {
        const long n =
            tls_ ? SSL_write(tls_->ssl, bytes.data() + sent, static_cast<int>(bytes.size() - sent))
                 : ::send(socket_, bytes.data() + sent, bytes.size() - sent, MSG_NOSIGNAL);
        if (n <= 0 && tls_ &&
            SSL_get_error(tls_->ssl, static_cast<int>(n)) == SSL_ERROR_WANT_WRITE) {
            pollfd ready{socket_, POLLOUT, 0};
            ::poll(&ready, 1, 1000);
            continue;
        }
        if (n <= 0) {
            throw std::runtime_error("the server stopped taking bytes");
        }
        sent += static_cast<std::size_t>(n);
    }
}

std::string RawClient::Read(int timeout_ms) {
    std::string bytes;
    char buffer[16384];
    for (;;) {
        if (!tls_ || SSL_pending(tls_->ssl) == 0) {
            pollfd ready{socket_, POLLIN, 0};
            if (::poll(&ready, 1, timeout_ms) <= 0) {
                return bytes;
            }
        }
        const long n = tls_ ? SSL_read(tls_->ssl, buffer, sizeof(buffer))
                            : ::recv(socket_, buffer, sizeof(buffer), 0);
        if (n <= 0 && tls_ &&
            SSL_get_error(tls_->ssl, static_cast<int>(n)) == SSL_ERROR_WANT_READ) {
            continue;
        }
        if (n <= 0) {
            closed_ = true;
            return bytes;
        }
        bytes.append(buffer, static_cast<std::size_t>(n));
    }
}

std::string RawClient::Answer::Header(const std::string& name) const {
    std::size_t line = head.find("\r\n");
    while (line != std::string::npos && line + 2 < head.size()) {
        const std::size_t start = line + 2;
        const std::size_t end = head.find("\r\n", start);
        const std::string field = head.substr(start, end - start);
        const std::size_t colon = field.find(':');
        if (colon == name.size()) {
            bool same = true;
            for (std::size_t i = 0; i < colon && same; ++i) {
                same = std::tolower(static_cast<unsigned char>(field[i])) ==
                       std::tolower(static_cast<unsigned char>(name[i]));
            }
            if (same) {
                std::size_t value = colon + 1;
                while (value < field.size() && field[value] == ' ') {
                    ++value;
                }
                return field.substr(value);
            }
        }
        line = end;
    }
    return "";
}

std::vector<RawClient::Answer> RawClient::Split(const std::string& bytes,
                                                const std::vector<bool>& heads) {
    std::vector<Answer> answers;
    std::size_t at = 0;
    while (at < bytes.size()) {
        const std::size_t end = bytes.find("\r\n\r\n", at);
        if (end == std::string::npos || bytes.compare(at, 5, "HTTP/") != 0) {
            throw std::runtime_error("not an HTTP answer at byte " + std::to_string(at) + ": " +
                                     bytes.substr(at, 40));
        }
        Answer answer;
        answer.head = bytes.substr(at, end + 2 - at);
        answer.status = std::stoi(answer.head.substr(9, 3));
        at = end + 4;
        const std::string length = answer.Header("Content-Length");
        const bool head = answers.size() < heads.size() && heads[answers.size()];
        if (!length.empty() && !head) {
            const std::size_t size = std::stoul(length);
            answer.body = bytes.substr(at, size);
            at += size;
        }
        answers.push_back(std::move(answer));
    }
    return answers;
}

} // namespace emulator_test
