#include <atomic>
#include <chrono>
#include <condition_variable>
#include <memory>
#include <mutex>
#include <stdexcept>
#include <string>
#include <thread>

#include <arpa/inet.h>
#include <httplib.h>
#include <netinet/in.h>
#include <openssl/bio.h>
#include <openssl/evp.h>
#include <openssl/pem.h>
#include <openssl/x509.h>
#include <openssl/x509v3.h>
#include <sys/socket.h>
#include <unistd.h>

#include "redfish/curl_transport.hpp"
#include "tests/support/file_text.hpp"
#include "tests/support/temp_dir.hpp"

#include <gtest/gtest.h>

namespace {

using redfish::CurlSettings;
using redfish::CurlTransport;
using redfish::HttpRequest;
using redfish::HttpResponse;
using redfish::TransportError;
using redfish::TransportOutcome;

// A cpp-httplib server listening on 127.0.0.1 at a free port, in a thread of its own, from
// construction to destruction. Handlers are set on the server before it is handed over.
class ServerThread {
public:
    explicit ServerThread(std::unique_ptr<httplib::Server> server) : server_(std::move(server)) {
        port_ = server_->bind_to_any_port("127.0.0.1");
        if (port_ <= 0) {
            throw std::runtime_error("cannot bind a port on 127.0.0.1");
        }
        thread_ = std::thread([this] { server_->listen_after_bind(); });
        for (int i = 0; i < 500 && !server_->is_running(); ++i) {
            std::this_thread::sleep_for(std::chrono::milliseconds(10));
        }
    }
    ~ServerThread() {
        server_->stop();
        thread_.join();
    }
    ServerThread(const ServerThread&) = delete;
    ServerThread& operator=(const ServerThread&) = delete;

    unsigned int port() const { return static_cast<unsigned int>(port_); }

private:
    std::unique_ptr<httplib::Server> server_;
    int port_ = 0;
    std::thread thread_;
};

CurlSettings Plain(unsigned int port, long timeout_seconds = 5) {
    CurlSettings settings;
    settings.scheme = "http";
    settings.host = "127.0.0.1";
    settings.port = port;
    settings.timeout_seconds = timeout_seconds;
    return settings;
}

HttpRequest Request(const std::string& method, const std::string& path,
                    const std::string& body = "") {
    HttpRequest request;
    request.method = method;
    request.path = path;
    request.body = body;
    return request;
}

// A port on 127.0.0.1 that nothing listens on (bound once without listening, then let go).
unsigned int FreePort() {
    const int socket = ::socket(AF_INET, SOCK_STREAM, 0);
    sockaddr_in address{};
    address.sin_family = AF_INET;
    address.sin_addr.s_addr = htonl(INADDR_LOOPBACK);
    socklen_t length = sizeof address;
    if (socket < 0 || ::bind(socket, reinterpret_cast<sockaddr*>(&address), sizeof address) != 0 ||
        ::getsockname(socket, reinterpret_cast<sockaddr*>(&address), &length) != 0) {
        throw std::runtime_error("cannot bind a port on 127.0.0.1");
    }
    ::close(socket);
    return ntohs(address.sin_port);
}

TEST(CurlTransportTest, UrlAndAuthority) {
    CurlSettings settings;
    settings.host = "10.0.0.5";
    EXPECT_EQ(CurlTransport(settings).BaseUrl(), "https://10.0.0.5");
    EXPECT_EQ(CurlTransport(settings).Authority(), "10.0.0.5");
    settings.port = 8443;
    EXPECT_EQ(CurlTransport(settings).BaseUrl(), "https://10.0.0.5:8443");
    EXPECT_EQ(CurlTransport(settings).Authority(), "10.0.0.5:8443");
    settings.host = "fe80::1";
    EXPECT_EQ(CurlTransport(settings).BaseUrl(), "https://[fe80::1]:8443");
    EXPECT_EQ(CurlTransport(settings).Authority(), "[fe80::1]:8443");
    settings.port = 0;
    settings.host = "[fd00::5]";
    settings.scheme = "HTTP";
    EXPECT_EQ(CurlTransport(settings).BaseUrl(), "http://[fd00::5]");
    EXPECT_EQ(CurlTransport(settings).Authority(), "fd00::5");
    settings.scheme = "ftp";
    EXPECT_THROW(CurlTransport{settings}, std::invalid_argument);
}

TEST(CurlTransportTest, KeepAliveReusesOneConnection) {
    auto server = std::make_unique<httplib::Server>();
    std::atomic<int> hits{0};
    server->Get("/redfish/v1", [&hits](const httplib::Request&, httplib::Response& response) {
        ++hits;
        response.set_content(R"({"Id": "RootService"})", "application/json");
    });
    ServerThread thread(std::move(server));
    CurlTransport transport(Plain(thread.port()));
    EXPECT_EQ(transport.ConnectionsOpened(), 0u);
    for (int i = 0; i < 3; ++i) {
        HttpResponse response;
        const TransportOutcome outcome = transport.Perform(Request("GET", "/redfish/v1"), response);
        ASSERT_TRUE(outcome.ok()) << outcome.text;
        EXPECT_EQ(response.status, 200);
        EXPECT_EQ(response.body, R"({"Id": "RootService"})");
    }
    EXPECT_EQ(hits.load(), 3);
    EXPECT_EQ(transport.ConnectionsOpened(), 1u);
}

TEST(CurlTransportTest, MethodsBodiesAndHeadersGoOut) {
    auto server = std::make_unique<httplib::Server>();
    std::mutex mutex;
    std::string seen;
    const auto record = [&](const httplib::Request& request, httplib::Response& response) {
        std::lock_guard<std::mutex> lock(mutex);
        seen += request.method + " " + request.target + " [" + request.body + "] " +
                request.get_header_value("Content-Type") + " " +
                request.get_header_value("X-Auth-Token") + "\n";
        response.status = request.method == "POST" ? 201 : 204;
    };
    server->Post("/c", record);
    server->Patch("/c/1", record);
    server->Delete("/c/1", record);
    ServerThread thread(std::move(server));
    CurlTransport transport(Plain(thread.port()));

    HttpRequest post = Request("POST", "/c", R"({"A": 1})");
    post.headers.emplace_back("X-Auth-Token", "t1");
    HttpResponse response;
    ASSERT_TRUE(transport.Perform(post, response).ok());
    EXPECT_EQ(response.status, 201);
    ASSERT_TRUE(transport.Perform(Request("PATCH", "/c/1", R"({"B": 2})"), response).ok());
    EXPECT_EQ(response.status, 204);
    ASSERT_TRUE(transport.Perform(Request("DELETE", "/c/1"), response).ok());
    EXPECT_EQ(response.status, 204);
    EXPECT_EQ(seen, "POST /c [{\"A\": 1}] application/json t1\n"
                    "PATCH /c/1 [{\"B\": 2}] application/json \n"
                    "DELETE /c/1 []  \n");
    EXPECT_EQ(transport.ConnectionsOpened(), 1u);
}

TEST(CurlTransportTest, QueryOfExpandGoesOutAsWritten) {
    auto server = std::make_unique<httplib::Server>();
    std::string target;
    server->Get("/s", [&target](const httplib::Request& request, httplib::Response& response) {
        target = request.target;
        response.set_content("{}", "application/json");
    });
    ServerThread thread(std::move(server));
    CurlTransport transport(Plain(thread.port()));
    HttpResponse response;
    ASSERT_TRUE(transport.Perform(Request("GET", "/s?$expand=.($levels=2)"), response).ok());
    EXPECT_EQ(response.status, 200);
    // As DSP0266 writes it; all of "$().=" are valid in a URI query. (cpp-httplib's own query
    // parser splits the value at the second "=", so a server on it must read the target.)
    EXPECT_EQ(target, "/s?$expand=.($levels=2)");
}

TEST(CurlTransportTest, HeaderNamesAreLowerCase) {
    auto server = std::make_unique<httplib::Server>();
    server->Post("/s", [](const httplib::Request&, httplib::Response& response) {
        response.status = 201;
        response.set_header("X-Auth-Token", "abc");
        response.set_header("Location", "/redfish/v1/SessionService/Sessions/1");
        response.set_header("ETag", "\"e1\"");
    });
    ServerThread thread(std::move(server));
    CurlTransport transport(Plain(thread.port()));
    HttpResponse response;
    ASSERT_TRUE(transport.Perform(Request("POST", "/s", "{}"), response).ok());
    EXPECT_EQ(response.status, 201);
    EXPECT_EQ(response.Header("x-auth-token"), "abc");
    EXPECT_EQ(response.Header("location"), "/redfish/v1/SessionService/Sessions/1");
    EXPECT_EQ(response.Header("etag"), "\"e1\"");
    for (const auto& header : response.headers) {
        for (const char c : header.first) {
            EXPECT_FALSE(c >= 'A' && c <= 'Z') << header.first;
        }
    }
}

TEST(CurlTransportTest, RefusedConnectionIsConnect) {
    CurlTransport transport(Plain(FreePort()));
    HttpResponse response;
    const TransportOutcome outcome = transport.Perform(Request("GET", "/redfish/v1"), response);
    EXPECT_EQ(outcome.error, TransportError::Connect);
    EXPECT_EQ(outcome.text, "connection refused");
    EXPECT_EQ(response.status, 0);
}

TEST(CurlTransportTest, UnknownHostIsConnect) {
    CurlSettings settings = Plain(80, 3);
    settings.host = "no-such-bmc.invalid";
    CurlTransport transport(settings);
    HttpResponse response;
    const TransportOutcome outcome = transport.Perform(Request("GET", "/redfish/v1"), response);
    EXPECT_EQ(outcome.error, TransportError::Connect);
    // Without a reachable name server the look-up may run out of time instead.
    EXPECT_TRUE(outcome.text == "unknown host no-such-bmc.invalid" ||
                outcome.text.rfind("no connection within", 0) == 0)
        << outcome.text;
}

// A handler that answers only when the test lets it (or after 5 s).
struct Gate {
    std::mutex mutex;
    std::condition_variable changed;
    bool open = false;

    void Wait() {
        std::unique_lock<std::mutex> lock(mutex);
        changed.wait_for(lock, std::chrono::seconds(5), [this] { return open; });
    }
    void Open() {
        {
            std::lock_guard<std::mutex> lock(mutex);
            open = true;
        }
        changed.notify_all();
    }
};

TEST(CurlTransportTest, SlowAnswerIsTimeout) {
    auto gate = std::make_shared<Gate>();
    auto server = std::make_unique<httplib::Server>();
    server->Get("/slow", [gate](const httplib::Request&, httplib::Response& response) {
        gate->Wait();
        response.set_content("{}", "application/json");
    });
    ServerThread thread(std::move(server));
    CurlTransport transport(Plain(thread.port(), 1));
    HttpResponse response;
    const auto started = std::chrono::steady_clock::now();
    const TransportOutcome outcome = transport.Perform(Request("GET", "/slow"), response);
    const auto took = std::chrono::steady_clock::now() - started;
    gate->Open();
    EXPECT_EQ(outcome.error, TransportError::Timeout);
    EXPECT_EQ(outcome.text, "no answer within 1 s");
    EXPECT_LT(took, std::chrono::seconds(4));
}

TEST(CurlTransportTest, RequestTimeoutShortensTheLimit) {
    auto gate = std::make_shared<Gate>();
    auto server = std::make_unique<httplib::Server>();
    server->Get("/slow", [gate](const httplib::Request&, httplib::Response& response) {
        gate->Wait();
        response.set_content("{}", "application/json");
    });
    ServerThread thread(std::move(server));
    CurlTransport transport(Plain(thread.port(), 30));
    HttpRequest request = Request("GET", "/slow");
    request.timeout = std::chrono::milliseconds(500);
    HttpResponse response;
    const TransportOutcome outcome = transport.Perform(request, response);
    gate->Open();
    EXPECT_EQ(outcome.error, TransportError::Timeout);
    EXPECT_EQ(outcome.text, "no answer within 0.5 s");
}

// A TCP listener that accepts one connection, reads what comes and closes it without answering.
class HangUpServer {
public:
    HangUpServer() {
        socket_ = ::socket(AF_INET, SOCK_STREAM, 0);
        sockaddr_in address{};
        address.sin_family = AF_INET;
        address.sin_addr.s_addr = htonl(INADDR_LOOPBACK);
        address.sin_port = 0;
        socklen_t length = sizeof address;
        if (socket_ < 0 ||
            ::bind(socket_, reinterpret_cast<sockaddr*>(&address), sizeof address) != 0 ||
            ::listen(socket_, 4) != 0 ||
            ::getsockname(socket_, reinterpret_cast<sockaddr*>(&address), &length) != 0) {
            throw std::runtime_error("cannot listen on 127.0.0.1");
        }
        port_ = ntohs(address.sin_port);
        thread_ = std::thread([this] {
            const int connection = ::accept(socket_, nullptr, nullptr);
            if (connection >= 0) {
                char buffer[4096];
                (void)::recv(connection, buffer, sizeof buffer, 0);
                ::close(connection);
            }
        });
    }
    ~HangUpServer() {
        thread_.join();
        ::close(socket_);
    }
    HangUpServer(const HangUpServer&) = delete;
    HangUpServer& operator=(const HangUpServer&) = delete;
    unsigned int port() const { return port_; }

private:
    int socket_ = -1;
    unsigned int port_ = 0;
    std::thread thread_;
};

TEST(CurlTransportTest, HangUpWithoutAnswerIsReset) {
    HangUpServer server;
    CurlTransport transport(Plain(server.port()));
    HttpResponse response;
    const TransportOutcome outcome = transport.Perform(Request("GET", "/redfish/v1"), response);
    EXPECT_EQ(outcome.error, TransportError::Reset);
    EXPECT_EQ(outcome.text, "the connection closed without an answer");
}

// --- HTTPS -----------------------------------------------------------------------------------

// A self-signed certificate for 127.0.0.1, made at test time, and its key.
class TestCertificate {
public:
    TestCertificate() {
        key_ = EVP_EC_gen("P-256");
        cert_ = X509_new();
        if (key_ == nullptr || cert_ == nullptr) {
            throw std::runtime_error("OpenSSL could not make a key");
        }
        X509_set_version(cert_, 2);
        ASN1_INTEGER_set(X509_get_serialNumber(cert_), 1);
        X509_gmtime_adj(X509_getm_notBefore(cert_), -3600);
        X509_gmtime_adj(X509_getm_notAfter(cert_), 24L * 3600);
        X509_set_pubkey(cert_, key_);
        X509_NAME* name = X509_get_subject_name(cert_);
        X509_NAME_add_entry_by_txt(name, "O", MBSTRING_ASC,
                                   reinterpret_cast<const unsigned char*>("raidcfg test"), -1, -1,
                                   0);
        X509_NAME_add_entry_by_txt(name, "CN", MBSTRING_ASC,
                                   reinterpret_cast<const unsigned char*>("127.0.0.1"), -1, -1, 0);
        X509_set_issuer_name(cert_, name);
        AddExtension(NID_basic_constraints, "critical,CA:TRUE");
        AddExtension(NID_key_usage, "critical,digitalSignature,keyCertSign");
        AddExtension(NID_ext_key_usage, "serverAuth");
        AddExtension(NID_subject_key_identifier, "hash");
        AddExtension(NID_subject_alt_name, "IP:127.0.0.1,DNS:localhost");
        if (X509_sign(cert_, key_, EVP_sha256()) == 0) {
            throw std::runtime_error("OpenSSL could not sign the certificate");
        }
        BIO* bio = BIO_new(BIO_s_mem());
        PEM_write_bio_X509(bio, cert_);
        char* data = nullptr;
        const long size = BIO_get_mem_data(bio, &data);
        pem_.assign(data, static_cast<std::size_t>(size));
        BIO_free(bio);
    }
    ~TestCertificate() {
        X509_free(cert_);
        EVP_PKEY_free(key_);
    }
    TestCertificate(const TestCertificate&) = delete;
    TestCertificate& operator=(const TestCertificate&) = delete;

    X509* cert() const { return cert_; }
    EVP_PKEY* key() const { return key_; }
    const std::string& pem() const { return pem_; }

private:
    void AddExtension(int nid, const char* value) {
        X509V3_CTX context;
        X509V3_set_ctx_nodb(&context);
        X509V3_set_ctx(&context, cert_, cert_, nullptr, nullptr, 0);
        X509_EXTENSION* extension = X509V3_EXT_conf_nid(nullptr, &context, nid, value);
        if (extension == nullptr) {
            throw std::runtime_error(std::string("OpenSSL refused the extension ") + value);
        }
        X509_add_ext(cert_, extension, -1);
        X509_EXTENSION_free(extension);
    }

    EVP_PKEY* key_ = nullptr;
    X509* cert_ = nullptr;
    std::string pem_;
};

class CurlTransportTlsTest : public ::testing::Test {
protected:
    void SetUp() override {
        ca_file_ = temp_.File("bmc-cert.pem");
        raidcfg_test::WriteFile(ca_file_, certificate_.pem());
        auto server = std::make_unique<httplib::SSLServer>(certificate_.cert(), certificate_.key());
        ASSERT_TRUE(server->is_valid());
        server->Get("/redfish/v1", [](const httplib::Request&, httplib::Response& response) {
            response.set_content(R"({"Id": "RootService"})", "application/json");
        });
        thread_ = std::make_unique<ServerThread>(std::move(server));
    }
    void TearDown() override { thread_.reset(); }

    CurlSettings Secure() const {
        CurlSettings settings;
        settings.host = "127.0.0.1";
        settings.port = thread_->port();
        settings.timeout_seconds = 5;
        return settings;
    }

    raidcfg_test::TempDir temp_;
    TestCertificate certificate_;
    std::string ca_file_;
    std::unique_ptr<ServerThread> thread_;
};

TEST_F(CurlTransportTlsTest, TrustedWithTheCaFile) {
    CurlSettings settings = Secure();
    settings.ca_file = ca_file_;
    CurlTransport transport(settings);
    for (int i = 0; i < 2; ++i) {
        HttpResponse response;
        const TransportOutcome outcome = transport.Perform(Request("GET", "/redfish/v1"), response);
        ASSERT_TRUE(outcome.ok()) << outcome.text;
        EXPECT_EQ(response.status, 200);
        EXPECT_EQ(response.body, R"({"Id": "RootService"})");
    }
    EXPECT_EQ(transport.ConnectionsOpened(), 1u);
}

TEST_F(CurlTransportTlsTest, RefusedWithoutTheCaFile) {
    CurlTransport transport(Secure());
    HttpResponse response;
    const TransportOutcome outcome = transport.Perform(Request("GET", "/redfish/v1"), response);
    EXPECT_EQ(outcome.error, TransportError::Tls);
    EXPECT_NE(outcome.text.find("TLS certificate check failed"), std::string::npos) << outcome.text;
}

TEST_F(CurlTransportTlsTest, AcceptedWhenVerificationIsOff) {
    CurlSettings settings = Secure();
    settings.verify_tls = false;
    CurlTransport transport(settings);
    HttpResponse response;
    const TransportOutcome outcome = transport.Perform(Request("GET", "/redfish/v1"), response);
    ASSERT_TRUE(outcome.ok()) << outcome.text;
    EXPECT_EQ(response.status, 200);
}

TEST_F(CurlTransportTlsTest, UnreadableCaFileIsTls) {
    CurlSettings settings = Secure();
    settings.ca_file = temp_.File("missing.pem");
    CurlTransport transport(settings);
    HttpResponse response;
    const TransportOutcome outcome = transport.Perform(Request("GET", "/redfish/v1"), response);
    EXPECT_EQ(outcome.error, TransportError::Tls);
    EXPECT_NE(outcome.text.find("missing.pem"), std::string::npos) << outcome.text;
}

TEST_F(CurlTransportTlsTest, PlainHttpToATlsPortFails) {
    CurlSettings settings = Secure();
    settings.scheme = "http";
    CurlTransport transport(settings);
    HttpResponse response;
    const TransportOutcome outcome = transport.Perform(Request("GET", "/redfish/v1"), response);
    // The TLS server hangs up on a plain request: no HTTP answer.
    EXPECT_FALSE(outcome.ok() && response.status == 200) << outcome.text;
}

} // namespace
