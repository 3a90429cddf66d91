#include "host/host_runner.hpp"

#include <cstdint>
#include <filesystem>
#include <string>
#include <system_error>

#include "collaborators/log.hpp"
#include "host/action_help.hpp"
#include "host/bmc_address.hpp"
#include "host/command_line.hpp"
#include "redfish/redfish_backends.hpp"
#include "result/tessel_result.hpp"
#include "service/misc_raid_service/service_raid.hpp"
#include "sim/simulated_machine.hpp"

#ifndef RAIDCFG_VERSION
#define RAIDCFG_VERSION "unknown"
#endif

namespace host {
namespace {

bool MakeDirectory(const std::string& dir, std::string& reason) {
    std::error_code code;
    std::filesystem::create_directories(dir, code);
    if (code) {
        reason = code.message();
        return false;
    }
    if (!std::filesystem::is_directory(dir, code)) {
        reason = code ? code.message() : std::string("not a directory");
        return false;
    }
    return true;
}

// Where the run goes, for the log: never the target text, which may hold the password.
std::string Where(const HostSettings& settings) {
    const TesselConnect::ConnectOption& connect = settings.option.connect_option;
    std::string where;
    switch (connect.kind) {
    case TesselConnect::kConnectOutOfBand:
        where = "out-of-band through the BMC at " + BmcAddress::Display(connect.host, connect.port);
        break;
    case TesselConnect::kConnectLocalBmc:
        where = "on this machine, its BMC at " + BmcAddress::Display(connect.host, connect.port);
        break;
    default:
        where = "on this machine";
        break;
    }
    if (!settings.machine.empty()) {
        where += ", simulated machine '" + settings.machine + "'";
    }
    return where;
}

} // namespace

int HostRunner::Run(const HostSettings& settings, std::ostream& out, std::ostream& err) const {
    const RaidConfig::RaidConfigOption& option = settings.option;
    std::string reason;
    // An unusable machine file stops the run before any file is written.
    if (!settings.machine.empty() && !sim::SimulatedMachine::Use(settings.machine, reason)) {
        err << "raidcfg: " << settings.machine_source << ": " << reason << '\n';
        return CommandLine::kExitBadCommandLine;
    }
    // Without a simulated machine, a BMC named on the command line is reached over Redfish.
    const std::int32_t kind = option.connect_option.kind;
    if (settings.machine.empty() &&
        (kind == TesselConnect::kConnectLocalBmc || kind == TesselConnect::kConnectOutOfBand)) {
        redfish::RedfishBackends::Use();
    }
    if (!MakeDirectory(option.output_dir, reason)) {
        err << "raidcfg: cannot create the output directory '" << option.output_dir
            << "': " << reason << '\n';
        return CommandLine::kExitBadCommandLine;
    }
    if (!Quillon::SetLogDir(settings.log_dir, reason)) {
        err << "raidcfg: cannot create the log directory '" << settings.log_dir << "': " << reason
            << '\n';
        return CommandLine::kExitBadCommandLine;
    }
    if (!ActionHelp::IsAction(option.command)) {
        // The service answers an unknown word itself; the hint only saves a trip to --help.
        err << "raidcfg: '" << option.command
            << "' is not an action; the actions are: " << ActionHelp::WordList() << '\n';
    }
    RAIDCFG_LOG(3) << "raidcfg " << RAIDCFG_VERSION << " runs \"" << option.command << "\" "
                   << Where(settings);

    service::ServiceRaid raid(option);
    const TesselResult result = raid.Run();
    // The service's result says only "Connection failed."; the BMC's own reason goes first.
    const std::string failure = redfish::RedfishBackends::Failure();
    if (!failure.empty() && result.code() != 0) {
        err << "raidcfg: " << failure << '\n';
    }
    out << result << '\n';
    out.flush();
    const unsigned int code = result.code();
    return code > 255 ? 1 : static_cast<int>(code);
}

} // namespace host
