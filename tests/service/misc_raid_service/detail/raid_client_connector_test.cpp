// The changemode action on a simulated machine: the rows and codes of the named-target road and
// the flat-number road, the connector modes left in the machine file, and the handler's roads.
#include <cstdint>
#include <map>
#include <sstream>
#include <string>
#include <vector>

#include "collaborators/log.hpp"
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

// LSI 4, Microchip 2, M.2 1 and software RAID 0 stand under the flat numbers 1, 2, 3 and 4; in
// the LSI/Microchip numbering LSI 4 is 0 and Microchip 2 is 2. The Microchip controller's faults
// stand in place of FAULTS.
const char* const kLocal = R"({"controllers": [
  {"family": "LSI", "id": 4, "disks": [{"id": 0}],
   "connectors": [{"id": 0, "mode": "RAID"}], "connector_modes": ["RAID", "HBA", "Mixed"]},
  {"family": "MICROCHIP", "id": 2, FAULTS "disks": [{"id": 0}],
   "connectors": [{"id": 0, "name": "CN0", "mode": "RAID"}, {"id": 1, "name": "CN1", "mode": "RAID"},
                  {"id": 2, "name": "CN2", "mode": "Mixed"}],
   "connector_modes": ["RAID", "HBA", "Mixed"]},
  {"family": "M2", "id": 1, "disks": [{"id": 0}]},
  {"family": "VROC_WIN", "id": 0, "disks": [{"id": 0}]}
]})";

std::string WithFaults(const std::string& faults = "") {
    std::string text = kLocal;
    const std::size_t at = text.find("FAULTS");
    text.replace(at, 6, faults.empty() ? std::string() : "\"faults\": " + faults + ",");
    return text;
}

using client_test::Row;
using client_test::Rows;

const std::string kOk = "Success.";
const std::string kPrompt = "This operation will change the status of your disk(s), are you sure "
                            "you want to continue doing change connector mode operation.";

class RaidClientConnectorTest : public ::testing::Test {
protected:
    void SetUp() override {
        std::string error;
        ASSERT_TRUE(Quillon::SetLogDir(dir_.path(), error)) << error;
        option_.output_dir = dir_.path() + "/";
        option_.console_output = true;
        option_.assume_yes = true;
        option_.mode_value = "HBA";
    }
    void TearDown() override { Quillon::RaidConfig::InstallBackendPlatform(nullptr); }

    std::string MachinePath() const { return dir_.File("machine.json"); }

    void UseMachine(const std::string& faults = "") {
        raidcfg_test::WriteFile(MachinePath(), WithFaults(faults));
        std::string error;
        ASSERT_TRUE(sim::SimulatedMachine::Use(MachinePath(), error)) << error;
    }

    std::uint32_t RunChange(RaidClient& client) {
        testing::internal::CaptureStdout();
        const std::uint32_t value = client.ChangeConnectorMode();
        printed_ = testing::internal::GetCapturedStdout();
        return value;
    }

    // The modes of the Microchip controller's connectors, in connector order.
    std::vector<std::string> Modes() const {
        sim::Machine machine;
        std::string error;
        EXPECT_TRUE(sim::MachineStore(MachinePath()).Read(machine, error)) << error;
        std::vector<std::string> modes;
        for (const sim::Controller& controller : machine.controllers) {
            if (controller.family == "MICROCHIP") {
                for (const sim::Connector& connector : controller.connectors) {
                    modes.push_back(connector.mode);
                }
            }
        }
        return modes;
    }

    raidcfg_test::TempDir dir_;
    RaidConfig::RaidConfigOption option_;
    std::string printed_;
};

TEST_F(RaidClientConnectorTest, FlatNumberRoadChangesTheModeOfEachConnector) {
    UseMachine();
    option_.ctrl_index = "2";
    option_.connector_ids = "0,1";
    RaidClient client(option_);
    EXPECT_EQ(RunChange(client), result::Success);
    EXPECT_EQ(Rows(client),
              (std::vector<Row>{{"ctrl2-connector0", kOk, 0}, {"ctrl2-connector1", kOk, 0}}));
    EXPECT_EQ(Modes(), (std::vector<std::string>{"HBA", "HBA", "Mixed"}));
    EXPECT_NE(printed_.find("\nraidconfig change connector mode:\n"), std::string::npos);
    EXPECT_NE(printed_.find("Change connector mode Result"), std::string::npos) << printed_;
}

TEST_F(RaidClientConnectorTest, NamedTargetRoadChangesTheModeOfEachConnector) {
    UseMachine();
    option_.target = "2";
    option_.connector_ids = "2";
    RaidClient client(option_);
    EXPECT_EQ(RunChange(client), result::Success);
    EXPECT_EQ(Rows(client), (std::vector<Row>{{"Connector ID 2", kOk, 0}}));
    EXPECT_EQ(Modes(), (std::vector<std::string>{"RAID", "RAID", "HBA"}));
}

TEST_F(RaidClientConnectorTest, DeclinedPromptChangesNothingAndIsSuccess) {
    UseMachine();
    const std::string before = ReadFile(MachinePath());
    option_.assume_yes = false;
    option_.ctrl_index = "2";
    option_.connector_ids = "0";
    std::istringstream answers("n\n");
    RaidClient client(option_);
    client.SetInput(answers);
    EXPECT_EQ(RunChange(client), result::Success);
    EXPECT_TRUE(client.rows().empty());
    EXPECT_NE(printed_.find(kPrompt), std::string::npos) << printed_;
    EXPECT_EQ(printed_.find("Change connector mode Result"), std::string::npos);
    EXPECT_EQ(ReadFile(MachinePath()), before);
}

TEST_F(RaidClientConnectorTest, RefusedFamilyIsOnlyToldAfterTheUsersYes) {
    UseMachine();
    option_.assume_yes = false;
    option_.ctrl_index = "1";
    option_.connector_ids = "0";
    std::istringstream answers("yes\n");
    RaidClient client(option_);
    client.SetInput(answers);
    EXPECT_EQ(RunChange(client), result::FunctionNotSupported);
    EXPECT_NE(printed_.find(kPrompt), std::string::npos);
    EXPECT_TRUE(client.rows().empty());
}

TEST_F(RaidClientConnectorTest, TargetThatIsNotANumberIsReadAsTheIntegerReadingGives) {
    UseMachine();
    const std::string before = ReadFile(MachinePath());
    option_.connector_ids = "0";
    // A text that is no controller number names no LSI target, so the client numbers no
    // controller; the number read from it is then looked up like any other and not found.
    option_.target = "2nd";
    {
        RaidClient client(option_);
        EXPECT_EQ(RunChange(client),
                  result::RaidResultFromError(Quillon::RaidConfig::RAID_TARGET_NOT_FOUND));
        EXPECT_EQ(Rows(client),
                  (std::vector<Row>{{"ctrl[2]", "The target ctrl[2] does not exist.", 5}}));
    }
    option_.target = "abc";
    RaidClient client(option_);
    RunChange(client);
    EXPECT_EQ(Rows(client),
              (std::vector<Row>{{"ctrl[0]", "The target ctrl[0] does not exist.", 5}}));
    EXPECT_EQ(ReadFile(MachinePath()), before);
}

TEST_F(RaidClientConnectorTest, ModeValueReachesTheBackendInTheUsersLetterCase) {
    UseMachine();
    option_.ctrl_index = "2";
    option_.connector_ids = "0";
    option_.mode_value = "hBa";
    {
        RaidClient client(option_);
        EXPECT_EQ(RunChange(client), result::Success);
    }
    EXPECT_EQ(Modes().front(), "HBA");
    option_.mode_value = "RaId5";
    RaidClient client(option_);
    RunChange(client);
    EXPECT_EQ(Rows(client),
              (std::vector<Row>{
                  {"ctrl2-connector0", "mode \"RaId5\" is not one of RAID, HBA, Mixed", 3}}));
}

TEST_F(RaidClientConnectorTest, ConnectorsGivenOutOfOrderAreServedAscending) {
    UseMachine();
    option_.target = "2";
    option_.connector_ids = "2,1";
    {
        RaidClient client(option_);
        RunChange(client);
        EXPECT_EQ(Rows(client),
                  (std::vector<Row>{{"Connector ID 1", kOk, 0}, {"Connector ID 2", kOk, 0}}));
    }
    option_.target.clear();
    option_.ctrl_index = "2";
    option_.mode_value = "RAID";
    RaidClient client(option_);
    RunChange(client);
    EXPECT_EQ(Rows(client),
              (std::vector<Row>{{"ctrl2-connector1", kOk, 0}, {"ctrl2-connector2", kOk, 0}}));
}

TEST_F(RaidClientConnectorTest, AllOrEmptyConnectorListGivesAnEmptyTableWithoutBackendCall) {
    UseMachine(R"([{"op": "RaidChangeConnectorMode", "code": 3}])");
    const std::string before = ReadFile(MachinePath());
    for (const char* connectors : {"all", ""}) {
        option_.connector_ids = connectors;
        option_.target = "2";
        {
            RaidClient client(option_);
            EXPECT_EQ(RunChange(client), result::Success);
            EXPECT_TRUE(client.rows().empty());
            EXPECT_NE(printed_.find("Change connector mode Result"), std::string::npos);
        }
        option_.target.clear();
        option_.ctrl_index = "2";
        RaidClient client(option_);
        EXPECT_EQ(RunChange(client), result::Success);
        EXPECT_TRUE(client.rows().empty());
    }
    EXPECT_EQ(ReadFile(MachinePath()), before);
}

TEST_F(RaidClientConnectorTest, MissingControllerIsARowWithCodeFiveOnEachRoad) {
    UseMachine();
    option_.connector_ids = "0";
    option_.target = "1"; // the number skipped between the two families
    {
        RaidClient client(option_);
        RunChange(client);
        EXPECT_EQ(Rows(client),
                  (std::vector<Row>{{"ctrl[1]", "The target ctrl[1] does not exist.", 5}}));
    }
    option_.target.clear();
    option_.ctrl_index = "9";
    RaidClient client(option_);
    RunChange(client);
    EXPECT_EQ(Rows(client),
              (std::vector<Row>{{"ctrl9", "The controller ID 9 does not exist.", 5}}));
    EXPECT_NE(printed_.find("Change connector mode Result"), std::string::npos);
}

TEST_F(RaidClientConnectorTest, MissingConnectorHasTheWordsOfItsRoad) {
    UseMachine();
    option_.connector_ids = "7";
    option_.target = "2";
    {
        RaidClient client(option_);
        RunChange(client);
        EXPECT_EQ(
            Rows(client),
            (std::vector<Row>{{"Connector ID 7", "The target Connector ID 7 does not exist.", 5}}));
    }
    option_.target.clear();
    option_.ctrl_index = "2";
    RaidClient client(option_);
    RunChange(client);
    EXPECT_EQ(Rows(client),
              (std::vector<Row>{{"ctrl2-connector7", "The connector ID 7 does not exist.", 5}}));
}

TEST_F(RaidClientConnectorTest, LsiOnTheTargetRoadAndEveryOtherFamilyOnTheIndexRoadAreRefused) {
    UseMachine();
    const std::string before = ReadFile(MachinePath());
    option_.connector_ids = "0";
    option_.target = "0";
    {
        RaidClient client(option_);
        EXPECT_EQ(RunChange(client), result::FunctionNotSupported);
        EXPECT_TRUE(client.rows().empty());
    }
    option_.target.clear();
    for (const char* index : {"1", "3", "4"}) {
        option_.ctrl_index = index;
        RaidClient client(option_);
        EXPECT_EQ(RunChange(client), result::FunctionNotSupported) << index;
        EXPECT_TRUE(client.rows().empty());
    }
    EXPECT_EQ(ReadFile(MachinePath()), before);
}

TEST_F(RaidClientConnectorTest, FaultOnOneConnectorOfSeveralLetsTheOthersGoOn) {
    UseMachine(
        R"([{"op": "RaidChangeConnectorMode", "arg": "1", "code": 3, "error_text": "busy"}])");
    option_.ctrl_index = "2";
    option_.connector_ids = "0,1,2";
    RaidClient client(option_);
    const std::uint32_t value = RunChange(client);
    EXPECT_EQ(value, result::RaidFailsOnSomeTargets);
    EXPECT_EQ(TesselResult(value).message(), "The operation fails on some targets.");
    EXPECT_EQ(Rows(client), (std::vector<Row>{{"ctrl2-connector0", kOk, 0},
                                              {"ctrl2-connector1", "busy", 3},
                                              {"ctrl2-connector2", kOk, 0}}));
    EXPECT_EQ(Modes(), (std::vector<std::string>{"HBA", "RAID", "HBA"}));
}

TEST_F(RaidClientConnectorTest, FaultOnEveryConnectorFailsOnAllAndChangesNothing) {
    UseMachine(R"([{"op": "RaidChangeConnectorMode", "code": 3, "error_text": "busy"}])");
    const std::string before = ReadFile(MachinePath());
    option_.target = "2";
    option_.connector_ids = "0,1";
    RaidClient client(option_);
    EXPECT_EQ(RunChange(client), result::RaidFailsOnAllTargets);
    EXPECT_EQ(Rows(client),
              (std::vector<Row>{{"Connector ID 0", "busy", 3}, {"Connector ID 1", "busy", 3}}));
    EXPECT_EQ(ReadFile(MachinePath()), before);
}

// --- The handler's roads ---

class ConnectorHandlerTest : public RaidClientConnectorTest {
protected:
    TesselResult Run() {
        option_.command = "changemode";
        service::detail::ServiceRaidImpl impl(option_);
        testing::internal::CaptureStdout();
        TesselResult outcome = impl.Run();
        printed_ = testing::internal::GetCapturedStdout();
        results_ = impl.results();
        return outcome;
    }
    std::map<std::string, std::string> results_;
};

TEST_F(ConnectorHandlerTest, ServesBothRoadsLocallyAndWritesNoPage) {
    UseMachine();
    option_.ctrl_index = "2";
    option_.connector_ids = "0";
    EXPECT_EQ(Run().value(), result::Success);
    EXPECT_EQ(results_, (std::map<std::string, std::string>{{"ctrl2-connector0", kOk}}));
    option_.ctrl_index.clear();
    option_.target = "2";
    option_.connector_ids = "1";
    EXPECT_EQ(Run().value(), result::Success);
    EXPECT_EQ(results_, (std::map<std::string, std::string>{{"Connector ID 1", kOk}}));
    EXPECT_EQ(Modes(), (std::vector<std::string>{"HBA", "HBA", "Mixed"}));
    EXPECT_FALSE(FileExists(dir_.File("raid_result.html")));
}

TEST_F(ConnectorHandlerTest, CfcIsRefusedAndChangesNothing) {
    UseMachine();
    const std::string before = ReadFile(MachinePath());
    option_.ctrl_index = "2";
    option_.connector_ids = "0";
    option_.cfc = true;
    EXPECT_EQ(Run().value(), result::FunctionNotSupported);
    EXPECT_EQ(ReadFile(MachinePath()), before);
}

} // namespace
