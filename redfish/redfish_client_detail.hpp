#pragma once

#include <optional>
#include <string>

#include <nlohmann/json.hpp>

#include "redfish/http_transport.hpp"
#include "redfish/redfish_client.hpp"

// The Redfish client's own helpers: error bodies, texts and small codecs. Not for other code.
namespace redfish::detail {

// "OK", "Not Found", ... for the status codes a BMC answers with; empty when unknown.
std::string ReasonPhrase(long status);

// The message a Redfish error body (or a task's Messages) carries.
struct ErrorMessage {
    std::string message;       // first non-empty Message, else error.message; empty for none
    bool has_code = false;     // an entry carried "Oem": {"Raidcfg": {"Code": N}} with N > 0
    int code = 0;              // N
    std::string coded_message; // that entry's Message
};

// Reads error.@Message.ExtendedInfo (or a top-level @Message.ExtendedInfo) and error.message.
ErrorMessage ReadErrorBody(const std::string& body);
// Reads the Messages array of a task resource.
ErrorMessage ReadTaskMessages(const nlohmann::json& task);

// The status for an HTTP answer that is a failure (status >= 300), in the client's terms.
RedfishStatus HttpFailure(const std::string& authority, const std::string& method,
                          const std::string& path, const HttpResponse& response);

// "BMC <authority>: malformed JSON in the answer to METHOD path".
RedfishStatus MalformedJson(const std::string& authority, const std::string& method,
                            const std::string& path);

// Parses JSON text; false (out discarded) when it is not JSON. Empty text is not JSON.
bool ParseJson(const std::string& text, nlohmann::json& out);
// JSON text of a request body; invalid UTF-8 is replaced rather than thrown at.
std::string DumpJson(const nlohmann::json& value);

// The path of a Location header or link: "https://host:port/redfish/v1/x" -> "/redfish/v1/x".
std::string PathOf(const std::string& location);
// Retry-After as a number of seconds; nothing for an absent header or an HTTP date.
std::optional<long> RetryAfterSeconds(const HttpResponse& response);
std::string Base64(const std::string& data);
// "120 s", "1.5 s".
std::string SecondsText(std::chrono::milliseconds duration);

} // namespace redfish::detail
