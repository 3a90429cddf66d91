// The action handlers on their three roads, over a simulated machine.
#include "backend/backend_platform.hpp"
#include "collaborators/log.hpp"
#include "result/raid_error_code.hpp"
#include "result/result_values.hpp"
#include "service/misc_raid_service/detail/service_raid_impl.hpp"
#include "sim/simulated_machine.hpp"
#include "tests/support/file_text.hpp"
#include "tests/support/temp_dir.hpp"

#include <gtest/gtest.h>

namespace {

using raidcfg_test::FileExists;
using raidcfg_test::ReadFile;
using service::detail::ServiceRaidImpl;

const char* const kMachine = R"({
  "controllers": [
    {"family": "LSI", "id": 0, "product_name": "RAID 9600-8i",
     "disks": [{"id": 0, "state": "Online", "capacity_mb": 1000},
               {"id": 1, "state": "Online", "capacity_mb": 1000}],
     "volumes": [{"id": 0, "name": "os", "raid_level": "1", "spans": [[0, 1]], "size_mb": 1000}]},
    {"family": "OOB_LSI", "id": 0, "product_name": "RAID 9600-16i",
     "disks": [{"id": 0, "capacity_mb": 1000}]},
    {"family": "OOB_CFC", "id": 0, "vendor": "Broadcom", "product_name": "RAID 945-8i",
     "disks": [{"id": 0, "capacity_mb": 1000}]}
  ]
})";

class HandlersTest : public ::testing::Test {
protected:
    void SetUp() override {
        std::string error;
        ASSERT_TRUE(Quillon::SetLogDir(dir_.path(), error)) << error;
        raidcfg_test::WriteFile(dir_.File("machine.json"), kMachine);
        ASSERT_TRUE(sim::SimulatedMachine::Use(dir_.File("machine.json"), error)) << error;
        option_.output_dir = dir_.path() + "/";
        option_.console_output = false;
    }
    void TearDown() override { Quillon::RaidConfig::InstallBackendPlatform(nullptr); }

    // The same machine with another BMC section.
    void UseBmc(const std::string& bmc) {
        std::string text = kMachine;
        text.insert(1, "\n  \"bmc\": " + bmc + ",");
        raidcfg_test::WriteFile(dir_.File("machine.json"), text);
        std::string error;
        ASSERT_TRUE(sim::SimulatedMachine::Use(dir_.File("machine.json"), error)) << error;
    }

    void OutOfBand(const std::string& password = "secret") {
        option_.connect_option.kind = 2;
        option_.connect_option.target = "admin:" + password + "@sim";
        option_.connect_option.user = "admin";
        option_.connect_option.password = password;
    }

    TesselResult Run(const std::string& word) {
        option_.command = word;
        ServiceRaidImpl impl(option_);
        return impl.Run();
    }

    raidcfg_test::TempDir dir_;
    RaidConfig::RaidConfigOption option_;
};

TEST_F(HandlersTest, InitWithoutAManagementControllerConnectionIsNotSupported) {
    EXPECT_EQ(Run("init").value(), result::FunctionNotSupported);
    option_.target = "0";
    EXPECT_EQ(Run("init").message(), "Function is not supported on target system.");
}

TEST_F(HandlersTest, ChangemodeOutOfBandIsNotSupported) {
    OutOfBand();
    EXPECT_EQ(Run("changemode").code(), 25);
}

TEST_F(HandlersTest, ChangemodeOnACfcSystemIsNotSupportedOnEveryRoad) {
    option_.cfc = true;
    EXPECT_EQ(Run("changemode").code(), 25);
    OutOfBand();
    EXPECT_EQ(Run("changemode").code(), 25);
}

TEST_F(HandlersTest, DiskActionsAndInitOutOfBandOnACfcSystemAreRefused) {
    OutOfBand();
    option_.cfc = true;
    for (const char* word : {"makegood", "makejbod", "addhsp", "rmhsp", "init"}) {
        EXPECT_EQ(Run(word).code(), 25) << word;
    }
}

TEST_F(HandlersTest, EkmInBandWithoutCredentialsAsksForThemAndTriesNoConnection) {
    testing::internal::CaptureStdout();
    const TesselResult outcome = Run("ekm");
    const std::string printed = testing::internal::GetCapturedStdout();
    EXPECT_EQ(outcome.code(), 5);
    EXPECT_EQ(printed, "Please specify bmc username and bmc password\n");
    EXPECT_NE(
        ReadFile(dir_.File("raidcfg.log")).find("Please specify bmc username and bmc password"),
        std::string::npos);
}

TEST_F(HandlersTest, EkmOutOfBandWithAnUnreachableRestListAnswersSixty) {
    OutOfBand();
    UseBmc(R"({"rest_connections": 0})");
    EXPECT_EQ(Run("ekm").value(), result::RestDataFailed);
    UseBmc(R"({"rest": false})");
    EXPECT_EQ(Run("ekm").value(), result::RestDataFailed);
    EXPECT_EQ(Run("fwdeviceorder").value(), result::RestDataFailed);
    EXPECT_EQ(Run("envol").value(), result::RestDataFailed);
}

TEST_F(HandlersTest, EkmInBandAnswersWithTheListCallsOwnValue) {
    option_.connect_option.user = "admin";
    option_.connect_option.password = "secret";
    UseBmc(R"({"rest": false})");
    EXPECT_EQ(Run("ekm").value(), result::ConnectionFailed);
    // An empty list with success ends the action with success and nothing done.
    UseBmc(R"({"rest_connections": 0})");
    EXPECT_EQ(Run("ekm").value(), result::Success);
    EXPECT_EQ(Run("envol").value(), result::Success);
}

TEST_F(HandlersTest, EnvolWithAnotherWordThanEnableAnswers104AfterConnecting) {
    OutOfBand();
    option_.mode_value = "disable";
    const TesselResult refused = Run("envol");
    EXPECT_EQ(refused.code(), 104);
    EXPECT_EQ(refused.message(),
              "Tessel can only enable Volume Encryption, cannot perform other operations.");
    OutOfBand("wrong"); // the connection comes first
    EXPECT_EQ(Run("envol").code(), 12);
    OutOfBand();
    // Any letter case enables; without --ctrl the change answers for controller -1.
    option_.mode_value = "ENABLE";
    EXPECT_EQ(Run("envol").value(),
              result::RaidResultFromError(Quillon::RaidConfig::RAID_TARGET_NOT_FOUND));
    EXPECT_NE(ReadFile(dir_.File("raid_result.xml")).find("<DEVICE>ctrl-1</DEVICE>"),
              std::string::npos);
}

TEST_F(HandlersTest, FirmwareOrderKeyManagementAndEncryptionAreServedOnBothRoads) {
    // Neither LSI controller of this machine has a firmware device order or key management.
    EXPECT_EQ(Run("fwdeviceorder").value(), result::RaidNoFwDeviceOrderController);
    option_.target = "0"; // a target does not lead to the in-band driver for this word
    EXPECT_EQ(Run("fwdeviceorder").value(), result::RaidNoFwDeviceOrderController);
    option_.target.clear();
    option_.connect_option.user = "admin";
    option_.connect_option.password = "secret";
    EXPECT_EQ(Run("envol").value(), result::RaidNoVolumes);
    OutOfBand();
    EXPECT_EQ(Run("fwdeviceorder").value(), result::RaidNoFwDeviceOrderController);
    EXPECT_EQ(Run("envol").value(), result::RaidNoVolumes);
    const TesselResult ekm = Run("ekm");
    EXPECT_EQ(ekm.value(),
              result::RaidResultFromError(Quillon::RaidConfig::RAID_DEVICE_UNSUPPORTED));
    const std::string xml = ReadFile(dir_.File("raid_result.xml"));
    EXPECT_NE(xml.find("<RESULT>the controller has no key management</RESULT>"), std::string::npos)
        << xml;
    // None of the three writes a result page.
    EXPECT_FALSE(FileExists(dir_.File("raid_result.html")));
}

TEST_F(HandlersTest, ShowOnTheLocalRoadTakesItsRowsAndWritesNoPage) {
    const TesselResult outcome = Run("show");
    EXPECT_EQ(outcome.value(), result::Success);
    const std::string xml = ReadFile(dir_.File("raid_result.xml"));
    EXPECT_NE(xml.find("<DEVICE>ctrl1</DEVICE>"), std::string::npos) << xml;
    EXPECT_NE(xml.find("<RESULT>Success.</RESULT>"), std::string::npos) << xml;
    EXPECT_TRUE(FileExists(dir_.File("raid_show_result.xml")));
    EXPECT_FALSE(FileExists(dir_.File("raid_result.html")));
}

TEST_F(HandlersTest, InBandActionsWithATargetTakeTheInBandDriversRows) {
    option_.target = "0";
    option_.assume_yes = true;
    testing::internal::CaptureStdout();
    const TesselResult shown = Run("show");
    const std::string printed = testing::internal::GetCapturedStdout();
    EXPECT_EQ(shown.value(), result::Success);
    EXPECT_NE(printed.find("\nraidconfig show:"), std::string::npos) << printed;
    std::string xml = ReadFile(dir_.File("raid_result.xml"));
    EXPECT_NE(xml.find("<DEVICE>ctrl[0]</DEVICE>"), std::string::npos) << xml;
    EXPECT_FALSE(FileExists(dir_.File("raid_result.html")));

    option_.volume_ids = "0";
    testing::internal::CaptureStdout();
    EXPECT_EQ(Run("clear").value(), result::Success);
    option_.volume_ids.clear();
    option_.disk_ids = "0";
    EXPECT_EQ(Run("addhsp").value(), result::Success);
    option_.policy_file = dir_.File("saved.ini");
    EXPECT_EQ(Run("save").value(), result::Success);
    EXPECT_EQ(Run("rmhsp").value(), result::Success);
    EXPECT_EQ(Run("add").value(), result::Success);
    testing::internal::GetCapturedStdout();
    EXPECT_EQ(ReadFile(dir_.File("saved.ini")), "[ctrl1]\n    global_hot_spares=0\n\n");
    xml = ReadFile(dir_.File("raid_result.xml"));
    EXPECT_NE(xml.find("<DEVICE>disk[0-0]</DEVICE>"), std::string::npos) << xml;
}

TEST_F(HandlersTest, ShowOutOfBandWritesTheResultPage) {
    OutOfBand();
    EXPECT_EQ(Run("show").value(), result::Success);
    const std::string page = ReadFile(dir_.File("raid_result.html"));
    EXPECT_NE(page.find("RaidConfig Show"), std::string::npos);
    EXPECT_NE(page.find("RAID 9600-16i"), std::string::npos);
    EXPECT_EQ(page.find("RAID 945-8i"), std::string::npos); // the CFC system is not this one
}

TEST_F(HandlersTest, ShowOutOfBandOnACfcSystemShowsTheCfcControllersOnly) {
    OutOfBand();
    option_.cfc = true;
    EXPECT_EQ(Run("show").value(), result::Success);
    const std::string page = ReadFile(dir_.File("raid_result.html"));
    EXPECT_NE(page.find("RAID 945-8i"), std::string::npos);
    EXPECT_EQ(page.find("RAID 9600-16i"), std::string::npos);
}

TEST_F(HandlersTest, AFailingConnectionEndsTheHandlerWithItsBareCode) {
    OutOfBand("wrong");
    const TesselResult outcome = Run("show");
    EXPECT_EQ(outcome.value(), result::AuthenticationFailed);
    EXPECT_EQ(outcome.message(), "Authentication failed.");
    EXPECT_FALSE(FileExists(dir_.File("raid_result.html")));
    EXPECT_TRUE(FileExists(dir_.File("raid_result.xml")));
}

// A connection library that fails with a value of the RAID family.
class FamilyFailurePlatform : public Quillon::RaidConfig::BackendPlatform {
public:
    TesselResult FetchConnection(Channel /*channel*/,
                                 const TesselConnect::ConnectOption& /*option*/,
                                 QuillonConnection::ConnectionInfo& /*connection*/) override {
        return TesselResult(result::RaidNoControllers);
    }
};

TEST_F(HandlersTest, AConnectionResultOfAFamilyReachesTheUserWithCategoryZero) {
    Quillon::RaidConfig::InstallBackendPlatform(std::make_shared<FamilyFailurePlatform>());
    OutOfBand();
    const TesselResult outcome = Run("show");
    EXPECT_EQ(outcome.value(), 118U);
    EXPECT_EQ(outcome.message(), "Unknow error"); // code 118 has no generic message
}

TEST_F(HandlersTest, ShowResultTextComesFromTheLocalClientEvenWithATarget) {
    option_.target = "hw";
    ServiceRaidImpl impl(option_);
    const std::string text = impl.GetRaidShowResult();
    // With a target the index map is empty, so nothing is collected.
    EXPECT_EQ(text, "");
    option_.target.clear();
    ServiceRaidImpl local(option_);
    EXPECT_NE(local.GetRaidShowResult().find("RAID 9600-8i"), std::string::npos);
    EXPECT_FALSE(FileExists(dir_.File("raid_show_result.xml")));
}

TEST_F(HandlersTest, ShowResultTextOutOfBandIsEmptyWhenTheConnectionFails) {
    OutOfBand("wrong");
    ServiceRaidImpl impl(option_);
    EXPECT_EQ(impl.GetRaidShowResult(), "");
}

} // namespace
