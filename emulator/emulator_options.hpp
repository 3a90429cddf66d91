#pragma once

#include <string>

namespace emulator {

// What the command line of raidcfg-bmc asks for.
struct EmulatorOptions {
    std::string machine; // a machine file, or "demo"
    std::string mockup;  // or a recorded Redfish tree (DMTF's mockup layout)
    // The only credentials a mockup lets in, when given; otherwise any pass.
    bool credentials = false;
    std::string user;
    std::string password;
    std::string log_requests; // append "METHOD TARGET STATUS" per request to this file
    std::string host = "127.0.0.1";
    int port = 0; // 0: any free port
    std::string port_file;
    std::string tls_cert;
    std::string tls_key;
    int latency_ms = 0;
    bool no_expand = false;

    // Parses the arguments. False with a one-line reason on a bad command line; help is set
    // (and true returned) when --help asked for the usage text instead.
    static bool Parse(int argc, const char* const* argv, EmulatorOptions& options,
                      std::string& help, std::string& error);
};

} // namespace emulator
