#include <algorithm>
#include <cstdlib>
#include <map>
#include <optional>
#include <set>
#include <string>
#include <vector>

#include <unistd.h>

#include "sim/demo_machine.hpp"
#include "sim/machine.hpp"
#include "sim/machine_json.hpp"
#include "tests/support/file_text.hpp"
#include "tests/support/temp_dir.hpp"

#include <gtest/gtest.h>

namespace {

using raidcfg_test::FileExists;
using raidcfg_test::ReadFile;
using raidcfg_test::TempDir;
using raidcfg_test::WriteFile;
using sim::DemoMachine;
using sim::Machine;

// Sets an environment variable for the length of a test and puts the old value back after.
class ScopedEnv {
public:
    ScopedEnv(const char* name, const std::optional<std::string>& value) : name_(name) {
        if (const char* old = std::getenv(name); old != nullptr) {
            old_ = old;
        }
        Set(value);
    }
    ~ScopedEnv() { Set(old_); }
    ScopedEnv(const ScopedEnv&) = delete;
    ScopedEnv& operator=(const ScopedEnv&) = delete;

private:
    void Set(const std::optional<std::string>& value) {
        if (value.has_value()) {
            ::setenv(name_, value->c_str(), 1);
        } else {
            ::unsetenv(name_);
        }
    }

    const char* name_;
    std::optional<std::string> old_;
};

Machine Demo() {
    Machine machine;
    std::string error;
    EXPECT_TRUE(sim::MachineJson::Parse(DemoMachine::Text(), "demo", machine, error)) << error;
    return machine;
}

TEST(DemoMachine, TextParses) {
    const Machine machine = Demo();
    EXPECT_TRUE(machine.persist);
    EXPECT_EQ(machine.bmc.user, "admin");
    EXPECT_EQ(machine.bmc.password, "secret");
    EXPECT_EQ(machine.bmc.bmc_type, 2);
}

TEST(DemoMachine, HasEveryFamily) {
    const Machine machine = Demo();
    std::set<std::string> families;
    std::set<std::string> cfc_vendors;
    for (const sim::Controller& controller : machine.controllers) {
        families.insert(controller.family);
        if (controller.family == "OOB_CFC") {
            cfc_vendors.insert(controller.vendor);
        }
        EXPECT_TRUE(controller.faults.empty()) << controller.family;
    }
    EXPECT_EQ(families, (std::set<std::string>{"LSI", "MICROCHIP", "M2", "VROC_WIN", "OOB_LSI",
                                               "OOB_CFC", "OOB_M2", "OOB_MICROCHIP", "OOB_VROC"}));
    EXPECT_EQ(cfc_vendors, (std::set<std::string>{"Broadcom", "Microchip", "Marvell"}));
}

TEST(DemoMachine, EveryControllerHasAVolumeAndFreeDisksBesidesTheTwoBayM2Adapters) {
    for (const sim::Controller& controller : Demo().controllers) {
        const auto free =
            std::count_if(controller.disks.begin(), controller.disks.end(),
                          [](const sim::Disk& disk) { return disk.state == "UGood"; });
        // An M.2 adapter has two bays, and its mirror holds both, as on a real server.
        const bool m2 = controller.vendor == "Marvell";
        if (m2) {
            EXPECT_EQ(controller.disks.size(), 2U) << controller.family << " " << controller.id;
        } else {
            EXPECT_GE(free, 1) << controller.family << " " << controller.id;
        }
        EXPECT_FALSE(controller.volumes.empty()) << controller.family << " " << controller.id;
        EXPECT_FALSE(controller.raid_levels.empty()) << controller.family << " " << controller.id;
        EXPECT_GT(controller.min_stripe_kb, 0);
        EXPECT_LE(controller.min_stripe_kb, controller.max_stripe_kb);
    }
}

TEST(DemoMachine, HasEveryKindOfDisk) {
    std::map<std::string, int> states;
    for (const sim::Controller& controller : Demo().controllers) {
        for (const sim::Disk& disk : controller.disks) {
            ++states[disk.state];
        }
    }
    for (const char* state : {"UGood", "UBad", "Online", "JBOD", "GHS", "DHS"}) {
        EXPECT_GE(states[state], 1) << state;
    }
}

// A volume's disks are "Online", a global spare is "GHS" and listed, a dedicated spare is "DHS"
// and serves a volume, and no disk is claimed twice.
TEST(DemoMachine, DiskStatesAgreeWithVolumesAndSpares) {
    for (const sim::Controller& controller : Demo().controllers) {
        std::map<int, std::string> expected;
        for (const sim::Volume& volume : controller.volumes) {
            for (const std::vector<int>& span : volume.spans) {
                for (const int id : span) {
                    EXPECT_TRUE(expected.emplace(id, "Online").second) << id;
                }
            }
            for (const int id : volume.dedicated_spares) {
                expected[id] = "DHS";
            }
        }
        for (const int id : controller.global_hot_spares) {
            EXPECT_TRUE(expected.emplace(id, "GHS").second) << id;
        }
        for (const sim::Disk& disk : controller.disks) {
            const auto found = expected.find(disk.id);
            if (found != expected.end()) {
                EXPECT_EQ(disk.state, found->second) << controller.family << " disk " << disk.id;
            } else {
                EXPECT_TRUE(disk.state == "UGood" || disk.state == "UBad" || disk.state == "JBOD")
                    << controller.family << " disk " << disk.id << " is " << disk.state;
            }
        }
        EXPECT_EQ(controller.fw_device_order.has_value(),
                  controller.family == "LSI" || controller.family == "OOB_LSI")
            << controller.family;
    }
}

TEST(DemoMachine, StatePathFollowsXdgStateHome) {
    const ScopedEnv state("XDG_STATE_HOME", std::string("/state"));
    EXPECT_EQ(DemoMachine::StatePath(), "/state/raidcfg/demo-machine.json");
}

TEST(DemoMachine, StatePathFallsBackToHome) {
    const ScopedEnv state("XDG_STATE_HOME", std::string(""));
    const ScopedEnv home("HOME", std::string("/home/demo"));
    EXPECT_EQ(DemoMachine::StatePath(), "/home/demo/.local/state/raidcfg/demo-machine.json");
    const ScopedEnv unset("XDG_STATE_HOME", std::nullopt);
    EXPECT_EQ(DemoMachine::StatePath(), "/home/demo/.local/state/raidcfg/demo-machine.json");
}

TEST(DemoMachine, PrepareCreatesTheStateFile) {
    const TempDir dir;
    const ScopedEnv state("XDG_STATE_HOME", dir.File("state"));
    std::string error;
    const std::string path = DemoMachine::Prepare(error);
    EXPECT_EQ(error, "");
    EXPECT_EQ(path, dir.File("state/raidcfg/demo-machine.json"));
    ASSERT_TRUE(FileExists(path));
    EXPECT_EQ(ReadFile(path), DemoMachine::Text());
    EXPECT_FALSE(FileExists(path + ".tmp." + std::to_string(::getpid())));
}

TEST(DemoMachine, PrepareKeepsAnExistingStateFile) {
    const TempDir dir;
    const ScopedEnv state("XDG_STATE_HOME", dir.path());
    std::string error;
    const std::string path = DemoMachine::Prepare(error);
    ASSERT_FALSE(path.empty()) << error;
    WriteFile(path, R"({"controllers": []})");
    EXPECT_EQ(DemoMachine::Prepare(error), path);
    EXPECT_EQ(ReadFile(path), R"({"controllers": []})");
}

TEST(DemoMachine, PrepareTellsWhyItCannotCreate) {
    const TempDir dir;
    WriteFile(dir.File("plain"), "");
    const ScopedEnv state("XDG_STATE_HOME", dir.File("plain"));
    std::string error;
    EXPECT_EQ(DemoMachine::Prepare(error), "");
    EXPECT_EQ(error, "cannot create the demo machine file '" +
                         dir.File("plain/raidcfg/demo-machine.json") +
                         "': cannot create directory '" + dir.File("plain/raidcfg") +
                         "': Not a directory");
}

} // namespace
