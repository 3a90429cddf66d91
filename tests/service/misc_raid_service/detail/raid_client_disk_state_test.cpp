// The makegood and makejbod actions on a simulated machine: the rows of the target road, the
// flat-number road and the road without named disks, the disk states they leave in the machine
// file, and the handlers' roads around them.
#include <cstdint>
#include <sstream>
#include <string>
#include <vector>

#include "backend/backend_platform.hpp"
#include "collaborators/log.hpp"
#include "collaborators/tessel_connect.hpp"
#include "result/raid_error_code.hpp"
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

using raidcfg_test::FileExists;
using raidcfg_test::ReadFile;
using service::detail::RaidClient;

// In-band: LSI 4 stands under 1, Microchip 2 under 2, M.2 1 under 3.
const char* const kLocal = R"({"controllers": [
  {"family": "LSI", "id": 4,
   "disks": [{"id": 0, "state": "UGood"}, {"id": 1, "state": "UBad"},
             {"id": 2, "state": "JBOD"}, {"id": 3, "state": "Online"}]},
  {"family": "MICROCHIP", "id": 2, "disks": [{"id": 0, "state": "UBad"}]},
  {"family": "M2", "id": 1, "disks": [{"id": 0}, {"id": 1}]}
]})";

// Out-of-band: two LSI controllers reached by their own ids, and an M.2 one.
const char* const kOob = R"({"controllers": [
  {"family": "OOB_LSI", "id": 3,
   "disks": [{"id": 0, "state": "UGood"}, {"id": 1, "state": "UBad"},
             {"id": 2, "state": "JBOD"}, {"id": 3, "state": "Online"}]},
  {"family": "OOB_LSI", "id": 1, "disks": [{"id": 0, "state": "UGood"}]},
  {"family": "OOB_M2", "id": 6, "disks": [{"id": 0}, {"id": 1}]}
]})";

using client_test::Row;
using client_test::Rows;

class RaidClientDiskStateTest : public ::testing::Test {
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
        option_.connect_option.target = "admin:secret@bmc.example";
        option_.connect_option.user = "admin";
        option_.connect_option.password = "secret";
    }
    QuillonConnection::ConnectionInfo Connection() const {
        QuillonConnection::ConnectionInfo info;
        TesselConnect::GetRESTConnection(option_.connect_option, info);
        return info;
    }

    // Runs MakeGood or MakeJbod and keeps what it printed.
    std::uint32_t RunMake(RaidClient& client, bool good) {
        testing::internal::CaptureStdout();
        const std::uint32_t value = good ? client.MakeGood() : client.MakeJbod();
        printed_ = testing::internal::GetCapturedStdout();
        return value;
    }

    // The state of a disk as the machine file holds it.
    std::string State(const std::string& family, int controller, int disk) const {
        sim::Machine machine;
        std::string error;
        EXPECT_TRUE(sim::MachineStore(MachinePath()).Read(machine, error)) << error;
        for (const sim::Controller& found : machine.controllers) {
            if (found.family != family || found.id != controller) {
                continue;
            }
            for (const sim::Disk& entry : found.disks) {
                if (entry.id == disk) {
                    return entry.state;
                }
            }
        }
        return "(none)";
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

const std::string kSuccess = "Success.";

// --- The target road with named disks ---

TEST_F(RaidClientDiskStateTest, AllDisksWithOneTargetTakeTheEligibleListOfThatController) {
    UseMachine(kOob);
    OutOfBand();
    option_.target = "3";
    option_.disk_ids = "all";
    {
        RaidClient client(option_, Connection());
        EXPECT_EQ(RunMake(client, true), result::Success);
        EXPECT_EQ(Rows(client),
                  (std::vector<Row>{{"disk[3-1]", kSuccess, 0}, {"disk[3-2]", kSuccess, 0}}));
        EXPECT_NE(printed_.find("\nraidconfig makegood:"), std::string::npos) << printed_;
        EXPECT_NE(printed_.find("Make Good Result"), std::string::npos) << printed_;
        EXPECT_EQ(client.result_page()->GetPageTitle(), "RaidConfig MakeGood");
    }
    EXPECT_EQ(State("OOB_LSI", 3, 1), "UGood");
    EXPECT_EQ(State("OOB_LSI", 3, 2), "UGood");
    EXPECT_EQ(State("OOB_LSI", 3, 3), "Online");

    // Nothing left to change: one row for the controller, with its own value.
    RaidClient again(option_, Connection());
    EXPECT_EQ(RunMake(again, true),
              result::RaidResultFromError(Quillon::RaidConfig::RAID_NO_MAKEGOOD_DISKS));
    EXPECT_EQ(Rows(again), (std::vector<Row>{{"ctrl[3]", "There are no disks to makegood.", 13}}));
}

TEST_F(RaidClientDiskStateTest, NoEligibleDiskForJbodOnOneTargetIsARowWithCodeFourteen) {
    UseMachine(R"({"controllers": [{"family": "OOB_LSI", "id": 3,
                   "disks": [{"id": 0, "state": "Online"}]}]})");
    OutOfBand();
    option_.target = "3";
    option_.disk_ids = "all";
    RaidClient client(option_, Connection());
    RunMake(client, false);
    EXPECT_EQ(Rows(client), (std::vector<Row>{{"ctrl[3]", "There are no disks to makejbod.", 14}}));
    EXPECT_EQ(client.result_page()->GetPageTitle(), "RaidConfig MakeJbod");
    EXPECT_NE(printed_.find("Make JBOD Result"), std::string::npos) << printed_;
}

TEST_F(RaidClientDiskStateTest, TargetListWithDisksIsRefusedAndWithoutDisksServesBothControllers) {
    UseMachine(kOob);
    OutOfBand();
    option_.target = "1,3";
    option_.disk_ids = "0";
    {
        RaidClient client(option_, Connection());
        EXPECT_EQ(RunMake(client, false), result::InvalidParameter);
        EXPECT_TRUE(client.rows().empty());
        EXPECT_NE(
            printed_.find("target must be specified by only one target when drive is specified.\n"),
            std::string::npos)
            << printed_;
        EXPECT_EQ(printed_.find("Make JBOD Result"), std::string::npos) << printed_;
    }
    option_.disk_ids.clear();
    RaidClient client(option_, Connection());
    EXPECT_EQ(RunMake(client, false), result::Success);
    EXPECT_EQ(Rows(client),
              (std::vector<Row>{{"disk[1-0]", kSuccess, 0}, {"disk[3-0]", kSuccess, 0}}));
    EXPECT_EQ(State("OOB_LSI", 1, 0), "JBOD");
    EXPECT_EQ(State("OOB_LSI", 3, 0), "JBOD");
}

TEST_F(RaidClientDiskStateTest, AnMTwoTargetWithDisksIsRefused) {
    UseMachine(kOob);
    OutOfBand();
    option_.target = "m.2-6";
    option_.disk_ids = "0";
    RaidClient client(option_, Connection());
    EXPECT_EQ(RunMake(client, true), result::InvalidParameter);
    EXPECT_TRUE(client.rows().empty());
}

TEST_F(RaidClientDiskStateTest, RefusalElevenOnTheTargetRoadNamesTheDevice) {
    UseMachine(kOob);
    OutOfBand();
    option_.target = "3";
    option_.disk_ids = "3,1";
    RaidClient client(option_, Connection());
    EXPECT_EQ(RunMake(client, true), result::RaidFailsOnSomeTargets);
    EXPECT_EQ(Rows(client),
              (std::vector<Row>{{"disk[3-1]", kSuccess, 0},
                                {"disk[3-3]", "The disk[3-3] can't do makegood operation", 11}}));
    EXPECT_EQ(State("OOB_LSI", 3, 1), "UGood");
    EXPECT_EQ(State("OOB_LSI", 3, 3), "Online");
}

TEST_F(RaidClientDiskStateTest, RefusalElevenOnTheIndexRoadNamesTheBareDisk) {
    UseMachine(kLocal);
    option_.ctrl_index = "1";
    option_.disk_ids = "3";
    RaidClient client(option_);
    EXPECT_EQ(RunMake(client, true),
              result::RaidResultFromError(Quillon::RaidConfig::RAID_MAKEGOOD_REFUSED));
    EXPECT_EQ(Rows(client),
              (std::vector<Row>{{"ctrl1-disk3", "The disk 3 can't do makegood operation", 11}}));
}

TEST_F(RaidClientDiskStateTest, CodeTwelveFromMakeGoodIsNotItsRefusalAndShowsTheBackendText) {
    UseMachine(WithFaults(kOob, R"("family": "OOB_LSI", "id": 3,)",
                          R"([{"op": "MakeGood", "arg": "1", "code": 12, "error_text": "busy"}])"));
    OutOfBand();
    option_.target = "3";
    option_.disk_ids = "1";
    RaidClient client(option_, Connection());
    RunMake(client, true);
    EXPECT_EQ(Rows(client), (std::vector<Row>{{"disk[3-1]", "busy", 12}}));
    EXPECT_EQ(State("OOB_LSI", 3, 1), "UBad");
}

TEST_F(RaidClientDiskStateTest, TargetRoadCodesFiveAndTwentyNineHaveTextsOfTheirOwn) {
    UseMachine(WithFaults(kOob, R"("family": "OOB_LSI", "id": 3,)",
                          R"([{"op": "MakeJbod", "arg": "0", "code": 29, "error_text": "x"}])"));
    OutOfBand();
    option_.target = "3";
    option_.disk_ids = "0,9";
    RaidClient client(option_, Connection());
    EXPECT_EQ(RunMake(client, false), result::RaidFailsOnAllTargets);
    EXPECT_EQ(Rows(client),
              (std::vector<Row>{{"disk[3-0]", "The target disk[3-0] does not support.", 29},
                                {"disk[3-9]", "The target disk[3-9] does not exist.", 5}}));
}

TEST_F(RaidClientDiskStateTest, LocalTargetThatTheLsiMicrochipMapLacksIsCodeFiveForEachDisk) {
    UseMachine(kLocal);
    option_.target = "9";
    option_.disk_ids = "0,1";
    RaidClient client(option_);
    EXPECT_EQ(RunMake(client, true), result::RaidFailsOnAllTargets);
    EXPECT_EQ(Rows(client),
              (std::vector<Row>{{"disk[9-0]", "The target disk[9-0] does not exist.", 5},
                                {"disk[9-1]", "The target disk[9-1] does not exist.", 5}}));
}

TEST_F(RaidClientDiskStateTest, LocalTargetIsLookedUpByItsShownNumberAndServedOnItsRealId) {
    UseMachine(kLocal);
    // Shown numbers count from 0 and skip one between the families: the Microchip controller
    // stands under 2.
    option_.target = "2";
    option_.disk_ids = "0";
    {
        RaidClient client(option_);
        EXPECT_EQ(RunMake(client, true), result::Success);
        EXPECT_EQ(Rows(client), (std::vector<Row>{{"disk[2-0]", kSuccess, 0}}));
    }
    EXPECT_EQ(State("MICROCHIP", 2, 0), "UGood");
    option_.target = "0"; // the LSI controller, own id 4
    option_.disk_ids = "1";
    RaidClient client(option_);
    EXPECT_EQ(RunMake(client, true), result::Success);
    EXPECT_EQ(Rows(client), (std::vector<Row>{{"disk[0-1]", kSuccess, 0}}));
    EXPECT_EQ(State("LSI", 4, 1), "UGood");
}

// --- The flat-number road ---

TEST_F(RaidClientDiskStateTest, IndexRoadChangesTheNamedDisksAndTellsMissingOnes) {
    UseMachine(kLocal);
    option_.ctrl_index = "1";
    option_.disk_ids = "0,7";
    RaidClient client(option_);
    EXPECT_EQ(RunMake(client, false), result::RaidFailsOnSomeTargets);
    EXPECT_EQ(Rows(client),
              (std::vector<Row>{{"ctrl1-disk0", kSuccess, 0},
                                {"ctrl1-disk7", "The disk ID 7 does not exist.", 5}}));
    EXPECT_EQ(State("LSI", 4, 0), "JBOD");
}

TEST_F(RaidClientDiskStateTest, IndexRoadWithoutDisksChangesEveryEligibleDisk) {
    UseMachine(kLocal);
    option_.ctrl_index = "1";
    {
        RaidClient client(option_);
        EXPECT_EQ(RunMake(client, true), result::Success);
        EXPECT_EQ(Rows(client),
                  (std::vector<Row>{{"ctrl1-disk1", kSuccess, 0}, {"ctrl1-disk2", kSuccess, 0}}));
    }
    EXPECT_EQ(State("LSI", 4, 1), "UGood");
    EXPECT_EQ(State("LSI", 4, 2), "UGood");
    RaidClient again(option_);
    RunMake(again, true);
    EXPECT_EQ(Rows(again), (std::vector<Row>{{"ctrl1", "There are no disks to makegood.", 13}}));
}

TEST_F(RaidClientDiskStateTest, IndexRoadCodeTwentyNineShowsTheBackendText) {
    UseMachine(WithFaults(kLocal, R"("family": "LSI", "id": 4,)",
                          R"([{"op": "MakeGood", "code": 29, "error_text": "not here"}])"));
    option_.ctrl_index = "1";
    option_.disk_ids = "1";
    RaidClient client(option_);
    RunMake(client, true);
    EXPECT_EQ(Rows(client), (std::vector<Row>{{"ctrl1-disk1", "not here", 29}}));
}

TEST_F(RaidClientDiskStateTest, IndexRoadFailedQueryIsARowWithTheBackendText) {
    UseMachine(WithFaults(kLocal, R"("family": "LSI", "id": 4,)",
                          R"([{"op": "GetCanMakeJbodDiskIds", "code": 2, "error_text": "gone"}])"));
    option_.ctrl_index = "1";
    RaidClient client(option_);
    RunMake(client, false);
    EXPECT_EQ(Rows(client), (std::vector<Row>{{"ctrl1", "gone", 2}}));
}

TEST_F(RaidClientDiskStateTest, MakeJbodOnAnIndexOfFamilyOneIsNotSupported) {
    UseMachine(kLocal);
    option_.ctrl_index = "2";
    RaidClient client(option_);
    EXPECT_EQ(RunMake(client, false), result::FunctionNotSupported);
    EXPECT_TRUE(client.rows().empty());
    EXPECT_EQ(printed_.find("Make JBOD Result"), std::string::npos) << printed_;
}

TEST_F(RaidClientDiskStateTest, IndexThatNamesNoControllerIsARowWithCodeFive) {
    UseMachine(kLocal);
    option_.ctrl_index = "8";
    RaidClient client(option_);
    EXPECT_EQ(RunMake(client, true),
              result::RaidResultFromError(Quillon::RaidConfig::RAID_TARGET_NOT_FOUND));
    EXPECT_EQ(Rows(client),
              (std::vector<Row>{{"ctrl8", "The controller ID 8 does not exist.", 5}}));
    EXPECT_NE(printed_.find("Make Good Result"), std::string::npos) << printed_;
}

// --- No disks named on the target road ---

TEST_F(RaidClientDiskStateTest, EmptyEligibleListsOnTargetAllLeaveNoTableAndNoDisksToGood) {
    UseMachine(R"({"controllers": [
      {"family": "OOB_LSI", "id": 3, "disks": [{"id": 0, "state": "Online"}]},
      {"family": "OOB_LSI", "id": 1, "disks": [{"id": 0, "state": "UGood"}]}]})");
    OutOfBand();
    option_.target = "all";
    RaidClient client(option_, Connection());
    EXPECT_EQ(RunMake(client, true), result::RaidNoDisksToGood);
    EXPECT_TRUE(client.rows().empty());
    EXPECT_EQ(printed_.find("Make Good Result"), std::string::npos) << printed_;
}

TEST_F(RaidClientDiskStateTest, TargetAllChangesEveryEligibleDiskOfEveryController) {
    UseMachine(kOob);
    OutOfBand();
    option_.target = "all";
    {
        RaidClient client(option_, Connection());
        EXPECT_EQ(RunMake(client, false), result::Success);
        EXPECT_EQ(Rows(client),
                  (std::vector<Row>{{"disk[3-0]", kSuccess, 0}, {"disk[1-0]", kSuccess, 0}}));
    }
    EXPECT_EQ(State("OOB_LSI", 3, 0), "JBOD");
    EXPECT_EQ(State("OOB_LSI", 1, 0), "JBOD");
}

TEST_F(RaidClientDiskStateTest, TargetAllWithAFailedQueryIsAControllerRowAndGoesOn) {
    UseMachine(WithFaults(kOob, R"("family": "OOB_LSI", "id": 3,)",
                          R"([{"op": "GetCanMakeJbodDiskIds", "code": 2, "error_text": "gone"}])"));
    OutOfBand();
    option_.target = "all";
    RaidClient client(option_, Connection());
    EXPECT_EQ(RunMake(client, false), result::RaidFailsOnSomeTargets);
    EXPECT_EQ(Rows(client), (std::vector<Row>{{"ctrl[3]", "gone", 2}, {"disk[1-0]", kSuccess, 0}}));
}

TEST_F(RaidClientDiskStateTest, TargetAllWithoutControllersIsNoControllers) {
    UseMachine(R"({"controllers": [{"family": "OOB_M2", "id": 6, "disks": [{"id": 0}]}]})");
    OutOfBand();
    option_.target = "all";
    RaidClient client(option_, Connection());
    EXPECT_EQ(RunMake(client, true), result::RaidNoControllers);
    EXPECT_EQ(printed_.find("Make Good Result"), std::string::npos) << printed_;
}

TEST_F(RaidClientDiskStateTest, LocalTargetIdsWithoutDisksAreLookedUpInTheLsiMicrochipMap) {
    UseMachine(kLocal);
    option_.target = "0,9";
    RaidClient client(option_);
    EXPECT_EQ(RunMake(client, true), result::RaidFailsOnSomeTargets);
    EXPECT_EQ(Rows(client),
              (std::vector<Row>{{"disk[0-1]", kSuccess, 0},
                                {"disk[0-2]", kSuccess, 0},
                                {"ctrl[9]", "The target ctrl[9] does not exist.", 5}}));
    EXPECT_EQ(State("LSI", 4, 1), "UGood");
    EXPECT_EQ(State("LSI", 4, 2), "UGood");
}

// --- Confirmation and faults ---

TEST_F(RaidClientDiskStateTest, DeclinedPromptChangesNothing) {
    UseMachine(kOob);
    const std::string before = ReadFile(MachinePath());
    OutOfBand();
    option_.assume_yes = false;
    option_.target = "3";
    option_.disk_ids = "0";
    std::istringstream answers("n\n");
    RaidClient client(option_, Connection());
    client.SetInput(answers);
    EXPECT_EQ(RunMake(client, false), result::Success);
    EXPECT_NE(printed_.find("Are you sure you want to continue doing makejbod operation.\n"),
              std::string::npos)
        << printed_;
    EXPECT_TRUE(client.rows().empty());
    EXPECT_EQ(printed_.find("Make JBOD Result"), std::string::npos) << printed_;
    EXPECT_EQ(ReadFile(MachinePath()), before);
}

TEST_F(RaidClientDiskStateTest, DeclinedPromptOnTheIndexRoadChangesNothing) {
    UseMachine(kLocal);
    const std::string before = ReadFile(MachinePath());
    option_.assume_yes = false;
    option_.ctrl_index = "1";
    std::istringstream answers("no\n");
    RaidClient client(option_);
    client.SetInput(answers);
    EXPECT_EQ(RunMake(client, true), result::Success);
    EXPECT_NE(printed_.find("Are you sure you want to continue doing makegood operation.\n"),
              std::string::npos)
        << printed_;
    EXPECT_TRUE(client.rows().empty());
    EXPECT_EQ(ReadFile(MachinePath()), before);
}

TEST_F(RaidClientDiskStateTest, FaultOnOneDiskOfSeveralFailsOnSomeTargets) {
    UseMachine(WithFaults(kOob, R"("family": "OOB_LSI", "id": 3,)",
                          R"([{"op": "MakeGood", "arg": "2", "code": 2, "error_text": ""}])"));
    OutOfBand();
    option_.target = "3";
    option_.disk_ids = "all";
    RaidClient client(option_, Connection());
    EXPECT_EQ(RunMake(client, true), result::RaidFailsOnSomeTargets);
    // The fault's text, empty as it stands: no default replaces a text that was given.
    EXPECT_EQ(Rows(client), (std::vector<Row>{{"disk[3-1]", kSuccess, 0}, {"disk[3-2]", "", 2}}));
    EXPECT_EQ(State("OOB_LSI", 3, 1), "UGood");
    EXPECT_EQ(State("OOB_LSI", 3, 2), "JBOD");
}

TEST_F(RaidClientDiskStateTest, FaultOnEveryDiskFailsOnAllTargets) {
    UseMachine(WithFaults(kOob, R"("family": "OOB_LSI", "id": 3,)",
                          R"([{"op": "MakeGood", "code": 2, "error_text": "stuck"}])"));
    OutOfBand();
    option_.target = "3";
    option_.disk_ids = "all";
    RaidClient client(option_, Connection());
    EXPECT_EQ(RunMake(client, true), result::RaidFailsOnAllTargets);
    EXPECT_EQ(Rows(client),
              (std::vector<Row>{{"disk[3-1]", "stuck", 2}, {"disk[3-2]", "stuck", 2}}));
    EXPECT_EQ(State("OOB_LSI", 3, 1), "UBad");
    EXPECT_EQ(State("OOB_LSI", 3, 2), "JBOD");
}

// --- The handlers ---

TEST_F(RaidClientDiskStateTest, HandlerOutOfBandMakesJbodAndWritesThePage) {
    UseMachine(kOob);
    OutOfBand();
    option_.command = "makejbod";
    option_.target = "3";
    option_.disk_ids = "0";
    service::detail::ServiceRaidImpl impl(option_);
    testing::internal::CaptureStdout();
    const TesselResult outcome = impl.Run();
    testing::internal::GetCapturedStdout();
    EXPECT_EQ(outcome.value(), result::Success);
    EXPECT_EQ(State("OOB_LSI", 3, 0), "JBOD");
    EXPECT_NE(ReadFile(dir_.File("raid_result.html")).find("RaidConfig MakeJbod"),
              std::string::npos);
    EXPECT_NE(ReadFile(dir_.File("raid_result.xml")).find("<DEVICE>disk[3-0]</DEVICE>"),
              std::string::npos);
}

TEST_F(RaidClientDiskStateTest, HandlerWithATargetInBandUsesTheLocalClient) {
    UseMachine(kLocal);
    option_.command = "makegood";
    option_.target = "0";
    option_.disk_ids = "1";
    service::detail::ServiceRaidImpl impl(option_);
    testing::internal::CaptureStdout();
    const TesselResult outcome = impl.Run();
    testing::internal::GetCapturedStdout();
    EXPECT_EQ(outcome.value(), result::Success);
    EXPECT_EQ(State("LSI", 4, 1), "UGood");
    EXPECT_FALSE(FileExists(dir_.File("raid_result.html")));
    EXPECT_NE(ReadFile(dir_.File("raid_result.xml")).find("<DEVICE>disk[0-1]</DEVICE>"),
              std::string::npos);
}

} // namespace
