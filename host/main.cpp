#include <cstddef>
#include <exception>
#include <iostream>
#include <string>

#include "host/command_line.hpp"
#include "host/host_runner.hpp"

namespace {

// An exception text that reaches the user: one line, and never the BMC password.
std::string Shown(std::string text, const std::string& password) {
    if (!password.empty()) {
        for (std::size_t at = text.find(password); at != std::string::npos;
             at = text.find(password, at + 4)) {
            text.replace(at, password.size(), "****");
        }
    }
    for (char& c : text) {
        if (c == '\n' || c == '\r') {
            c = ' ';
        }
    }
    return text;
}

} // namespace

int main(int argc, char** argv) {
    std::string password;
    try {
        host::CommandLine command_line;
        if (!command_line.Parse(argc, argv)) {
            std::cout << command_line.output() << std::flush;
            std::cerr << command_line.error() << std::flush;
            return command_line.exit_code();
        }
        password = command_line.settings().option.connect_option.password;
        return host::HostRunner().Run(command_line.settings(), std::cout, std::cerr);
    } catch (const std::exception& error) {
        std::cerr << "raidcfg: internal error: " << Shown(error.what(), password) << std::endl;
    } catch (...) {
        std::cerr << "raidcfg: internal error: unknown exception" << std::endl;
    }
    return 1;
}
