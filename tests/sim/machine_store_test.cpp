#include <chrono>
#include <csignal>
#include <filesystem>
#include <string>
#include <thread>

#include <sys/stat.h>
#include <sys/wait.h>
#include <unistd.h>

#include "sim/demo_machine.hpp"
#include "sim/machine.hpp"
#include "sim/machine_json.hpp"
#include "sim/machine_store.hpp"
#include "tests/support/file_text.hpp"
#include "tests/support/temp_dir.hpp"

#include <gtest/gtest.h>

namespace {

using raidcfg_test::ReadFile;
using raidcfg_test::TempDir;
using raidcfg_test::WriteFile;
using sim::Machine;
using sim::MachineStore;

const char* const kSmall = R"({
  "controllers": [
    {"family": "LSI", "id": 0, "slot": 0,
     "disks": [{"id": 0, "state": "UGood"}, {"id": 1, "state": "UGood"}]}
  ]
}
)";

const char* const kVolatile = R"({
  "persist": false,
  "controllers": [{"family": "LSI", "id": 0, "slot": 0, "disks": [{"id": 0}]}]
}
)";

bool BumpSlot(Machine& machine) {
    ++machine.controllers.at(0).slot;
    return true;
}

int SlotOf(MachineStore& store) {
    Machine machine;
    std::string error;
    EXPECT_TRUE(store.Read(machine, error)) << error;
    return machine.controllers.empty() ? -1 : machine.controllers[0].slot;
}

// Runs body in a child process, which ends with status 0 when body returns true.
pid_t Spawn(bool (*body)(const std::string&), const std::string& path) {
    const pid_t pid = ::fork();
    if (pid == 0) {
        ::_exit(body(path) ? 0 : 1);
    }
    return pid;
}

int WaitFor(pid_t pid) {
    int status = 0;
    EXPECT_EQ(::waitpid(pid, &status, 0), pid);
    return status;
}

bool BumpSlotTimes200(const std::string& path) {
    MachineStore store(path);
    std::string error;
    for (int round = 0; round < 200; ++round) {
        if (!store.Update(BumpSlot, error)) {
            return false;
        }
    }
    return true;
}

// Changes the machine as fast as it can until it is killed (or gives up after a while).
bool BumpSlotUntilKilled(const std::string& path) {
    MachineStore store(path);
    std::string error;
    for (int round = 0; round < 20000; ++round) {
        if (!store.Update(BumpSlot, error)) {
            return false;
        }
    }
    return true;
}

TEST(MachineStore, ReadGivesTheFile) {
    const TempDir dir;
    WriteFile(dir.File("m.json"), kSmall);
    MachineStore store(dir.File("m.json"));
    EXPECT_EQ(store.path(), dir.File("m.json"));
    Machine machine;
    std::string error;
    ASSERT_TRUE(store.Read(machine, error)) << error;
    ASSERT_EQ(machine.controllers.size(), 1U);
    EXPECT_EQ(machine.controllers[0].disks.size(), 2U);
    EXPECT_TRUE(store.Check(error)) << error;
}

TEST(MachineStore, UpdateWritesTheChangeForEveryoneToSee) {
    const TempDir dir;
    const std::string path = dir.File("m.json");
    WriteFile(path, kSmall);
    MachineStore store(path);
    std::string error;
    ASSERT_TRUE(store.Update(
        [](Machine& machine) {
            machine.controllers[0].disks[1].state = "JBOD";
            return true;
        },
        error))
        << error;

    MachineStore other(path); // as another process would open it
    Machine machine;
    ASSERT_TRUE(other.Read(machine, error)) << error;
    EXPECT_EQ(machine.controllers[0].disks[1].state, "JBOD");
    EXPECT_EQ(ReadFile(path), sim::MachineJson::Serialize(machine));
    // Nothing is left beside the file.
    int entries = 0;
    for (const auto& entry : std::filesystem::directory_iterator(dir.path())) {
        static_cast<void>(entry);
        ++entries;
    }
    EXPECT_EQ(entries, 1);
}

TEST(MachineStore, DeclinedChangeLeavesTheFileAlone) {
    const TempDir dir;
    const std::string path = dir.File("m.json");
    WriteFile(path, kSmall);
    MachineStore store(path);
    std::string error;
    ASSERT_TRUE(store.Update(
        [](Machine& machine) {
            machine.controllers[0].slot = 9;
            return false;
        },
        error))
        << error;
    EXPECT_EQ(ReadFile(path), kSmall);
}

TEST(MachineStore, UpdateKeepsThePermissions) {
    const TempDir dir;
    const std::string path = dir.File("m.json");
    WriteFile(path, kSmall);
    ASSERT_EQ(::chmod(path.c_str(), 0604), 0);
    MachineStore store(path);
    std::string error;
    ASSERT_TRUE(store.Update(BumpSlot, error)) << error;
    struct stat info {};
    ASSERT_EQ(::stat(path.c_str(), &info), 0);
    EXPECT_EQ(info.st_mode & 07777, 0604U);
}

TEST(MachineStore, PersistFalseNeverTouchesTheFile) {
    const TempDir dir;
    const std::string path = dir.File("m.json");
    WriteFile(path, kVolatile);
    MachineStore store(path);
    std::string error;
    ASSERT_TRUE(store.Update(BumpSlot, error)) << error;
    ASSERT_TRUE(store.Update(BumpSlot, error)) << error;
    EXPECT_EQ(ReadFile(path), kVolatile);
    EXPECT_EQ(SlotOf(store), 2);

    // Another run starts from the file again.
    MachineStore other(path);
    EXPECT_EQ(SlotOf(other), 0);

    // Once read, the file is not needed any more.
    std::filesystem::remove(path);
    ASSERT_TRUE(store.Update(BumpSlot, error)) << error;
    EXPECT_EQ(SlotOf(store), 3);
    EXPECT_FALSE(raidcfg_test::FileExists(path));
}

TEST(MachineStore, PersistFalseDropsADeclinedChange) {
    const TempDir dir;
    WriteFile(dir.File("m.json"), kVolatile);
    MachineStore store(dir.File("m.json"));
    std::string error;
    ASSERT_TRUE(store.Update(
        [](Machine& machine) {
            machine.controllers[0].slot = 9;
            return false;
        },
        error))
        << error;
    EXPECT_EQ(SlotOf(store), 0);
}

TEST(MachineStore, MissingFile) {
    const TempDir dir;
    const std::string path = dir.File("absent.json");
    MachineStore store(path);
    Machine machine;
    std::string error;
    EXPECT_FALSE(store.Read(machine, error));
    EXPECT_EQ(error, "cannot open machine file '" + path + "': No such file or directory");
    error.clear();
    EXPECT_FALSE(store.Check(error));
    EXPECT_EQ(error, "cannot open machine file '" + path + "': No such file or directory");
    error.clear();
    EXPECT_FALSE(store.Update(BumpSlot, error));
    EXPECT_EQ(error, "cannot open machine file '" + path + "': No such file or directory");
    EXPECT_FALSE(raidcfg_test::FileExists(path));
}

TEST(MachineStore, UnreadableFile) {
    const TempDir dir;
    const std::string path = dir.File("m.json");
    std::filesystem::create_directory(path);
    MachineStore store(path);
    std::string error;
    EXPECT_FALSE(store.Check(error));
    EXPECT_EQ(error, "cannot read machine file '" + path + "': Is a directory");
}

// Reports through its exit status whether the store gives the expected error.
bool ChecksWithPermissionDenied(const std::string& path) {
    // Root reads any file; the check runs as an ordinary account instead.
    if (::geteuid() == 0 && (::setgid(65534) != 0 || ::setuid(65534) != 0)) {
        return false;
    }
    MachineStore store(path);
    std::string error;
    return !store.Check(error) &&
           error == "cannot open machine file '" + path + "': Permission denied";
}

TEST(MachineStore, FileWithoutReadPermission) {
    const TempDir dir;
    ASSERT_EQ(::chmod(dir.path().c_str(), 0755), 0);
    const std::string path = dir.File("m.json");
    WriteFile(path, kSmall);
    ASSERT_EQ(::chmod(path.c_str(), 0), 0);
    const pid_t child = Spawn(ChecksWithPermissionDenied, path);
    ASSERT_GT(child, 0);
    const int status = WaitFor(child);
    EXPECT_TRUE(WIFEXITED(status) && WEXITSTATUS(status) == 0);
}

TEST(MachineStore, InvalidFileNamesItsProblem) {
    const TempDir dir;
    const std::string path = dir.File("m.json");
    WriteFile(path, R"({"controllers": [{"family": "LSI", "id": 0}]})");
    MachineStore store(path);
    std::string error;
    EXPECT_FALSE(store.Check(error));
    EXPECT_EQ(error, path + ": controllers[0]: missing required key \"disks\"");
}

TEST(MachineStore, ConcurrentUpdatesLoseNothing) {
    const TempDir dir;
    const std::string path = dir.File("m.json");
    WriteFile(path, kSmall);
    const pid_t first = Spawn(BumpSlotTimes200, path);
    const pid_t second = Spawn(BumpSlotTimes200, path);
    ASSERT_GT(first, 0);
    ASSERT_GT(second, 0);
    EXPECT_EQ(WaitFor(first), 0);
    EXPECT_EQ(WaitFor(second), 0);
    MachineStore store(path);
    EXPECT_EQ(SlotOf(store), 400);
}

TEST(MachineStore, KilledWriterNeverTearsTheFile) {
    const TempDir dir;
    const std::string path = dir.File("m.json");
    // The demo is large enough that a kill often lands in the middle of a write.
    WriteFile(path, sim::DemoMachine::Text());
    for (int round = 0; round < 5; ++round) {
        const std::string before = ReadFile(path);
        const pid_t child = Spawn(BumpSlotUntilKilled, path);
        ASSERT_GT(child, 0);
        // Wait until the child is busy writing, then a little more, each round a different while.
        for (int wait = 0; wait < 100 && ReadFile(path) == before; ++wait) {
            std::this_thread::sleep_for(std::chrono::milliseconds(2));
        }
        std::this_thread::sleep_for(std::chrono::milliseconds(3 + 7 * round));
        ::kill(child, SIGKILL);
        const int status = WaitFor(child);
        EXPECT_TRUE(WIFSIGNALED(status) || (WIFEXITED(status) && WEXITSTATUS(status) == 0));

        MachineStore store(path);
        Machine machine;
        std::string error;
        ASSERT_TRUE(store.Read(machine, error)) << "round " << round << ": " << error;
        EXPECT_GE(machine.controllers.at(0).slot, 1);
        // A temporary file the child left behind does not disturb the next writer.
        ASSERT_TRUE(store.Update(BumpSlot, error)) << error;
    }
}

} // namespace

namespace {

// A store made from a machine in memory serves it and keeps changes, with no file anywhere.
TEST(MachineStoreTest, InMemoryMachineIsReadAndChangedWithoutAFile) {
    Machine machine;
    machine.controllers.emplace_back();
    machine.controllers.back().family = "OOB_LSI";
    MachineStore store(machine);
    EXPECT_TRUE(store.path().empty());
    std::string error;
    ASSERT_TRUE(store.Update(
        [](Machine& current) {
            current.controllers.front().id = 7;
            return true;
        },
        error));
    Machine read;
    ASSERT_TRUE(store.Read(read, error)) << error;
    ASSERT_EQ(read.controllers.size(), 1U);
    EXPECT_EQ(read.controllers.front().id, 7);
    EXPECT_TRUE(store.Check(error));
}

} // namespace
