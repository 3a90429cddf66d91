// The clear action on a simulated machine: whole controllers and single volumes, on the
// named-target road and on the flat-number road, the order in which volumes go, the texts of
// failed steps, and the handler's roads around it.
#include <cstdint>
#include <sstream>
#include <string>
#include <vector>

#include "backend/backend_platform.hpp"
#include "collaborators/log.hpp"
#include "collaborators/tessel_connect.hpp"
#include "result/result_values.hpp"
#include "result/tessel_result.hpp"
#include "service/misc_raid_service/detail/raid_client.hpp"
#include "service/misc_raid_service/detail/service_raid_impl.hpp"
#include "sim/machine.hpp"
#include "sim/machine_store.hpp"
#include "sim/simulated_machine.hpp"
#include "tests/service/misc_raid_service/detail/client_rows.hpp"
#include "tests/support/file_text.hpp"
#include "tests/support/temp_dir.hpp"

#include <gtest/gtest.h>

namespace {

using raidcfg_test::ReadFile;
using service::detail::RaidClient;

// Out-of-band: LSI 3 and LSI 1, Microchip 5, VROC 0 and M.2 6.
const char* const kOob = R"({"controllers": [
  {"family": "OOB_LSI", "id": 3,
   "disks": [{"id": 0, "state": "Online", "capacity_mb": 1000},
             {"id": 1, "state": "Online", "capacity_mb": 1000},
             {"id": 2, "state": "Online", "capacity_mb": 1000},
             {"id": 3, "capacity_mb": 1000}],
   "volumes": [{"id": 0, "name": "a", "raid_level": "0", "spans": [[0]], "size_mb": 1000},
               {"id": 1, "name": "b", "raid_level": "0", "spans": [[1]], "size_mb": 1000},
               {"id": 2, "name": "c", "raid_level": "0", "spans": [[2]], "size_mb": 1000}]},
  {"family": "OOB_LSI", "id": 1,
   "disks": [{"id": 0, "state": "Online", "capacity_mb": 1000}],
   "volumes": [{"id": 0, "name": "d", "raid_level": "0", "spans": [[0]], "size_mb": 1000}]},
  {"family": "OOB_MICROCHIP", "id": 5,
   "disks": [{"id": 0, "state": "Online", "capacity_mb": 1000},
             {"id": 1, "state": "Online", "capacity_mb": 1000},
             {"id": 2, "state": "Online", "capacity_mb": 1000}],
   "volumes": [{"id": 1, "name": "m1", "raid_level": "0", "spans": [[0]], "size_mb": 1000},
               {"id": 2, "name": "m2", "raid_level": "0", "spans": [[1]], "size_mb": 1000},
               {"id": 3, "name": "m3", "raid_level": "0", "spans": [[2]], "size_mb": 1000}]},
  {"family": "OOB_VROC", "id": 0,
   "disks": [{"id": 0, "state": "Online", "capacity_mb": 1000},
             {"id": 1, "state": "Online", "capacity_mb": 1000},
             {"id": 2, "state": "Online", "capacity_mb": 1000}],
   "volumes": [{"id": 1, "name": "v1", "raid_level": "0", "spans": [[0]], "size_mb": 1000},
               {"id": 2, "name": "v2", "raid_level": "0", "spans": [[1]], "size_mb": 1000},
               {"id": 3, "name": "v3", "raid_level": "0", "spans": [[2]], "size_mb": 1000}]},
  {"family": "OOB_M2", "id": 6,
   "disks": [{"id": 0, "state": "Online", "capacity_mb": 1000},
             {"id": 1, "state": "Online", "capacity_mb": 1000}],
   "volumes": [{"id": 0, "name": "boot", "raid_level": "1", "spans": [[0, 1]], "size_mb": 1000}]}
]})";

// In-band: LSI 4 with volumes 1, 2 and 3, under flat number 1.
const char* const kLocal = R"({"controllers": [
  {"family": "LSI", "id": 4,
   "disks": [{"id": 0, "state": "Online", "capacity_mb": 1000},
             {"id": 1, "state": "Online", "capacity_mb": 1000},
             {"id": 2, "state": "Online", "capacity_mb": 1000}],
   "volumes": [{"id": 1, "name": "l1", "raid_level": "0", "spans": [[0]], "size_mb": 1000},
               {"id": 2, "name": "l2", "raid_level": "0", "spans": [[1]], "size_mb": 1000},
               {"id": 3, "name": "l3", "raid_level": "0", "spans": [[2]], "size_mb": 1000}]}
]})";

const char* const kEmpty = R"({"controllers": []})";

const std::string kPrompt = "This operation will remove all the data on your disk(s), are you sure "
                            "you want to continue clearing the RAID.";

using client_test::Row;
using client_test::Rows;

class RaidClientClearTest : public ::testing::Test {
protected:
    void SetUp() override {
        std::string error;
        ASSERT_TRUE(Quillon::SetLogDir(dir_.path(), error)) << error;
        option_.output_dir = dir_.path() + "/";
        option_.console_output = true;
        option_.assume_yes = true;
    }
    void TearDown() override { Quillon::RaidConfig::InstallBackendPlatform(nullptr); }

    std::string MachinePath() const { return dir_.File("machine.json"); }

    void UseMachine(const std::string& json) {
        raidcfg_test::WriteFile(MachinePath(), json);
        std::string error;
        ASSERT_TRUE(sim::SimulatedMachine::Use(MachinePath(), error)) << error;
    }

    void OutOfBand() {
        option_.connect_option.kind = 2;
        option_.connect_option.target = "admin:secret@sim";
        option_.connect_option.user = "admin";
        option_.connect_option.password = "secret";
    }
    QuillonConnection::ConnectionInfo Connection() const {
        QuillonConnection::ConnectionInfo info;
        TesselConnect::GetRESTConnection(option_.connect_option, info);
        return info;
    }

    // Runs Clear and keeps what it printed.
    std::uint32_t RunClear(RaidClient& client) {
        testing::internal::CaptureStdout();
        const std::uint32_t value = client.Clear();
        printed_ = testing::internal::GetCapturedStdout();
        return value;
    }

    sim::Machine Machine() const {
        sim::Machine machine;
        std::string error;
        EXPECT_TRUE(sim::MachineStore(MachinePath()).Read(machine, error)) << error;
        return machine;
    }
    // The ids of the volumes a controller holds in the machine file.
    std::vector<int> VolumeIds(const std::string& family, int id) const {
        std::vector<int> ids;
        for (const sim::Controller& controller : Machine().controllers) {
            if (controller.family == family && controller.id == id) {
                for (const sim::Volume& volume : controller.volumes) {
                    ids.push_back(volume.id);
                }
            }
        }
        return ids;
    }

    // The machine file with a fault list added to one controller, found by its opening text.
    static std::string WithFaults(const std::string& json, const std::string& controller_head,
                                  const std::string& faults) {
        std::string text = json;
        const std::size_t at = text.find(controller_head);
        EXPECT_NE(at, std::string::npos) << controller_head;
        text.insert(at + controller_head.size(), " \"faults\": " + faults + ",");
        return text;
    }

    raidcfg_test::TempDir dir_;
    RaidConfig::RaidConfigOption option_;
    std::string printed_;
};

// --- The named-target road ---

TEST_F(RaidClientClearTest, VolumesWithTwoTargetsAreRefusedBeforeThePrompt) {
    UseMachine(kOob);
    OutOfBand();
    option_.assume_yes = false;
    option_.target = "1,2";
    option_.volume_ids = "0,1";
    std::istringstream answers("y\n");
    RaidClient client(option_, Connection());
    client.SetInput(answers);
    EXPECT_EQ(RunClear(client), result::InvalidParameter);
    EXPECT_EQ(printed_, "\nraidconfig clear:\n"
                        "target must be specified by only one target when volume is specified.\n");
    EXPECT_TRUE(client.rows().empty());
    EXPECT_EQ(VolumeIds("OOB_LSI", 3), (std::vector<int>{0, 1, 2}));
    EXPECT_NE(raidcfg_test::ReadFile(dir_.File("raidcfg.log"))
                  .find("target must be specified by only one target when volume is specified."),
              std::string::npos);
}

TEST_F(RaidClientClearTest, VolumesWithTwoTargetsAreRefusedSilentlyWithoutConsoleOutput) {
    UseMachine(kOob);
    OutOfBand();
    option_.console_output = false;
    option_.target = "1,3";
    option_.volume_ids = "0";
    RaidClient client(option_, Connection());
    EXPECT_EQ(RunClear(client), result::InvalidParameter);
    EXPECT_EQ(printed_, "");
    // The log still says why.
    EXPECT_NE(raidcfg_test::ReadFile(dir_.File("raidcfg.log"))
                  .find("target must be specified by only one target when volume is specified."),
              std::string::npos);
}

TEST_F(RaidClientClearTest, VolumesAllWithOneTargetAsksAndClearsTheWholeController) {
    UseMachine(kOob);
    OutOfBand();
    option_.assume_yes = false;
    option_.target = "3";
    option_.volume_ids = "all";
    std::istringstream answers("yes\n");
    RaidClient client(option_, Connection());
    client.SetInput(answers);
    EXPECT_EQ(RunClear(client), result::Success);
    EXPECT_NE(printed_.find(kPrompt + "\nPlease type yes(y) or no(n):\n"), std::string::npos)
        << printed_;
    EXPECT_EQ(Rows(client), (std::vector<Row>{{"ctrl[3]", "Success.", 0}}));
    EXPECT_NE(printed_.find("Clear Configuration Result"), std::string::npos) << printed_;
    EXPECT_TRUE(VolumeIds("OOB_LSI", 3).empty());
    EXPECT_EQ(VolumeIds("OOB_LSI", 1), (std::vector<int>{0}));
}

TEST_F(RaidClientClearTest, VolumesAllWithTargetAllIsRefused) {
    UseMachine(kOob);
    OutOfBand();
    option_.target = "all";
    option_.volume_ids = "all";
    RaidClient client(option_, Connection());
    EXPECT_EQ(RunClear(client), result::InvalidParameter);
    EXPECT_TRUE(client.rows().empty());
    EXPECT_EQ(VolumeIds("OOB_LSI", 3), (std::vector<int>{0, 1, 2}));
}

TEST_F(RaidClientClearTest, TargetAllWithoutVolumesClearsEveryControllerOfTheTargetsBackends) {
    UseMachine(kOob);
    OutOfBand();
    option_.target = "all";
    RaidClient client(option_, Connection());
    EXPECT_EQ(RunClear(client), result::Success);
    EXPECT_EQ(Rows(client), (std::vector<Row>{{"ctrl[3]", "Success.", 0},
                                              {"ctrl[1]", "Success.", 0},
                                              {"M2-6", "Success.", 0}}));
    EXPECT_TRUE(VolumeIds("OOB_LSI", 3).empty());
    EXPECT_TRUE(VolumeIds("OOB_LSI", 1).empty());
    EXPECT_TRUE(VolumeIds("OOB_M2", 6).empty());
    // The families that "all" does not name keep their volumes.
    EXPECT_EQ(VolumeIds("OOB_MICROCHIP", 5), (std::vector<int>{1, 2, 3}));
}

TEST_F(RaidClientClearTest, TargetAllOnAMachineWithoutControllersIsNoControllers) {
    UseMachine(kEmpty);
    OutOfBand();
    option_.target = "all";
    RaidClient client(option_, Connection());
    EXPECT_EQ(RunClear(client), result::RaidNoControllers);
    EXPECT_TRUE(client.rows().empty());
    EXPECT_EQ(printed_.find("Clear Configuration Result"), std::string::npos) << printed_;
}

TEST_F(RaidClientClearTest, AMissingNamedControllerIsATargetThatDoesNotExist) {
    UseMachine(kOob);
    OutOfBand();
    option_.target = "3,9";
    RaidClient client(option_, Connection());
    const std::uint32_t value = RunClear(client);
    EXPECT_EQ(TesselResult(value).message(), "The operation fails on some targets.");
    EXPECT_EQ(Rows(client),
              (std::vector<Row>{{"ctrl[3]", "Success.", 0},
                                {"ctrl[9]", "The target ctrl[9] does not exist.", 5}}));
}

TEST_F(RaidClientClearTest, NamedVolumesGoInAscendingOrderAndLeaveTheOthers) {
    UseMachine(kOob);
    OutOfBand();
    option_.target = "3";
    option_.volume_ids = "2,0";
    RaidClient client(option_, Connection());
    EXPECT_EQ(RunClear(client), result::Success);
    EXPECT_EQ(Rows(client),
              (std::vector<Row>{{"vol[3-0]", "Success.", 0}, {"vol[3-2]", "Success.", 0}}));
    EXPECT_EQ(VolumeIds("OOB_LSI", 3), (std::vector<int>{1}));
}

TEST_F(RaidClientClearTest, AnM2TargetWithAVolumeNamesItM2Vol) {
    UseMachine(kOob);
    OutOfBand();
    option_.target = "m2-6";
    option_.volume_ids = "0,4";
    RaidClient client(option_, Connection());
    const std::uint32_t value = RunClear(client);
    EXPECT_EQ(value, result::RaidFailsOnSomeTargets);
    EXPECT_EQ(Rows(client),
              (std::vector<Row>{{"M2-vol[6-0]", "Success.", 0},
                                {"M2-vol[6-4]", "The target M2-vol[6-4] does not exist.", 5}}));
    EXPECT_TRUE(VolumeIds("OOB_M2", 6).empty());
}

TEST_F(RaidClientClearTest, DecliningChangesNothing) {
    UseMachine(kOob);
    OutOfBand();
    option_.assume_yes = false;
    option_.target = "3";
    const std::string before = ReadFile(MachinePath());
    std::istringstream answers("n\n");
    RaidClient client(option_, Connection());
    client.SetInput(answers);
    EXPECT_EQ(RunClear(client), result::Success);
    EXPECT_NE(printed_.find(kPrompt), std::string::npos) << printed_;
    EXPECT_TRUE(client.rows().empty());
    EXPECT_EQ(printed_.find("Clear Configuration Result"), std::string::npos) << printed_;
    EXPECT_EQ(ReadFile(MachinePath()), before);
}

TEST_F(RaidClientClearTest, OneFailingVolumeOfSeveralLeavesItsRowAndTheOthersGo) {
    UseMachine(WithFaults(kOob, R"("family": "OOB_LSI", "id": 3,)",
                          R"([{"op": "RemoveVolume", "arg": "1", "code": 3,
                               "error_text": "volume 1 is busy"}])"));
    OutOfBand();
    option_.target = "3";
    option_.volume_ids = "0,1,2";
    RaidClient client(option_, Connection());
    const std::uint32_t value = RunClear(client);
    EXPECT_EQ(value, result::RaidFailsOnSomeTargets);
    EXPECT_EQ(TesselResult(value).message(), "The operation fails on some targets.");
    EXPECT_EQ(Rows(client), (std::vector<Row>{{"vol[3-0]", "Success.", 0},
                                              {"vol[3-1]", "volume 1 is busy", 3},
                                              {"vol[3-2]", "Success.", 0}}));
    EXPECT_EQ(VolumeIds("OOB_LSI", 3), (std::vector<int>{1}));
}

TEST_F(RaidClientClearTest, EveryVolumeFailingIsAFailureOnAllTargets) {
    UseMachine(WithFaults(kOob, R"("family": "OOB_LSI", "id": 3,)",
                          R"([{"op": "RemoveVolume", "code": 3, "error_text": "busy"}])"));
    OutOfBand();
    option_.target = "3";
    option_.volume_ids = "0,1";
    const std::string before = ReadFile(MachinePath());
    RaidClient client(option_, Connection());
    const std::uint32_t value = RunClear(client);
    EXPECT_EQ(value, result::RaidFailsOnAllTargets);
    EXPECT_EQ(TesselResult(value).message(), "The operation fails on all targets.");
    EXPECT_EQ(Rows(client), (std::vector<Row>{{"vol[3-0]", "busy", 3}, {"vol[3-1]", "busy", 3}}));
    EXPECT_EQ(ReadFile(MachinePath()), before);
}

// --- The flat-number road ---

TEST_F(RaidClientClearTest, IndexClearsTheWholeControllerAndAsksFirst) {
    UseMachine(kLocal);
    option_.assume_yes = false;
    option_.ctrl_index = "1";
    std::istringstream answers("y\n");
    RaidClient client(option_);
    client.SetInput(answers);
    EXPECT_EQ(RunClear(client), result::Success);
    EXPECT_NE(printed_.find(kPrompt), std::string::npos) << printed_;
    EXPECT_EQ(Rows(client), (std::vector<Row>{{"ctrl1", "Success.", 0}}));
    EXPECT_TRUE(VolumeIds("LSI", 4).empty());
}

TEST_F(RaidClientClearTest, IndexDecliningChangesNothing) {
    UseMachine(kLocal);
    option_.assume_yes = false;
    option_.ctrl_index = "1";
    option_.volume_ids = "1";
    const std::string before = ReadFile(MachinePath());
    std::istringstream answers("no\n");
    RaidClient client(option_);
    client.SetInput(answers);
    EXPECT_EQ(RunClear(client), result::Success);
    EXPECT_TRUE(client.rows().empty());
    EXPECT_EQ(ReadFile(MachinePath()), before);
}

TEST_F(RaidClientClearTest, Family7TakesVolumesFromTheHighestDownAndFamily4FromTheLowestUp) {
    UseMachine(kOob);
    OutOfBand();
    option_.volume_ids = "3,1,2";
    option_.ctrl_index = "3"; // the Microchip controller
    RaidClient microchip(option_, Connection());
    EXPECT_EQ(RunClear(microchip), result::Success);
    EXPECT_EQ(Rows(microchip), (std::vector<Row>{{"ctrl3-vol3", "Success.", 0},
                                                 {"ctrl3-vol2", "Success.", 0},
                                                 {"ctrl3-vol1", "Success.", 0}}));
    EXPECT_TRUE(VolumeIds("OOB_MICROCHIP", 5).empty());

    option_.volume_ids = "3,1,2";
    option_.ctrl_index = "1"; // LSI 3, which has volumes 0, 1 and 2
    RaidClient lsi(option_, Connection());
    EXPECT_EQ(RunClear(lsi), result::RaidFailsOnSomeTargets);
    EXPECT_EQ(Rows(lsi), (std::vector<Row>{{"ctrl1-vol1", "Success.", 0},
                                           {"ctrl1-vol2", "Success.", 0},
                                           {"ctrl1-vol3", "The volume ID 3 does not exist.", 5}}));
    EXPECT_EQ(VolumeIds("OOB_LSI", 3), (std::vector<int>{0}));
}

TEST_F(RaidClientClearTest, Family8TakesVolumesFromTheHighestDown) {
    UseMachine(kOob);
    OutOfBand();
    option_.volume_ids = "1,3";
    option_.ctrl_index = "4"; // the VROC controller
    RaidClient client(option_, Connection());
    EXPECT_EQ(RunClear(client), result::Success);
    EXPECT_EQ(Rows(client),
              (std::vector<Row>{{"ctrl4-vol3", "Success.", 0}, {"ctrl4-vol1", "Success.", 0}}));
    EXPECT_EQ(VolumeIds("OOB_VROC", 0), (std::vector<int>{2}));
}

TEST_F(RaidClientClearTest, IndexOfAMissingVolumeIsAVolumeThatDoesNotExist) {
    UseMachine(kLocal);
    option_.ctrl_index = "1";
    option_.volume_ids = "2,7";
    RaidClient client(option_);
    EXPECT_EQ(RunClear(client), result::RaidFailsOnSomeTargets);
    EXPECT_EQ(Rows(client),
              (std::vector<Row>{{"ctrl1-vol2", "Success.", 0},
                                {"ctrl1-vol7", "The volume ID 7 does not exist.", 5}}));
    EXPECT_EQ(VolumeIds("LSI", 4), (std::vector<int>{1, 3}));
}

TEST_F(RaidClientClearTest, ABackendTextIsRewrittenToTheIndexOnAWholeClearOnly) {
    UseMachine(WithFaults(kLocal, R"("family": "LSI", "id": 4,)",
                          R"([{"op": "ClearConfig", "code": 3, "error_text": "ctrl[4] is busy"},
                              {"op": "RemoveVolume", "code": 3,
                               "error_text": "ctrl[4] volume is busy"}])"));
    option_.ctrl_index = "1";
    RaidClient whole(option_);
    // A single failed row is summed up as the failed operation itself.
    EXPECT_EQ(RunClear(whole), result::RaidFailsToOperate);
    EXPECT_EQ(Rows(whole), (std::vector<Row>{{"ctrl1", "ctrl[1] is busy", 3}}));

    option_.volume_ids = "1";
    RaidClient volume(option_);
    EXPECT_EQ(RunClear(volume), result::RaidFailsToOperate);
    EXPECT_EQ(Rows(volume), (std::vector<Row>{{"ctrl1-vol1", "ctrl[4] volume is busy", 3}}));
    EXPECT_EQ(VolumeIds("LSI", 4), (std::vector<int>{1, 2, 3}));
}

TEST_F(RaidClientClearTest, EmptyIndexAndEmptyTargetIsTheRowOfAMissingCtrlMinusOne) {
    UseMachine(kLocal);
    option_.assume_yes = false; // no prompt is asked on this road
    RaidClient client(option_);
    std::istringstream answers;
    client.SetInput(answers);
    const std::uint32_t value = RunClear(client);
    EXPECT_EQ(value, result::RaidTargetNotExist);
    EXPECT_EQ(TesselResult(value).message(), "The target device does not exist.");
    EXPECT_EQ(Rows(client),
              (std::vector<Row>{{"ctrl-1", "The controller ID -1 does not exist.", 5}}));
    EXPECT_EQ(printed_.find(kPrompt), std::string::npos) << printed_;
    EXPECT_EQ(VolumeIds("LSI", 4), (std::vector<int>{1, 2, 3}));
}

TEST_F(RaidClientClearTest, OutOfBandClientTitlesThePage) {
    UseMachine(kOob);
    OutOfBand();
    option_.ctrl_index = "2";
    RaidClient client(option_, Connection());
    EXPECT_EQ(RunClear(client), result::Success);
    EXPECT_EQ(Rows(client), (std::vector<Row>{{"ctrl2", "Success.", 0}}));
    client.WriteResultPage(TesselResult(result::Success, ""));
    EXPECT_NE(ReadFile(dir_.File("raid_result.html")).find("RaidConfig Clear"), std::string::npos);
    EXPECT_TRUE(VolumeIds("OOB_LSI", 1).empty());
}

// --- The handler ---

TEST_F(RaidClientClearTest, HandlerClearsOnTheLocalRoadAndOutOfBandWritesThePage) {
    UseMachine(kLocal);
    option_.command = "clear";
    option_.ctrl_index = "1";
    testing::internal::CaptureStdout();
    const TesselResult local = service::detail::ServiceRaidImpl(option_).Run();
    testing::internal::GetCapturedStdout();
    EXPECT_EQ(local.value(), result::Success);
    EXPECT_TRUE(VolumeIds("LSI", 4).empty());
    EXPECT_FALSE(raidcfg_test::FileExists(dir_.File("raid_result.html")));

    UseMachine(kOob);
    OutOfBand();
    option_.ctrl_index.clear();
    option_.target = "3";
    testing::internal::CaptureStdout();
    const TesselResult oob = service::detail::ServiceRaidImpl(option_).Run();
    testing::internal::GetCapturedStdout();
    EXPECT_EQ(oob.value(), result::Success);
    EXPECT_TRUE(VolumeIds("OOB_LSI", 3).empty());
    EXPECT_NE(ReadFile(dir_.File("raid_result.xml")).find("<DEVICE>ctrl[3]</DEVICE>"),
              std::string::npos);
    EXPECT_NE(ReadFile(dir_.File("raid_result.html")).find("RaidConfig Clear"), std::string::npos);
}

} // namespace
