#include "sim/demo_machine.hpp"

#include <cerrno>
#include <cstdlib>
#include <cstring>
#include <filesystem>
#include <string>
#include <system_error>

#include <fcntl.h>
#include <pwd.h>
#include <sys/stat.h>
#include <unistd.h>

// DemoMachine::Text() is defined in the source file CMake generates from demo-machine.json.

namespace sim {
namespace {

// The value of an environment variable, empty when unset.
std::string EnvText(const char* name) {
    const char* value = std::getenv(name);
    return value == nullptr ? std::string() : std::string(value);
}

// $HOME, or the home directory of the account when HOME is unset (as under some service
// managers).
std::string HomeDirectory() {
    std::string home = EnvText("HOME");
    if (home.empty()) {
        const struct passwd* account = ::getpwuid(::getuid());
        if (account != nullptr && account->pw_dir != nullptr) {
            home = account->pw_dir;
        }
    }
    return home;
}

std::string CannotCreate(const std::string& path, const std::string& reason) {
    return "cannot create the demo machine file '" + path + "': " + reason;
}

bool WriteAll(int fd, const std::string& text) {
    const char* data = text.data();
    std::size_t left = text.size();
    while (left > 0) {
        const ssize_t count = ::write(fd, data, left);
        if (count < 0) {
            if (errno == EINTR) {
                continue;
            }
            return false;
        }
        data += count;
        left -= static_cast<std::size_t>(count);
    }
    return true;
}

// Puts text at path unless a file is there already. The text goes to a temporary file first and
// is then linked into place, which fails when another run got there first: a half-written demo
// is never seen, and a demo someone already changed is never overwritten.
bool CreateOnce(const std::string& path, const std::string& text, std::string& error) {
    const std::string temp_path = path + ".tmp." + std::to_string(::getpid());
    const int fd = ::open(temp_path.c_str(), O_WRONLY | O_CREAT | O_TRUNC | O_CLOEXEC, 0666);
    if (fd < 0) {
        error = CannotCreate(path, std::strerror(errno));
        return false;
    }
    const bool written = WriteAll(fd, text) && ::fsync(fd) == 0;
    const int write_error = errno;
    if (::close(fd) != 0 || !written) {
        error = CannotCreate(path, std::strerror(written ? errno : write_error));
        ::unlink(temp_path.c_str());
        return false;
    }
    int placed = ::link(temp_path.c_str(), path.c_str());
    int place_error = errno;
    if (placed != 0 && place_error != EEXIST) {
        // A file system without hard links: the rename is still atomic, only not exclusive.
        placed = ::rename(temp_path.c_str(), path.c_str());
        place_error = errno;
    }
    ::unlink(temp_path.c_str());
    if (placed != 0 && place_error != EEXIST) {
        error = CannotCreate(path, std::strerror(place_error));
        return false;
    }
    return true;
}

} // namespace

std::string DemoMachine::StatePath() {
    std::string state_home = EnvText("XDG_STATE_HOME");
    if (state_home.empty()) {
        const std::string home = HomeDirectory();
        if (home.empty()) {
            return std::string();
        }
        state_home = home + "/.local/state";
    }
    return state_home + "/raidcfg/demo-machine.json";
}

std::string DemoMachine::Prepare(std::string& error) {
    std::string path = StatePath();
    if (path.empty()) {
        error = "cannot place the demo machine file: neither XDG_STATE_HOME nor HOME is set, and "
                "the account has no home directory";
        return std::string();
    }
    std::error_code status;
    if (std::filesystem::exists(path, status)) {
        return path;
    }
    const std::filesystem::path directory = std::filesystem::path(path).parent_path();
    std::filesystem::create_directories(directory, status);
    if (status) {
        error = CannotCreate(path, "cannot create directory '" + directory.string() +
                                       "': " + status.message());
        return std::string();
    }
    if (!CreateOnce(path, Text(), error)) {
        return std::string();
    }
    return path;
}

} // namespace sim
