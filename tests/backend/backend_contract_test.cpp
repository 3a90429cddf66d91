#include <memory>

#include "backend/backend_platform.hpp"
#include "backend/cfc_hw_raid_storage.hpp"
#include "backend/fw_dev_order.hpp"
#include "backend/hw_raid_arcconf.hpp"
#include "backend/hw_raid_storage.hpp"
#include "backend/hw_raid_storcli.hpp"
#include "backend/inband_m2_raid.hpp"
#include "backend/oob_m2_raid.hpp"
#include "backend/oob_microchip_raid.hpp"
#include "backend/oob_vroc_raid.hpp"
#include "backend/raid_encryption.hpp"
#include "backend/raid_redfish_helper.hpp"
#include "backend/records.hpp"
#include "backend/sw_raid_win.hpp"
#include "collaborators/ambit_type_acquire.hpp"
#include "collaborators/system_check.hpp"
#include "collaborators/tessel_connect.hpp"

#include <gtest/gtest.h>

namespace {

using namespace Quillon::RaidConfig;
using QuillonConnection::ConnectionInfo;

// A connection the recording platform hands out, so a test can see it come back.
class TestConnection : public QuillonConnection::Connection {};

// A driver with one controller (id 7) that remembers what it was asked.
class RecordingDriver : public RaidDriver {
public:
    void GetControllerIds(std::vector<int>& ids) override { ids = {7}; }
    RaidErrorCode ClearConfig(int controller, std::string& error_text) override {
        last_controller = controller;
        if (controller != 7) {
            error_text = "controller " + std::to_string(controller) + " is not here";
            return RAID_TARGET_NOT_FOUND;
        }
        return RAID_OK;
    }
    RaidErrorCode GetFirmwareDeviceOrderCtrl(int /*controller*/,
                                             Quillon::protocol::FWDevOrderCtrl& /*record*/,
                                             std::string& error_text) override {
        error_text = "firmware order unreadable";
        return RAID_OPERATION_FAILED;
    }
    RaidErrorCode GetController(int controller, Controller& record,
                                std::string& /*error_text*/) override {
        record.id = controller;
        record.product_name = "test controller";
        return RAID_OK;
    }
    void SetBmcType(int type) override { bmc_type = type; }
    int last_controller = -1;
    int bmc_type = -1;
};

class RecordingEncryption : public EncryptionDriver {
public:
    RaidErrorCode EnableEncryption(int /*controller*/, const std::vector<int>& volumes,
                                   std::string& message) override {
        asked = volumes;
        ++calls;
        message = "2 volumes";
        return RAID_OK;
    }
    std::vector<int> asked{-1};
    int calls = 0;
};

class RecordingPlatform : public BackendPlatform {
public:
    std::shared_ptr<RaidDriver> MakeRaidDriver(RaidTarget::Type family,
                                               const ConnectionInfo& connection) override {
        families.push_back(family);
        connections.push_back(connection);
        driver = std::make_shared<RecordingDriver>();
        return driver;
    }
    std::shared_ptr<EncryptionDriver> MakeEncryptionDriver(const ConnectionInfo&) override {
        return encryption;
    }
    TesselResult FetchConnection(Channel channel, const TesselConnect::ConnectOption& option,
                                 ConnectionInfo& connection) override {
        channels.push_back(channel);
        if (option.user != "admin") {
            return TesselResult(12U);
        }
        connection = ConnectionInfo(std::make_shared<TestConnection>());
        return TesselResult(0U);
    }
    int GetAmbitType(const ConnectionInfo& /*connection*/,
                     Quillon::Agentless::AmbitTypeValue& value) override {
        value = Quillon::Agentless::AMBIT_TYPE_V2;
        return 0;
    }
    bool IsVantorV3(const ConnectionInfo& /*connection*/) override { return true; }

    std::vector<RaidTarget::Type> families;
    std::vector<ConnectionInfo> connections;
    std::vector<Channel> channels;
    std::shared_ptr<RecordingDriver> driver;
    std::shared_ptr<RecordingEncryption> encryption = std::make_shared<RecordingEncryption>();
};

class BackendContractTest : public ::testing::Test {
protected:
    void SetUp() override { InstallBackendPlatform(platform_); }
    void TearDown() override { InstallBackendPlatform(nullptr); }

    std::shared_ptr<RecordingPlatform> platform_ = std::make_shared<RecordingPlatform>();
};

TEST_F(BackendContractTest, EachInBandClassAsksForItsOwnFamilyWithoutAConnection) {
    HWRaidStorcli storcli;
    HWRaidArcconf arcconf;
    InbandM2Raid m2;
    SWRaidWin vroc;
    const std::vector<RaidTarget::Type> expected = {RaidTarget::LSI, RaidTarget::MICROCHIP,
                                                    RaidTarget::M2, RaidTarget::VROC_WIN};
    EXPECT_EQ(platform_->families, expected);
    for (const ConnectionInfo& connection : platform_->connections) {
        EXPECT_TRUE(connection.empty());
    }
}

TEST_F(BackendContractTest, EachOutOfBandClassAsksForItsFamilyWithItsConnection) {
    const ConnectionInfo connection(std::make_shared<TestConnection>());
    HWRaidStorage storage(connection);
    CFCHWRaidStorage cfc(connection);
    OOBM2Raid m2(connection);
    OobMicrochipRaid microchip(connection);
    OobVrocRaid vroc(connection);
    const std::vector<RaidTarget::Type> expected = {RaidTarget::OOB_LSI, RaidTarget::OOB_CFC,
                                                    RaidTarget::OOB_M2, RaidTarget::OOB_MICROCHIP,
                                                    RaidTarget::OOB_VROC};
    EXPECT_EQ(platform_->families, expected);
    for (const ConnectionInfo& given : platform_->connections) {
        EXPECT_EQ(given.connection(), connection.connection());
    }
}

TEST_F(BackendContractTest, OperationsGoThroughTheSharedBaseToTheDriver) {
    std::shared_ptr<Raid> backend = std::make_shared<HWRaidStorcli>();
    std::vector<int> ids;
    backend->GetControllerIds(ids);
    EXPECT_EQ(ids, std::vector<int>{7});
    EXPECT_EQ(backend->count(), 1);
    EXPECT_EQ(backend->ClearConfig(7), RAID_OK);
    EXPECT_TRUE(backend->error_text.empty());
    EXPECT_EQ(platform_->driver->last_controller, 7);
}

TEST_F(BackendContractTest, AFailureLeavesItsReasonInErrorText) {
    auto backend = std::make_shared<HWRaidStorcli>();
    EXPECT_EQ(backend->ClearConfig(3), RAID_TARGET_NOT_FOUND);
    EXPECT_EQ(backend->error_text, "controller 3 is not here");
    // Moved out by the caller, the text is told once; a later success adds none.
    const std::string told = std::move(backend->error_text);
    backend->error_text.clear();
    EXPECT_EQ(backend->ClearConfig(7), RAID_OK);
    EXPECT_TRUE(backend->error_text.empty());
}

TEST_F(BackendContractTest, FirmwareOrderFailureUsesTheSecondText) {
    HWRaidStorcli storcli;
    Quillon::protocol::FWDevOrderCtrl record;
    EXPECT_EQ(storcli.GetFirmwareDeviceOrderCtrl(7, record), RAID_OPERATION_FAILED);
    EXPECT_EQ(storcli.protocol_error_text, "firmware order unreadable");
    EXPECT_TRUE(storcli.error_text.empty());
}

TEST_F(BackendContractTest, CheckedDowncastReachesTheFamilyOperations) {
    const ConnectionInfo connection(std::make_shared<TestConnection>());
    std::shared_ptr<Raid> backend = std::make_shared<HWRaidStorage>(connection);
    auto storage = std::dynamic_pointer_cast<HWRaidStorage>(backend);
    ASSERT_NE(storage, nullptr);
    EXPECT_EQ(std::dynamic_pointer_cast<CFCHWRaidStorage>(backend), nullptr);
    Controller record;
    EXPECT_EQ(storage->GetController(7, record), RAID_OK);
    EXPECT_EQ(record.product_name, "test controller");
    storage->SetBmcType(3);
    EXPECT_EQ(platform_->driver->bmc_type, 3);
}

TEST_F(BackendContractTest, AllVolumesOfAControllerAreAnEmptyListToTheDriver) {
    RaidEncryption encryption{ConnectionInfo()};
    EXPECT_EQ(encryption.enableEncryptionAllVolumes(1), RAID_OK);
    EXPECT_TRUE(platform_->encryption->asked.empty());
    EXPECT_EQ(encryption.GetErrorMsg(), "2 volumes");
}

TEST_F(BackendContractTest, AnEmptyVolumeListEncryptsNothing) {
    RaidEncryption encryption{ConnectionInfo()};
    EXPECT_EQ(encryption.enableEncryptionVolume(1, {}), RAID_OK);
    EXPECT_EQ(platform_->encryption->calls, 0);
}

TEST_F(BackendContractTest, ConnectionLibraryIsAnsweredByThePlatform) {
    TesselConnect::ConnectOption option;
    option.user = "admin";
    ConnectionInfo connection;
    EXPECT_TRUE(TesselConnect::GetRESTConnection(option, connection) == 0U);
    EXPECT_FALSE(connection.empty());
    EXPECT_TRUE(TesselConnect::FetchBmcSSHConnection(option, connection) == 0U);
    EXPECT_TRUE(TesselConnect::FetchCIMConnection(option, connection) == 0U);
    const std::vector<BackendPlatform::Channel> expected = {BackendPlatform::Channel::Rest,
                                                            BackendPlatform::Channel::Ssh,
                                                            BackendPlatform::Channel::Cim};
    EXPECT_EQ(platform_->channels, expected);
    option.user = "guest";
    EXPECT_EQ(TesselConnect::GetRESTConnection(option, connection).code(), 12);
}

TEST_F(BackendContractTest, BmcTypeQueriesAreAnsweredByThePlatform) {
    const ConnectionInfo connection(std::make_shared<TestConnection>());
    Quillon::Agentless::AmbitTypeValue value = Quillon::Agentless::AMBIT_TYPE_UNKNOWN;
    EXPECT_EQ(Quillon::Agentless::AmbitTypeAcquire(connection).GetAmbitType(value), 0);
    EXPECT_EQ(value, Quillon::Agentless::AMBIT_TYPE_V2);
    EXPECT_TRUE(Quillon::SystemCheck::IsVantorV3(connection));
}

TEST(DefaultBackendPlatform, HasNoControllersAndAnswersFiveWithAReason) {
    InstallBackendPlatform(nullptr);
    HWRaidStorcli storcli;
    std::vector<int> ids{1};
    storcli.GetControllerIds(ids);
    EXPECT_TRUE(ids.empty());
    EXPECT_EQ(storcli.MakeGood(0, 1), RAID_TARGET_NOT_FOUND);
    EXPECT_EQ(storcli.error_text, "controller 0 does not exist");
}

TEST(DefaultBackendPlatform, CannotReachABmc) {
    InstallBackendPlatform(nullptr);
    TesselConnect::ConnectOption option;
    ConnectionInfo connection;
    const TesselResult outcome = TesselConnect::GetRESTConnection(option, connection);
    EXPECT_EQ(outcome.code(), 13);
    EXPECT_EQ(outcome.message(), "Connection failed.");
    std::vector<ConnectionInfo> list(2);
    EXPECT_EQ(TesselConnect::GetRESTConnectionList(option, list).code(), 13);
    EXPECT_TRUE(list.empty());
    Quillon::Agentless::AmbitTypeValue value{};
    EXPECT_NE(Quillon::Agentless::AmbitTypeAcquire(connection).GetAmbitType(value), 0);
}

TEST(DefaultBackendPlatform, SupportInfoLeavesTheRecordAsItWas) {
    InstallBackendPlatform(nullptr);
    RaidRedfishHelper helper{ConnectionInfo()};
    std::string max = "1024K";
    std::string min = "64K";
    std::vector<std::string> levels{"1"};
    helper.getSupportInfo(0, "OOBLSI", max, min, levels, "");
    EXPECT_EQ(max, "1024K");
    EXPECT_EQ(min, "64K");
    EXPECT_EQ(levels, std::vector<std::string>{"1"});
}

TEST(DefaultBackendPlatform, SoftwareRaidWithoutControllersHasAnEmptyConfiguration) {
    InstallBackendPlatform(nullptr);
    SWRaidWin vroc;
    EXPECT_TRUE(vroc.ConfigEmpty());
}

} // namespace
