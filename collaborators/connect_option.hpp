#pragma once

#include <cstdint>
#include <string>

namespace TesselConnect {

// How to reach a BMC. The host fills it; the service reads the first four members only
// (kind, target text, user, password) and hands the record on to the connection library.
struct ConnectOption {
    // 0: local machine, no BMC; 1: this machine's own BMC for REST-only actions;
    // 2: out-of-band through the BMC.
    std::int32_t kind = 0;
    // The whole "[USER[:PASSWORD]@]HOST[:PORT]" argument as the user gave it. It may hold the
    // password, so it is never logged or printed.
    std::string target;
    std::string user;
    std::string password;

    std::string host;       // host name or address, IPv6 without brackets
    std::uint16_t port = 0; // 0: the scheme's default port
    std::string scheme = "https";
    bool verify_tls = true; // false only when the user asked for --insecure
    std::string ca_file;    // trust this PEM file instead of the system store
    int timeout_seconds = 30;
    // The Redfish Id of the one computer system to work on, on a BMC that manages several;
    // empty: every system's storage.
    std::string system;
};

constexpr std::int32_t kConnectLocal = 0;
constexpr std::int32_t kConnectLocalBmc = 1;
constexpr std::int32_t kConnectOutOfBand = 2;

} // namespace TesselConnect
