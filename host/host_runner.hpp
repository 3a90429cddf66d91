#pragma once

#include <ostream>

#include "host/host_settings.hpp"

namespace host {

// One run of raidcfg once its command line is accepted: prepares the output and log
// directories, hands the option record to the service and reports its result.
class HostRunner {
public:
    // Prints the result line ("CODE MESSAGE") as the last line on out, problems of the host on
    // err, and returns the exit status: the 16-bit result code, 1 when it does not fit, 5 when a
    // directory cannot be made.
    int Run(const HostSettings& settings, std::ostream& out, std::ostream& err) const;

    // diff: the server differs from the policy file.
    static constexpr int kExitDiffers = 3;

private:
    // Reads the live configuration through the service's save and compares it with the policy
    // file: 0 when they match, 3 when they differ, the read's code when it failed.
    int Diff(const HostSettings& settings, std::ostream& out, std::ostream& err) const;
};

} // namespace host
