#include "host/host_runner.hpp"

#include <cerrno>
#include <cstdint>
#include <cstdlib>
#include <cstring>
#include <filesystem>
#include <iostream>
#include <sstream>
#include <string>
#include <system_error>
#include <vector>

#include "collaborators/log.hpp"
#include "host/action_help.hpp"
#include "host/bmc_address.hpp"
#include "host/command_line.hpp"
#include "host/file_text.hpp"
#include "host/policy_diff.hpp"
#include "host/policy_sections.hpp"
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

// Keeps what the service prints during diff's read off standard output: diff's own lines are
// the output. Restores the stream on every way out.
class QuietStdout {
public:
    QuietStdout() : saved_(std::cout.rdbuf(sink_.rdbuf())) {}
    ~QuietStdout() { std::cout.rdbuf(saved_); }
    QuietStdout(const QuietStdout&) = delete;
    QuietStdout& operator=(const QuietStdout&) = delete;

private:
    std::ostringstream sink_;
    std::streambuf* saved_;
};

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

    if (option.command == "diff") {
        return Diff(settings, out, err);
    }
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

int HostRunner::Diff(const HostSettings& settings, std::ostream& out, std::ostream& err) const {
    const RaidConfig::RaidConfigOption& option = settings.option;
    std::string text;
    std::string reason;
    std::vector<PolicySections::Section> wanted;
    if (!FileText::Read(option.policy_file, text, reason)) {
        err << "raidcfg: --file: cannot read '" << option.policy_file << "': " << reason << '\n';
        return CommandLine::kExitBadCommandLine;
    }
    if (!PolicySections::Parse(text, wanted, reason)) {
        err << "raidcfg: --file: '" << option.policy_file << "': " << reason << '\n';
        return CommandLine::kExitBadCommandLine;
    }
    // The live configuration as save writes it, into a directory of its own that goes away
    // with everything save left there.
    std::string pattern = (std::filesystem::temp_directory_path() / "raidcfg-diff-XXXXXX").string();
    if (mkdtemp(pattern.data()) == nullptr) {
        err << "raidcfg: cannot make a temporary directory: " << std::strerror(errno) << '\n';
        return CommandLine::kExitBadCommandLine;
    }
    const std::string scratch = pattern;
    RaidConfig::RaidConfigOption save = option;
    save.command = "save";
    save.output_dir = scratch + "/";
    save.policy_file = scratch + "/live.ini";
    save.save_to_output_dir = false;
    save.console_output = false;
    RAIDCFG_LOG(3) << "diff: reading the live configuration to compare with '" << option.policy_file
                   << "'";
    const TesselResult result = [&save] {
        const QuietStdout quiet;
        return service::ServiceRaid(save).Run();
    }();
    std::vector<PolicySections::Section> live;
    bool read = result.code() == 0 && FileText::Read(save.policy_file, text, reason) &&
                PolicySections::Parse(text, live, reason);
    std::error_code ignored;
    std::filesystem::remove_all(scratch, ignored);
    if (!read) {
        const std::string failure = redfish::RedfishBackends::Failure();
        if (!failure.empty()) {
            err << "raidcfg: " << failure << '\n';
        }
        if (result.code() == 0) {
            err << "raidcfg: diff: the saved configuration cannot be read: " << reason << '\n';
            return 1;
        }
        out << result << '\n';
        return result.code() > 255 ? 1 : static_cast<int>(result.code());
    }
    const std::vector<PolicyDiff::Difference> differences = PolicyDiff::Compare(wanted, live);
    if (settings.json) {
        out << PolicyDiff::Json(differences).dump(2) << '\n';
    } else {
        out << PolicyDiff::Text(differences);
    }
    out.flush();
    RAIDCFG_LOG(3) << "diff: " << differences.size() << " differences";
    return differences.empty() ? 0 : kExitDiffers;
}

} // namespace host
