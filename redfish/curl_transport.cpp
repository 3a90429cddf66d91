#include "redfish/curl_transport.hpp"

#include <algorithm>
#include <cctype>
#include <cerrno>
#include <cstdio>
#include <mutex>
#include <stdexcept>
#include <string>
#include <utility>

#include <curl/curl.h>

namespace redfish {
namespace {

void GlobalInit() {
    static std::once_flag once;
    std::call_once(once, [] {
        if (curl_global_init(CURL_GLOBAL_DEFAULT) != CURLE_OK) {
            throw std::runtime_error("libcurl could not be initialised");
        }
    });
}

std::string Lower(std::string text) {
    std::transform(text.begin(), text.end(), text.begin(),
                   [](unsigned char c) { return static_cast<char>(std::tolower(c)); });
    return text;
}

std::string Trim(const std::string& text) {
    const auto first = text.find_first_not_of(" \t\r\n");
    if (first == std::string::npos) {
        return std::string();
    }
    const auto last = text.find_last_not_of(" \t\r\n");
    return text.substr(first, last - first + 1);
}

// "30 s", "1.5 s": a limit as error texts name it.
std::string Seconds(long milliseconds) {
    if (milliseconds % 1000 == 0) {
        return std::to_string(milliseconds / 1000) + " s";
    }
    char buffer[32];
    std::snprintf(buffer, sizeof buffer, "%.1f s", static_cast<double>(milliseconds) / 1000.0);
    return buffer;
}

std::size_t WriteBody(char* data, std::size_t size, std::size_t count, void* user) {
    auto* body = static_cast<std::string*>(user);
    body->append(data, size * count);
    return size * count;
}

// One header line. A status line starts the headers afresh (an interim "100 Continue" answer
// comes before the real one); names are lower-cased; repeated headers are joined with ", ".
std::size_t WriteHeader(char* data, std::size_t size, std::size_t count, void* user) {
    auto* headers = static_cast<std::map<std::string, std::string>*>(user);
    const std::string line(data, size * count);
    if (line.compare(0, 5, "HTTP/") == 0) {
        headers->clear();
        return size * count;
    }
    const auto colon = line.find(':');
    if (colon == std::string::npos || colon == 0) {
        return size * count;
    }
    const std::string name = Lower(Trim(line.substr(0, colon)));
    const std::string value = Trim(line.substr(colon + 1));
    auto found = headers->find(name);
    if (found == headers->end()) {
        headers->emplace(name, value);
    } else {
        found->second += ", " + value;
    }
    return size * count;
}

bool HasHeader(const HttpRequest& request, const std::string& lower_name) {
    return std::any_of(request.headers.begin(), request.headers.end(),
                       [&](const auto& header) { return Lower(header.first) == lower_name; });
}

// RAII for the header list of one request.
class HeaderList {
public:
    HeaderList() = default;
    ~HeaderList() { curl_slist_free_all(list_); }
    HeaderList(const HeaderList&) = delete;
    HeaderList& operator=(const HeaderList&) = delete;

    void Add(const std::string& line) {
        curl_slist* grown = curl_slist_append(list_, line.c_str());
        if (grown == nullptr) {
            throw std::bad_alloc();
        }
        list_ = grown;
    }
    curl_slist* get() const { return list_; }

private:
    curl_slist* list_ = nullptr;
};

} // namespace

CurlTransport::CurlTransport(CurlSettings settings) : settings_(std::move(settings)) {
    GlobalInit();
    settings_.scheme = Lower(settings_.scheme);
    if (settings_.scheme != "http" && settings_.scheme != "https") {
        throw std::invalid_argument("unknown scheme \"" + settings_.scheme + "\" (http or https)");
    }
    if (settings_.host.size() > 2 && settings_.host.front() == '[' &&
        settings_.host.back() == ']') {
        settings_.host = settings_.host.substr(1, settings_.host.size() - 2);
    }
    if (settings_.timeout_seconds <= 0) {
        settings_.timeout_seconds = 30;
    }
    if (settings_.connect_timeout_seconds <= 0 ||
        settings_.connect_timeout_seconds > settings_.timeout_seconds) {
        settings_.connect_timeout_seconds = settings_.timeout_seconds;
    }
    curl_ = curl_easy_init();
    if (curl_ == nullptr) {
        throw std::runtime_error("libcurl could not make a handle");
    }
}

CurlTransport::~CurlTransport() {
    curl_easy_cleanup(static_cast<CURL*>(curl_));
}

std::string CurlTransport::Authority() const {
    if (settings_.port == 0) {
        return settings_.host;
    }
    const bool ipv6 = settings_.host.find(':') != std::string::npos;
    return (ipv6 ? "[" + settings_.host + "]" : settings_.host) + ":" +
           std::to_string(settings_.port);
}

std::string CurlTransport::BaseUrl() const {
    const bool ipv6 = settings_.host.find(':') != std::string::npos;
    std::string url =
        settings_.scheme + "://" + (ipv6 ? "[" + settings_.host + "]" : settings_.host);
    if (settings_.port != 0) {
        url += ":" + std::to_string(settings_.port);
    }
    return url;
}

TransportOutcome CurlTransport::Perform(const HttpRequest& request, HttpResponse& response) {
    response = HttpResponse();
    auto* curl = static_cast<CURL*>(curl_);
    // Back to default options; the connection cache, TLS sessions and DNS cache stay.
    curl_easy_reset(curl);

    long timeout_ms = settings_.timeout_seconds * 1000;
    if (request.timeout.count() > 0) {
        timeout_ms = std::min<long>(timeout_ms, static_cast<long>(request.timeout.count()));
    }
    const long connect_ms = std::min(settings_.connect_timeout_seconds * 1000, timeout_ms);

    char error_buffer[CURL_ERROR_SIZE] = {0};
    const std::string url = BaseUrl() + request.path;
    HeaderList headers;
    for (const auto& header : request.headers) {
        headers.Add(header.first + ": " + header.second);
    }
    if (!request.body.empty() && !HasHeader(request, "content-type")) {
        headers.Add("Content-Type: application/json");
    }
    headers.Add("Expect:"); // no "100-continue" round trip before a body

    curl_easy_setopt(curl, CURLOPT_URL, url.c_str());
    curl_easy_setopt(curl, CURLOPT_PROTOCOLS_STR, "http,https");
    curl_easy_setopt(curl, CURLOPT_NOSIGNAL, 1L);
    curl_easy_setopt(curl, CURLOPT_PROXY, "");
    curl_easy_setopt(curl, CURLOPT_ERRORBUFFER, error_buffer);
    curl_easy_setopt(curl, CURLOPT_TIMEOUT_MS, timeout_ms);
    curl_easy_setopt(curl, CURLOPT_CONNECTTIMEOUT_MS, connect_ms);
    curl_easy_setopt(curl, CURLOPT_TCP_KEEPALIVE, 1L);
    curl_easy_setopt(curl, CURLOPT_USERAGENT, "raidcfg");
    curl_easy_setopt(curl, CURLOPT_HTTPHEADER, headers.get());
    curl_easy_setopt(curl, CURLOPT_SSL_VERIFYPEER, settings_.verify_tls ? 1L : 0L);
    curl_easy_setopt(curl, CURLOPT_SSL_VERIFYHOST, settings_.verify_tls ? 2L : 0L);
    if (!settings_.ca_file.empty()) {
        curl_easy_setopt(curl, CURLOPT_CAINFO, settings_.ca_file.c_str());
    }
    curl_easy_setopt(curl, CURLOPT_WRITEFUNCTION, &WriteBody);
    curl_easy_setopt(curl, CURLOPT_WRITEDATA, &response.body);
    curl_easy_setopt(curl, CURLOPT_HEADERFUNCTION, &WriteHeader);
    curl_easy_setopt(curl, CURLOPT_HEADERDATA, &response.headers);

    if (request.method == "GET") {
        curl_easy_setopt(curl, CURLOPT_HTTPGET, 1L);
    } else if (request.method == "HEAD") {
        curl_easy_setopt(curl, CURLOPT_NOBODY, 1L);
    } else {
        if (request.method != "POST") {
            curl_easy_setopt(curl, CURLOPT_CUSTOMREQUEST, request.method.c_str());
        }
        if (request.method != "DELETE" || !request.body.empty()) {
            curl_easy_setopt(curl, CURLOPT_POST, 1L);
            curl_easy_setopt(curl, CURLOPT_POSTFIELDSIZE_LARGE,
                             static_cast<curl_off_t>(request.body.size()));
            curl_easy_setopt(curl, CURLOPT_POSTFIELDS, request.body.c_str());
        }
    }

    const CURLcode code = curl_easy_perform(curl);

    long connects = 0;
    if (curl_easy_getinfo(curl, CURLINFO_NUM_CONNECTS, &connects) == CURLE_OK && connects > 0) {
        connections_ += static_cast<std::size_t>(connects);
    }
    curl_easy_setopt(curl, CURLOPT_ERRORBUFFER, nullptr);
    curl_easy_setopt(curl, CURLOPT_HTTPHEADER, nullptr);

    if (code == CURLE_OK) {
        curl_easy_getinfo(curl, CURLINFO_RESPONSE_CODE, &response.status);
        return TransportOutcome{};
    }

    const std::string detail = error_buffer[0] != '\0' ? error_buffer : curl_easy_strerror(code);
    // Whether any of the request went out: decides between "not reached" (nothing can have been
    // applied) and "no answer" (it may have been).
    long request_size = 0;
    curl_easy_getinfo(curl, CURLINFO_REQUEST_SIZE, &request_size);
    long os_error = 0;
    curl_easy_getinfo(curl, CURLINFO_OS_ERRNO, &os_error);
    response = HttpResponse();

    switch (code) {
    case CURLE_COULDNT_RESOLVE_HOST:
        return {TransportError::Connect, "unknown host " + settings_.host};
    case CURLE_COULDNT_RESOLVE_PROXY:
    case CURLE_COULDNT_CONNECT:
        switch (os_error) {
        case ECONNREFUSED:
            return {TransportError::Connect, "connection refused"};
        case EHOSTUNREACH:
            return {TransportError::Connect, "no route to host"};
        case ENETUNREACH:
            return {TransportError::Connect, "network unreachable"};
        case ETIMEDOUT:
            return {TransportError::Connect, "no connection within " + Seconds(connect_ms)};
        default:
            return {TransportError::Connect, "cannot connect (" + detail + ")"};
        }
    case CURLE_OPERATION_TIMEDOUT:
        if (request_size == 0) {
            // Nothing went out: no TCP connection within the connect limit, or a TLS handshake
            // that did not end within the request's limit.
            curl_off_t connected_us = 0;
            curl_easy_getinfo(curl, CURLINFO_CONNECT_TIME_T, &connected_us);
            return {TransportError::Connect,
                    connected_us == 0 ? "no connection within " + Seconds(connect_ms)
                                      : "no TLS handshake within " + Seconds(timeout_ms)};
        }
        return {TransportError::Timeout, "no answer within " + Seconds(timeout_ms)};
    case CURLE_PEER_FAILED_VERIFICATION:
        return {TransportError::Tls, "TLS certificate check failed (" + detail + ")"};
    case CURLE_SSL_CACERT_BADFILE:
        return {TransportError::Tls,
                "cannot use the CA certificate file " + settings_.ca_file + " (" + detail + ")"};
    case CURLE_SSL_CONNECT_ERROR:
    case CURLE_SSL_CERTPROBLEM:
    case CURLE_SSL_CIPHER:
    case CURLE_SSL_ENGINE_NOTFOUND:
    case CURLE_SSL_ENGINE_SETFAILED:
    case CURLE_SSL_ENGINE_INITFAILED:
    case CURLE_SSL_ISSUER_ERROR:
    case CURLE_SSL_PINNEDPUBKEYNOTMATCH:
    case CURLE_SSL_INVALIDCERTSTATUS:
    case CURLE_SSL_CRL_BADFILE:
    case CURLE_SSL_SHUTDOWN_FAILED:
    case CURLE_USE_SSL_FAILED:
        return {TransportError::Tls, "TLS handshake failed (" + detail + ")"};
    case CURLE_GOT_NOTHING:
        return {TransportError::Reset, "the connection closed without an answer"};
    case CURLE_SEND_ERROR:
    case CURLE_RECV_ERROR:
    case CURLE_PARTIAL_FILE:
    case CURLE_HTTP2:
    case CURLE_HTTP2_STREAM:
        return {TransportError::Reset, "the connection broke off (" + detail + ")"};
    default:
        return {TransportError::Other, detail};
    }
}

} // namespace redfish
