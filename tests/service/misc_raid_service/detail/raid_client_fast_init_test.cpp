// The fast initialisation action on a simulated machine: out-of-band LSI volumes by target and by
// flat number, "all" through the backend's volume list, the refusals and the handler's roads.
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
#include "sim/simulated_machine.hpp"
#include "tests/service/misc_raid_service/detail/client_rows.hpp"
#include "tests/support/file_text.hpp"
#include "tests/support/temp_dir.hpp"

#include <gtest/gtest.h>

namespace {

using raidcfg_test::ReadFile;
using service::detail::RaidClient;

// LSI 3 with volumes 0, 1 and 2 and LSI 1 without volumes under 1 and 2, Microchip 5 under 3.
const char* const kOob = R"({"controllers": [
  {"family": "OOB_LSI", "id": 3,
   "disks": [{"id": 0, "state": "Online", "capacity_mb": 1000},
             {"id": 1, "state": "Online", "capacity_mb": 1000},
             {"id": 2, "state": "Online", "capacity_mb": 1000}],
   "volumes": [{"id": 0, "name": "a", "raid_level": "0", "spans": [[0]], "size_mb": 1000},
               {"id": 1, "name": "b", "raid_level": "0", "spans": [[1]], "size_mb": 1000},
               {"id": 2, "name": "c", "raid_level": "0", "spans": [[2]], "size_mb": 1000}]},
  {"family": "OOB_LSI", "id": 1, "disks": [{"id": 0, "capacity_mb": 1000}]},
  {"family": "OOB_MICROCHIP", "id": 5,
   "disks": [{"id": 0, "state": "Online", "capacity_mb": 1000}],
   "volumes": [{"id": 0, "name": "m", "raid_level": "0", "spans": [[0]], "size_mb": 1000}]}
]})";

const std::string kPrompt = "Are you sure you want to continue doing fast init operation.";

using client_test::Row;
using client_test::Rows;

class RaidClientFastInitTest : public ::testing::Test {
protected:
    void SetUp() override {
        std::string error;
        ASSERT_TRUE(Quillon::SetLogDir(dir_.path(), error)) << error;
        option_.output_dir = dir_.path() + "/";
        option_.console_output = true;
        option_.assume_yes = true;
        option_.connect_option.kind = 2;
        option_.connect_option.target = "admin:secret@sim";
        option_.connect_option.user = "admin";
        option_.connect_option.password = "secret";
    }
    void TearDown() override { Quillon::RaidConfig::InstallBackendPlatform(nullptr); }

    std::string MachinePath() const { return dir_.File("machine.json"); }

    void UseMachine(const std::string& json) {
        raidcfg_test::WriteFile(MachinePath(), json);
        std::string error;
        ASSERT_TRUE(sim::SimulatedMachine::Use(MachinePath(), error)) << error;
    }
    QuillonConnection::ConnectionInfo Connection() const {
        QuillonConnection::ConnectionInfo info;
        TesselConnect::GetRESTConnection(option_.connect_option, info);
        return info;
    }

    std::uint32_t RunFastInit(RaidClient& client) {
        testing::internal::CaptureStdout();
        const std::uint32_t value = client.FastInit();
        printed_ = testing::internal::GetCapturedStdout();
        return value;
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

TEST_F(RaidClientFastInitTest, NamedVolumesOfATargetStartAndPrintTheTable) {
    UseMachine(kOob);
    option_.target = "3";
    option_.volume_ids = "2,0";
    RaidClient client(option_, Connection());
    EXPECT_EQ(RunFastInit(client), result::Success);
    EXPECT_EQ(Rows(client),
              (std::vector<Row>{{"vol[3-0]", "Success.", 0}, {"vol[3-2]", "Success.", 0}}));
    EXPECT_EQ(printed_.rfind("\nraidconfig fast init:\n", 0), 0U) << printed_;
    EXPECT_NE(printed_.find("Fast Init Result"), std::string::npos) << printed_;
}

TEST_F(RaidClientFastInitTest, VolumesAllTakesEveryVolumeTheBackendLists) {
    UseMachine(kOob);
    option_.target = "3";
    option_.volume_ids = "all";
    RaidClient client(option_, Connection());
    EXPECT_EQ(RunFastInit(client), result::Success);
    EXPECT_EQ(Rows(client), (std::vector<Row>{{"vol[3-0]", "Success.", 0},
                                              {"vol[3-1]", "Success.", 0},
                                              {"vol[3-2]", "Success.", 0}}));
}

TEST_F(RaidClientFastInitTest, AFailingVolumeListEndsInNoVolumesWithoutItsCodeOrText) {
    UseMachine(WithFaults(kOob, R"("family": "OOB_LSI", "id": 3,)",
                          R"([{"op": "GetAllVolumes", "code": 3, "error_text": "list failed"}])"));
    option_.target = "3";
    RaidClient client(option_, Connection());
    EXPECT_EQ(RunFastInit(client), result::RaidNoVolumes);
    EXPECT_TRUE(client.rows().empty());
    EXPECT_EQ(printed_.find("list failed"), std::string::npos) << printed_;
    EXPECT_EQ(printed_.find("Fast Init Result"), std::string::npos) << printed_;
}

TEST_F(RaidClientFastInitTest, AControllerWithoutVolumesIsNoVolumes) {
    UseMachine(kOob);
    option_.ctrl_index = "2";
    RaidClient client(option_, Connection());
    EXPECT_EQ(RunFastInit(client), result::RaidNoVolumes);
    EXPECT_TRUE(client.rows().empty());
}

TEST_F(RaidClientFastInitTest, AnIndexOfFamily7IsNotSupportedBeforeThePrompt) {
    UseMachine(kOob);
    option_.assume_yes = false;
    option_.ctrl_index = "3";
    std::istringstream answers("y\n");
    RaidClient client(option_, Connection());
    client.SetInput(answers);
    EXPECT_EQ(RunFastInit(client), result::FunctionNotSupported);
    EXPECT_EQ(printed_.find(kPrompt), std::string::npos) << printed_;
    EXPECT_TRUE(client.rows().empty());
}

TEST_F(RaidClientFastInitTest, ATargetThatIsNotOneNumberIsNotSupportedBeforeThePrompt) {
    UseMachine(kOob);
    option_.assume_yes = false;
    for (const char* target : {"1,3", "all", "m2-6"}) {
        option_.target = target;
        std::istringstream answers("y\n");
        RaidClient client(option_, Connection());
        client.SetInput(answers);
        EXPECT_EQ(RunFastInit(client), result::FunctionNotSupported) << target;
        EXPECT_EQ(printed_.find(kPrompt), std::string::npos) << printed_;
        EXPECT_TRUE(client.rows().empty());
    }
}

TEST_F(RaidClientFastInitTest, IndexRoadNamesVolumesByTheFlatNumber) {
    UseMachine(kOob);
    option_.assume_yes = false;
    option_.ctrl_index = "1";
    option_.volume_ids = "1,5";
    std::istringstream answers("y\n");
    RaidClient client(option_, Connection());
    client.SetInput(answers);
    const std::uint32_t value = RunFastInit(client);
    EXPECT_EQ(value, result::RaidFailsOnSomeTargets);
    EXPECT_EQ(TesselResult(value).message(), "The operation fails on some targets.");
    EXPECT_NE(printed_.find(kPrompt + "\nPlease type yes(y) or no(n):\n"), std::string::npos)
        << printed_;
    EXPECT_EQ(Rows(client),
              (std::vector<Row>{{"ctrl1-vol1", "Success.", 0},
                                {"ctrl1-vol5", "The volume ID 5 does not exist.", 5}}));
}

TEST_F(RaidClientFastInitTest, AMissingIndexIsARowWithoutAPrompt) {
    UseMachine(kOob);
    option_.assume_yes = false;
    option_.ctrl_index = "9";
    RaidClient client(option_, Connection());
    const std::uint32_t value = RunFastInit(client);
    EXPECT_EQ(value, result::RaidTargetNotExist);
    EXPECT_EQ(Rows(client),
              (std::vector<Row>{{"ctrl9", "The controller ID 9 does not exist.", 5}}));
    EXPECT_EQ(printed_.find(kPrompt), std::string::npos) << printed_;
}

TEST_F(RaidClientFastInitTest, AMissingVolumeOfATargetIsATargetThatDoesNotExist) {
    UseMachine(kOob);
    option_.target = "3";
    option_.volume_ids = "7";
    RaidClient client(option_, Connection());
    EXPECT_EQ(RunFastInit(client), result::RaidTargetNotExist);
    EXPECT_EQ(Rows(client),
              (std::vector<Row>{{"vol[3-7]", "The target vol[3-7] does not exist.", 5}}));
}

TEST_F(RaidClientFastInitTest, DecliningChangesNothing) {
    UseMachine(kOob);
    option_.assume_yes = false;
    option_.target = "3";
    const std::string before = ReadFile(MachinePath());
    std::istringstream answers("n\n");
    RaidClient client(option_, Connection());
    client.SetInput(answers);
    EXPECT_EQ(RunFastInit(client), result::Success);
    EXPECT_NE(printed_.find(kPrompt), std::string::npos) << printed_;
    EXPECT_TRUE(client.rows().empty());
    EXPECT_EQ(ReadFile(MachinePath()), before);
}

TEST_F(RaidClientFastInitTest, OneFailingVolumeOfSeveralLeavesItsRowAndTheOthersStart) {
    UseMachine(WithFaults(kOob, R"("family": "OOB_LSI", "id": 3,)",
                          R"([{"op": "FastInit", "arg": "1", "code": 3, "error_text": "busy"}])"));
    option_.target = "3";
    RaidClient client(option_, Connection());
    const std::uint32_t value = RunFastInit(client);
    EXPECT_EQ(value, result::RaidFailsOnSomeTargets);
    EXPECT_EQ(TesselResult(value).message(), "The operation fails on some targets.");
    EXPECT_EQ(Rows(client), (std::vector<Row>{{"vol[3-0]", "Success.", 0},
                                              {"vol[3-1]", "busy", 3},
                                              {"vol[3-2]", "Success.", 0}}));
}

TEST_F(RaidClientFastInitTest, EveryVolumeFailingIsAFailureOnAllTargets) {
    UseMachine(WithFaults(kOob, R"("family": "OOB_LSI", "id": 3,)",
                          R"([{"op": "FastInit", "code": 3, "error_text": "busy"}])"));
    option_.ctrl_index = "1";
    option_.volume_ids = "0,2";
    RaidClient client(option_, Connection());
    const std::uint32_t value = RunFastInit(client);
    EXPECT_EQ(value, result::RaidFailsOnAllTargets);
    EXPECT_EQ(TesselResult(value).message(), "The operation fails on all targets.");
    EXPECT_EQ(Rows(client),
              (std::vector<Row>{{"ctrl1-vol0", "busy", 3}, {"ctrl1-vol2", "busy", 3}}));
}

TEST_F(RaidClientFastInitTest, HandlerConnectsThroughSshAndWritesThePage) {
    UseMachine(std::string(kOob).insert(1, R"("bmc": {"rest": false}, )"));
    option_.command = "init";
    option_.target = "3";
    testing::internal::CaptureStdout();
    const TesselResult outcome = service::detail::ServiceRaidImpl(option_).Run();
    testing::internal::GetCapturedStdout();
    EXPECT_EQ(outcome.value(), result::Success);
    EXPECT_NE(ReadFile(dir_.File("raid_result.xml")).find("<DEVICE>vol[3-2]</DEVICE>"),
              std::string::npos);
    EXPECT_NE(ReadFile(dir_.File("raid_result.html")).find("RaidConfig Init"), std::string::npos);
}

TEST_F(RaidClientFastInitTest, HandlerEndsWithTheConnectionsCodeWhenSshFails) {
    UseMachine(std::string(kOob).insert(1, R"("bmc": {"ssh": false}, )"));
    option_.command = "init";
    option_.target = "3";
    EXPECT_EQ(service::detail::ServiceRaidImpl(option_).Run().value(), result::ConnectionFailed);
}

} // namespace
