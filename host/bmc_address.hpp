#pragma once

#include <cstdint>
#include <string>

namespace host {

// One "[USER[:PASSWORD]@]HOST[:PORT]" argument of --bmc or --local-bmc, taken apart.
//
// The user part is what comes before the LAST '@' (so a password may hold '@'); it is split into
// user and password at its FIRST ':' (so a user name cannot hold ':'). An empty user or password
// counts as not given. An IPv6 address is written in brackets, "[fe80::1]:8443"; PORT is 1..65535,
// and without it the scheme's default port is used (port() is 0).
class BmcAddress {
public:
    // Takes text apart. On failure returns false and puts the problem into error, prefixed with
    // option ("--bmc" or "--local-bmc"). Messages show at most the host part, never the password.
    static bool Parse(const std::string& text, const std::string& option, BmcAddress& address,
                      std::string& error);

    const std::string& user() const { return user_; }
    const std::string& password() const { return password_; }
    // The host name or address; an IPv6 address without its brackets.
    const std::string& host() const { return host_; }
    std::uint16_t port() const { return port_; }

    // "HOST[:PORT]", brackets around an IPv6 address: what may be shown or logged.
    std::string Display() const;
    static std::string Display(const std::string& host, std::uint16_t port);

private:
    std::string user_;
    std::string password_;
    std::string host_;
    std::uint16_t port_ = 0;
};

} // namespace host
