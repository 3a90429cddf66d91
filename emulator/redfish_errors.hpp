#pragma once

#include <optional>
#include <string>
#include <vector>

#include "emulator/http_response.hpp"

namespace emulator {

// The Redfish answers of the service that carry messages: errors with extended info, and the
// one-message bodies of accepted writes. Each message carries the backend contract code in
// Oem.Raidcfg.Code so that a client can return the simulated driver's code and text unchanged.
class RedfishErrors {
public:
    // A Redfish error: status, message id, message text and (when set) the contract code.
    static HttpResponse Error(int status, const std::string& message_id, const std::string& text,
                              std::optional<int> code);
    // The common refusals, worded alike by both services. The 401 answers ask for Basic
    // authentication: a session token that is not valid, bad credentials, none at all.
    static HttpResponse BadToken();
    static HttpResponse BadCredentials();
    static HttpResponse NoSession();
    static HttpResponse NotFound(const std::string& path, std::optional<int> code);
    static HttpResponse NotAllowed(const std::string& method, const std::string& path,
                                   std::optional<int> code);
    static HttpResponse MalformedJson(std::optional<int> code);
    static HttpResponse PreconditionFailed(std::optional<int> code);
    static HttpResponse PropertyMissing(const std::string& name, std::optional<int> code);
    static HttpResponse ExpandNotSupported(std::optional<int> code);
    // What the protocol asks before a request is served: 412 for an OData-Version other than
    // 4.0, 501 for a "$" query option the service does not implement (all but $expand);
    // nothing when the request may go on.
    static std::optional<HttpResponse> Protocol(const std::string& odata_version,
                                                const std::vector<std::string>& query_names,
                                                std::optional<int> code);
    static HttpResponse BadExpand(const std::string& value, std::optional<int> code);
    static HttpResponse ActionNotSupported(const std::string& action, const std::string& owner,
                                           std::optional<int> code);
    // A write the simulated driver refused: the HTTP status follows the code (docs/redfish.md).
    static HttpResponse Refused(int code, const std::string& text);
    // An accepted write: 200 with one message; code 34 says the value was already set, a text
    // (the driver's success text) replaces the generic message.
    static HttpResponse Accepted(int code, const std::string& text);
    // The HTTP status of a refusal with this contract code.
    static int StatusOfCode(int code);
};

} // namespace emulator
