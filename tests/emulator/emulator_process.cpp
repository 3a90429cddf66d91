#include "tests/emulator/emulator_process.hpp"

#include <chrono>
#include <csignal>
#include <stdexcept>
#include <thread>

#include <fcntl.h>
#include <sys/wait.h>
#include <unistd.h>

#include "tests/support/child_process.hpp"
#include "tests/support/file_text.hpp"

namespace emulator_test {

namespace {

std::string Text(const std::string& path) {
    return raidcfg_test::FileExists(path) ? raidcfg_test::ReadFile(path) : std::string();
}

} // namespace

EmulatorProcess::EmulatorProcess(const std::string& dir, const std::vector<std::string>& args)
    : out_(dir + "/stdout"), err_(dir + "/stderr") {
    const std::string program = std::string(RAIDCFG_BIN_DIR) + "/raidcfg-bmc";
    pid_ = raidcfg_test::SpawnProgram(program, args, dir, out_, err_);
    if (pid_ < 0) {
        throw std::runtime_error("fork failed");
    }
}

EmulatorProcess::~EmulatorProcess() {
    if (pid_ > 0 && !ended_) {
        kill(pid_, SIGKILL);
        waitpid(pid_, nullptr, 0);
    }
}

std::string EmulatorProcess::FirstLine() {
    // The program prints its port as soon as it listens; wait for that line, or for its end.
    for (int attempt = 0; attempt < 2000; ++attempt) {
        const std::string text = Text(out_);
        const std::size_t newline = text.find('\n');
        if (newline != std::string::npos) {
            return text.substr(0, newline);
        }
        if (Ended()) {
            return {};
        }
        std::this_thread::sleep_for(std::chrono::milliseconds(10));
    }
    return {};
}

bool EmulatorProcess::Ended() {
    if (!ended_ && waitpid(pid_, &status_, WNOHANG) == pid_) {
        ended_ = true;
    }
    return ended_;
}

int EmulatorProcess::Stop(int signal_number) {
    if (!ended_) {
        kill(pid_, signal_number);
    }
    return Wait();
}

int EmulatorProcess::Wait() {
    if (!ended_) {
        waitpid(pid_, &status_, 0);
        ended_ = true;
    }
    return WIFEXITED(status_) ? WEXITSTATUS(status_) : -1;
}

std::string EmulatorProcess::Stdout() const {
    return Text(out_);
}

std::string EmulatorProcess::Stderr() const {
    return Text(err_);
}

std::string EmulatorProcess::LastErrorLine() const {
    std::string text = Stderr();
    while (!text.empty() && text.back() == '\n') {
        text.pop_back();
    }
    return text.substr(text.rfind('\n') == std::string::npos ? 0 : text.rfind('\n') + 1);
}

} // namespace emulator_test
