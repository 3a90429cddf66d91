#pragma once

#include <cstddef>
#include <string>

#include "redfish/http_transport.hpp"

namespace redfish {

// Where and how CurlTransport reaches one BMC.
struct CurlSettings {
    std::string scheme = "https"; // "https" or "http" (--http)
    // A host name, an IPv4 address or an IPv6 address without brackets ("fe80::1"); the
    // transport adds the brackets where the URL needs them.
    std::string host;
    unsigned int port = 0;             // 0: the scheme's default port (443, 80)
    bool verify_tls = true;            // false only for --insecure: any certificate, any host name
    std::string ca_file;               // --cacert: PEM file trusted instead of the system's store
    long timeout_seconds = 30;         // --timeout: limit of one request, connecting included
    long connect_timeout_seconds = 10; // limit of connecting alone (never above timeout_seconds)
};

// HttpTransport over libcurl: one easy handle for the whole run, so that one connection is
// kept alive and reused (TLS session included). Not thread-safe: one thread drives it.
// Proxies from the environment (http_proxy, https_proxy, ...) are not used: a BMC is reached
// directly on its management network.
// Failures map onto TransportError:
//   Connect  refused, unknown host, no route, no connection within the connect limit
//   Timeout  connected, but no complete answer within the request's limit
//   Tls      handshake or certificate check failed, or the --cacert file is unusable
//   Reset    the connection broke off (send or receive failed, empty answer)
//   Other    anything else (bad URL, out of memory, ...)
// The outcome's text says what happened without naming the BMC ("connection refused",
// "no answer within 30 s"); the Redfish client puts "BMC <authority>: " before it.
class CurlTransport : public HttpTransport {
public:
    explicit CurlTransport(CurlSettings settings);
    ~CurlTransport() override;

    TransportOutcome Perform(const HttpRequest& request, HttpResponse& response) override;
    std::string Authority() const override;
    std::size_t ConnectionsOpened() const override { return connections_; }

    const CurlSettings& Settings() const { return settings_; }
    // scheme://host[:port] as the requests' URLs begin.
    std::string BaseUrl() const;

private:
    CurlSettings settings_;
    void* curl_ = nullptr; // CURL*, kept out of the header
    std::size_t connections_ = 0;
};

} // namespace redfish
