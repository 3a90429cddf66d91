#include "emulator/redfish_errors.hpp"

#include <nlohmann/json.hpp>

#include "result/raid_error_code.hpp"

namespace emulator {

using nlohmann::json;

namespace {

json Message(const std::string& message_id, const std::string& text, const std::string& severity,
             std::optional<int> code) {
    json message = {{"@odata.type", "#Message.v1_1_2.Message"},
                    {"MessageId", message_id},
                    {"Message", text},
                    {"Severity", severity},
                    {"MessageSeverity", severity}};
    if (severity != "OK") {
        message["Resolution"] = "Correct the request and resubmit it.";
    }
    if (code) {
        message["Oem"] = {{"Raidcfg", {{"Code", *code}}}};
    }
    return message;
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

HttpResponse RedfishErrors::Refused(int code, const std::string& text) {
    return Error(StatusOfCode(code), "Raidcfg.1.0.OperationFailed", text, code);
}

HttpResponse RedfishErrors::Accepted(int code, const std::string& text) {
    json message;
    if (code == Quillon::RaidConfig::RAID_OK_UNCHANGED) {
        message = Message("Raidcfg.1.0.AlreadySet", "The value is already set.", "OK", code);
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
