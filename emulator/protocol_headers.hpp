#pragma once

#include <optional>
#include <string>

#include <nlohmann/json.hpp>

#include "emulator/http_response.hpp"

namespace emulator {

// The headers and refusals the Redfish protocol asks of every answer, alike for both services:
// Allow on reads and on 405, Cache-Control, the Link to the schema that describes a resource,
// and 501 for an HTTP method the service does not know.
class ProtocolHeaders {
public:
    // 501 with a Redfish error for a method other than GET, HEAD, POST, PATCH, PUT, DELETE and
    // OPTIONS; nothing when the service should go on.
    static std::optional<HttpResponse> UnknownMethod(const std::string& method);

    // Adds Allow (the methods the resource takes, e.g. "GET, HEAD, PATCH") to a successful read
    // and to a 405, and Cache-Control to every answer.
    static void Complete(HttpResponse& response, const std::string& method,
                         const std::string& allow);

    // Adds the Link to the JSON schema of the resource's @odata.type
    // ("<http://redfish.dmtf.org/schemas/v1/Drive.v1_17_0.json>; rel=describedby"). Nothing for
    // a resource without a type.
    static void Describe(HttpResponse& response, const nlohmann::json& resource);
};

} // namespace emulator
