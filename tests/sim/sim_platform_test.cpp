// The simulated BMC: the connection library, the BMC queries, key management, firmware device
// order and volume limits, answered from the machine file.
#include <cstdlib>

#include "backend/backend_platform.hpp"
#include "backend/ekm_controller.hpp"
#include "backend/fw_dev_order.hpp"
#include "backend/fw_dev_order_controller.hpp"
#include "backend/raid_encryption.hpp"
#include "backend/raid_redfish_helper.hpp"
#include "collaborators/ambit_type_acquire.hpp"
#include "collaborators/system_check.hpp"
#include "collaborators/tessel_connect.hpp"
#include "sim/machine_store.hpp"
#include "sim/sim_platform.hpp"
#include "sim/simulated_machine.hpp"
#include "tests/support/file_text.hpp"
#include "tests/support/temp_dir.hpp"

#include <gtest/gtest.h>

namespace {

using namespace Quillon::RaidConfig;
using QuillonConnection::ConnectionInfo;
using TesselConnect::ConnectOption;

class SimPlatformTest : public ::testing::Test {
protected:
    void TearDown() override { InstallBackendPlatform(nullptr); }

    void Load(const std::string& bmc) {
        raidcfg_test::WriteFile(path_, R"({"bmc": )" + bmc + R"(,
          "controllers": [
            {"family": "OOB_LSI", "id": 1, "ekm_mode": "None",
             "ekm_modes": ["None", "Local", "External"],
             "fw_device_order": "Disabled", "fw_device_order_modes": ["Enabled", "Disabled"],
             "product_name": "RAID 9600-16i", "min_stripe_kb": 64, "max_stripe_kb": 1024,
             "raid_levels": ["0", "1"],
             "disks": [{"id": 0, "state": "Online"}, {"id": 1, "state": "Online"}],
             "volumes": [{"id": 0, "name": "os", "raid_level": "1", "spans": [[0, 1]]}]},
            {"family": "OOB_LSI", "id": 2, "disks": []}
          ]})");
        std::string error;
        ASSERT_TRUE(sim::SimulatedMachine::Use(path_, error)) << error;
    }

    static ConnectOption Credentials(const std::string& user, const std::string& password) {
        ConnectOption option;
        option.kind = 2;
        option.user = user;
        option.password = password;
        return option;
    }

    raidcfg_test::TempDir dir_;
    std::string path_ = dir_.File("machine.json");
};

TEST_F(SimPlatformTest, TheFilesCredentialsOpenEveryChannel) {
    Load("{}");
    ConnectionInfo info;
    const ConnectOption option = Credentials("admin", "secret");
    EXPECT_TRUE(TesselConnect::GetRESTConnection(option, info) == 0U);
    EXPECT_FALSE(info.empty());
    EXPECT_TRUE(TesselConnect::FetchBmcSSHConnection(option, info) == 0U);
    EXPECT_TRUE(TesselConnect::FetchCIMConnection(option, info) == 0U);
}

TEST_F(SimPlatformTest, OtherCredentialsFailEveryFetchWithAuthenticationFailed) {
    Load(R"({"user": "root", "password": "calvin"})");
    ConnectionInfo info;
    for (const ConnectOption& option :
         {Credentials("admin", "secret"), Credentials("root", "wrong"), Credentials("", "")}) {
        const TesselResult outcome = TesselConnect::GetRESTConnection(option, info);
        EXPECT_EQ(outcome.code(), 12);
        EXPECT_EQ(outcome.message(), "Authentication failed.");
        EXPECT_EQ(TesselConnect::FetchCIMConnection(option, info).code(), 12);
    }
    EXPECT_TRUE(TesselConnect::GetRESTConnection(Credentials("root", "calvin"), info) == 0U);
}

TEST_F(SimPlatformTest, AChannelThatIsOffFailsWithConnectionFailed) {
    Load(R"({"ssh": false, "cim": false})");
    ConnectionInfo info;
    const ConnectOption option = Credentials("admin", "secret");
    EXPECT_EQ(TesselConnect::FetchBmcSSHConnection(option, info).message(), "Connection failed.");
    EXPECT_EQ(TesselConnect::FetchCIMConnection(option, info).code(), 13);
    EXPECT_TRUE(TesselConnect::GetRESTConnection(option, info) == 0U);
}

TEST_F(SimPlatformTest, RestConnectionListHasTheFilesLength) {
    Load(R"({"rest_connections": 3})");
    std::vector<ConnectionInfo> list;
    EXPECT_TRUE(TesselConnect::GetRESTConnectionList(Credentials("admin", "secret"), list) == 0U);
    EXPECT_EQ(list.size(), 3U);
    Load(R"({"rest_connections": 0})");
    EXPECT_TRUE(TesselConnect::GetRESTConnectionList(Credentials("admin", "secret"), list) == 0U);
    EXPECT_TRUE(list.empty());
    Load(R"({"rest": false})");
    EXPECT_EQ(TesselConnect::GetRESTConnectionList(Credentials("admin", "secret"), list).code(),
              13);
}

TEST_F(SimPlatformTest, BmcTypeAndVantorCheckComeFromTheFile) {
    Load(R"({"bmc_type": 1, "vantor_v3": true})");
    Quillon::Agentless::AmbitTypeValue value = Quillon::Agentless::AMBIT_TYPE_UNKNOWN;
    EXPECT_EQ(Quillon::Agentless::AmbitTypeAcquire(ConnectionInfo()).GetAmbitType(value), 0);
    EXPECT_EQ(value, Quillon::Agentless::AMBIT_TYPE_V1);
    EXPECT_TRUE(Quillon::SystemCheck::IsVantorV3(ConnectionInfo()));
    Load(R"({"bmc_type": null})");
    EXPECT_NE(Quillon::Agentless::AmbitTypeAcquire(ConnectionInfo()).GetAmbitType(value), 0);
    EXPECT_FALSE(Quillon::SystemCheck::IsVantorV3(ConnectionInfo()));
}

TEST_F(SimPlatformTest, SupportInfoComesFromTheControllerUnlessTheBmcSaysNothing) {
    Load("{}");
    RaidRedfishHelper helper{ConnectionInfo()};
    std::string max;
    std::string min;
    std::vector<std::string> levels;
    helper.getSupportInfo(1, "OOBLSI", max, min, levels, "");
    EXPECT_EQ(max, "1024K");
    EXPECT_EQ(min, "64K");
    EXPECT_EQ(levels, (std::vector<std::string>{"0", "1"}));
    Load(R"({"support_info": false})");
    std::string untouched = "kept";
    helper.getSupportInfo(1, "OOBLSI", untouched, min, levels, "");
    EXPECT_EQ(untouched, "kept");
}

TEST_F(SimPlatformTest, KeyManagementModeChangesOnceAndThenStandsSo) {
    Load("{}");
    RaidEncryption encryption{ConnectionInfo()};
    EKMController record;
    ASSERT_EQ(encryption.getController(1, record), RAID_OK);
    EXPECT_EQ(record.encryption_mode, "None");
    EXPECT_EQ(encryption.changeEKMmode(1, "local"), RAID_OK);
    EXPECT_EQ(encryption.changeEKMmode(1, "Local"), RAID_OK_UNCHANGED);
    EXPECT_EQ(encryption.changeEKMmode(1, "cloud"), RAID_OPERATION_FAILED);
    EXPECT_EQ(encryption.GetErrorMsg(), "mode \"cloud\" is not one of None, Local, External");
    EXPECT_EQ(encryption.getController(2, record), RAID_DEVICE_UNSUPPORTED);
    EXPECT_EQ(encryption.getController(9, record), RAID_TARGET_NOT_FOUND);
}

TEST_F(SimPlatformTest, VolumesAreEncryptedOnlyWithKeyManagementOn) {
    Load("{}");
    RaidEncryption encryption{ConnectionInfo()};
    EXPECT_EQ(encryption.enableEncryptionAllVolumes(1), RAID_OPERATION_FAILED);
    EXPECT_EQ(encryption.GetErrorMsg(),
              "key management is off: turn it to local or external first");
    ASSERT_EQ(encryption.changeEKMmode(1, "External"), RAID_OK);
    EXPECT_EQ(encryption.enableEncryptionVolume(1, {4}), RAID_TARGET_NOT_FOUND);
    ASSERT_EQ(encryption.enableEncryptionVolume(1, {0}), RAID_OK);
    EXPECT_EQ(encryption.GetErrorMsg(), " 1 volume newly encrypted.");
    EKMController record;
    ASSERT_EQ(encryption.getControllerWithVolumes(1, record), RAID_OK);
    ASSERT_EQ(record.volumes.size(), 1U);
    EXPECT_EQ(record.volumes[0].encrypted, 1);
}

TEST_F(SimPlatformTest, FirmwareDeviceOrderTurnsAndAnswersThirtyFourWhenAlreadySo) {
    Load("{}");
    FWDevOrder order{ConnectionInfo()};
    FWDevOrderController record;
    ASSERT_EQ(order.GetController(1, record), RAID_OK);
    EXPECT_EQ(record.firmware_device_order, "Disabled");
    EXPECT_EQ(order.TurnFirmwareDeviceOrder(1, "Disabled"), RAID_OK_UNCHANGED);
    EXPECT_EQ(order.TurnFirmwareDeviceOrder(1, "enabled"), RAID_OK);
    ASSERT_EQ(order.GetController(1, record), RAID_OK);
    EXPECT_EQ(record.firmware_device_order, "Enabled");
    EXPECT_EQ(order.GetController(2, record), RAID_DEVICE_UNSUPPORTED);
}

TEST_F(SimPlatformTest, AnUnusableMachineFileInstallsNothing) {
    raidcfg_test::WriteFile(path_, "[1, 2]");
    std::string error;
    EXPECT_FALSE(sim::SimulatedMachine::Use(path_, error));
    EXPECT_FALSE(error.empty());
    EXPECT_FALSE(sim::SimulatedMachine::Use(dir_.File("missing.json"), error));
    EXPECT_NE(error.find("missing.json"), std::string::npos) << error;
}

TEST_F(SimPlatformTest, TheDemoIsPreparedInItsStateDirectory) {
    const char* old = std::getenv("XDG_STATE_HOME");
    const std::string saved = old == nullptr ? "" : old;
    ::setenv("XDG_STATE_HOME", dir_.path().c_str(), 1);
    std::string error;
    EXPECT_TRUE(sim::SimulatedMachine::Use("demo", error)) << error;
    EXPECT_TRUE(raidcfg_test::FileExists(dir_.File("raidcfg/demo-machine.json")));
    if (old == nullptr) {
        ::unsetenv("XDG_STATE_HOME");
    } else {
        ::setenv("XDG_STATE_HOME", saved.c_str(), 1);
    }
}

} // namespace
