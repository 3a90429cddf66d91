#pragma once

#include <cstdint>
#include <map>
#include <string>
#include <vector>

#include "collaborators/connection_info.hpp"
#include "result/tessel_result.hpp"
#include "service/misc_raid_service/raid_config_option.hpp"

namespace service {
namespace detail {

// Carries out one run: dispatches the action word to its handler and leaves "raid_result.xml"
// with the outcome.
class ServiceRaidImpl {
public:
    explicit ServiceRaidImpl(const RaidConfig::RaidConfigOption& option);

    TesselResult Run();
    std::string GetRaidShowResult();

    // True when the connection kind is 2: the run goes through the management controller.
    bool out_of_band() const { return out_of_band_; }

    // Device name to result text, gathered from the object that served the action.
    const std::map<std::string, std::string>& results() const { return results_; }

private:
    using Handler = std::uint32_t (ServiceRaidImpl::*)();

    std::uint32_t RaidShow();
    std::uint32_t RaidAdd();
    std::uint32_t RaidSave();
    std::uint32_t RaidCfg();
    std::uint32_t RaidMakeGood();
    std::uint32_t RaidMakeJBOD();
    std::uint32_t RaidFastInit();
    std::uint32_t RaidAddHotSpare();
    std::uint32_t RaidRemoveHotSpare();
    std::uint32_t RaidChangeConnectorMode();
    std::uint32_t RaidFirmwareDeviceOrder();
    std::uint32_t ExternKeyManage();
    std::uint32_t VolumeEncryption();

    // Code 25: the action has no road here.
    std::uint32_t Refused(const char* handler);

    // Connects to the BMC and fetches its REST connections, as the REST-only actions need: the
    // connection's bare code, or for a failing or empty list code 60 (list_failure_is_rest_data)
    // or the list call's own value.
    std::uint32_t ConnectRestList(QuillonConnection::ConnectionInfo& info, bool use_rest,
                                  std::vector<QuillonConnection::ConnectionInfo>& list,
                                  bool list_failure_is_rest_data);

    // Fetches the BMC connection of an out-of-band run: REST when use_rest, else SSH. Only the
    // low 16 bits of the fetch's value come back, on purpose: a connection failure reaches the
    // user with the generic family's message.
    std::uint32_t ConnectBmc(QuillonConnection::ConnectionInfo& info, bool use_rest);

public:
    // Writes "raid_result.xml" into the output directory. Failures are logged, never thrown.
    std::uint32_t WriteResultFile(TesselResult result);

    // The log file's name as the report shows it, from the log library's full name and directory.
    static std::string ReportedLogFileName(const std::string& full_name, const std::string& dir);

    // Adds one device row to the result file; a later row of the same device replaces it.
    void AddResult(const std::string& device, const std::string& text) { results_[device] = text; }

private:
    bool out_of_band_ = true;
    RaidConfig::RaidConfigOption option_;
    std::map<std::string, std::string> results_;
};

} // namespace detail
} // namespace service
