#include "host/command_line.hpp"

#include <algorithm>
#include <array>
#include <cctype>
#include <cerrno>
#include <charconv>
#include <cstdio>
#include <cstdlib>
#include <cstring>
#include <filesystem>
#include <map>
#include <system_error>
#include <utility>
#include <vector>

#include <CLI/CLI.hpp>

#include "host/action_help.hpp"
#include "host/bmc_address.hpp"
#include "host/file_text.hpp"

#ifndef RAIDCFG_VERSION
#define RAIDCFG_VERSION "unknown"
#endif

namespace host {
namespace {

constexpr std::array<const char*, 18> kValueOptions = {
    "--output",   "--file",      "--ctrl",    "--target",  "--vol",       "--disk",
    "--dg",       "--connector", "--mode",    "--bmc",     "--local-bmc", "--user",
    "--password", "--cacert",    "--timeout", "--machine", "--log-dir",   "--system"};

constexpr std::array<const char*, 9> kLongFlags = {"--yes",      "--save-to-output", "--cfc",
                                                   "--quiet",    "--http",           "--json",
                                                   "--insecure", "--help",           "--version"};

bool IsOneOf(const std::string& name, const char* const* begin, const char* const* end) {
    return std::any_of(begin, end, [&name](const char* known) { return name == known; });
}

bool IsValueOption(const std::string& name) {
    return IsOneOf(name, kValueOptions.data(), kValueOptions.data() + kValueOptions.size());
}

bool IsLongFlag(const std::string& name) {
    return IsOneOf(name, kLongFlags.data(), kLongFlags.data() + kLongFlags.size());
}

// An argument that would be read as an option rather than as the value of the one before it:
// "--" and anything starting with it, or '-' and a letter. "-1" and "-" are values.
bool LooksLikeOption(const std::string& arg) {
    if (arg.size() < 2 || arg[0] != '-') {
        return false;
    }
    return arg[1] == '-' || std::isalpha(static_cast<unsigned char>(arg[1])) != 0;
}

// What a first pass over the arguments found. CLI11 assigns the values afterwards; this pass
// gives the rules it does not keep (a value must not look like an option, each option once)
// and words every mistake the way raidcfg reports it.
struct Scan {
    bool help = false;
    bool version = false;
    std::vector<std::string> positionals;
    std::string first_problem;
};

Scan ScanArguments(int argc, const char* const* argv) {
    Scan scan;
    std::map<std::string, int> seen;
    const auto problem = [&scan](std::string text) {
        if (scan.first_problem.empty()) {
            scan.first_problem = std::move(text);
        }
    };
    bool after_separator = false;
    for (int i = 1; i < argc; ++i) {
        const std::string arg = argv[i];
        if (after_separator) {
            scan.positionals.push_back(arg);
            continue;
        }
        if (arg == "--") {
            after_separator = true;
            continue;
        }
        if (arg.size() > 2 && arg.compare(0, 2, "--") == 0) {
            // Only the name is ever repeated back: the value may be a password.
            const std::size_t equals = arg.find('=');
            const std::string name = arg.substr(0, equals);
            if (IsValueOption(name)) {
                if (++seen[name] > 1) {
                    problem("option " + name + " is given more than once");
                }
                if (equals == std::string::npos) {
                    if (i + 1 >= argc || LooksLikeOption(argv[i + 1])) {
                        problem("option " + name + " needs a value");
                    } else {
                        ++i;
                    }
                } else if (equals + 1 == arg.size()) {
                    problem("option " + name + " needs a value");
                }
            } else if (IsLongFlag(name)) {
                if (equals != std::string::npos) {
                    problem("option " + name + " takes no value");
                } else if (name == "--help") {
                    scan.help = true;
                } else if (name == "--version") {
                    scan.version = true;
                }
            } else {
                problem("unknown option '" + name + "'");
            }
            continue;
        }
        if (arg.size() > 1 && arg[0] == '-') {
            // One or more short flags: -y, -q, -h, or several at once such as -yq.
            for (std::size_t k = 1; k < arg.size(); ++k) {
                const char flag = arg[k];
                if (flag == 'h') {
                    scan.help = true;
                } else if (flag != 'y' && flag != 'q') {
                    problem(std::string("unknown option '-") + flag + "'");
                    break;
                }
            }
            continue;
        }
        scan.positionals.push_back(arg);
    }
    return scan;
}

std::string WithSlash(std::string dir) {
    if (dir.back() != '/') {
        dir += '/';
    }
    return dir;
}

} // namespace

std::optional<std::string> CommandLine::ProcessEnvironment(const std::string& name) {
    const char* value = std::getenv(name.c_str());
    if (value == nullptr) {
        return std::nullopt;
    }
    return std::string(value);
}

CommandLine::CommandLine(Environment environment) : environment_(std::move(environment)) {}

bool CommandLine::Stop(std::string output) {
    exit_code_ = 0;
    output_ = std::move(output);
    return false;
}

bool CommandLine::Fail(const std::string& problem) {
    exit_code_ = kExitBadCommandLine;
    error_ = "raidcfg: " + problem + "\n";
    return false;
}

bool CommandLine::Parse(int argc, const char* const* argv) {
    settings_ = HostSettings();
    exit_code_ = 0;
    output_.clear();
    error_.clear();
    if (argc < 1 || argv == nullptr) {
        return Fail("missing COMMAND; one of: " + ActionHelp::WordList());
    }

    // Help and version win over any mistake elsewhere on the line.
    const Scan scan = ScanArguments(argc, argv);
    if (scan.help) {
        return Stop(ActionHelp::ActionText(scan.positionals.empty() ? std::string()
                                                                    : scan.positionals.front()));
    }
    if (scan.version) {
        return Stop("raidcfg " RAIDCFG_VERSION "\n");
    }
    if (!scan.first_problem.empty()) {
        return Fail(scan.first_problem);
    }

    CLI::App app("raidcfg", "raidcfg");
    app.set_help_flag();
    std::vector<std::string> words;
    app.add_option("COMMAND", words);
    std::map<std::string, std::string> values;
    for (const char* name : kValueOptions) {
        app.add_option(name, values[name]);
    }
    bool yes = false;
    bool save_to_output = false;
    bool cfc = false;
    bool quiet = false;
    bool http = false;
    bool insecure = false;
    bool json = false;
    app.add_flag("-y,--yes", yes);
    app.add_flag("--json", json);
    app.add_flag("--save-to-output", save_to_output);
    app.add_flag("--cfc", cfc);
    app.add_flag("-q,--quiet", quiet);
    app.add_flag("--http", http);
    app.add_flag("--insecure", insecure);
    try {
        app.parse(argc, argv);
    } catch (const CLI::ParseError& error) {
        // The first pass should have caught everything; the library's text is not repeated
        // because it may quote a value.
        return Fail("cannot read the command line (" + error.get_name() + ")");
    }
    const auto given = [&app](const std::string& name) { return app.count(name) > 0; };

    if (words.empty()) {
        return Fail("missing COMMAND; one of: " + ActionHelp::WordList());
    }
    if (words.size() > 1) {
        return Fail("unexpected argument '" + words[1] + "' after COMMAND '" + words[0] + "'");
    }
    if (json && words.front() != "diff") {
        return Fail("--json is only for diff");
    }
    if (words.front() == "diff" && values["--file"].empty()) {
        return Fail("diff needs --file POLICY, the policy file to compare with");
    }
    if (given("--bmc") && given("--local-bmc")) {
        return Fail("--bmc and --local-bmc cannot be used together");
    }
    if (insecure && given("--cacert")) {
        return Fail("--insecure and --cacert cannot be used together");
    }
    for (const char* name : {"--output", "--log-dir", "--machine", "--cacert", "--user",
                             "--password", "--timeout", "--system"}) {
        if (given(name) && values[name].empty()) {
            return Fail(std::string("option ") + name + " needs a value");
        }
    }

    RaidConfig::RaidConfigOption& option = settings_.option;
    TesselConnect::ConnectOption& connect = option.connect_option;
    const std::string bmc_option = given("--bmc") ? "--bmc" : "--local-bmc";
    const bool use_bmc = given(bmc_option);
    BmcAddress address;
    if (use_bmc) {
        std::string problem;
        if (!BmcAddress::Parse(values[bmc_option], bmc_option, address, problem)) {
            return Fail(problem);
        }
    }

    if (given("--timeout")) {
        const std::string& text = values["--timeout"];
        int seconds = 0;
        const char* end = text.data() + text.size();
        const auto [stop, code] = std::from_chars(text.data(), end, seconds);
        if (code != std::errc() || stop != end || seconds < 1) {
            return Fail("--timeout: '" + text + "' is not a positive whole number of seconds");
        }
        connect.timeout_seconds = seconds;
    }

    if (given("--cacert")) {
        std::string content;
        std::string reason;
        if (!FileText::Read(values["--cacert"], content, reason)) {
            return Fail("--cacert: cannot read '" + values["--cacert"] + "': " + reason);
        }
        connect.ca_file = values["--cacert"];
    }

    std::string machine;
    std::string machine_source = "--machine";
    if (given("--machine")) {
        machine = values["--machine"];
    } else if (const std::optional<std::string> from_env = environment_("RAIDCFG_MACHINE");
               from_env && !from_env->empty()) {
        machine = *from_env;
        machine_source = "RAIDCFG_MACHINE";
    }
    if (!machine.empty() && machine != "demo") {
        std::string content;
        std::string reason;
        if (!FileText::Read(machine, content, reason)) {
            return Fail(machine_source + ": cannot read '" + machine + "': " + reason);
        }
        // Its content is judged when the machine is put to use, before anything runs.
    }
    settings_.machine = machine;
    settings_.machine_source = machine_source;

    option.command = words.front();
    option.output_dir = given("--output") ? WithSlash(values["--output"]) : std::string("./");
    settings_.log_dir = given("--log-dir") ? WithSlash(values["--log-dir"]) : option.output_dir;
    option.policy_file = values["--file"];
    option.ctrl_index = values["--ctrl"];
    option.target = values["--target"];
    option.volume_ids = values["--vol"];
    option.disk_ids = values["--disk"];
    option.disk_group_ids = values["--dg"];
    option.connector_ids = values["--connector"];
    option.mode_value = values["--mode"];
    option.assume_yes = yes;
    option.save_to_output_dir = save_to_output;
    option.cfc = cfc;
    option.console_output = !quiet;
    settings_.json = json;

    if (use_bmc) {
        connect.kind = bmc_option == "--bmc" ? TesselConnect::kConnectOutOfBand
                                             : TesselConnect::kConnectLocalBmc;
        connect.target = values[bmc_option];
        connect.host = address.host();
        connect.port = address.port();
    }
    // --user and --password win over what the address carried; the environment comes last,
    // for a BMC and for any action given a user name (ekm asks for the BMC's account in-band).
    connect.user = given("--user") ? values["--user"] : address.user();
    connect.password = given("--password") ? values["--password"] : address.password();
    if ((use_bmc || !connect.user.empty()) && connect.password.empty()) {
        connect.password = environment_("RAIDCFG_BMC_PASSWORD").value_or(std::string());
    }
    connect.scheme = http ? "http" : "https";
    connect.verify_tls = !insecure;
    connect.system = values["--system"];
    return true;
}

} // namespace host
