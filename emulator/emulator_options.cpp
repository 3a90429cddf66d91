#include "emulator/emulator_options.hpp"

#include <algorithm>
#include <cctype>
#include <vector>

#include <CLI/CLI.hpp>

namespace emulator {

namespace {

bool ParsePort(const std::string& text, int& port) {
    if (text.empty() || text.size() > 5 ||
        !std::all_of(text.begin(), text.end(),
                     [](unsigned char c) { return std::isdigit(c) != 0; })) {
        return false;
    }
    port = std::stoi(text);
    return port <= 65535;
}

// "HOST:PORT", "[IPv6]:PORT".
bool ParseListen(const std::string& text, std::string& host, int& port) {
    std::string port_text;
    if (!text.empty() && text.front() == '[') {
        const std::size_t close = text.find(']');
        if (close == std::string::npos || close + 1 >= text.size() || text[close + 1] != ':') {
            return false;
        }
        host = text.substr(1, close - 1);
        port_text = text.substr(close + 2);
    } else {
        const std::size_t colon = text.rfind(':');
        if (colon == std::string::npos) {
            return false;
        }
        host = text.substr(0, colon);
        port_text = text.substr(colon + 1);
    }
    return !host.empty() && ParsePort(port_text, port);
}

std::string OneLine(std::string text) {
    std::replace(text.begin(), text.end(), '\n', ' ');
    while (!text.empty() && text.back() == ' ') {
        text.pop_back();
    }
    return text;
}

} // namespace

bool EmulatorOptions::Parse(int argc, const char* const* argv, EmulatorOptions& options,
                            std::string& help, std::string& error) {
    CLI::App app("raidcfg-bmc: a Redfish BMC that serves the out-of-band RAID controllers of a "
                 "machine file, or a recorded Redfish tree in DMTF's mockup layout",
                 "raidcfg-bmc");
    app.footer("Exactly one of --machine and --mockup. It serves plain HTTP unless --tls-cert "
               "is given.\n"
               "Example: raidcfg-bmc --mockup DIR --user admin --password x\n"
               "  (the first line of output is the port), then\n"
               "  raidcfg show --bmc admin:x@127.0.0.1:PORT --http\n");
    std::string listen;
    CLI::Option* machine = app.add_option("--machine", options.machine, "machine file, or demo");
    CLI::Option* mockup = app.add_option(
        "--mockup", options.mockup,
        "serve instead a recorded Redfish tree in DMTF's mockup layout (index.json per URI "
        "folder, with or without the redfish/v1 folders); writes stay in memory");
    machine->excludes(mockup);
    app.add_option("--listen", listen, "HOST:PORT to listen on (default 127.0.0.1:0)");
    app.add_option("--port-file", options.port_file, "write the bound port to this file");
    CLI::Option* user = app.add_option("--user", options.user,
                                       "with --mockup: the only user name let in (default: any)");
    CLI::Option* password =
        app.add_option("--password", options.password, "with --mockup: the password of --user");
    app.add_option("--tls-cert", options.tls_cert, "PEM certificate: serve HTTPS");
    app.add_option("--tls-key", options.tls_key, "PEM private key of the certificate");
    app.add_option("--latency-ms", options.latency_ms, "delay every response (milliseconds)");
    CLI::Option* no_expand =
        app.add_flag("--no-expand", options.no_expand, "with --machine: do not offer $expand");
    app.add_option("--log-requests", options.log_requests,
                   "append one line per request to this file: METHOD URI STATUS");
    std::vector<std::string> args;
    for (int i = argc - 1; i > 0; --i) {
        args.emplace_back(argv[i]); // CLI11 takes them in reverse order
    }
    try {
        app.parse(args);
    } catch (const CLI::CallForHelp&) {
        help = app.help();
        return true;
    } catch (const CLI::ParseError& problem) {
        error = OneLine(problem.what());
        return false;
    }
    if (!listen.empty() && !ParseListen(listen, options.host, options.port)) {
        error = "--listen: \"" + listen + "\" is not HOST:PORT";
        return false;
    }
    if (options.tls_cert.empty() != options.tls_key.empty()) {
        error = "--tls-cert and --tls-key go together";
        return false;
    }
    if (options.latency_ms < 0) {
        error = "--latency-ms: must not be negative";
        return false;
    }
    if (machine->count() == 0 && mockup->count() == 0) {
        error = "one of --machine FILE and --mockup DIR is required";
        return false;
    }
    if (machine->count() > 0 && options.machine.empty()) {
        error = "--machine: must name a machine file or demo";
        return false;
    }
    if (mockup->count() > 0 && options.mockup.empty()) {
        error = "--mockup: must name a folder";
        return false;
    }
    options.credentials = user->count() > 0 || password->count() > 0;
    if (options.credentials && (user->count() == 0 || password->count() == 0)) {
        error = "--user and --password go together";
        return false;
    }
    if (options.credentials && mockup->count() == 0) {
        error = "--user and --password go with --mockup; a machine file names its own user";
        return false;
    }
    if (no_expand->count() > 0 && mockup->count() > 0) {
        error = "--no-expand goes with --machine; a mockup offers $expand as its root says";
        return false;
    }
    return true;
}

} // namespace emulator
