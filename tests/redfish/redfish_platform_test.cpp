#include <memory>
#include <string>

#include "redfish/redfish_connection.hpp"
#include "redfish/redfish_platform.hpp"
#include "result/result_values.hpp"
#include "tests/redfish/canned_storage.hpp"
#include "tests/redfish/fake_transport.hpp"

#include <gtest/gtest.h>

namespace {

using nlohmann::json;
using Quillon::RaidConfig::BackendPlatform;
using Quillon::RaidConfig::RaidTarget;
using raidcfg_test::FakeBmc;

class RedfishPlatformTest : public ::testing::Test {
protected:
    std::shared_ptr<FakeBmc> bmc = std::make_shared<FakeBmc>();
    int transports_made = 0;
    std::unique_ptr<redfish::RedfishPlatform> platform;
    TesselConnect::ConnectOption option;

    void SetUp() override {
        redfish::ClientSettings base;
        base.sleep = [](std::chrono::milliseconds) {};
        platform = std::make_unique<redfish::RedfishPlatform>(
            [this](const TesselConnect::ConnectOption&) {
                ++transports_made;
                return bmc->Transport();
            },
            base);
        option.kind = TesselConnect::kConnectOutOfBand;
        option.host = "10.0.0.5";
        option.user = "admin";
        option.password = "secret";
    }

    void Serve(const json& manager_oem) {
        bmc->StandardService(true);
        raidcfg_test::ServeStorage(*bmc, {raidcfg_test::EmulatedLsi()}, manager_oem);
    }
};

TEST_F(RedfishPlatformTest, EveryChannelReachesTheBmcThroughOneSession) {
    Serve(json{{"AmbitType", 2}});
    QuillonConnection::ConnectionInfo cim;
    QuillonConnection::ConnectionInfo ssh;
    QuillonConnection::ConnectionInfo rest;
    EXPECT_EQ(platform->FetchConnection(BackendPlatform::Channel::Cim, option, cim).code(), 0);
    EXPECT_EQ(platform->FetchConnection(BackendPlatform::Channel::Ssh, option, ssh).code(), 0);
    EXPECT_EQ(platform->FetchConnection(BackendPlatform::Channel::Rest, option, rest).code(), 0);
    ASSERT_NE(redfish::RedfishConnection::Of(rest), nullptr);
    EXPECT_EQ(redfish::RedfishConnection::Of(ssh)->channel(), "ssh");
    EXPECT_EQ(&redfish::RedfishConnection::Of(cim)->client(),
              &redfish::RedfishConnection::Of(rest)->client());
    EXPECT_EQ(bmc->Count("POST", "/redfish/v1/SessionService/Sessions"), 1U);
    EXPECT_EQ(transports_made, 1);

    std::vector<int> ids;
    platform->MakeRaidDriver(RaidTarget::OOB_LSI, rest)->GetControllerIds(ids);
    EXPECT_EQ(ids, std::vector<int>{0});
    platform->MakeRaidDriver(RaidTarget::LSI, rest)->GetControllerIds(ids);
    EXPECT_TRUE(ids.empty()) << "in-band families have no controllers here";
    platform->MakeRaidDriver(RaidTarget::OOB_CFC, rest)->GetControllerIds(ids);
    EXPECT_TRUE(ids.empty()) << "the emulator marks no controller of this tree for the CFC class";
    platform->MakeRaidDriver(RaidTarget::OOB_LSI, QuillonConnection::ConnectionInfo())
        ->GetControllerIds(ids);
    EXPECT_TRUE(ids.empty());
}

TEST_F(RedfishPlatformTest, AWrongPasswordIsCodeTwelveAndIsNotTriedAgain) {
    Serve(json::object());
    bmc->Clear("POST", "/redfish/v1/SessionService/Sessions");
    bmc->On("POST", "/redfish/v1/SessionService/Sessions",
            raidcfg_test::Json(401, raidcfg_test::ErrorBody("wrong credentials")));
    option.password = "wrong";
    QuillonConnection::ConnectionInfo info;
    const TesselResult first =
        platform->FetchConnection(BackendPlatform::Channel::Ssh, option, info);
    EXPECT_EQ(first.code(), result::AuthenticationFailed & 0xFFFFU);
    EXPECT_EQ(first.code(), 12);
    EXPECT_TRUE(info.empty());
    std::vector<QuillonConnection::ConnectionInfo> list;
    EXPECT_EQ(platform->GetRESTConnectionList(option, list).code(), 12);
    EXPECT_TRUE(list.empty());
    EXPECT_EQ(bmc->Count("POST", "/redfish/v1/SessionService/Sessions"), 1U);
}

TEST_F(RedfishPlatformTest, AnUnreachableBmcIsCodeThirteen) {
    bmc->On("GET", "/redfish/v1",
            raidcfg_test::Broken(redfish::TransportError::Connect, "connection refused"));
    QuillonConnection::ConnectionInfo info;
    EXPECT_EQ(platform->FetchConnection(BackendPlatform::Channel::Rest, option, info).code(), 13);
    EXPECT_TRUE(info.empty());
}

TEST_F(RedfishPlatformTest, AChannelSwitchedOffInTheManagerIsCodeThirteen) {
    Serve(json{{"Ssh", false}, {"Cim", false}, {"Rest", true}});
    QuillonConnection::ConnectionInfo info;
    EXPECT_EQ(platform->FetchConnection(BackendPlatform::Channel::Ssh, option, info).code(), 13);
    EXPECT_EQ(platform->FetchConnection(BackendPlatform::Channel::Cim, option, info).code(), 13);
    EXPECT_EQ(platform->FetchConnection(BackendPlatform::Channel::Rest, option, info).code(), 0);
}

TEST_F(RedfishPlatformTest, TheRestListAndTheBmcQueriesComeFromTheManager) {
    Serve(json{{"RestConnections", 3}, {"AmbitType", 3}, {"VantorV3", true}});
    std::vector<QuillonConnection::ConnectionInfo> list;
    EXPECT_EQ(platform->GetRESTConnectionList(option, list).code(), 0);
    ASSERT_EQ(list.size(), 3U);
    EXPECT_EQ(&redfish::RedfishConnection::Of(list[0])->client(),
              &redfish::RedfishConnection::Of(list[2])->client());
    Quillon::Agentless::AmbitTypeValue type = Quillon::Agentless::AMBIT_TYPE_UNKNOWN;
    EXPECT_EQ(platform->GetAmbitType(list[0], type), 0);
    EXPECT_EQ(type, Quillon::Agentless::AMBIT_TYPE_VANTOR_V3);
    EXPECT_TRUE(platform->IsVantorV3(list[1]));
    EXPECT_EQ(bmc->Count("GET", "/redfish/v1/Managers/1"), 1U);
}

TEST_F(RedfishPlatformTest, AManagerWithoutOurSectionGivesTheDefaults) {
    Serve(nullptr);
    std::vector<QuillonConnection::ConnectionInfo> list;
    EXPECT_EQ(platform->GetRESTConnectionList(option, list).code(), 0);
    ASSERT_EQ(list.size(), 1U);
    Quillon::Agentless::AmbitTypeValue type = Quillon::Agentless::AMBIT_TYPE_UNKNOWN;
    EXPECT_EQ(platform->GetAmbitType(list[0], type), 0) << "a standard BMC has a type too";
    EXPECT_EQ(type, Quillon::Agentless::AMBIT_TYPE_V2);
    EXPECT_FALSE(platform->IsVantorV3(list[0]));
}

TEST_F(RedfishPlatformTest, WithoutManagedByTheManagerOfTypeBmcIsFoundThroughTheCollection) {
    Serve(nullptr);
    bmc->Clear("GET", "/redfish/v1/Systems/1");
    bmc->On("GET", "/redfish/v1/Systems/1",
            raidcfg_test::Json(200, R"({"Id": "1", "Storage": {"@odata.id":)"
                                    R"( "/redfish/v1/Systems/1/Storage"}})"));
    bmc->On("GET", "/redfish/v1/Managers",
            raidcfg_test::Json(200, R"({"Members": [{"@odata.id": "/redfish/v1/Managers/enc"},)"
                                    R"( {"@odata.id": "/redfish/v1/Managers/bmc"}]})"));
    bmc->On("GET", "/redfish/v1/Managers/enc",
            raidcfg_test::Json(200, R"({"ManagerType": "EnclosureManager"})"));
    bmc->On("GET", "/redfish/v1/Managers/bmc",
            raidcfg_test::Json(200, R"({"ManagerType": "BMC",)"
                                    R"( "Oem": {"Raidcfg": {"RestConnections": 2}}})"));
    std::vector<QuillonConnection::ConnectionInfo> list;
    EXPECT_EQ(platform->GetRESTConnectionList(option, list).code(), 0);
    EXPECT_EQ(list.size(), 2U);
    EXPECT_EQ(bmc->Count("GET", "/redfish/v1/Managers/1"), 0U);
}

TEST(RedfishPlatformSettingsTest, TheConnectOptionBecomesTheTransportsSettings) {
    TesselConnect::ConnectOption option;
    option.scheme = "http";
    option.host = "fe80::1";
    option.port = 8443;
    option.verify_tls = false;
    option.ca_file = "bmc.pem";
    option.timeout_seconds = 5;
    const redfish::CurlSettings settings = redfish::RedfishPlatform::TransportSettings(option);
    EXPECT_EQ(settings.scheme, "http");
    EXPECT_EQ(settings.host, "fe80::1");
    EXPECT_EQ(settings.port, 8443U);
    EXPECT_FALSE(settings.verify_tls);
    EXPECT_EQ(settings.ca_file, "bmc.pem");
    EXPECT_EQ(settings.timeout_seconds, 5);
    EXPECT_LE(settings.connect_timeout_seconds, 5);
}

} // namespace
