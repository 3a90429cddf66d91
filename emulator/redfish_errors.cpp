#include "emulator/redfish_errors.hpp"

#include <nlohmann/json.hpp>

#include "emulator/redfish_types.hpp"
#include "result/raid_error_code.hpp"

namespace emulator {

using nlohmann::json;

namespace {

json Message(const std::string& message_id, const std::string& text, const std::string& severity,
             std::optional<int> code) {
    json message = {{"@odata.type", RedfishTypes::kMessage},
                    {"MessageId", message_id},
                    {"Message", text},
                    {"Severity", severity},
                    {"MessageSeverity", severity}};
    if (severity != "OK") {
        message["Resolution"] = "Correct the request and resubmit it.";
    }
    if (code) {
        message["Oem"] = {
            {"Raidcfg", {{"@odata.type", RedfishTypes::kOemMessage}, {"Code", *code}}}};
    }
    return message;
}

HttpResponse Unauthorized(const std::string& message_id, const std::string& text) {
    HttpResponse response = RedfishErrors::Error(401, message_id, text, std::nullopt);
    response.headers.emplace_back("WWW-Authenticate", "Basic realm=\"raidcfg-bmc\"");
    return response;
}

} // namespace

HttpResponse RedfishErrors::Error(int status, const std::string& message_id,
                                  const std::string& text, std::optional<int> code) {
    const std::string severity = status >= 500 ? "Critical" : "Warning";
    json body = {
        {"error",
         {{"code", message_id},
          {"message", text},
          {"@Message.ExtendedInfo", json::array({Message(message_id, text, severity, code)})}}}};
    HttpResponse response;
    response.status = status;
    response.headers.emplace_back("Content-Type", "application/json");
    response.body = body.dump();
    return response;
}

HttpResponse RedfishErrors::BadToken() {
    return Unauthorized("Base.1.8.ResourceAtUriUnauthorized", "The session token is not valid.");
}

HttpResponse RedfishErrors::BadCredentials() {
    return Unauthorized("Base.1.8.ResourceAtUriUnauthorized",
                        "The user name or password is not valid.");
}

HttpResponse RedfishErrors::NoSession() {
    return Unauthorized("Base.1.8.NoValidSession",
                        "There is no valid session established with the implementation.");
}

HttpResponse RedfishErrors::NotFound(const std::string& path, std::optional<int> code) {
    return Error(404, "Base.1.8.ResourceNotFound", "The resource at " + path + " does not exist.",
                 code);
}

HttpResponse RedfishErrors::NotAllowed(const std::string& method, const std::string& path,
                                       std::optional<int> code) {
    return Error(405, "Base.1.8.OperationNotAllowed", method + " is not allowed on " + path + ".",
                 code);
}

HttpResponse RedfishErrors::MalformedJson(std::optional<int> code) {
    return Error(400, "Base.1.8.MalformedJSON", "The request body is not a JSON object.", code);
}

HttpResponse RedfishErrors::PreconditionFailed(std::optional<int> code) {
    return Error(412, "Base.1.8.PreconditionFailed",
                 "The ETag in If-Match does not match the resource.", code);
}

HttpResponse RedfishErrors::PropertyMissing(const std::string& name, std::optional<int> code) {
    return Error(400, "Base.1.8.PropertyMissing", "The property " + name + " is missing.", code);
}

HttpResponse RedfishErrors::ExpandNotSupported(std::optional<int> code) {
    return Error(501, "Base.1.8.QueryNotSupported", "$expand is not supported by this service.",
                 code);
}

std::optional<HttpResponse> RedfishErrors::Protocol(const std::string& odata_version,
                                                    const std::vector<std::string>& query_names,
                                                    std::optional<int> code) {
    if (!odata_version.empty() && odata_version != "4.0") {
        return Error(412, "Base.1.8.PreconditionFailed",
                     "The OData-Version " + odata_version +
                         " is not supported; this service supports 4.0.",
                     code);
    }
    for (const std::string& name : query_names) {
        if (!name.empty() && name.front() == '$' && name != "$expand") {
            return Error(501, "Base.1.8.QueryNotSupported",
                         "The query parameter " + name + " is not supported by this service.",
                         code);
        }
    }
    return std::nullopt;
}

HttpResponse RedfishErrors::BadExpand(const std::string& value, std::optional<int> code) {
    return Error(400, "Base.1.8.QueryParameterValueFormatError",
                 "The value " + value + " of $expand is not supported.", code);
}

HttpResponse RedfishErrors::ActionNotSupported(const std::string& action, const std::string& owner,
                                               std::optional<int> code) {
    return Error(404, "Base.1.8.ActionNotSupported",
                 "The action " + action + " is not supported by the resource " + owner + ".", code);
}

HttpResponse RedfishErrors::Refused(int code, const std::string& text) {
    return Error(StatusOfCode(code), "Raidcfg.1.0.OperationFailed", text, code);
}

HttpResponse RedfishErrors::Accepted(int code, const std::string& text) {
    json message;
    if (code == Quillon::RaidConfig::RAID_OK_UNCHANGED) {
        message =
            Message("Raidcfg.1.0.AlreadySet",
                    text.empty() ? std::string("The value is already set.") : text, "OK", code);
    } else if (!text.empty()) {
        message = Message("Raidcfg.1.0.Completed", text, "OK", code);
    } else {
        message = Message("Base.1.8.Success", "Successfully Completed Request", "OK", code);
    }
    HttpResponse response;
    response.headers.emplace_back("Content-Type", "application/json");
    response.body = json{{"@Message.ExtendedInfo", json::array({message})}}.dump();
    return response;
}

int RedfishErrors::StatusOfCode(int code) {
    switch (code) {
    case Quillon::RaidConfig::RAID_TARGET_NOT_FOUND:
        return 404;
    case Quillon::RaidConfig::RAID_MAKEGOOD_REFUSED:
    case Quillon::RaidConfig::RAID_MAKEJBOD_REFUSED:
    case Quillon::RaidConfig::RAID_ADDHSP_REFUSED:
    case Quillon::RaidConfig::RAID_RMHSP_REFUSED:
    case Quillon::RaidConfig::RAID_DISK_STATE_ERROR:
        return 409;
    case Quillon::RaidConfig::RAID_FUNCTION_UNSUPPORTED:
    case Quillon::RaidConfig::RAID_DEVICE_UNSUPPORTED:
        return 501;
    case Quillon::RaidConfig::RAID_INTERNAL_ERROR:
        return 500;
    default:
        return 400;
    }
}

} // namespace emulator
