#pragma once

#include <string>
#include <vector>

#include <sys/types.h>

namespace emulator_test {

// One raidcfg-bmc process started by a test, its standard output and error captured in files
// of a directory the test owns.
class EmulatorProcess {
public:
    // Starts RAIDCFG_BIN_DIR/raidcfg-bmc with args; output goes to dir/stdout and dir/stderr.
    EmulatorProcess(const std::string& dir, const std::vector<std::string>& args);
    ~EmulatorProcess();
    EmulatorProcess(const EmulatorProcess&) = delete;
    EmulatorProcess& operator=(const EmulatorProcess&) = delete;

    // The first line of standard output, once it is complete; empty if the process ended
    // without one.
    std::string FirstLine();
    // Sends a signal and waits for the exit status (-1 when it did not exit normally).
    int Stop(int signal_number);
    // Waits for the process to end by itself; its exit status.
    int Wait();

    std::string Stdout() const;
    std::string Stderr() const;
    // The last non-empty line of standard error.
    std::string LastErrorLine() const;

private:
    // Whether the process has ended, collecting its status when it has.
    bool Ended();

    std::string out_;
    std::string err_;
    pid_t pid_ = -1;
    bool ended_ = false;
    int status_ = 0;
};

} // namespace emulator_test
