#pragma once

#include <string>
#include <vector>

#include <sys/types.h>

#include "tests/support/temp_dir.hpp"

namespace raidcfg_test {

// raidcfg-bmc started with args (a machine file or a mockup) on a free port of 127.0.0.1, for
// the life of the object; "--port-file" is added here.
class BmcEmulator {
public:
    BmcEmulator(const std::string& program, std::vector<std::string> args);
    ~BmcEmulator();
    BmcEmulator(const BmcEmulator&) = delete;
    BmcEmulator& operator=(const BmcEmulator&) = delete;

    bool running() const { return pid_ > 0 && !port_.empty(); }
    const std::string& port() const { return port_; }
    std::string Bmc(const std::string& credentials = "admin:secret") const {
        return credentials + "@127.0.0.1:" + port_;
    }
    // A file in the emulator's own working directory.
    std::string File(const std::string& name) const { return dir_.File(name); }

    // Stops it with SIGTERM and returns its standard error (its request count is the last line).
    std::string Stop();
    // Ends it at once, as a crash would.
    void Kill();

    // "raidcfg-bmc: served N requests on M connections" of err: N and M.
    static bool Served(const std::string& err, int& requests, int& connections);

private:
    TempDir dir_;
    pid_t pid_ = -1;
    std::string port_;
};

} // namespace raidcfg_test
