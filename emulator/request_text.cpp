#include "emulator/request_text.hpp"

#include <cctype>
#include <cstring>

namespace emulator {

namespace {

int HexValue(char c) {
    if (c >= '0' && c <= '9') {
        return c - '0';
    }
    const int lower = std::tolower(static_cast<unsigned char>(c));
    if (lower >= 'a' && lower <= 'f') {
        return lower - 'a' + 10;
    }
    return -1;
}

std::string Decode(const std::string& text, bool plus_is_space) {
    std::string decoded;
    for (std::size_t i = 0; i < text.size(); ++i) {
        if (text[i] == '%' && i + 2 < text.size() && HexValue(text[i + 1]) >= 0 &&
            HexValue(text[i + 2]) >= 0) {
            decoded.push_back(
                static_cast<char>(HexValue(text[i + 1]) * 16 + HexValue(text[i + 2])));
            i += 2;
        } else if (text[i] == '+' && plus_is_space) {
            decoded.push_back(' ');
        } else {
            decoded.push_back(text[i]);
        }
    }
    return decoded;
}

std::string Base64Decode(const std::string& text) {
    std::string decoded;
    unsigned int buffer = 0;
    int bits = 0;
    for (char c : text) {
        int value = -1;
        if (c >= 'A' && c <= 'Z') {
            value = c - 'A';
        } else if (c >= 'a' && c <= 'z') {
            value = c - 'a' + 26;
        } else if (c >= '0' && c <= '9') {
            value = c - '0' + 52;
        } else if (c == '+') {
            value = 62;
        } else if (c == '/') {
            value = 63;
        } else {
            break; // padding or the end
        }
        buffer = (buffer << 6U) | static_cast<unsigned int>(value);
        bits += 6;
        if (bits >= 8) {
            bits -= 8;
            decoded.push_back(
                static_cast<char>((buffer >> static_cast<unsigned int>(bits)) & 0xFFU));
        }
    }
    return decoded;
}

} // namespace

void RequestText::SplitTarget(const std::string& target, std::string& path, std::string& query) {
    const std::size_t mark = target.find('?');
    path = target.substr(0, mark);
    query = mark == std::string::npos ? "" : target.substr(mark + 1);
}

std::string RequestText::DecodeQuery(const std::string& text) {
    return Decode(text, true);
}

std::string RequestText::DecodePath(const std::string& text) {
    return Decode(text, false);
}

std::string RequestText::EncodePath(const std::string& text) {
    static constexpr const char* kKept = "-._~!$&'()*+,;=:@/";
    static constexpr const char* kDigits = "0123456789ABCDEF";
    std::string encoded;
    for (char c : text) {
        const auto byte = static_cast<unsigned char>(c);
        if (std::isalnum(byte) != 0 || (c != '\0' && std::strchr(kKept, c) != nullptr)) {
            encoded.push_back(c);
        } else {
            encoded.push_back('%');
            encoded.push_back(kDigits[byte >> 4U]);
            encoded.push_back(kDigits[byte & 0xFU]);
        }
    }
    return encoded;
}

std::optional<std::string> RequestText::QueryValue(const std::string& query,
                                                   const std::string& name) {
    std::size_t start = 0;
    while (start <= query.size()) {
        const std::size_t amp = query.find('&', start);
        const std::string pair =
            query.substr(start, amp == std::string::npos ? std::string::npos : amp - start);
        const std::size_t equals = pair.find('=');
        const std::string key = DecodeQuery(pair.substr(0, equals));
        if (key == name) {
            return equals == std::string::npos ? std::string()
                                               : DecodeQuery(pair.substr(equals + 1));
        }
        if (amp == std::string::npos) {
            break;
        }
        start = amp + 1;
    }
    return std::nullopt;
}

std::vector<std::string> RequestText::QueryNames(const std::string& query) {
    std::vector<std::string> names;
    std::size_t start = 0;
    while (start < query.size()) {
        const std::size_t amp = query.find('&', start);
        const std::string pair =
            query.substr(start, amp == std::string::npos ? std::string::npos : amp - start);
        if (!pair.empty()) {
            names.push_back(DecodeQuery(pair.substr(0, pair.find('='))));
        }
        if (amp == std::string::npos) {
            break;
        }
        start = amp + 1;
    }
    return names;
}

std::optional<std::string> RequestText::BasicCredentials(const std::string& authorization) {
    const std::string basic = "Basic ";
    if (authorization.rfind(basic, 0) != 0) {
        return std::nullopt;
    }
    return Base64Decode(authorization.substr(basic.size()));
}

} // namespace emulator
