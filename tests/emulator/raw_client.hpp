#pragma once

#include <memory>
#include <string>
#include <vector>

namespace emulator_test {

// A client that writes bytes as given onto one connection, plain or TLS, and reads what comes
// back: for checking the server's HTTP/1.1 framing, which a well-behaved client never tests.
class RawClient {
public:
    // One answer cut out of the bytes read: status, the header block as sent, body.
    struct Answer {
        int status = 0;
        std::string head;
        std::string body;
        // A header's value (name in any letter case); empty when absent.
        std::string Header(const std::string& name) const;
    };

    // Connects to 127.0.0.1:port (with a TLS handshake when tls; the certificate is not
    // checked). Throws std::runtime_error when it cannot.
    RawClient(int port, bool tls);
    ~RawClient();
    RawClient(const RawClient&) = delete;
    RawClient& operator=(const RawClient&) = delete;

    void Send(const std::string& bytes);
    // Reads until the server closes the connection or nothing comes for timeout_ms; closed()
    // tells which.
    std::string Read(int timeout_ms = 1000);
    bool closed() const { return closed_; }

    // The answers in bytes read, in order. An answer to a HEAD has no body whatever its
    // Content-Length says: heads lists, per answer, whether it answers a HEAD.
    static std::vector<Answer> Split(const std::string& bytes, const std::vector<bool>& heads = {});

private:
    struct Tls;
    int socket_ = -1;
    std::unique_ptr<Tls> tls_;
    bool closed_ = false;
};

} // namespace emulator_test
