#include "tests/support/bmc_emulator.hpp"

#include <csignal>
#include <regex>

#include <sys/wait.h>
#include <unistd.h>

#include "tests/support/child_process.hpp"
#include "tests/support/file_text.hpp"

namespace raidcfg_test {

BmcEmulator::BmcEmulator(const std::string& program, std::vector<std::string> args) {
    args.emplace_back("--port-file");
    args.emplace_back(dir_.File("port"));
    pid_ = SpawnProgram(program, args, dir_.path(), dir_.File("out"), dir_.File("err"));
    // The port file appears once the socket is bound; the wait ends with the process too.
    while (pid_ > 0 && port_.empty()) {
        if (FileExists(dir_.File("port"))) {
            std::string text = ReadFile(dir_.File("port"));
            while (!text.empty() && (text.back() == '\n' || text.back() == '\r')) {
                text.pop_back();
            }
            port_ = text;
            break;
        }
        if (waitpid(pid_, nullptr, WNOHANG) == pid_) {
            pid_ = -1;
            break;
        }
        usleep(10000);
    }
}

BmcEmulator::~BmcEmulator() {
    Stop();
}

std::string BmcEmulator::Stop() {
    if (pid_ > 0) {
        kill(pid_, SIGTERM);
        WaitForProgram(pid_);
        pid_ = -1;
    }
    return FileExists(dir_.File("err")) ? ReadFile(dir_.File("err")) : std::string();
}

void BmcEmulator::Kill() {
    if (pid_ > 0) {
        kill(pid_, SIGKILL);
        WaitForProgram(pid_);
        pid_ = -1;
    }
}

bool BmcEmulator::Served(const std::string& err, int& requests, int& connections) {
    std::smatch match;
    static const std::regex line("served ([0-9]+) requests on ([0-9]+) connections");
    if (!std::regex_search(err, match, line)) {
        return false;
    }
    requests = std::stoi(match[1].str());
    connections = std::stoi(match[2].str());
    return true;
}

} // namespace raidcfg_test
