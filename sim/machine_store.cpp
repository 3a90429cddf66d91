#include "sim/machine_store.hpp"

#include <cerrno>
#include <cstring>
#include <filesystem>
#include <string>
#include <utility>

#include <fcntl.h>
#include <sys/file.h>
#include <sys/stat.h>
#include <unistd.h>

#include "sim/machine_json.hpp"

namespace sim {
namespace {

// How often a lock is taken again because another process replaced the file meanwhile, before
// giving up; each round means someone else finished a change, so this is never reached in use.
constexpr int kLockAttempts = 1000;

std::string Reason(int error) {
    return std::strerror(error);
}

std::string CannotOpen(const std::string& path, int error) {
    return "cannot open machine file '" + path + "': " + Reason(error);
}

std::string CannotLock(const std::string& path, const std::string& reason) {
    return "cannot lock machine file '" + path + "': " + reason;
}

std::string CannotRead(const std::string& path, int error) {
    return "cannot read machine file '" + path + "': " + Reason(error);
}

std::string CannotWrite(const std::string& path, const std::string& step, int error) {
    return "cannot write machine file '" + path + "': " + step + ": " + Reason(error);
}

// A file descriptor closed when it goes; closing it also drops its lock.
class Descriptor {
public:
    Descriptor() = default;
    explicit Descriptor(int fd) : fd_(fd) {}
    ~Descriptor() { Reset(); }
    Descriptor(const Descriptor&) = delete;
    Descriptor& operator=(const Descriptor&) = delete;

    int get() const { return fd_; }
    bool valid() const { return fd_ >= 0; }
    void Reset(int fd = -1) {
        if (fd_ >= 0) {
            ::close(fd_);
        }
        fd_ = fd;
    }
    // Closes now and tells whether the kernel reported a late write error.
    int Close() {
        const int result = ::close(fd_);
        fd_ = -1;
        return result;
    }

private:
    int fd_ = -1;
};

// Removes a temporary file unless it was renamed into place.
class TempFileGuard {
public:
    explicit TempFileGuard(std::string path) : path_(std::move(path)) {}
    ~TempFileGuard() {
        if (!path_.empty()) {
            ::unlink(path_.c_str());
        }
    }
    TempFileGuard(const TempFileGuard&) = delete;
    TempFileGuard& operator=(const TempFileGuard&) = delete;
    void Release() { path_.clear(); }

private:
    std::string path_;
};

// Opens path and takes the exclusive lock on the file that stands at path at that moment. A
// process that renames a new file over path while we wait leaves us holding the lock of the old
// file; that is noticed by comparing the file identities, and the lock is taken again.
bool OpenLocked(const std::string& path, Descriptor& file, struct stat& info, std::string& error) {
    for (int attempt = 0; attempt < kLockAttempts; ++attempt) {
        file.Reset(::open(path.c_str(), O_RDONLY | O_CLOEXEC));
        if (!file.valid()) {
            error = CannotOpen(path, errno);
            return false;
        }
        int locked = ::flock(file.get(), LOCK_EX);
        while (locked != 0 && errno == EINTR) {
            locked = ::flock(file.get(), LOCK_EX);
        }
        if (locked != 0) {
            error = CannotLock(path, Reason(errno));
            return false;
        }
        struct stat current {};
        if (::fstat(file.get(), &info) != 0) {
            error = CannotRead(path, errno);
            return false;
        }
        if (::stat(path.c_str(), &current) != 0) {
            if (errno == ENOENT) {
                continue; // removed meanwhile; the open of the next round says so if it stays away
            }
            error = CannotOpen(path, errno);
            return false;
        }
        if (current.st_dev == info.st_dev && current.st_ino == info.st_ino) {
            return true;
        }
    }
    error = CannotLock(path, "it keeps being replaced");
    return false;
}

bool ReadAll(int fd, const std::string& path, std::string& text, std::string& error) {
    text.clear();
    char buffer[16384];
    off_t offset = 0;
    for (;;) {
        const ssize_t count = ::pread(fd, buffer, sizeof buffer, offset);
        if (count < 0) {
            if (errno == EINTR) {
                continue;
            }
            error = CannotRead(path, errno);
            return false;
        }
        if (count == 0) {
            return true;
        }
        text.append(buffer, static_cast<std::size_t>(count));
        offset += count;
    }
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

std::string DirectoryOf(const std::string& path) {
    const std::string parent = std::filesystem::path(path).parent_path().string();
    return parent.empty() ? "." : parent;
}

// Replaces the file at path by text: a temporary file beside it with the same permissions is
// written and flushed, renamed over path, and the directory flushed so the rename survives a
// power loss. Readers see either the old or the new file, never a part.
bool WriteReplacing(const std::string& path, const struct stat& original, const std::string& text,
                    std::string& error) {
    const std::string temp_path = path + ".tmp." + std::to_string(::getpid());
    const mode_t mode = original.st_mode & 07777;
    Descriptor temp(::open(temp_path.c_str(), O_WRONLY | O_CREAT | O_TRUNC | O_CLOEXEC, mode));
    if (!temp.valid()) {
        error = CannotWrite(path, "cannot create '" + temp_path + "'", errno);
        return false;
    }
    TempFileGuard guard(temp_path);
    // The umask may have narrowed the mode; a file owned by someone else stays theirs where we
    // may give it back (as root).
    if (::fchmod(temp.get(), mode) != 0) {
        error = CannotWrite(path, "cannot set the permissions of '" + temp_path + "'", errno);
        return false;
    }
    if ((original.st_uid != ::geteuid() || original.st_gid != ::getegid()) &&
        ::fchown(temp.get(), original.st_uid, original.st_gid) != 0 && errno != EPERM) {
        error = CannotWrite(path, "cannot set the owner of '" + temp_path + "'", errno);
        return false;
    }
    if (!WriteAll(temp.get(), text)) {
        error = CannotWrite(path, "writing '" + temp_path + "'", errno);
        return false;
    }
    if (::fsync(temp.get()) != 0) {
        error = CannotWrite(path, "flushing '" + temp_path + "'", errno);
        return false;
    }
    if (temp.Close() != 0) {
        error = CannotWrite(path, "closing '" + temp_path + "'", errno);
        return false;
    }
    if (::rename(temp_path.c_str(), path.c_str()) != 0) {
        error = CannotWrite(path, "renaming '" + temp_path + "'", errno);
        return false;
    }
    guard.Release();
    const std::string directory_path = DirectoryOf(path);
    const Descriptor directory(::open(directory_path.c_str(), O_RDONLY | O_DIRECTORY | O_CLOEXEC));
    // Some file systems refuse to flush a directory; the file itself is in place by now.
    if (directory.valid() && ::fsync(directory.get()) != 0 && errno != EINVAL && errno != EROFS) {
        error = CannotWrite(path, "flushing directory '" + directory_path + "'", errno);
        return false;
    }
    return true;
}

} // namespace

MachineStore::MachineStore(std::string path) : path_(std::move(path)) {}

MachineStore::MachineStore(Machine machine)
    : volatile_machine_(std::make_unique<Machine>(std::move(machine))) {}

MachineStore::~MachineStore() = default;

bool MachineStore::Check(std::string& error) {
    Machine machine;
    return Read(machine, error);
}

bool MachineStore::Read(Machine& machine, std::string& error) {
    return Update(
        [&machine](Machine& current) {
            machine = current;
            return false;
        },
        error);
}

bool MachineStore::Update(const std::function<bool(Machine&)>& change, std::string& error) {
    if (volatile_machine_ != nullptr) {
        // Changed on a copy, so that a change that gives up leaves nothing half done.
        Machine changed = *volatile_machine_;
        if (change(changed)) {
            *volatile_machine_ = std::move(changed);
        }
        return true;
    }
    Descriptor file;
    struct stat info {};
    std::string text;
    if (!OpenLocked(path_, file, info, error) || !ReadAll(file.get(), path_, text, error)) {
        return false;
    }
    Machine machine;
    if (!MachineJson::Parse(text, path_, machine, error)) {
        return false;
    }
    if (!machine.persist) {
        // From now on this process works on its own copy; the file stays as it is.
        volatile_machine_ = std::make_unique<Machine>(machine);
        file.Reset();
        return Update(change, error);
    }
    if (!change(machine)) {
        return true;
    }
    // The lock goes with the descriptor, after the new file is in place.
    return WriteReplacing(path_, info, MachineJson::Serialize(machine), error);
}

} // namespace sim
