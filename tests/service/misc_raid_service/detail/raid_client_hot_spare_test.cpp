// The addhsp and rmhsp actions on a simulated machine: the rows and codes of both roads, the
// disk states they leave in the machine file, and the handlers' roads around them.
#include <cstdint>
#include <map>
#include <sstream>
#include <string>
#include <vector>

#include "collaborators/log.hpp"
#include "collaborators/tessel_connect.hpp"
#include "result/raid_error_code.hpp"
#include "result/result_values.hpp"
#include "result/tessel_result.hpp"
#include "service/misc_raid_service/detail/raid_client.hpp"
#include "service/misc_raid_service/detail/service_raid_impl.hpp"
#include "sim/machine.hpp"
#include "sim/machine_store.hpp"
#include "sim/sim_platform.hpp"
#include "sim/simulated_machine.hpp"
#include "tests/service/misc_raid_service/detail/client_rows.hpp"
#include "tests/support/file_text.hpp"
#include "tests/support/temp_dir.hpp"

#include <gtest/gtest.h>

namespace {

using raidcfg_test::FileExists;
using raidcfg_test::ReadFile;
using service::detail::RaidClient;

// In-band: LSI 4, Microchip 2, M.2 1 and software RAID 0 stand under 1, 2, 3 and 4. The LSI
// controller's faults stand in place of FAULTS.
const char* const kLocal = R"({"controllers": [
  {"family": "LSI", "id": 4, FAULTS
   "disks": [{"id": 0, "state": "Online"}, {"id": 1, "state": "Online"}, {"id": 2},
             {"id": 3}, {"id": 4}, {"id": 5, "state": "GHS"}],
   "volumes": [{"id": 0, "name": "os", "raid_level": "1", "spans": [[0, 1]]}],
   "global_hot_spares": [5]},
  {"family": "MICROCHIP", "id": 2,
   "disks": [{"id": 0}, {"id": 1}, {"id": 2}, {"id": 3}]},
  {"family": "M2", "id": 1, "disks": [{"id": 0}, {"id": 1}]},
  {"family": "VROC_WIN", "id": 0,
   "disks": [{"id": 0}, {"id": 1}, {"id": 2}, {"id": 3}]}
]})";

// Out-of-band: the LSI controller 3 is the one a named target reaches; its faults stand in place
// of FAULTS.
const char* const kOob = R"({"controllers": [
  {"family": "OOB_LSI", "id": 3, FAULTS
   "disks": [{"id": 0, "state": "Online"}, {"id": 1, "state": "Online"}, {"id": 2},
             {"id": 3}, {"id": 4, "state": "GHS"}],
   "volumes": [{"id": 0, "name": "os", "raid_level": "1", "spans": [[0, 1]]}],
   "global_hot_spares": [4]},
  {"family": "OOB_MICROCHIP", "id": 5, "disks": [{"id": 0}, {"id": 1}]},
  {"family": "OOB_VROC", "id": 0, "disks": [{"id": 0}, {"id": 1}]},
  {"family": "OOB_M2", "id": 6, "disks": [{"id": 0}, {"id": 1}]}
]})";

// The machine text with faults put on its first controller.
std::string WithFaults(const std::string& json, const std::string& faults = "") {
    std::string text = json;
    const std::size_t at = text.find("FAULTS");
    text.replace(at, 6, faults.empty() ? std::string() : "\"faults\": " + faults + ",");
    return text;
}

using client_test::Row;
using client_test::Rows;

class RaidClientHotSpareTest : public ::testing::Test {
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
    void UseLocal(const std::string& faults = "") { UseMachine(WithFaults(kLocal, faults)); }
    void UseOob(const std::string& faults = "") {
        UseMachine(WithFaults(kOob, faults));
        option_.connect_option.kind = 2;
        option_.connect_option.target = "admin:secret@bmc.example";
        option_.connect_option.user = "admin";
        option_.connect_option.password = "secret";
    }
    QuillonConnection::ConnectionInfo Connection() const {
        QuillonConnection::ConnectionInfo info;
        TesselConnect::GetRESTConnection(option_.connect_option, info);
        return info;
    }

    std::uint32_t RunAdd(RaidClient& client) {
        testing::internal::CaptureStdout();
        const std::uint32_t value = client.AddHotSpare();
        printed_ = testing::internal::GetCapturedStdout();
        return value;
    }
    std::uint32_t RunRemove(RaidClient& client) {
        testing::internal::CaptureStdout();
        const std::uint32_t value = client.RemoveHotSpare();
        printed_ = testing::internal::GetCapturedStdout();
        return value;
    }

    sim::Controller Controller(const std::string& family, int id) const {
        sim::Machine machine;
        std::string error;
        EXPECT_TRUE(sim::MachineStore(MachinePath()).Read(machine, error)) << error;
        for (const sim::Controller& controller : machine.controllers) {
            if (controller.family == family && controller.id == id) {
                return controller;
            }
        }
        ADD_FAILURE() << family << " " << id;
        return {};
    }
    std::string State(const std::string& family, int id, int disk) const {
        for (const sim::Disk& entry : Controller(family, id).disks) {
            if (entry.id == disk) {
                return entry.state;
            }
        }
        return "missing";
    }

    raidcfg_test::TempDir dir_;
    RaidConfig::RaidConfigOption option_;
    std::string printed_;
};

const std::string kOk = "Success.";

// --- Success on both roads ---

TEST_F(RaidClientHotSpareTest, GlobalHotSpareOnTheFlatNumberRoadTurnsTheDiskGhs) {
    UseLocal();
    option_.ctrl_index = "1";
    option_.disk_ids = "2,3";
    RaidClient client(option_);
    EXPECT_EQ(RunAdd(client), result::Success);
    EXPECT_EQ(Rows(client), (std::vector<Row>{{"ctrl1-disk2", kOk, 0}, {"ctrl1-disk3", kOk, 0}}));
    EXPECT_EQ(State("LSI", 4, 2), "GHS");
    EXPECT_EQ(State("LSI", 4, 3), "GHS");
    EXPECT_EQ(Controller("LSI", 4).global_hot_spares, (std::vector<int>{5, 2, 3}));
    EXPECT_NE(printed_.find("\nraidconfig add hot spare:\n"), std::string::npos) << printed_;
    EXPECT_NE(printed_.find("Add Hot Spare Result"), std::string::npos) << printed_;
    EXPECT_EQ(client.result_page(), nullptr);
}

TEST_F(RaidClientHotSpareTest, DedicatedHotSpareOnTheFlatNumberRoadTurnsTheDiskDhs) {
    UseLocal();
    option_.ctrl_index = "1";
    option_.disk_ids = "3";
    option_.disk_group_ids = "0";
    RaidClient client(option_);
    EXPECT_EQ(RunAdd(client), result::Success);
    EXPECT_EQ(Rows(client), (std::vector<Row>{{"ctrl1-disk3", kOk, 0}}));
    EXPECT_EQ(State("LSI", 4, 3), "DHS");
    EXPECT_EQ(Controller("LSI", 4).volumes.at(0).dedicated_spares, (std::vector<int>{3}));
}

TEST_F(RaidClientHotSpareTest, GlobalHotSpareOnVrocIsServedOnTheFlatNumberRoad) {
    UseLocal();
    option_.ctrl_index = "4";
    option_.disk_ids = "1";
    RaidClient client(option_);
    EXPECT_EQ(RunAdd(client), result::Success);
    EXPECT_EQ(Rows(client), (std::vector<Row>{{"ctrl4-disk1", kOk, 0}}));
    EXPECT_EQ(State("VROC_WIN", 0, 1), "GHS");
}

TEST_F(RaidClientHotSpareTest, RemoveOnTheFlatNumberRoadTurnsTheDiskUGood) {
    UseLocal();
    option_.ctrl_index = "1";
    option_.disk_ids = "5";
    RaidClient client(option_);
    EXPECT_EQ(RunRemove(client), result::Success);
    EXPECT_EQ(Rows(client), (std::vector<Row>{{"ctrl1-disk5", kOk, 0}}));
    EXPECT_EQ(State("LSI", 4, 5), "UGood");
    EXPECT_TRUE(Controller("LSI", 4).global_hot_spares.empty());
    EXPECT_NE(printed_.find("\nraidconfig remove hot spare:\n"), std::string::npos) << printed_;
    EXPECT_NE(printed_.find("Remove Hot Spare Result"), std::string::npos) << printed_;
}

TEST_F(RaidClientHotSpareTest, NamedTargetRoadAddsGlobalAndDedicatedAndRemoves) {
    UseOob();
    option_.target = "3";
    option_.disk_ids = "2";
    {
        RaidClient client(option_, Connection());
        EXPECT_EQ(RunAdd(client), result::Success);
        EXPECT_EQ(Rows(client), (std::vector<Row>{{"disk[3-2]", kOk, 0}}));
        EXPECT_EQ(client.result_page()->GetPageTitle(), "RaidConfig AddHotSpare");
    }
    EXPECT_EQ(State("OOB_LSI", 3, 2), "GHS");
    option_.disk_ids = "3";
    option_.disk_group_ids = "0";
    {
        RaidClient client(option_, Connection());
        EXPECT_EQ(RunAdd(client), result::Success);
        EXPECT_EQ(Rows(client), (std::vector<Row>{{"disk[3-3]", kOk, 0}}));
    }
    EXPECT_EQ(State("OOB_LSI", 3, 3), "DHS");
    option_.disk_ids = "2,3,4";
    {
        RaidClient client(option_, Connection());
        EXPECT_EQ(RunRemove(client), result::Success);
        EXPECT_EQ(Rows(client),
                  (std::vector<Row>{
                      {"disk[3-2]", kOk, 0}, {"disk[3-3]", kOk, 0}, {"disk[3-4]", kOk, 0}}));
        EXPECT_EQ(client.result_page()->GetPageTitle(), "RaidConfig RemoveHotSpare");
    }
    EXPECT_EQ(State("OOB_LSI", 3, 2), "UGood");
    EXPECT_EQ(State("OOB_LSI", 3, 3), "UGood");
    EXPECT_EQ(State("OOB_LSI", 3, 4), "UGood");
}

// --- The prompt ---

TEST_F(RaidClientHotSpareTest, DeclinedPromptChangesNothingAndIsSuccess) {
    UseLocal();
    const std::string before = ReadFile(MachinePath());
    option_.assume_yes = false;
    option_.ctrl_index = "1";
    option_.disk_ids = "2";
    {
        std::istringstream answers("n\n");
        RaidClient client(option_);
        client.SetInput(answers);
        EXPECT_EQ(RunAdd(client), result::Success);
        EXPECT_TRUE(client.rows().empty());
        EXPECT_NE(printed_.find("Are you sure you want to continue doing add hot spare operation."),
                  std::string::npos);
        EXPECT_EQ(printed_.find("Add Hot Spare Result"), std::string::npos) << printed_;
    }
    option_.disk_ids = "5";
    {
        std::istringstream answers("no\n");
        RaidClient client(option_);
        client.SetInput(answers);
        EXPECT_EQ(RunRemove(client), result::Success);
        EXPECT_TRUE(client.rows().empty());
        EXPECT_NE(
            printed_.find("Are you sure you want to continue doing remove hot spare operation."),
            std::string::npos);
    }
    EXPECT_EQ(ReadFile(MachinePath()), before);
}

TEST_F(RaidClientHotSpareTest, AcceptedPromptGoesOn) {
    UseLocal();
    option_.assume_yes = false;
    option_.ctrl_index = "1";
    option_.disk_ids = "2";
    std::istringstream answers("y\n");
    RaidClient client(option_);
    client.SetInput(answers);
    EXPECT_EQ(RunAdd(client), result::Success);
    EXPECT_EQ(State("LSI", 4, 2), "GHS");
}

// --- Edge cases ---

TEST_F(RaidClientHotSpareTest, AllOrEmptyDiskListGivesAnEmptyTableAndSuccessWithoutBackendCall) {
    // A fault on every hot spare operation would show in a row if the backend were called.
    const std::string faults = R"([{"op": "AddGlobalHotSpare", "code": 3},
        {"op": "AddDedicatedHotSpare", "code": 3}, {"op": "RemoveHotSpare", "code": 3}])";
    UseLocal(faults);
    const std::string before = ReadFile(MachinePath());
    option_.ctrl_index = "1";
    for (const char* disks : {"all", ""}) {
        for (const char* groups : {"", "0"}) {
            option_.disk_ids = disks;
            option_.disk_group_ids = groups;
            RaidClient client(option_);
            EXPECT_EQ(RunAdd(client), result::Success) << disks << groups;
            EXPECT_TRUE(client.rows().empty());
            EXPECT_NE(printed_.find("Add Hot Spare Result"), std::string::npos);
        }
        option_.disk_group_ids.clear();
        RaidClient client(option_);
        EXPECT_EQ(RunRemove(client), result::Success) << disks;
        EXPECT_TRUE(client.rows().empty());
        EXPECT_NE(printed_.find("Remove Hot Spare Result"), std::string::npos);
    }
    EXPECT_EQ(ReadFile(MachinePath()), before);

    UseOob(faults);
    const std::string oob_before = ReadFile(MachinePath());
    option_.ctrl_index.clear();
    option_.target = "3";
    for (const char* disks : {"all", ""}) {
        for (const char* groups : {"", "0"}) {
            option_.disk_ids = disks;
            option_.disk_group_ids = groups;
            RaidClient client(option_, Connection());
            EXPECT_EQ(RunAdd(client), result::Success) << disks << groups;
            EXPECT_TRUE(client.rows().empty());
        }
        option_.disk_group_ids.clear();
        RaidClient client(option_, Connection());
        EXPECT_EQ(RunRemove(client), result::Success) << disks;
        EXPECT_TRUE(client.rows().empty());
    }
    EXPECT_EQ(ReadFile(MachinePath()), oob_before);
}

TEST_F(RaidClientHotSpareTest, ColonDiskTextPassesGlobalIndexUnchangedAndIsRefusedElsewhere) {
    // The fault answers only when the backend is handed "0:1" as it was written.
    UseLocal(R"([{"op": "AddGlobalHotSpare", "arg": "0:1", "code": 3, "error_text": "seen"}])");
    const std::string before = ReadFile(MachinePath());
    option_.ctrl_index = "1";
    option_.disk_ids = "0:1";
    {
        RaidClient client(option_);
        EXPECT_EQ(RunAdd(client),
                  result::RaidResultFromError(Quillon::RaidConfig::RAID_OPERATION_FAILED));
        EXPECT_EQ(Rows(client), (std::vector<Row>{{"ctrl1-disk0:1", "seen", 3}}));
    }
    option_.disk_group_ids = "0";
    {
        RaidClient client(option_);
        EXPECT_EQ(RunAdd(client), result::InvalidParameter);
        EXPECT_TRUE(client.rows().empty());
        EXPECT_EQ(printed_.find("Add Hot Spare Result"), std::string::npos);
    }
    option_.disk_group_ids.clear();
    {
        RaidClient client(option_);
        EXPECT_EQ(RunRemove(client), result::InvalidParameter);
        EXPECT_TRUE(client.rows().empty());
        EXPECT_EQ(printed_.find("Remove Hot Spare Result"), std::string::npos);
    }
    EXPECT_EQ(ReadFile(MachinePath()), before);
}

TEST_F(RaidClientHotSpareTest, NonDigitDiskGroupOrLaterDiskIsRefusedBeforeAnyBackendCall) {
    UseLocal();
    const std::string before = ReadFile(MachinePath());
    option_.ctrl_index = "1";
    option_.disk_ids = "2";
    option_.disk_group_ids = "0,x";
    {
        RaidClient client(option_);
        EXPECT_EQ(RunAdd(client), result::InvalidParameter);
        EXPECT_TRUE(client.rows().empty());
    }
    option_.disk_group_ids.clear();
    option_.disk_ids = "5,a";
    {
        RaidClient client(option_);
        EXPECT_EQ(RunRemove(client), result::InvalidParameter);
        EXPECT_TRUE(client.rows().empty());
    }
    EXPECT_EQ(ReadFile(MachinePath()), before);
}

TEST_F(RaidClientHotSpareTest, DiskGroupOnVrocIsABadDgOptionAfterThePrompt) {
    UseLocal();
    const std::string before = ReadFile(MachinePath());
    option_.assume_yes = false;
    option_.ctrl_index = "4";
    option_.disk_ids = "1";
    option_.disk_group_ids = "0";
    std::istringstream answers("y\n");
    RaidClient client(option_);
    client.SetInput(answers);
    const std::uint32_t value = RunAdd(client);
    EXPECT_EQ(value, result::RaidBadDgOption);
    EXPECT_EQ(TesselResult(value).message(), "Incorrect use of '--dg' option.");
    EXPECT_NE(printed_.find("Are you sure you want to continue doing add hot spare operation."),
              std::string::npos);
    EXPECT_TRUE(client.rows().empty());
    EXPECT_EQ(ReadFile(MachinePath()), before);
}

TEST_F(RaidClientHotSpareTest, NamedTargetDedicatedKeepsDuplicatesAndGlobalUnifiesThem) {
    UseOob();
    option_.target = "3";
    option_.disk_ids = "2,2";
    option_.disk_group_ids = "0";
    {
        RaidClient client(option_, Connection());
        EXPECT_EQ(RunAdd(client), result::RaidFailsOnSomeTargets);
        // The second call finds the disk a hot spare already.
        EXPECT_EQ(Rows(client),
                  (std::vector<Row>{
                      {"disk[3-2]", kOk, 0},
                      {"disk[3-2]", "The target disk[3-2] can't do addhsp operation", 15}}));
    }
    option_.disk_ids = "3,3";
    option_.disk_group_ids.clear();
    RaidClient client(option_, Connection());
    EXPECT_EQ(RunAdd(client), result::Success);
    EXPECT_EQ(Rows(client), (std::vector<Row>{{"disk[3-3]", kOk, 0}}));
    EXPECT_EQ(State("OOB_LSI", 3, 3), "GHS");
}

TEST_F(RaidClientHotSpareTest, NamedTargetGlobalReadsDisksAsNumbersInAscendingOrder) {
    UseOob();
    option_.target = "3";
    option_.disk_ids = "3,02";
    RaidClient client(option_, Connection());
    EXPECT_EQ(RunAdd(client), result::Success);
    EXPECT_EQ(Rows(client), (std::vector<Row>{{"disk[3-2]", kOk, 0}, {"disk[3-3]", kOk, 0}}));
}

TEST_F(RaidClientHotSpareTest, NamedTargetCode29IsNoSpecialCaseAndShowsTheBackendText) {
    UseOob(R"([{"op": "AddGlobalHotSpare", "code": 29, "error_text": "no such thing"},
               {"op": "RemoveHotSpare", "code": 29, "error_text": "not here"}])");
    option_.target = "3";
    option_.disk_ids = "2";
    {
        RaidClient client(option_, Connection());
        RunAdd(client);
        EXPECT_EQ(Rows(client), (std::vector<Row>{{"disk[3-2]", "no such thing", 29}}));
    }
    option_.disk_ids = "4";
    RaidClient client(option_, Connection());
    RunRemove(client);
    EXPECT_EQ(Rows(client), (std::vector<Row>{{"disk[3-4]", "not here", 29}}));
}

TEST_F(RaidClientHotSpareTest, FlatNumberCode29IsTheControllerDoesNotSupport) {
    UseLocal(R"([{"op": "AddGlobalHotSpare", "code": 29, "error_text": "no such thing"},
                 {"op": "RemoveHotSpare", "code": 29, "error_text": "not here"}])");
    option_.ctrl_index = "1";
    option_.disk_ids = "2";
    {
        RaidClient client(option_);
        RunAdd(client);
        EXPECT_EQ(Rows(client),
                  (std::vector<Row>{{"ctrl1-disk2", "The controller does not support.", 29}}));
    }
    option_.disk_ids = "5";
    RaidClient client(option_);
    RunRemove(client);
    EXPECT_EQ(Rows(client),
              (std::vector<Row>{{"ctrl1-disk5", "The controller does not support.", 29}}));
}

TEST_F(RaidClientHotSpareTest, RefusalCodeOfTheOtherActionShowsTheBackendText) {
    const std::string faults = R"([{"op": "AddGlobalHotSpare", "code": 16, "error_text": "g16"},
        {"op": "RemoveHotSpare", "code": 15, "error_text": "r15"}])";
    UseOob(faults);
    option_.target = "3";
    option_.disk_ids = "2";
    {
        RaidClient client(option_, Connection());
        RunAdd(client);
        EXPECT_EQ(Rows(client), (std::vector<Row>{{"disk[3-2]", "g16", 16}}));
    }
    {
        RaidClient client(option_, Connection());
        RunRemove(client);
        EXPECT_EQ(Rows(client), (std::vector<Row>{{"disk[3-2]", "r15", 15}}));
    }
    UseLocal(faults);
    option_.target.clear();
    option_.ctrl_index = "1";
    {
        RaidClient client(option_);
        RunAdd(client);
        EXPECT_EQ(Rows(client), (std::vector<Row>{{"ctrl1-disk2", "g16", 16}}));
    }
    RaidClient client(option_);
    RunRemove(client);
    EXPECT_EQ(Rows(client), (std::vector<Row>{{"ctrl1-disk2", "r15", 15}}));
}

TEST_F(RaidClientHotSpareTest, NamedTargetAddNamesTheDeviceAndRemoveNamesTheBareDisk) {
    UseOob();
    option_.target = "3";
    option_.disk_ids = "0,9";
    {
        RaidClient client(option_, Connection());
        EXPECT_EQ(RunAdd(client), result::RaidFailsOnAllTargets);
        EXPECT_EQ(
            Rows(client),
            (std::vector<Row>{{"disk[3-0]", "The target disk[3-0] can't do addhsp operation", 15},
                              {"disk[3-9]", "The target disk[3-9] does not exist.", 5}}));
    }
    RaidClient client(option_, Connection());
    EXPECT_EQ(RunRemove(client), result::RaidFailsOnAllTargets);
    EXPECT_EQ(Rows(client),
              (std::vector<Row>{{"disk[3-0]", "The disk 0 can't do rmhsp operation", 16},
                                {"disk[3-9]", "The target disk[3-9] does not exist.", 5}}));
}

TEST_F(RaidClientHotSpareTest, FlatNumberRefusalsAndMissingDisksHaveTheirOwnWords) {
    UseLocal();
    option_.ctrl_index = "1";
    option_.disk_ids = "0,9";
    {
        RaidClient client(option_);
        EXPECT_EQ(RunAdd(client), result::RaidFailsOnAllTargets);
        EXPECT_EQ(Rows(client),
                  (std::vector<Row>{{"ctrl1-disk0", "The disk 0 can't do addhsp operation", 15},
                                    {"ctrl1-disk9", "The disk ID 9 does not exist.", 5}}));
    }
    RaidClient client(option_);
    EXPECT_EQ(RunRemove(client), result::RaidFailsOnAllTargets);
    EXPECT_EQ(Rows(client),
              (std::vector<Row>{{"ctrl1-disk0", "The disk 0 can't do rmhsp operation", 16},
                                {"ctrl1-disk9", "The disk ID 9 does not exist.", 5}}));
}

TEST_F(RaidClientHotSpareTest, FaultOnOneDiskOfSeveralLetsTheOthersGoOn) {
    UseLocal(R"([{"op": "AddGlobalHotSpare", "arg": "3", "code": 3, "error_text": "busy"}])");
    option_.ctrl_index = "1";
    option_.disk_ids = "2,3,4";
    RaidClient client(option_);
    const std::uint32_t value = RunAdd(client);
    EXPECT_EQ(value, result::RaidFailsOnSomeTargets);
    EXPECT_EQ(TesselResult(value).message(), "The operation fails on some targets.");
    EXPECT_EQ(Rows(client),
              (std::vector<Row>{
                  {"ctrl1-disk2", kOk, 0}, {"ctrl1-disk3", "busy", 3}, {"ctrl1-disk4", kOk, 0}}));
    EXPECT_EQ(State("LSI", 4, 2), "GHS");
    EXPECT_EQ(State("LSI", 4, 3), "UGood");
    EXPECT_EQ(State("LSI", 4, 4), "GHS");
}

TEST_F(RaidClientHotSpareTest, FaultOnEveryDiskFailsOnAllAndChangesNothing) {
    UseLocal(R"([{"op": "RemoveHotSpare", "code": 3, "error_text": "busy"}])");
    const std::string before = ReadFile(MachinePath());
    option_.ctrl_index = "1";
    option_.disk_ids = "5,2";
    RaidClient client(option_);
    EXPECT_EQ(RunRemove(client), result::RaidFailsOnAllTargets);
    EXPECT_EQ(Rows(client),
              (std::vector<Row>{{"ctrl1-disk5", "busy", 3}, {"ctrl1-disk2", "busy", 3}}));
    EXPECT_EQ(ReadFile(MachinePath()), before);
}

TEST_F(RaidClientHotSpareTest, MissingControllerNumberIsARowWithCodeFive) {
    UseLocal();
    option_.ctrl_index = "9";
    option_.disk_ids = "2";
    {
        RaidClient client(option_);
        RunAdd(client);
        EXPECT_EQ(Rows(client),
                  (std::vector<Row>{{"ctrl9", "The controller ID 9 does not exist.", 5}}));
        EXPECT_NE(printed_.find("Add Hot Spare Result"), std::string::npos);
    }
    RaidClient client(option_);
    RunRemove(client);
    EXPECT_EQ(Rows(client),
              (std::vector<Row>{{"ctrl9", "The controller ID 9 does not exist.", 5}}));
    EXPECT_NE(printed_.find("Remove Hot Spare Result"), std::string::npos);
}

TEST_F(RaidClientHotSpareTest, M2FamilyOnTheFlatNumberRoadIsNotSupported) {
    UseLocal();
    option_.ctrl_index = "3";
    option_.disk_ids = "0";
    {
        RaidClient client(option_);
        EXPECT_EQ(RunAdd(client), result::FunctionNotSupported);
        EXPECT_TRUE(client.rows().empty());
    }
    RaidClient client(option_);
    EXPECT_EQ(RunRemove(client), result::FunctionNotSupported);
    EXPECT_TRUE(client.rows().empty());
}

TEST_F(RaidClientHotSpareTest, TargetThatIsNotOneLsiNumberOrLocalIsNotSupported) {
    UseOob();
    option_.disk_ids = "2";
    for (const char* target : {"m2-6", "3,4", "all"}) {
        option_.target = target;
        for (const char* groups : {"", "0"}) {
            option_.disk_group_ids = groups;
            RaidClient client(option_, Connection());
            EXPECT_EQ(RunAdd(client), result::FunctionNotSupported) << target << groups;
            EXPECT_TRUE(client.rows().empty());
        }
        option_.disk_group_ids.clear();
        RaidClient client(option_, Connection());
        EXPECT_EQ(RunRemove(client), result::FunctionNotSupported) << target;
    }
    UseLocal();
    option_.connect_option = {};
    option_.target = "4";
    RaidClient client(option_);
    EXPECT_EQ(RunAdd(client), result::FunctionNotSupported);
    EXPECT_EQ(RunRemove(client), result::FunctionNotSupported);
    EXPECT_TRUE(client.rows().empty());
}

// --- The handlers' roads ---

class HotSpareHandlerTest : public RaidClientHotSpareTest {
protected:
    TesselResult Run(const std::string& word) {
        option_.command = word;
        service::detail::ServiceRaidImpl impl(option_);
        testing::internal::CaptureStdout();
        TesselResult outcome = impl.Run();
        printed_ = testing::internal::GetCapturedStdout();
        results_ = impl.results();
        return outcome;
    }
    std::map<std::string, std::string> results_;
};

TEST_F(HotSpareHandlerTest, LocalRoadTakesTheRowsAndWritesNoPage) {
    UseLocal();
    option_.ctrl_index = "1";
    option_.disk_ids = "2";
    EXPECT_EQ(Run("addhsp").value(), result::Success);
    EXPECT_EQ(results_, (std::map<std::string, std::string>{{"ctrl1-disk2", kOk}}));
    EXPECT_EQ(Run("rmhsp").value(), result::Success);
    EXPECT_EQ(results_, (std::map<std::string, std::string>{{"ctrl1-disk2", kOk}}));
    EXPECT_EQ(State("LSI", 4, 2), "UGood");
    EXPECT_FALSE(FileExists(dir_.File("raid_result.html")));
}

TEST_F(HotSpareHandlerTest, OutOfBandRoadWritesTheResultPage) {
    UseOob();
    option_.ctrl_index = "1";
    option_.disk_ids = "2";
    EXPECT_EQ(Run("addhsp").value(), result::Success);
    EXPECT_EQ(results_, (std::map<std::string, std::string>{{"ctrl1-disk2", kOk}}));
    const std::string page = ReadFile(dir_.File("raid_result.html"));
    EXPECT_NE(page.find("RaidConfig AddHotSpare"), std::string::npos);
    EXPECT_NE(page.find("Add Hot Spare Result"), std::string::npos);
    EXPECT_EQ(Run("rmhsp").value(), result::Success);
    EXPECT_NE(ReadFile(dir_.File("raid_result.html")).find("RaidConfig RemoveHotSpare"),
              std::string::npos);
    EXPECT_EQ(State("OOB_LSI", 3, 2), "UGood");
}

TEST_F(HotSpareHandlerTest, OutOfBandWithCfcIsRefusedAndInBandTargetGoesToTheInBandDriver) {
    UseOob();
    const std::string before = ReadFile(MachinePath());
    option_.disk_ids = "2";
    option_.cfc = true;
    EXPECT_EQ(Run("addhsp").value(), result::FunctionNotSupported);
    EXPECT_EQ(Run("rmhsp").value(), result::FunctionNotSupported);
    option_.cfc = false;
    option_.connect_option = {};
    option_.target = "0";
    // No in-band controller of that number on this machine: one row, and nothing changes.
    const std::uint32_t missing =
        result::RaidResultFromError(Quillon::RaidConfig::RAID_TARGET_NOT_FOUND);
    EXPECT_EQ(Run("addhsp").value(), missing);
    EXPECT_EQ(Run("rmhsp").value(), missing);
    EXPECT_EQ(ReadFile(MachinePath()), before);
}

} // namespace
