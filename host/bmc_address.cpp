#include "host/bmc_address.hpp"

#include <algorithm>
#include <cctype>
#include <charconv>
#include <utility>

namespace host {
namespace {

bool IsHostNameChar(char c) {
    return std::isalnum(static_cast<unsigned char>(c)) != 0 || c == '-' || c == '.' || c == '_';
}

// Hex digits, ':' and '.' (an IPv4 tail), and after '%' a zone name such as "eth0".
bool IsIpv6(const std::string& text) {
    if (text.find(':') == std::string::npos) {
        return false;
    }
    const std::size_t zone = text.find('%');
    const std::string address = text.substr(0, zone);
    const bool address_ok = std::all_of(address.begin(), address.end(), [](char c) {
        return std::isxdigit(static_cast<unsigned char>(c)) != 0 || c == ':' || c == '.';
    });
    if (!address_ok) {
        return false;
    }
    if (zone == std::string::npos) {
        return true;
    }
    const std::string name = text.substr(zone + 1);
    return !name.empty() && std::all_of(name.begin(), name.end(), IsHostNameChar);
}

bool ParsePort(const std::string& text, const std::string& option, std::uint16_t& port,
               std::string& error) {
    if (text.empty()) {
        error = option + ": missing port after ':'";
        return false;
    }
    unsigned int value = 0;
    const char* end = text.data() + text.size();
    const auto [stop, code] = std::from_chars(text.data(), end, value);
    if (code != std::errc() || stop != end || value < 1 || value > 65535) {
        error = option + ": bad port '" + text + "' (1..65535 expected)";
        return false;
    }
    port = static_cast<std::uint16_t>(value);
    return true;
}

} // namespace

bool BmcAddress::Parse(const std::string& text, const std::string& option, BmcAddress& address,
                       std::string& error) {
    BmcAddress parsed;
    std::string host_part = text;
    const std::size_t at = text.rfind('@');
    if (at != std::string::npos) {
        const std::string user_part = text.substr(0, at);
        host_part = text.substr(at + 1);
        const std::size_t colon = user_part.find(':');
        parsed.user_ = user_part.substr(0, colon);
        if (colon != std::string::npos) {
            parsed.password_ = user_part.substr(colon + 1);
        }
    }
    if (host_part.empty()) {
        error = option + ": no host given";
        return false;
    }

    std::string port_text;
    bool has_port = false;
    if (host_part.front() == '[') {
        const std::size_t close = host_part.find(']');
        if (close == std::string::npos) {
            error = option + ": missing ']' after the IPv6 address in '" + host_part + "'";
            return false;
        }
        parsed.host_ = host_part.substr(1, close - 1);
        if (parsed.host_.empty()) {
            error = option + ": no host given";
            return false;
        }
        if (!IsIpv6(parsed.host_)) {
            error = option + ": '" + parsed.host_ + "' is not an IPv6 address";
            return false;
        }
        const std::string rest = host_part.substr(close + 1);
        if (!rest.empty()) {
            if (rest.front() != ':') {
                error = option + ": unexpected text after ']' in '" + host_part + "'";
                return false;
            }
            has_port = true;
            port_text = rest.substr(1);
        }
    } else {
        const std::size_t colons =
            static_cast<std::size_t>(std::count(host_part.begin(), host_part.end(), ':'));
        if (colons > 1) {
            error = option + ": write an IPv6 address in brackets, e.g. [fe80::1]:8443";
            return false;
        }
        const std::size_t colon = host_part.find(':');
        parsed.host_ = host_part.substr(0, colon);
        if (colon != std::string::npos) {
            has_port = true;
            port_text = host_part.substr(colon + 1);
        }
        if (parsed.host_.empty()) {
            error = option + ": no host given";
            return false;
        }
        if (!std::all_of(parsed.host_.begin(), parsed.host_.end(), IsHostNameChar)) {
            error = option + ": bad host name '" + parsed.host_ + "'";
            return false;
        }
    }
    if (has_port && !ParsePort(port_text, option, parsed.port_, error)) {
        return false;
    }
    address = std::move(parsed);
    return true;
}

std::string BmcAddress::Display() const {
    return Display(host_, port_);
}

std::string BmcAddress::Display(const std::string& host, std::uint16_t port) {
    std::string shown = host.find(':') == std::string::npos ? host : "[" + host + "]";
    if (port != 0) {
        shown += ":" + std::to_string(port);
    }
    return shown;
}

} // namespace host
