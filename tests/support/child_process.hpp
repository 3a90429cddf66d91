#pragma once

#include <map>
#include <optional>
#include <string>
#include <vector>

#include <sys/types.h>

namespace raidcfg_test {

// What a finished program left behind.
struct ProgramOutcome {
    int status = -1; // the exit status, -1 when the program did not exit normally
    std::string out;
    std::string err;
};

// Starts program with args in dir, standard output and error going to the two files and
// standard input reading input_path. The environment is the test's own without any RAIDCFG_
// variable, so that a setting of the person running the tests never leaks in, plus env.
// Returns the child's process id, or -1 when it could not be started.
pid_t SpawnProgram(const std::string& program, const std::vector<std::string>& args,
                   const std::string& dir, const std::string& out_path, const std::string& err_path,
                   const std::map<std::string, std::string>& env = {},
                   const std::string& input_path = "/dev/null");

// Waits for a child; its exit status, -1 when it did not exit normally.
int WaitForProgram(pid_t child);

// Runs program to its end as SpawnProgram starts it, standard input reading input (nothing
// when there is none), and collects what it wrote.
ProgramOutcome RunProgram(const std::string& program, const std::string& dir,
                          const std::vector<std::string>& args,
                          const std::map<std::string, std::string>& env = {},
                          const std::optional<std::string>& input = std::nullopt);

} // namespace raidcfg_test
