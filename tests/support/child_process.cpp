#include "tests/support/child_process.hpp"

#include <cstring>

#include <fcntl.h>
#include <sys/wait.h>
#include <unistd.h>

#include "tests/support/file_text.hpp"
#include "tests/support/temp_dir.hpp"

extern char** environ;

namespace raidcfg_test {

pid_t SpawnProgram(const std::string& program, const std::vector<std::string>& args,
                   const std::string& dir, const std::string& out_path, const std::string& err_path,
                   const std::map<std::string, std::string>& env, const std::string& input_path) {
    // Everything the child needs is prepared before the fork: after it only async-signal-safe
    // calls are made.
    std::vector<std::string> environment;
    for (char** entry = environ; *entry != nullptr; ++entry) {
        if (std::strncmp(*entry, "RAIDCFG_", 8) != 0) {
            environment.emplace_back(*entry);
        }
    }
    for (const auto& [name, value] : env) {
        environment.push_back(name);
        environment.back().append("=").append(value);
    }
    std::vector<char*> env_pointers;
    env_pointers.reserve(environment.size() + 1);
    for (std::string& entry : environment) {
        env_pointers.push_back(entry.data());
    }
    env_pointers.push_back(nullptr);
    std::vector<std::string> argv_text{program};
    argv_text.insert(argv_text.end(), args.begin(), args.end());
    std::vector<char*> argv;
    argv.reserve(argv_text.size() + 1);
    for (std::string& arg : argv_text) {
        argv.push_back(arg.data());
    }
    argv.push_back(nullptr);

    const pid_t child = fork();
    if (child == 0) {
        const int out_fd = open(out_path.c_str(), O_WRONLY | O_CREAT | O_TRUNC, 0600);
        const int err_fd = open(err_path.c_str(), O_WRONLY | O_CREAT | O_TRUNC, 0600);
        const int in_fd = open(input_path.c_str(), O_RDONLY);
        if (out_fd < 0 || err_fd < 0 || in_fd < 0 || chdir(dir.c_str()) != 0 ||
            dup2(out_fd, 1) < 0 || dup2(err_fd, 2) < 0 || dup2(in_fd, 0) < 0) {
            _exit(126);
        }
        execve(argv[0], argv.data(), env_pointers.data());
        _exit(127);
    }
    return child;
}

int WaitForProgram(pid_t child) {
    int status = 0;
    if (child <= 0 || waitpid(child, &status, 0) != child || !WIFEXITED(status)) {
        return -1;
    }
    return WEXITSTATUS(status);
}

ProgramOutcome RunProgram(const std::string& program, const std::string& dir,
                          const std::vector<std::string>& args,
                          const std::map<std::string, std::string>& env,
                          const std::optional<std::string>& input) {
    TempDir capture;
    const std::string in_path = capture.File("stdin");
    WriteFile(in_path, input.value_or(""));
    ProgramOutcome outcome;
    outcome.status = WaitForProgram(SpawnProgram(program, args, dir, capture.File("stdout"),
                                                 capture.File("stderr"), env, in_path));
    outcome.out = ReadFile(capture.File("stdout"));
    outcome.err = ReadFile(capture.File("stderr"));
    return outcome;
}

} // namespace raidcfg_test
