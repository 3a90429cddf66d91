#pragma once

#include <functional>
#include <memory>
#include <string>

#include "sim/machine.hpp"

namespace sim {

// The machine file of one process. Every read and every change takes an exclusive lock on the
// file and reads it anew, so two processes never lose each other's changes; a change is written
// to a temporary file beside it, flushed to disk and renamed over it, so a crash never leaves a
// torn file. A machine whose "persist" is false is read once and then changed in memory only.
class MachineStore {
public:
    explicit MachineStore(std::string path);
    // A store with no file behind it: the machine lives in memory only, as with "persist" false.
    // Used where a machine is built from something else, e.g. a BMC's Redfish storage tree.
    explicit MachineStore(Machine machine);
    ~MachineStore();
    MachineStore(const MachineStore&) = delete;
    MachineStore& operator=(const MachineStore&) = delete;

    const std::string& path() const { return path_; }

    // Loads and validates the file once, so that an unusable file is found before anything
    // runs. False with a one-line reason.
    bool Check(std::string& error);

    // A copy of the machine as it stands now.
    bool Read(Machine& machine, std::string& error);

    // Runs change on the machine under the lock; when change returns true the machine is
    // written back (or kept in memory when it does not persist). False with a reason when the
    // file cannot be read, locked or written; change's own verdict is not an error.
    bool Update(const std::function<bool(Machine&)>& change, std::string& error);

private:
    std::string path_;
    // The in-memory machine of a file whose "persist" is false, once read.
    std::unique_ptr<Machine> volatile_machine_;
};

} // namespace sim
