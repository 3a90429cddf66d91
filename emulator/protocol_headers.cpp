#include "emulator/protocol_headers.hpp"

#include <array>

#include <strings.h>

#include "emulator/redfish_errors.hpp"
#include "result/raid_error_code.hpp"

namespace emulator {

namespace rc = Quillon::RaidConfig;

std::optional<HttpResponse> ProtocolHeaders::UnknownMethod(const std::string& method) {
    static const std::array<const char*, 7> known{"GET", "HEAD",   "POST",   "PATCH",
                                                  "PUT", "DELETE", "OPTIONS"};
    for (const char* name : known) {
        if (method == name) {
            return std::nullopt;
        }
    }
    return RedfishErrors::Error(501, "Base.1.8.GeneralError",
                                "The HTTP method " + method +
                                    " is not implemented by this service.",
                                rc::RAID_OPERATION_FAILED);
}

void ProtocolHeaders::Complete(HttpResponse& response, const std::string& method,
                               const std::string& allow) {
    const bool read =
        (method == "GET" || method == "HEAD") && response.status >= 200 && response.status < 300;
    const auto has = [&response](const char* name) {
        for (const auto& header : response.headers) {
            if (strcasecmp(header.first.c_str(), name) == 0) {
                return true;
            }
        }
        return false;
    };
    // A recorded tree may carry its own.
    if (!allow.empty() && (read || response.status == 405) && !has("Allow")) {
        response.headers.emplace_back("Allow", allow);
    }
    // Resources change under every write; nothing may be served from a cache.
    if (!has("Cache-Control")) {
        response.headers.emplace_back("Cache-Control", "no-cache");
    }
}

void ProtocolHeaders::Describe(HttpResponse& response, const nlohmann::json& resource) {
    if (!resource.is_object() || !resource.contains("@odata.type") ||
        !resource["@odata.type"].is_string()) {
        return;
    }
    std::string type = resource["@odata.type"].get<std::string>();
    if (!type.empty() && type[0] == '#') {
        type.erase(0, 1);
    }
    // "Drive.v1_17_0.Drive" -> "Drive.v1_17_0"; an unversioned "DriveCollection.DriveCollection"
    // -> "DriveCollection".
    const std::size_t last = type.rfind('.');
    std::string schema = last == std::string::npos ? type : type.substr(0, last);
    if (schema.find(".v") == std::string::npos && schema.find('.') != std::string::npos) {
        schema = schema.substr(0, schema.find('.'));
    }
    response.headers.emplace_back("Link", "<http://redfish.dmtf.org/schemas/v1/" + schema +
                                              ".json>; rel=describedby");
}

} // namespace emulator
