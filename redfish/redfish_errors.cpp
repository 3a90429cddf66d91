// The Redfish client's error bodies, texts and small codecs.
#include <cctype>
#include <cstdio>
#include <map>
#include <string>

#include "redfish/redfish_client_detail.hpp"

namespace redfish::detail {
namespace {

using Quillon::RaidConfig::RaidErrorCode;

std::string StringField(const nlohmann::json& object, const char* key) {
    if (!object.is_object()) {
        return std::string();
    }
    const auto found = object.find(key);
    return found != object.end() && found->is_string() ? found->get<std::string>() : std::string();
}

// The code of an "Oem": {"Raidcfg": {"Code": N}} entry, 0 for none.
int OemCode(const nlohmann::json& entry) {
    if (!entry.is_object()) {
        return 0;
    }
    const auto oem = entry.find("Oem");
    if (oem == entry.end() || !oem->is_object()) {
        return 0;
    }
    const auto ours = oem->find("Raidcfg");
    if (ours == oem->end() || !ours->is_object()) {
        return 0;
    }
    const auto code = ours->find("Code");
    if (code == ours->end() || !code->is_number_integer()) {
        return 0;
    }
    const auto value = code->get<long long>();
    return value > 0 && value < 65536 ? static_cast<int>(value) : 0;
}

// Walks a list of message entries: the first Oem code and the first message.
void ReadEntries(const nlohmann::json& entries, ErrorMessage& result) {
    if (!entries.is_array()) {
        return;
    }
    for (const auto& entry : entries) {
        const std::string message = StringField(entry, "Message");
        if (result.message.empty() && !message.empty()) {
            result.message = message;
        }
        const int code = OemCode(entry);
        if (!result.has_code && code != 0) {
            result.has_code = true;
            result.code = code;
            result.coded_message = message;
        }
    }
}

} // namespace

std::string ReasonPhrase(long status) {
    static const std::map<long, const char*> kPhrases = {{200, "OK"},
                                                         {201, "Created"},
                                                         {202, "Accepted"},
                                                         {204, "No Content"},
                                                         {301, "Moved Permanently"},
                                                         {302, "Found"},
                                                         {304, "Not Modified"},
                                                         {307, "Temporary Redirect"},
                                                         {308, "Permanent Redirect"},
                                                         {400, "Bad Request"},
                                                         {401, "Unauthorized"},
                                                         {403, "Forbidden"},
                                                         {404, "Not Found"},
                                                         {405, "Method Not Allowed"},
                                                         {406, "Not Acceptable"},
                                                         {409, "Conflict"},
                                                         {410, "Gone"},
                                                         {411, "Length Required"},
                                                         {412, "Precondition Failed"},
                                                         {413, "Payload Too Large"},
                                                         {415, "Unsupported Media Type"},
                                                         {428, "Precondition Required"},
                                                         {429, "Too Many Requests"},
                                                         {500, "Internal Server Error"},
                                                         {501, "Not Implemented"},
                                                         {502, "Bad Gateway"},
                                                         {503, "Service Unavailable"},
                                                         {504, "Gateway Timeout"},
                                                         {507, "Insufficient Storage"}};
    const auto found = kPhrases.find(status);
    return found == kPhrases.end() ? std::string() : std::string(found->second);
}

ErrorMessage ReadErrorBody(const std::string& body) {
    ErrorMessage result;
    nlohmann::json json;
    if (!ParseJson(body, json) || !json.is_object()) {
        return result;
    }
    const auto error = json.find("error");
    if (error != json.end() && error->is_object()) {
        const auto info = error->find("@Message.ExtendedInfo");
        if (info != error->end()) {
            ReadEntries(*info, result);
        }
        if (result.message.empty()) {
            result.message = StringField(*error, "message");
        }
    }
    const auto info = json.find("@Message.ExtendedInfo");
    if (info != json.end()) {
        ErrorMessage top;
        ReadEntries(*info, top);
        if (result.message.empty()) {
            result.message = top.message;
        }
        if (!result.has_code && top.has_code) {
            result.has_code = true;
            result.code = top.code;
            result.coded_message = top.coded_message;
        }
    }
    return result;
}

ErrorMessage ReadTaskMessages(const nlohmann::json& task) {
    ErrorMessage result;
    if (task.is_object()) {
        const auto messages = task.find("Messages");
        if (messages != task.end()) {
            ReadEntries(*messages, result);
        }
    }
    return result;
}

RedfishStatus HttpFailure(const std::string& authority, const std::string& method,
                          const std::string& path, const HttpResponse& response) {
    const ErrorMessage error = ReadErrorBody(response.body);
    // A message that carries our Oem code is the controller's own text, the empty text included.
    if (error.has_code) {
        return {static_cast<RaidErrorCode>(error.code), error.coded_message};
    }
    const std::string prefix = "BMC " + authority + ": ";
    if (response.status == 401 || response.status == 403) {
        return {Quillon::RaidConfig::RAID_AUTH_FAILED, prefix + "authentication failed"};
    }
    std::string message = error.message;
    if (message.empty()) {
        message = ReasonPhrase(response.status);
    }
    if (message.empty()) {
        message = "no message";
    }
    const RaidErrorCode code = error.has_code           ? static_cast<RaidErrorCode>(error.code)
                               : response.status == 404 ? Quillon::RaidConfig::RAID_TARGET_NOT_FOUND
                                                        : Quillon::RaidConfig::RAID_REST_FAILED;
    return {code, prefix + "HTTP " + std::to_string(response.status) + " on " + method + " " +
                      path + ": " + message};
}

RedfishStatus MalformedJson(const std::string& authority, const std::string& method,
                            const std::string& path) {
    return {Quillon::RaidConfig::RAID_REST_FAILED,
            "BMC " + authority + ": malformed JSON in the answer to " + method + " " + path};
}

bool ParseJson(const std::string& text, nlohmann::json& out) {
    out = nlohmann::json::parse(text, nullptr, false);
    if (out.is_discarded()) {
        out = nlohmann::json();
        return false;
    }
    return true;
}

std::string DumpJson(const nlohmann::json& value) {
    return value.dump(-1, ' ', false, nlohmann::json::error_handler_t::replace);
}

std::string PathOf(const std::string& location) {
    const auto scheme = location.find("://");
    if (scheme == std::string::npos) {
        return location;
    }
    const auto slash = location.find('/', scheme + 3);
    return slash == std::string::npos ? std::string("/") : location.substr(slash);
}

std::optional<long> RetryAfterSeconds(const HttpResponse& response) {
    const std::string value = response.Header("retry-after");
    std::size_t first = value.find_first_not_of(" \t");
    if (first == std::string::npos) {
        return std::nullopt;
    }
    long seconds = 0;
    std::size_t i = first;
    for (; i < value.size() && std::isdigit(static_cast<unsigned char>(value[i])) != 0; ++i) {
        if (seconds < 1000000) {
            seconds = seconds * 10 + (value[i] - '0');
        }
    }
    if (i == first || value.find_first_not_of(" \t", i) != std::string::npos) {
        return std::nullopt; // an HTTP date or something else: the back-off applies
    }
    return seconds;
}

std::string Base64(const std::string& data) {
    static const char* const kAlphabet =
        "ABCDEFGHIJKLMNOPQRSTUVWXYZabcdefghijklmnopqrstuvwxyz0123456789+/";
    std::string out;
    out.reserve((data.size() + 2) / 3 * 4);
    std::size_t i = 0;
    for (; i + 2 < data.size(); i += 3) {
        const unsigned int n = (static_cast<unsigned char>(data[i]) << 16U) |
                               (static_cast<unsigned char>(data[i + 1]) << 8U) |
                               static_cast<unsigned char>(data[i + 2]);
        out += kAlphabet[(n >> 18U) & 63U];
        out += kAlphabet[(n >> 12U) & 63U];
        out += kAlphabet[(n >> 6U) & 63U];
        out += kAlphabet[n & 63U];
    }
    const std::size_t rest = data.size() - i;
    if (rest == 1) {
        const unsigned int n = static_cast<unsigned char>(data[i]) << 16U;
        out += kAlphabet[(n >> 18U) & 63U];
        out += kAlphabet[(n >> 12U) & 63U];
        out += "==";
    } else if (rest == 2) {
        const unsigned int n = (static_cast<unsigned char>(data[i]) << 16U) |
                               (static_cast<unsigned char>(data[i + 1]) << 8U);
        out += kAlphabet[(n >> 18U) & 63U];
        out += kAlphabet[(n >> 12U) & 63U];
        out += kAlphabet[(n >> 6U) & 63U];
        out += '=';
    }
    return out;
}

std::string SecondsText(std::chrono::milliseconds duration) {
    const long long ms = duration.count();
    if (ms % 1000 == 0) {
        return std::to_string(ms / 1000) + " s";
    }
    char buffer[32];
    std::snprintf(buffer, sizeof buffer, "%.1f s", static_cast<double>(ms) / 1000.0);
    return buffer;
}

} // namespace redfish::detail
