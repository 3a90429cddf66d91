// The client's construction, index maps, per-index dispatch, labels and confirmation, on a
// simulated machine with controllers of every family.
#include <map>
#include <memory>
#include <sstream>
#include <stdexcept>
#include <string>
#include <tuple>
#include <vector>

#include "backend/backend_platform.hpp"
#include "backend/hw_raid_arcconf.hpp"
#include "backend/hw_raid_storcli.hpp"
#include "collaborators/log.hpp"
#include "collaborators/tessel_connect.hpp"
#include "result/result_values.hpp"
#include "service/misc_raid_service/detail/raid_client.hpp"
#include "sim/simulated_machine.hpp"
#include "tests/support/file_text.hpp"
#include "tests/support/temp_dir.hpp"

#include <gtest/gtest.h>

namespace {

using Quillon::RaidConfig::RaidErrorCode;
using Quillon::RaidConfig::RaidTarget;
using raidcfg_test::ReadFile;
using service::detail::RaidClient;
using service::detail::RaidIndex;

// Controllers of all nine families. Ids differ from their places, so that a number that equals
// an id proves nothing by accident; file order is the order a family lists them in.
const char* const kEveryFamily = R"({"persist": false, "controllers": [
  {"family": "LSI", "id": 4, "disks": []},
  {"family": "LSI", "id": 7, "disks": []},
  {"family": "MICROCHIP", "id": 2, "disks": []},
  {"family": "M2", "id": 1, "disks": []},
  {"family": "VROC_WIN", "id": 0, "disks": []},
  {"family": "OOB_LSI", "id": 3, "disks": []},
  {"family": "OOB_LSI", "id": 1, "disks": []},
  {"family": "OOB_CFC", "id": 0, "vendor": "Broadcom", "disks": []},
  {"family": "OOB_CFC", "id": 1, "vendor": "Microchip", "disks": []},
  {"family": "OOB_CFC", "id": 2, "vendor": "Marvell", "disks": []},
  {"family": "OOB_M2", "id": 6, "disks": []},
  {"family": "OOB_MICROCHIP", "id": 5, "disks": []},
  {"family": "OOB_VROC", "id": 8, "disks": []}
]})";

// One map entry as key, index, id and family, so that a whole map compares in one line.
using Entry = std::tuple<int, int, int, int>;

std::vector<Entry> Entries(const std::map<int, RaidIndex>& map) {
    std::vector<Entry> entries;
    for (const auto& [key, record] : map) {
        entries.emplace_back(key, record.index, record.id, static_cast<int>(record.type));
        EXPECT_NE(record.backend, nullptr) << "key " << key;
    }
    return entries;
}

template <typename Function> std::vector<int> Keys(const std::map<int, Function>& map) {
    std::vector<int> keys;
    for (const auto& entry : map) {
        keys.push_back(entry.first);
        EXPECT_TRUE(entry.second) << "family " << entry.first;
    }
    return keys;
}

std::vector<int> BackendKeys(const RaidClient& client) {
    std::vector<int> keys;
    for (const auto& entry : client.backends()) {
        keys.push_back(entry.first);
    }
    return keys;
}

class RaidClientTest : public ::testing::Test {
protected:
    void SetUp() override {
        std::string error;
        ASSERT_TRUE(Quillon::SetLogDir(dir_.path(), error)) << error;
        option_.output_dir = dir_.path() + "/";
        option_.console_output = false;
    }
    void TearDown() override { Quillon::RaidConfig::InstallBackendPlatform(nullptr); }

    void UseMachine(const std::string& json) {
        raidcfg_test::WriteFile(dir_.File("machine.json"), json);
        std::string error;
        ASSERT_TRUE(sim::SimulatedMachine::Use(dir_.File("machine.json"), error)) << error;
    }

    // The option record of an out-of-band run with the machine's credentials.
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

    std::string LogText() const { return ReadFile(dir_.File("raidcfg.log")); }

    raidcfg_test::TempDir dir_;
    RaidConfig::RaidConfigOption option_;
};

// --- Construction ---

TEST_F(RaidClientTest, LocalClientNumbersLsiThenMicrochipThenM2ThenSoftwareRaid) {
    UseMachine(kEveryFamily);
    const RaidClient client(option_);
    EXPECT_TRUE(client.local());
    EXPECT_EQ(client.result_page(), nullptr);
    EXPECT_EQ(client.target_index(), -1);
    EXPECT_TRUE(client.targets().empty());
    EXPECT_TRUE(client.backends().empty());
    EXPECT_EQ(client.redfish_helper(), nullptr);
    EXPECT_EQ(
        Entries(client.index_map()),
        (std::vector<Entry>{{1, 1, 4, 0}, {2, 2, 7, 0}, {3, 3, 2, 1}, {4, 4, 1, 2}, {5, 5, 0, 3}}));
}

TEST_F(RaidClientTest, OutOfBandNumbersLsiFirstThenMicrochipVrocAndM2) {
    UseMachine(kEveryFamily);
    OutOfBand();
    const RaidClient client(option_, Connection());
    EXPECT_FALSE(client.local());
    EXPECT_EQ(
        Entries(client.index_map()),
        (std::vector<Entry>{{1, 1, 3, 4}, {2, 2, 1, 4}, {3, 3, 5, 7}, {4, 4, 8, 8}, {5, 5, 6, 6}}));
    EXPECT_TRUE(client.lsi_microchip_index_map().empty());
}

TEST_F(RaidClientTest, CfcWithoutTargetProducesAnIndexMapOfFamilyFiveOnly) {
    UseMachine(kEveryFamily);
    OutOfBand();
    option_.cfc = true;
    const RaidClient client(option_, Connection());
    EXPECT_EQ(Entries(client.index_map()),
              (std::vector<Entry>{{1, 1, 0, 5}, {2, 2, 1, 5}, {3, 3, 2, 5}}));
}

TEST_F(RaidClientTest, EachFamilyOfTheIndexMapSharesOneBackendObject) {
    UseMachine(kEveryFamily);
    const RaidClient client(option_);
    const auto& map = client.index_map();
    EXPECT_EQ(map.at(1).backend, map.at(2).backend);
    EXPECT_NE(map.at(2).backend, map.at(3).backend);
}

TEST_F(RaidClientTest, ConnectionClientMakesItsPageOnRaidResultHtml) {
    UseMachine(kEveryFamily);
    OutOfBand();
    const RaidClient client(option_, Connection());
    ASSERT_NE(client.result_page(), nullptr);
    EXPECT_EQ(client.result_page()->GetSaveDir(), dir_.path());
    // The page writer titles a new page after its file.
    EXPECT_EQ(client.result_page()->GetPageTitle(), "raid_result");
}

TEST_F(RaidClientTest, CtrlIndexIsParsedIntoTheTargetIndex) {
    UseMachine(kEveryFamily);
    option_.ctrl_index = "3";
    EXPECT_EQ(RaidClient(option_).target_index(), 3);
    OutOfBand();
    EXPECT_EQ(RaidClient(option_, Connection()).target_index(), 3);
}

TEST_F(RaidClientTest, CtrlIndexIsIgnoredIfTargetIsSet) {
    UseMachine(kEveryFamily);
    option_.ctrl_index = "2";
    option_.target = "all";
    const RaidClient local(option_);
    EXPECT_EQ(local.target_index(), -1);
    EXPECT_TRUE(local.index_map().empty());
    OutOfBand();
    const RaidClient remote(option_, Connection());
    EXPECT_EQ(remote.target_index(), -1);
    EXPECT_TRUE(remote.index_map().empty());
}

TEST_F(RaidClientTest, LocalTargetOfLsiGetsItsBackendAndTheLsiMicrochipMap) {
    UseMachine(kEveryFamily);
    option_.target = "all";
    const RaidClient client(option_);
    ASSERT_EQ(client.targets().size(), 3U);
    EXPECT_EQ(BackendKeys(client), std::vector<int>{0});
    EXPECT_NE(std::dynamic_pointer_cast<Quillon::RaidConfig::HWRaidStorcli>(
                  client.GetRaidBackend(RaidTarget::LSI)),
              nullptr);
    EXPECT_EQ(Entries(client.lsi_microchip_index_map()),
              (std::vector<Entry>{{0, 0, 4, 0}, {1, 1, 7, 0}, {3, 3, 2, 1}}));
}

TEST_F(RaidClientTest, LocalTargetsOfM2AndSoftwareRaidMeetTheMapsOutOfRangeError) {
    UseMachine(kEveryFamily);
    option_.target = "all";
    const RaidClient client(option_);
    for (const RaidTarget::Type type : {RaidTarget::M2, RaidTarget::VROC_WIN}) {
        try {
            client.GetRaidBackend(type);
            ADD_FAILURE() << "family " << type << " has a backend";
        } catch (const std::out_of_range& error) {
            EXPECT_STREQ(error.what(), "invalid map<K, T> key");
        }
    }
}

TEST_F(RaidClientTest, OutOfBandTargetsGetLsiAndM2Backends) {
    UseMachine(kEveryFamily);
    OutOfBand();
    option_.target = "all";
    const RaidClient client(option_, Connection());
    ASSERT_EQ(client.targets().size(), 2U);
    EXPECT_EQ(BackendKeys(client), (std::vector<int>{4, 6}));
    EXPECT_TRUE(client.index_map().empty());
    EXPECT_THROW(client.GetRaidBackend(RaidTarget::OOB_VROC), std::out_of_range);
}

TEST_F(RaidClientTest, AConnectionClientWithAnUnreachableRestServiceStillConstructs) {
    UseMachine(R"({"persist": false, "bmc": {"rest": false}, "controllers": [
      {"family": "OOB_LSI", "id": 0, "disks": []}]})");
    OutOfBand();
    const RaidClient client(option_, QuillonConnection::ConnectionInfo());
    EXPECT_EQ(client.redfish_helper(), nullptr);
    EXPECT_EQ(client.index_map().size(), 1U);
    EXPECT_NE(LogText().find("GetRESTConnectionList ret: 13 Connection failed., "
                             "rest_connect_list size = 0"),
              std::string::npos);
}

TEST_F(RaidClientTest, AnEmptyRestListLeavesTheClientWithoutItsHelper) {
    UseMachine(R"({"persist": false, "bmc": {"rest_connections": 0}, "controllers": []})");
    OutOfBand();
    const RaidClient client(option_, Connection());
    EXPECT_EQ(client.redfish_helper(), nullptr);
    EXPECT_NE(LogText().find("GetRESTConnectionList ret: 0 Succeed., rest_connect_list size = 0"),
              std::string::npos);
}

TEST_F(RaidClientTest, TheFirstRestConnectionGivesTheHelper) {
    UseMachine(R"({"persist": false, "bmc": {"rest_connections": 2}, "controllers": []})");
    OutOfBand();
    const RaidClient client(option_, Connection());
    EXPECT_NE(client.redfish_helper(), nullptr);
    EXPECT_NE(LogText().find("GetRESTConnectionList ret: 0 Succeed., rest_connect_list size = 2"),
              std::string::npos);
}

TEST_F(RaidClientTest, DefaultPlatformGivesEmptyFamiliesOnBothRoads) {
    const RaidClient local(option_);
    EXPECT_TRUE(local.index_map().empty());
    EXPECT_TRUE(local.lsi_microchip_index_map().empty());
    OutOfBand();
    const RaidClient remote(option_, QuillonConnection::ConnectionInfo());
    EXPECT_TRUE(remote.index_map().empty());
    EXPECT_EQ(remote.redfish_helper(), nullptr);
}

TEST_F(RaidClientTest, ConstructorAndDestructorLogEnteringAndExiting) {
    { const RaidClient client(option_); }
    const std::string log = LogText();
    for (const char* line : {"Entering  service::detail::RaidClient::RaidClient",
                             "Exiting  service::detail::RaidClient::RaidClient",
                             "Entering  service::detail::RaidClient::~RaidClient",
                             "Exiting  service::detail::RaidClient::~RaidClient"}) {
        EXPECT_NE(log.find(line), std::string::npos) << line;
    }
}

// --- Function maps ---

TEST_F(RaidClientTest, LocalClientRegistersTheMembersOfFamiliesZeroToThree) {
    const RaidClient client(option_);
    const std::vector<int> families{0, 1, 2, 3};
    EXPECT_EQ(Keys(client.show_functions()), families);
    EXPECT_EQ(Keys(client.save_functions()), families);
    EXPECT_EQ(Keys(client.save_without_index_functions()), families);
    EXPECT_EQ(Keys(client.add_functions()), families);
}

TEST_F(RaidClientTest, ConnectionClientRegistersFamiliesFourAndSixToEight) {
    OutOfBand();
    const RaidClient client(option_, QuillonConnection::ConnectionInfo());
    const std::vector<int> families{4, 6, 7, 8};
    EXPECT_EQ(Keys(client.show_functions()), families);
    EXPECT_EQ(Keys(client.save_functions()), families);
    EXPECT_EQ(Keys(client.save_without_index_functions()), families);
    EXPECT_EQ(Keys(client.add_functions()), families);
}

TEST_F(RaidClientTest, CfcClientRegistersFamilyFiveAlone) {
    OutOfBand();
    option_.cfc = true;
    const RaidClient client(option_, QuillonConnection::ConnectionInfo());
    EXPECT_EQ(Keys(client.show_functions()), std::vector<int>{5});
    EXPECT_EQ(Keys(client.save_functions()), std::vector<int>{5});
    EXPECT_EQ(Keys(client.add_functions()), std::vector<int>{5});
}

// --- Index maps ---

TEST_F(RaidClientTest, LsiMicrochipMapSkipsOneNumberBetweenTheFamilies) {
    UseMachine(kEveryFamily);
    const RaidClient client(option_);
    // Two LSI controllers: keys 0 and 1; the first Microchip key is 3.
    EXPECT_EQ(Entries(client.lsi_microchip_index_map()),
              (std::vector<Entry>{{0, 0, 4, 0}, {1, 1, 7, 0}, {3, 3, 2, 1}}));
}

TEST_F(RaidClientTest, LsiMicrochipMapWithoutLsiControllersStartsMicrochipAtOne) {
    UseMachine(R"({"persist": false, "controllers": [
      {"family": "MICROCHIP", "id": 0, "disks": []},
      {"family": "MICROCHIP", "id": 9, "disks": []}]})");
    const RaidClient client(option_);
    EXPECT_EQ(Entries(client.lsi_microchip_index_map()),
              (std::vector<Entry>{{1, 1, 0, 1}, {2, 2, 9, 1}}));
}

TEST_F(RaidClientTest, ReverseLookUpGivesTheOrdinalOfAControllerAndZeroWithoutMatch) {
    UseMachine(kEveryFamily);
    const RaidClient client(option_);
    EXPECT_EQ(client.LsiMicrochipOrdinal(RaidTarget::LSI, 4), 0);
    EXPECT_EQ(client.LsiMicrochipOrdinal(RaidTarget::LSI, 7), 1);
    EXPECT_EQ(client.LsiMicrochipOrdinal(RaidTarget::MICROCHIP, 2), 3);
    EXPECT_EQ(client.LsiMicrochipOrdinal(RaidTarget::MICROCHIP, "2"), 3);
    // The family counts: a Microchip controller of id 4 does not exist.
    EXPECT_EQ(client.LsiMicrochipOrdinal(RaidTarget::MICROCHIP, 4), 0);
    EXPECT_EQ(client.LsiMicrochipOrdinal(RaidTarget::LSI, 99), 0);
    EXPECT_EQ(client.LsiMicrochipOrdinal(RaidTarget::MICROCHIP, "02"), 0);
}

TEST_F(RaidClientTest, GetRaidIndexCopiesTheRecordOrGivesTheEmptyOne) {
    UseMachine(kEveryFamily);
    const RaidClient client(option_);
    const RaidIndex found = client.GetRaidIndex(3);
    EXPECT_EQ(found.index, 3);
    EXPECT_EQ(found.id, 2);
    EXPECT_EQ(found.type, RaidTarget::MICROCHIP);
    EXPECT_NE(std::dynamic_pointer_cast<Quillon::RaidConfig::HWRaidArcconf>(found.backend),
              nullptr);
    for (const int number : {0, 6, -1}) {
        const RaidIndex missing = client.GetRaidIndex(number);
        EXPECT_EQ(missing.index, -1);
        EXPECT_EQ(missing.id, 0);
        EXPECT_EQ(missing.type, RaidTarget::INVALID);
        EXPECT_EQ(missing.backend, nullptr);
    }
}

TEST_F(RaidClientTest, TheEmptyRecordIsMinusOneZeroInvalidAndNull) {
    const RaidIndex empty;
    EXPECT_EQ(empty.index, -1);
    EXPECT_EQ(empty.id, 0);
    EXPECT_EQ(empty.type, RaidTarget::INVALID);
    EXPECT_EQ(empty.backend, nullptr);
}

// --- Per-index dispatch, seen through show ---

TEST_F(RaidClientTest, WithNoControllersAtAllAShowHasNoRowsAndAnswersThereAreNoControllers) {
    UseMachine(R"({"persist": false, "controllers": []})");
    RaidClient client(option_);
    const TesselResult outcome(client.Show());
    EXPECT_EQ(outcome.value(), result::RaidNoControllers);
    EXPECT_EQ(outcome.message(), "There are no controllers.");
    EXPECT_TRUE(client.rows().empty());
}

TEST_F(RaidClientTest, CtrlIndexOfNineOnASystemWithThreeControllersYieldsOneRowForThatNumber) {
    UseMachine(R"({"persist": false, "controllers": [
      {"family": "LSI", "id": 0, "disks": []},
      {"family": "MICROCHIP", "id": 0, "disks": []},
      {"family": "M2", "id": 0, "disks": []}]})");
    option_.ctrl_index = "9";
    RaidClient client(option_);
    const TesselResult outcome(client.Show());
    ASSERT_EQ(client.rows().size(), 1U);
    EXPECT_EQ(client.rows()[0].device, "ctrl9");
    EXPECT_EQ(client.rows()[0].result, "The controller ID 9 does not exist.");
    EXPECT_EQ(client.rows()[0].code, Quillon::RaidConfig::RAID_TARGET_NOT_FOUND);
    EXPECT_EQ(outcome.value(), result::RaidTargetNotExist);
    EXPECT_EQ(outcome.message(), "The target device does not exist.");
}

TEST_F(RaidClientTest, CtrlIndexTextThatIsNoNumberIsReadAsZeroWhichIsNoKey) {
    UseMachine(R"({"persist": false, "controllers": [
      {"family": "LSI", "id": 0, "disks": []}]})");
    option_.ctrl_index = "first";
    RaidClient client(option_);
    EXPECT_EQ(client.target_index(), 0);
    const TesselResult outcome(client.Show());
    ASSERT_EQ(client.rows().size(), 1U);
    EXPECT_EQ(client.rows()[0].device, "ctrl0");
    EXPECT_EQ(client.rows()[0].result, "The controller ID 0 does not exist.");
    EXPECT_EQ(outcome.message(), "The target device does not exist.");
}

TEST_F(RaidClientTest, ThreeTargetsWithOneFailingGiveTheOperationFailsOnSomeTargets) {
    UseMachine(R"({"persist": false, "controllers": [
      {"family": "OOB_LSI", "id": 0, "disks": []},
      {"family": "OOB_LSI", "id": 1, "disks": [],
       "faults": [{"op": "GetController", "code": 4, "error_text": "BMC did not answer"}]},
      {"family": "OOB_LSI", "id": 2, "disks": []}]})");
    OutOfBand();
    RaidClient client(option_, Connection());
    const TesselResult outcome(client.Show());
    EXPECT_EQ(outcome.value(), result::RaidFailsOnSomeTargets);
    EXPECT_EQ(outcome.message(), "The operation fails on some targets.");
    ASSERT_EQ(client.rows().size(), 3U);
    EXPECT_EQ(client.rows()[1].device, "ctrl2");
    EXPECT_EQ(client.rows()[1].result, "BMC did not answer");
}

TEST_F(RaidClientTest, TwoFailingTargetsGiveFailsOnAllTargetsAndKeepTheirReasonsInTheRows) {
    UseMachine(R"({"persist": false, "controllers": [
      {"family": "OOB_LSI", "id": 0, "disks": []}]})");
    OutOfBand();
    option_.target = "5,7";
    RaidClient client(option_, Connection());
    const TesselResult outcome(client.Show());
    EXPECT_EQ(outcome.value(), result::RaidFailsOnAllTargets);
    EXPECT_EQ(outcome.message(), "The operation fails on all targets.");
    ASSERT_EQ(client.rows().size(), 2U);
    EXPECT_EQ(client.rows()[0].device, "ctrl[5]");
    EXPECT_EQ(client.rows()[0].result, "The target ctrl[5] does not exist.");
    EXPECT_EQ(client.rows()[1].device, "ctrl[7]");
    EXPECT_EQ(client.rows()[1].result, "The target ctrl[7] does not exist.");
}

// --- Labels and texts ---

TEST_F(RaidClientTest, DeviceLabelsInTheFlatNumbersStyle) {
    EXPECT_EQ(RaidClient::CtrlLabel(3), "ctrl3");
    EXPECT_EQ(RaidClient::VolLabel(3, 12), "ctrl3-vol12");
    EXPECT_EQ(RaidClient::DiskLabel(1, 8), "ctrl1-disk8");
    EXPECT_EQ(RaidClient::DiskLabel(1, "252:8"), "ctrl1-disk252:8");
    EXPECT_EQ(RaidClient::ConnectorLabel(2, 0), "ctrl2-connector0");
}

TEST_F(RaidClientTest, CommonTextsOfRows) {
    EXPECT_EQ(RaidClient::NoControllerText(4), "The controller ID 4 does not exist.");
    EXPECT_EQ(RaidClient::NoConfigText(4), "The controller ID 4 doesn't have config.");
    EXPECT_EQ(RaidClient::NoDiskText(9), "The disk ID 9 does not exist.");
    EXPECT_EQ(RaidClient::NoDiskText("252:9"), "The disk ID 252:9 does not exist.");
    EXPECT_EQ(RaidClient::NoVolumeText(2), "The volume ID 2 does not exist.");
    EXPECT_EQ(RaidClient::NoConnectorText(1), "The connector ID 1 does not exist.");
    EXPECT_EQ(RaidClient::NoPolicyText(5), "Policy file doesn't contain controller 5 raid policy.");
    EXPECT_EQ(RaidClient::OrderChangedText(1),
              "The firmware device order mode for controller ID 1 has been successfully changed. "
              "Please reboot the system for the changes to take effect.");
}

TEST_F(RaidClientTest, OrderUnchangedTextNamesTheModeAsTheUserWroteIt) {
    option_.mode_value = "eNabled";
    const RaidClient client(option_);
    EXPECT_EQ(client.OrderUnchangedText(2),
              "The firmware device order mode for controller ID 2 is already eNabled.");
}

TEST_F(RaidClientTest, TheFourteenTitlesInOrder) {
    const RaidClient client(option_);
    const std::array<std::string, 14> expected = {"Show Configuration Result",
                                                  "Add Configuration Result",
                                                  "Save Configuration Result",
                                                  "Clear Configuration Result",
                                                  "Make Good Result",
                                                  "Make JBOD Result",
                                                  "Add Hot Spare Result",
                                                  "Remove Hot Spare Result",
                                                  "Fast Init Result",
                                                  "Change connector mode Result",
                                                  "Show Firmware Device Order Result",
                                                  "Change Firmware Device Order Mode Result",
                                                  "External Key Management Result",
                                                  "Volume Encryption Result"};
    EXPECT_EQ(client.Titles(), expected);
}

TEST_F(RaidClientTest, TheNinePromptsInOrder) {
    const RaidClient client(option_);
    const std::array<std::string, 9> expected = {
        "Are you sure you want to continue creating the config.",
        "This operation will remove all the data on your disk(s), are you sure you want to "
        "continue clearing the RAID.",
        "Are you sure you want to continue doing makegood operation.",
        "Are you sure you want to continue doing makejbod operation.",
        "Are you sure you want to continue doing add hot spare operation.",
        "Are you sure you want to continue doing remove hot spare operation.",
        "Are you sure you want to continue doing fast init operation.",
        "This operation will change the status of your disk(s), are you sure you want to "
        "continue doing change connector mode operation.",
        "Enable Volume Encryption is irreversible, the data on the volume will be encrypted "
        "after the operation is completed."};
    EXPECT_EQ(client.Prompts(), expected);
}

TEST_F(RaidClientTest, TheFourResultWordsInOrder) {
    OutOfBand();
    const RaidClient client(option_, QuillonConnection::ConnectionInfo());
    const std::array<std::string, 4> expected = {
        "Success.", "Disk has been assigned global hot spare sucessfully.",
        "Volume has been created successfully.", "Function isn't supported on the target device."};
    EXPECT_EQ(client.ResultWords(), expected);
}

// --- Confirmation ---

class RaidClientConfirmTest : public RaidClientTest {
protected:
    // The answer of ConfirmOperation to typed, with what it printed.
    bool Confirm(const std::string& typed, std::string& printed) {
        RaidClient client(option_);
        std::istringstream input(typed);
        client.SetInput(input);
        testing::internal::CaptureStdout();
        const bool answer = client.ConfirmOperation("Proceed?");
        printed = testing::internal::GetCapturedStdout();
        return answer;
    }
    bool Confirm(const std::string& typed) {
        std::string printed;
        return Confirm(typed, printed);
    }
};

TEST_F(RaidClientConfirmTest, YesAndYConfirm) {
    std::string printed;
    EXPECT_TRUE(Confirm("yes\n", printed));
    EXPECT_EQ(printed, "Proceed?\nPlease type yes(y) or no(n):\n");
    EXPECT_TRUE(Confirm("y\n"));
}

TEST_F(RaidClientConfirmTest, NoAndNDeclineAndLogThatTheUserGaveUp) {
    std::string printed;
    EXPECT_FALSE(Confirm("no\n", printed));
    EXPECT_EQ(printed, "Proceed?\nPlease type yes(y) or no(n):\n");
    EXPECT_FALSE(Confirm("n\n"));
    const std::string log = LogText();
    EXPECT_NE(log.find("Proceed?"), std::string::npos);
    EXPECT_NE(log.find("Please type yes(y) or no(n):"), std::string::npos);
    EXPECT_NE(log.find("user gave up creating the config."), std::string::npos);
}

TEST_F(RaidClientConfirmTest, AnswersAreReadInAnyCaseAndWithoutSurroundingBlanks) {
    EXPECT_TRUE(Confirm("  YES \n"));
    EXPECT_TRUE(Confirm("\tY\r\n"));
    EXPECT_FALSE(Confirm(" No\n"));
    EXPECT_FALSE(Confirm("N  \n"));
}

TEST_F(RaidClientConfirmTest, ThreeAnswersOfNeitherKindDeclineWithoutAMessage) {
    std::string printed;
    EXPECT_FALSE(Confirm("maybe\nyess\n\nyes\n", printed));
    EXPECT_EQ(printed, "Proceed?\nPlease type yes(y) or no(n):\nPlease type yes(y) or no(n):\n"
                       "Please type yes(y) or no(n):\n");
    EXPECT_EQ(LogText().find("user gave up creating the config."), std::string::npos);
}

TEST_F(RaidClientConfirmTest, ASecondOrThirdAnswerStillCounts) {
    EXPECT_TRUE(Confirm("sure\ny\n"));
    EXPECT_FALSE(Confirm("what\nok\nn\n"));
}

TEST_F(RaidClientConfirmTest, WordsInsideAnAnswerAreNotAnswers) {
    EXPECT_FALSE(Confirm("y e s\nyes please\nnope\n"));
    EXPECT_EQ(LogText().find("user gave up creating the config."), std::string::npos);
}

TEST_F(RaidClientConfirmTest, TheEndOfInputDeclines) {
    std::string printed;
    EXPECT_FALSE(Confirm("", printed));
    EXPECT_EQ(printed, "Proceed?\nPlease type yes(y) or no(n):\nPlease type yes(y) or no(n):\n"
                       "Please type yes(y) or no(n):\n");
}

// --- Rows ---

TEST_F(RaidClientTest, TakeResultsCopiesDeviceToTextAndALaterRowReplaces) {
    RaidClient client(option_);
    client.AddRow("ctrl1", "Success.", Quillon::RaidConfig::RAID_OK);
    client.AddRow("ctrl2", "first", Quillon::RaidConfig::RAID_OPERATION_FAILED);
    client.AddRow("ctrl2", "second\nline", Quillon::RaidConfig::RAID_OK);
    std::map<std::string, std::string> results = {{"other", "kept"}};
    client.TakeResults(results);
    EXPECT_EQ(results, (std::map<std::string, std::string>{
                           {"ctrl1", "Success."}, {"ctrl2", "second\nline"}, {"other", "kept"}}));
    EXPECT_EQ(client.rows().size(), 3U);
}

TEST_F(RaidClientTest, TakeErrorMovesTheBackendsTextOut) {
    Quillon::RaidConfig::HWRaidStorcli backend;
    backend.error_text = "controller busy";
    EXPECT_EQ(RaidClient::TakeError(backend), "controller busy");
    EXPECT_EQ(backend.error_text, "");
    EXPECT_EQ(RaidClient::TakeError(backend), "");
}

// --- BMC type ---

TEST_F(RaidClientTest, GetBmcTypeComesFromRest) {
    UseMachine(R"({"persist": false, "bmc": {"bmc_type": 2}, "controllers": []})");
    OutOfBand();
    RaidClient client(option_, Connection());
    int type = -1;
    EXPECT_EQ(client.GetBmcType(type), result::Success);
    EXPECT_EQ(type, 2);
    EXPECT_NE(LogText().find("raid succeeded in getting bmc_type: 2"), std::string::npos);
}

TEST_F(RaidClientTest, GetBmcTypeOnAMachineWithoutRestFallsBackToCim) {
    UseMachine(R"({"persist": false, "bmc": {"rest": false, "bmc_type": 1}, "controllers": []})");
    OutOfBand();
    RaidClient client(option_, QuillonConnection::ConnectionInfo());
    int type = -1;
    EXPECT_EQ(client.GetBmcType(type), result::Success);
    EXPECT_EQ(type, 1);
    EXPECT_NE(LogText().find("Entering  service::detail::RaidClient::GetAmbitTypeViaCIM"),
              std::string::npos);
}

TEST_F(RaidClientTest, GetBmcTypeWhenRestAndCimBothFailIsTheValueOfTheCimCall) {
    UseMachine(R"({"persist": false, "bmc": {"rest": false, "cim": false}, "controllers": []})");
    OutOfBand();
    RaidClient client(option_, QuillonConnection::ConnectionInfo());
    int type = -1;
    EXPECT_EQ(client.GetBmcType(type), result::ConnectionFailed);
    EXPECT_EQ(type, -1);

    // Wrong credentials fail both fetches with 12: the value is the CIM call's, whole.
    UseMachine(R"({"persist": false, "controllers": []})");
    option_.connect_option.password = "wrong";
    RaidClient refused(option_, QuillonConnection::ConnectionInfo());
    QuillonConnection::ConnectionInfo info;
    const TesselResult cim = TesselConnect::FetchCIMConnection(option_.connect_option, info);
    EXPECT_EQ(refused.GetBmcType(type), cim.value());
    EXPECT_EQ(TesselResult(refused.GetBmcType(type)).message(), "Authentication failed.");
}

TEST_F(RaidClientTest, GetBmcTypeOfAVantorV3SystemIsThreeWhenTheTypeQueryFails) {
    UseMachine(R"({"persist": false, "bmc": {"bmc_type": null, "vantor_v3": true},
                   "controllers": []})");
    OutOfBand();
    RaidClient client(option_, Connection());
    int type = -1;
    EXPECT_EQ(client.GetBmcType(type), result::Success);
    EXPECT_EQ(type, 3);
    EXPECT_NE(LogText().find("target server is Vantor v3 System."), std::string::npos);
}

TEST_F(RaidClientTest, GetBmcTypeWhoseQueryFailsEverywhereIsConnectionFailed) {
    UseMachine(R"({"persist": false, "bmc": {"bmc_type": null}, "controllers": []})");
    OutOfBand();
    RaidClient client(option_, Connection());
    int type = -1;
    EXPECT_EQ(client.GetBmcType(type), result::ConnectionFailed);
    EXPECT_EQ(type, -1);
    EXPECT_EQ(client.GetAmbitTypeViaCIM(type), result::ConnectionFailed);
}

TEST_F(RaidClientTest, GetAmbitTypeViaCimAnswersTheType) {
    UseMachine(R"({"persist": false, "bmc": {"bmc_type": 2}, "controllers": []})");
    OutOfBand();
    RaidClient client(option_, Connection());
    int type = -1;
    EXPECT_EQ(client.GetAmbitTypeViaCIM(type), result::Success);
    EXPECT_EQ(type, 2);
}

} // namespace
