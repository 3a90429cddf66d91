#pragma once

#include <functional>
#include <optional>
#include <string>

#include "host/host_settings.hpp"

namespace host {

// Turns raidcfg's argv into HostSettings. Everything that can be judged without running is judged
// here, before anything is created on disk, so that a bad command line leaves no file behind.
class CommandLine {
public:
    // The exit status of a bad command line or an unusable machine file.
    static constexpr int kExitBadCommandLine = 5;

    // Reads one environment variable; std::nullopt when it is not set.
    using Environment = std::function<std::optional<std::string>(const std::string& name)>;
    static std::optional<std::string> ProcessEnvironment(const std::string& name);

    explicit CommandLine(Environment environment = ProcessEnvironment);

    // True when the run goes on with settings(). False when raidcfg stops at once: it prints
    // output() on stdout and error() on stderr (either may be empty) and exits with exit_code().
    bool Parse(int argc, const char* const* argv);

    const HostSettings& settings() const { return settings_; }
    int exit_code() const { return exit_code_; }
    const std::string& output() const { return output_; }
    // One line, "raidcfg: <problem>\n", or empty.
    const std::string& error() const { return error_; }

private:
    bool Stop(std::string output);
    bool Fail(const std::string& problem);

    Environment environment_;
    HostSettings settings_;
    int exit_code_ = 0;
    std::string output_;
    std::string error_;
};

} // namespace host
