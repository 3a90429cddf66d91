#include <chrono>
#include <memory>
#include <numeric>
#include <regex>
#include <string>
#include <vector>

#include <nlohmann/json.hpp>

#include "collaborators/log.hpp"
#include "log/log_settings.hpp"
#include "redfish/redfish_client.hpp"
#include "tests/redfish/fake_transport.hpp"
#include "tests/support/file_text.hpp"
#include "tests/support/temp_dir.hpp"

#include <gtest/gtest.h>

namespace {

using namespace std::chrono_literals;
using Quillon::RaidConfig::RaidErrorCode;
using raidcfg_test::Broken;
using raidcfg_test::ErrorBody;
using raidcfg_test::FakeBmc;
using raidcfg_test::Json;
using raidcfg_test::Status;
using redfish::RedfishClient;
using redfish::RedfishStatus;
using redfish::TransportError;

constexpr const char* kPassword = "Pa55-w0rd!x";
constexpr const char* kSessions = "/redfish/v1/SessionService/Sessions";
constexpr const char* kVolumes = "/redfish/v1/Systems/1/Storage/1/Volumes";
constexpr const char* kMonitor = "/redfish/v1/TaskService/TaskMonitors/1";

class RedfishClientTest : public ::testing::Test {
protected:
    void SetUp() override {
        Quillon::ResetLogState();
        std::string error;
        ASSERT_TRUE(Quillon::SetLogDir(temp_.path(), error)) << error;
        bmc_->StandardService();
    }
    void TearDown() override { Quillon::ResetLogState(); }

    redfish::ClientSettings Settings() {
        redfish::ClientSettings settings;
        settings.user = "admin";
        settings.password = kPassword;
        settings.sleep = [this](std::chrono::milliseconds duration) {
            sleeps_.push_back(duration);
        };
        return settings;
    }
    std::unique_ptr<RedfishClient> Client() {
        return std::make_unique<RedfishClient>(bmc_->Transport(), Settings());
    }
    std::unique_ptr<RedfishClient> Client(const redfish::ClientSettings& settings) {
        return std::make_unique<RedfishClient>(bmc_->Transport(), settings);
    }
    std::unique_ptr<RedfishClient> OpenClient() {
        auto client = Client();
        const RedfishStatus status = client->Open();
        EXPECT_TRUE(status.ok()) << status.text;
        return client;
    }
    std::string LogText() const {
        const std::string path = temp_.File("raidcfg.log");
        return raidcfg_test::FileExists(path) ? raidcfg_test::ReadFile(path) : std::string();
    }
    std::chrono::milliseconds Slept() const {
        return std::accumulate(sleeps_.begin(), sleeps_.end(), std::chrono::milliseconds(0));
    }

    raidcfg_test::TempDir temp_;
    std::shared_ptr<FakeBmc> bmc_ = std::make_shared<FakeBmc>();
    std::vector<std::chrono::milliseconds> sleeps_;
};

// --- sessions --------------------------------------------------------------------------------

TEST_F(RedfishClientTest, OpenReadsTheRootAndLogsInWithASession) {
    {
        auto client = OpenClient();
        EXPECT_TRUE(client->HasSession());
        EXPECT_FALSE(client->UsesBasicAuth());
        ASSERT_GE(bmc_->requests.size(), 2u);
        EXPECT_EQ(bmc_->requests[0].method, "GET");
        EXPECT_EQ(bmc_->requests[0].path, "/redfish/v1");
        EXPECT_EQ(FakeBmc::HeaderOf(bmc_->requests[0], "X-Auth-Token"), "");
        EXPECT_EQ(FakeBmc::HeaderOf(bmc_->requests[0], "Authorization"), "");
        EXPECT_EQ(bmc_->requests[1].method, "POST");
        EXPECT_EQ(bmc_->requests[1].path, kSessions);
        const auto body = nlohmann::json::parse(bmc_->requests[1].body);
        EXPECT_EQ(body, nlohmann::json({{"UserName", "admin"}, {"Password", kPassword}}));
        EXPECT_EQ(client->ServiceRoot()["@odata.id"], "/redfish/v1");

        bmc_->On("GET", "/redfish/v1/Systems", Json(200, R"({"Members": []})"));
        nlohmann::json systems;
        ASSERT_TRUE(client->Get("/redfish/v1/Systems", systems).ok());
        EXPECT_EQ(FakeBmc::HeaderOf(bmc_->requests.back(), "X-Auth-Token"), bmc_->token);
        EXPECT_EQ(FakeBmc::HeaderOf(bmc_->requests.back(), "Authorization"), "");
        EXPECT_EQ(bmc_->Count("DELETE", bmc_->session_path), 0u);
        EXPECT_EQ(client->RequestsSent(), 3u);
    }
    // The session is deleted when the client goes, with its own token.
    ASSERT_EQ(bmc_->Count("DELETE", bmc_->session_path), 1u);
    EXPECT_EQ(FakeBmc::HeaderOf(bmc_->requests.back(), "X-Auth-Token"), bmc_->token);
}

TEST_F(RedfishClientTest, SessionsCollectionComesFromTheRootsLinks) {
    bmc_->Clear("GET", "/redfish/v1");
    bmc_->On("GET", "/redfish/v1",
             Json(200, R"({"Links": {"Sessions": {"@odata.id": "/redfish/v1/Sess"}}})"));
    bmc_->On("POST", "/redfish/v1/Sess",
             Json(201, "{}", {{"x-auth-token", "t"}, {"location", "/redfish/v1/Sess/1"}}));
    bmc_->On("DELETE", "/redfish/v1/Sess/1", Status(204));
    { auto client = OpenClient(); }
    EXPECT_EQ(bmc_->Count("POST", "/redfish/v1/Sess"), 1u);
    EXPECT_EQ(bmc_->Count("DELETE", "/redfish/v1/Sess/1"), 1u);
}

TEST_F(RedfishClientTest, CloseIsSafeTwiceAndDeletesOnce) {
    auto client = OpenClient();
    client->Close();
    client->Close();
    EXPECT_FALSE(client->HasSession());
    client.reset();
    EXPECT_EQ(bmc_->Count("DELETE", bmc_->session_path), 1u);
}

TEST_F(RedfishClientTest, SessionIsDeletedAfterAFailure) {
    bmc_->On("GET", "/redfish/v1/Systems/1", Json(500, ErrorBody("Internal error.")));
    {
        auto client = OpenClient();
        nlohmann::json system;
        EXPECT_FALSE(client->Get("/redfish/v1/Systems/1", system).ok());
    }
    EXPECT_EQ(bmc_->Count("DELETE", bmc_->session_path), 1u);
}

TEST_F(RedfishClientTest, SessionIsDeletedWhenOpenFailsAfterLogIn) {
    // A root that wants credentials is read again after the log-in; here that read fails.
    bmc_->Clear("GET", "/redfish/v1");
    bmc_->On("GET", "/redfish/v1", Status(401));
    bmc_->On("GET", "/redfish/v1", Json(500, ErrorBody("Root broken.")));
    auto client = Client();
    const RedfishStatus status = client->Open();
    EXPECT_EQ(status.code, Quillon::RaidConfig::RAID_REST_FAILED);
    EXPECT_EQ(status.text, "BMC 10.0.0.5: HTTP 500 on GET /redfish/v1: Root broken.");
    EXPECT_EQ(bmc_->Count("DELETE", bmc_->session_path), 1u);
    client.reset();
    EXPECT_EQ(bmc_->Count("DELETE", bmc_->session_path), 1u);
}

TEST_F(RedfishClientTest, RootThatNeedsCredentialsIsReadAfterLogIn) {
    bmc_->Clear("GET", "/redfish/v1");
    bmc_->On("GET", "/redfish/v1", Status(401));
    bmc_->On("GET", "/redfish/v1", Json(200, R"({"@odata.id": "/redfish/v1", "Id": "R"})"));
    auto client = OpenClient();
    EXPECT_EQ(client->ServiceRoot()["Id"], "R");
    EXPECT_EQ(FakeBmc::HeaderOf(bmc_->requests.back(), "X-Auth-Token"), bmc_->token);
}

TEST_F(RedfishClientTest, BasicAuthenticationWhereSessionsAreRefused) {
    for (const long refusal : {404L, 405L, 501L}) {
        bmc_ = std::make_shared<FakeBmc>();
        bmc_->StandardService();
        bmc_->Clear("POST", kSessions);
        bmc_->On("POST", kSessions, Status(refusal));
        bmc_->On("GET", "/redfish/v1/Systems", Json(200, R"({"Members": []})"));
        {
            auto client = OpenClient();
            EXPECT_TRUE(client->UsesBasicAuth()) << refusal;
            EXPECT_FALSE(client->HasSession()) << refusal;
            // The credentials were checked with one authenticated read, which is now cached.
            ASSERT_EQ(bmc_->Count("GET", "/redfish/v1/Systems"), 1u) << refusal;
            // "admin:Pa55-w0rd!x" in Base64.
            EXPECT_EQ(FakeBmc::HeaderOf(bmc_->requests.back(), "Authorization"),
                      "Basic YWRtaW46UGE1NS13MHJkIXg=");
            nlohmann::json systems;
            ASSERT_TRUE(client->Get("/redfish/v1/Systems", systems).ok());
            EXPECT_EQ(bmc_->Count("GET", "/redfish/v1/Systems"), 1u);
        }
        EXPECT_EQ(bmc_->Count("DELETE", bmc_->session_path), 0u);
    }
}

TEST_F(RedfishClientTest, BasicAuthenticationWithAWrongPassword) {
    bmc_->Clear("POST", kSessions);
    bmc_->On("POST", kSessions, Status(405));
    bmc_->On("GET", "/redfish/v1/Systems", Status(401));
    auto client = Client();
    const RedfishStatus status = client->Open();
    EXPECT_EQ(status.code, Quillon::RaidConfig::RAID_AUTH_FAILED);
    EXPECT_EQ(status.text, "BMC 10.0.0.5: authentication failed");
}

TEST_F(RedfishClientTest, WrongPasswordGivesCodeOneOnceWithoutRetry) {
    bmc_->Clear("POST", kSessions);
    bmc_->On("POST", kSessions, Json(401, ErrorBody("Invalid password " + std::string(kPassword))));
    {
        auto client = Client();
        const RedfishStatus status = client->Open();
        EXPECT_EQ(status.code, Quillon::RaidConfig::RAID_AUTH_FAILED);
        EXPECT_EQ(status.text, "BMC 10.0.0.5: authentication failed");
        EXPECT_FALSE(client->HasSession());
    }
    EXPECT_EQ(bmc_->Count("POST", kSessions), 1u);
    EXPECT_EQ(bmc_->requests.size(), 2u); // the root and the one log-in, no log-out
    EXPECT_TRUE(sleeps_.empty());
}

TEST_F(RedfishClientTest, ForbiddenLogInIsAnAuthenticationFailure) {
    bmc_->Clear("POST", kSessions);
    bmc_->On("POST", kSessions, Status(403));
    const RedfishStatus status = Client()->Open();
    EXPECT_EQ(status.code, Quillon::RaidConfig::RAID_AUTH_FAILED);
    EXPECT_EQ(status.text, "BMC 10.0.0.5: authentication failed");
}

TEST_F(RedfishClientTest, UnreachableBmcAtOpen) {
    bmc_->Clear("GET", "/redfish/v1");
    bmc_->On("GET", "/redfish/v1", Broken(TransportError::Connect, "connection refused"));
    const RedfishStatus status = Client()->Open();
    EXPECT_EQ(status.code, Quillon::RaidConfig::RAID_CONNECT_FAILED);
    EXPECT_EQ(status.text, "BMC 10.0.0.5: connection refused");
    // Before the BMC ever answered, a refused connection is not tried again.
    EXPECT_EQ(bmc_->requests.size(), 1u);
}

TEST_F(RedfishClientTest, TlsFailureAtOpen) {
    bmc_->Clear("GET", "/redfish/v1");
    bmc_->On("GET", "/redfish/v1", Broken(TransportError::Tls, "TLS certificate check failed"));
    const RedfishStatus status = Client()->Open();
    EXPECT_EQ(status.code, Quillon::RaidConfig::RAID_CONNECT_FAILED);
    EXPECT_EQ(status.text, "BMC 10.0.0.5: TLS certificate check failed");
    EXPECT_EQ(bmc_->requests.size(), 1u);
}

// --- error mapping ---------------------------------------------------------------------------

TEST_F(RedfishClientTest, Http500WithExtendedInfo) {
    auto client = OpenClient();
    bmc_->On("POST", kVolumes,
             Json(500, ErrorBody("The request failed due to an internal service error.")));
    const RedfishStatus status = client->Post(kVolumes, {{"RAIDType", "RAID1"}});
    EXPECT_EQ(status.code, Quillon::RaidConfig::RAID_REST_FAILED);
    EXPECT_EQ(status.text,
              "BMC 10.0.0.5: HTTP 500 on POST /redfish/v1/Systems/1/Storage/1/Volumes: "
              "The request failed due to an internal service error.");
}

TEST_F(RedfishClientTest, MessageFallsBackToErrorMessageThenReasonPhrase) {
    auto client = OpenClient();
    bmc_->On("PATCH", "/a", Json(400, R"({"error": {"code": "x", "message": "Bad value."}})"));
    bmc_->On("PATCH", "/b", Status(409));
    bmc_->On("PATCH", "/c", Json(599, "<html>oops</html>"));
    RedfishStatus status = client->Patch("/a", {{"X", 1}});
    EXPECT_EQ(status.code, Quillon::RaidConfig::RAID_REST_FAILED);
    EXPECT_EQ(status.text, "BMC 10.0.0.5: HTTP 400 on PATCH /a: Bad value.");
    status = client->Patch("/b", {{"X", 1}});
    EXPECT_EQ(status.text, "BMC 10.0.0.5: HTTP 409 on PATCH /b: Conflict");
    status = client->Patch("/c", {{"X", 1}});
    EXPECT_EQ(status.text, "BMC 10.0.0.5: HTTP 599 on PATCH /c: no message");
}

TEST_F(RedfishClientTest, NotFoundGivesCodeFive) {
    auto client = OpenClient();
    nlohmann::json out;
    const RedfishStatus status = client->Get("/redfish/v1/Systems/9", out);
    EXPECT_EQ(status.code, Quillon::RaidConfig::RAID_TARGET_NOT_FOUND);
    EXPECT_EQ(status.text, "BMC 10.0.0.5: HTTP 404 on GET /redfish/v1/Systems/9: The resource at "
                           "the URI /redfish/v1/Systems/9 was not found.");
}

TEST_F(RedfishClientTest, OemCodeOfTheEmulatorPassesThrough) {
    auto client = OpenClient();
    bmc_->On("POST", kVolumes,
             Json(400, R"({"error": {"code": "Base.1.8.GeneralError", "message": "x",)"
                       R"( "@Message.ExtendedInfo": [)"
                       R"({"MessageId": "Base.1.8.PropertyValueIncorrect", "Message": "first"},)"
                       R"({"MessageId": "Raidcfg.1.0.Refused", "Message": "Disk 3 is not )"
                       R"(unconfigured good.", "Oem": {"Raidcfg": {"Code": 18}}}]}})"));
    const RedfishStatus status = client->Post(kVolumes, {{"RAIDType", "RAID1"}});
    EXPECT_EQ(status.code, static_cast<RaidErrorCode>(18));
    EXPECT_EQ(status.text, "Disk 3 is not unconfigured good.");
}

TEST_F(RedfishClientTest, MalformedJson) {
    auto client = OpenClient();
    bmc_->On("GET", "/redfish/v1/Systems/1", Json(200, R"({"Id": "1",)"));
    nlohmann::json out;
    const RedfishStatus status = client->Get("/redfish/v1/Systems/1", out);
    EXPECT_EQ(status.code, Quillon::RaidConfig::RAID_REST_FAILED);
    EXPECT_EQ(status.text,
              "BMC 10.0.0.5: malformed JSON in the answer to GET /redfish/v1/Systems/1");
}

TEST_F(RedfishClientTest, MalformedServiceRoot) {
    bmc_->Clear("GET", "/redfish/v1");
    bmc_->On("GET", "/redfish/v1", Json(200, "<html>login</html>"));
    const RedfishStatus status = Client()->Open();
    EXPECT_EQ(status.code, Quillon::RaidConfig::RAID_REST_FAILED);
    EXPECT_EQ(status.text, "BMC 10.0.0.5: malformed JSON in the answer to GET /redfish/v1");
}

TEST_F(RedfishClientTest, TimeoutGivesCodeFourWithoutRetry) {
    auto client = OpenClient();
    bmc_->On("GET", "/redfish/v1/Systems",
             Broken(TransportError::Timeout, "no answer within 30 s"));
    nlohmann::json out;
    const RedfishStatus status = client->Get("/redfish/v1/Systems", out);
    EXPECT_EQ(status.code, Quillon::RaidConfig::RAID_CONNECT_FAILED);
    EXPECT_EQ(status.text, "BMC 10.0.0.5: no answer within 30 s");
    EXPECT_EQ(bmc_->Count("GET", "/redfish/v1/Systems"), 1u);
}

TEST_F(RedfishClientTest, EveryRequestCarriesWhatIsLeftOfTheTotal) {
    auto settings = Settings();
    settings.total_limit = 45s;
    auto client = Client(settings);
    ASSERT_TRUE(client->Open().ok());
    for (const auto& request : bmc_->requests) {
        EXPECT_GT(request.timeout.count(), 0);
        EXPECT_LE(request.timeout, std::chrono::milliseconds(45s));
    }
}

// --- retries ---------------------------------------------------------------------------------

TEST_F(RedfishClientTest, Retries503HonouringRetryAfter) {
    auto client = OpenClient();
    bmc_->On("GET", "/redfish/v1/Systems", Status(503, {{"retry-after", "3"}}));
    bmc_->On("GET", "/redfish/v1/Systems", Json(200, R"({"Members": []})"));
    nlohmann::json out;
    const RedfishStatus status = client->Get("/redfish/v1/Systems", out);
    ASSERT_TRUE(status.ok()) << status.text;
    EXPECT_EQ(bmc_->Count("GET", "/redfish/v1/Systems"), 2u);
    ASSERT_EQ(sleeps_.size(), 1u);
    EXPECT_EQ(sleeps_[0], std::chrono::milliseconds(3000));
}

TEST_F(RedfishClientTest, Persistent503EndsAfterTheRetriesWithBackOff) {
    auto client = OpenClient();
    bmc_->On("GET", "/redfish/v1/Systems", Status(503));
    nlohmann::json out;
    const RedfishStatus status = client->Get("/redfish/v1/Systems", out);
    EXPECT_EQ(status.code, Quillon::RaidConfig::RAID_REST_FAILED);
    EXPECT_EQ(status.text,
              "BMC 10.0.0.5: HTTP 503 on GET /redfish/v1/Systems: Service Unavailable");
    EXPECT_EQ(bmc_->Count("GET", "/redfish/v1/Systems"), 4u); // 1 + max_retries
    const std::vector<std::chrono::milliseconds> expected = {200ms, 400ms, 800ms};
    EXPECT_EQ(sleeps_, expected);
}

TEST_F(RedfishClientTest, RetryAfterBeyondTheTotalIsNotWaitedFor) {
    auto settings = Settings();
    settings.total_limit = 20s;
    auto client = Client(settings);
    ASSERT_TRUE(client->Open().ok());
    bmc_->On("GET", "/redfish/v1/Systems", Status(503, {{"retry-after", "60"}}));
    nlohmann::json out;
    EXPECT_EQ(client->Get("/redfish/v1/Systems", out).code, Quillon::RaidConfig::RAID_REST_FAILED);
    EXPECT_EQ(bmc_->Count("GET", "/redfish/v1/Systems"), 1u);
    EXPECT_TRUE(sleeps_.empty());
}

TEST_F(RedfishClientTest, GetIsRepeatedAfterAReset) {
    auto client = OpenClient();
    bmc_->On("GET", "/redfish/v1/Systems",
             Broken(TransportError::Reset, "the connection broke off"));
    bmc_->On("GET", "/redfish/v1/Systems", Json(200, R"({"Members": []})"));
    nlohmann::json out;
    ASSERT_TRUE(client->Get("/redfish/v1/Systems", out).ok());
    EXPECT_EQ(bmc_->Count("GET", "/redfish/v1/Systems"), 2u);
    EXPECT_EQ(sleeps_, std::vector<std::chrono::milliseconds>{200ms});
}

TEST_F(RedfishClientTest, PersistentResetEndsWithCodeFour) {
    auto client = OpenClient();
    bmc_->On("GET", "/redfish/v1/Systems",
             Broken(TransportError::Reset, "the connection broke off"));
    nlohmann::json out;
    const RedfishStatus status = client->Get("/redfish/v1/Systems", out);
    EXPECT_EQ(status.code, Quillon::RaidConfig::RAID_CONNECT_FAILED);
    EXPECT_EQ(status.text, "BMC 10.0.0.5: the connection broke off");
    EXPECT_EQ(bmc_->Count("GET", "/redfish/v1/Systems"), 4u);
}

TEST_F(RedfishClientTest, PostIsNeverRepeatedWhenItMayHaveBeenApplied) {
    auto client = OpenClient();
    const std::vector<raidcfg_test::FakeReply> replies = {
        Broken(TransportError::Timeout, "no answer within 30 s"),
        Broken(TransportError::Reset, "the connection broke off"),
        Status(503, {{"retry-after", "1"}}),
    };
    for (const auto& reply : replies) {
        bmc_->Clear("POST", kVolumes);
        bmc_->On("POST", kVolumes, reply);
        bmc_->On("POST", kVolumes, Status(201));
        const std::size_t before = bmc_->Count("POST", kVolumes);
        const RedfishStatus status = client->Post(kVolumes, {{"RAIDType", "RAID1"}});
        EXPECT_FALSE(status.ok());
        EXPECT_EQ(bmc_->Count("POST", kVolumes), before + 1) << status.text;
    }
    EXPECT_TRUE(sleeps_.empty());
}

TEST_F(RedfishClientTest, PostIsRepeatedWhenTheConnectionWasRefused) {
    auto client = OpenClient(); // the BMC has answered: a refusal now is a passing one
    bmc_->On("POST", kVolumes, Broken(TransportError::Connect, "connection refused"));
    bmc_->On("POST", kVolumes,
             Json(201, R"({"@odata.id": "/v/2"})", {{"location", "http://10.0.0.5/v/2"}}));
    nlohmann::json out;
    const RedfishStatus status = client->Post(kVolumes, {{"RAIDType", "RAID1"}}, &out);
    ASSERT_TRUE(status.ok()) << status.text;
    EXPECT_EQ(bmc_->Count("POST", kVolumes), 2u);
    EXPECT_EQ(out["@odata.id"], "/v/2");
    EXPECT_EQ(client->LastLocation(), "/v/2");
}

TEST_F(RedfishClientTest, DeleteRepeatedAfterAResetTakesNotFoundAsDone) {
    auto client = OpenClient();
    bmc_->On("DELETE", "/v/2", Broken(TransportError::Reset, "the connection broke off"));
    bmc_->On("DELETE", "/v/2", Json(404, ErrorBody("gone")));
    const RedfishStatus status = client->Delete("/v/2");
    EXPECT_TRUE(status.ok()) << status.text;
    EXPECT_EQ(bmc_->Count("DELETE", "/v/2"), 2u);
    // A plain 404 on a first attempt stays a failure.
    EXPECT_EQ(client->Delete("/v/3").code, Quillon::RaidConfig::RAID_TARGET_NOT_FOUND);
}

// --- tasks -----------------------------------------------------------------------------------

TEST_F(RedfishClientTest, TaskMonitorIsPolledUntilTheAnswer) {
    auto client = OpenClient();
    bmc_->On("POST", kVolumes,
             Status(202, {{"location", std::string("https://10.0.0.5") + kMonitor}}));
    bmc_->On("GET", kMonitor, Status(202));
    bmc_->On("GET", kMonitor, Status(202));
    bmc_->On("GET", kMonitor,
             Json(201, R"({"@odata.id": "/redfish/v1/Systems/1/Storage/1/Volumes/2"})",
                  {{"location", "/redfish/v1/Systems/1/Storage/1/Volumes/2"}}));
    nlohmann::json out;
    const RedfishStatus status = client->Post(kVolumes, {{"RAIDType", "RAID1"}}, &out);
    ASSERT_TRUE(status.ok()) << status.text;
    EXPECT_EQ(out["@odata.id"], "/redfish/v1/Systems/1/Storage/1/Volumes/2");
    EXPECT_EQ(client->LastLocation(), "/redfish/v1/Systems/1/Storage/1/Volumes/2");
    EXPECT_EQ(bmc_->Count("GET", kMonitor), 3u);
    EXPECT_EQ(FakeBmc::HeaderOf(bmc_->requests.back(), "X-Auth-Token"), bmc_->token);
    const std::vector<std::chrono::milliseconds> expected = {200ms, 400ms, 800ms};
    EXPECT_EQ(sleeps_, expected);
}

TEST_F(RedfishClientTest, TaskPollingHonoursRetryAfter) {
    auto client = OpenClient();
    bmc_->On("POST", kVolumes, Status(202, {{"location", kMonitor}, {"retry-after", "2"}}));
    bmc_->On("GET", kMonitor, Status(202, {{"retry-after", "1"}}));
    bmc_->On("GET", kMonitor, Status(204));
    ASSERT_TRUE(client->Post(kVolumes, {{"RAIDType", "RAID1"}}).ok());
    const std::vector<std::chrono::milliseconds> expected = {2000ms, 1000ms};
    EXPECT_EQ(sleeps_, expected);
}

TEST_F(RedfishClientTest, TaskResourceRunningThenCompleted) {
    auto client = OpenClient();
    bmc_->On("POST", kVolumes, Status(202, {{"location", kMonitor}}));
    bmc_->On("GET", kMonitor, Json(200, R"({"TaskState": "Running", "PercentComplete": 50})"));
    bmc_->On("GET", kMonitor, Json(200, R"({"TaskState": "Completed", "TaskStatus": "OK"})"));
    nlohmann::json out;
    ASSERT_TRUE(client->Post(kVolumes, {{"RAIDType", "RAID1"}}, &out).ok());
    EXPECT_EQ(out["TaskState"], "Completed");
    EXPECT_EQ(bmc_->Count("GET", kMonitor), 2u);
}

TEST_F(RedfishClientTest, AWriteAppliedOnlyAtTheNextResetIsNotReportedAsDone) {
    auto client = OpenClient();
    bmc_->On("PATCH", "/redfish/v1/Systems/1/Storage/1",
             Json(200, R"({"@Redfish.OperationApplyTime": "OnReset"})"));
    RedfishStatus status =
        client->Patch("/redfish/v1/Systems/1/Storage/1", {{"EncryptionMode", "UseLocalKey"}});
    EXPECT_EQ(status.code, Quillon::RaidConfig::RAID_OPERATION_FAILED);
    EXPECT_EQ(status.text, "BMC 10.0.0.5: PATCH /redfish/v1/Systems/1/Storage/1 was accepted, "
                           "but the BMC applies it only at the next reset of the server (OnReset)");

    bmc_->On("POST", kVolumes, Status(202, {{"location", kMonitor}}));
    bmc_->On("GET", kMonitor,
             Json(202, R"({"TaskState": "Pending", "Messages": [{"MessageId": "Job.1.0.Scheduled",)"
                       R"( "Message": "The job will run when the server is rebooted."}]})"));
    status = client->Post(kVolumes, {{"RAIDType", "RAID1"}});
    EXPECT_EQ(status.code, Quillon::RaidConfig::RAID_OPERATION_FAILED);
    EXPECT_EQ(status.text, std::string("BMC 10.0.0.5: POST ") + kVolumes +
                               " was accepted, but the BMC applies it only at the next reset of "
                               "the server (OnReset)");
    EXPECT_EQ(bmc_->Count("GET", kMonitor), 1u) << "no waiting for a reboot that is not coming";

    bmc_->On("PATCH", "/redfish/v1/Systems/1/Storage/2",
             Json(200, R"({"@Redfish.OperationApplyTime": "Immediate"})"));
    EXPECT_TRUE(client->Patch("/redfish/v1/Systems/1/Storage/2", {{"A", 1}}).ok());
}

TEST_F(RedfishClientTest, TaskEndingInExceptionFailsWithItsMessage) {
    auto client = OpenClient();
    bmc_->On("POST", kVolumes, Status(202, {{"location", kMonitor}}));
    bmc_->On("GET", kMonitor,
             Json(200,
                  R"({"TaskState": "Exception", "TaskStatus": "Critical", "Messages": [)"
                  R"({"MessageId": "Base.1.8.GeneralError", "Message": "Disks are busy."}]})"));
    const RedfishStatus status = client->Post(kVolumes, {{"RAIDType", "RAID1"}});
    EXPECT_EQ(status.code, Quillon::RaidConfig::RAID_REST_FAILED);
    EXPECT_EQ(status.text, "BMC 10.0.0.5: the task of POST /redfish/v1/Systems/1/Storage/1/Volumes "
                           "ended in Exception (Critical): Disks are busy.");
}

TEST_F(RedfishClientTest, TaskKilledWithoutMessage) {
    auto client = OpenClient();
    bmc_->On("DELETE", "/v/1", Status(202, {{"location", kMonitor}}));
    bmc_->On("GET", kMonitor, Json(200, R"({"TaskState": "Killed"})"));
    const RedfishStatus status = client->Delete("/v/1");
    EXPECT_EQ(status.code, Quillon::RaidConfig::RAID_REST_FAILED);
    EXPECT_EQ(status.text, "BMC 10.0.0.5: the task of DELETE /v/1 ended in Killed: no message");
}

TEST_F(RedfishClientTest, TaskFailureCarriesTheOemCode) {
    auto client = OpenClient();
    bmc_->On("POST", kVolumes, Status(202, {{"location", kMonitor}}));
    bmc_->On("GET", kMonitor,
             Json(200, R"({"TaskState": "Exception", "Messages": [{"Message": "Too few disks )"
                       R"(for RAID 5.", "Oem": {"Raidcfg": {"Code": 3}}}]})"));
    const RedfishStatus status = client->Post(kVolumes, {{"RAIDType", "RAID5"}});
    EXPECT_EQ(status.code, Quillon::RaidConfig::RAID_OPERATION_FAILED);
    EXPECT_EQ(status.text, "Too few disks for RAID 5.");
}

TEST_F(RedfishClientTest, TaskMonitorErrorIsTheWritesError) {
    auto client = OpenClient();
    bmc_->On("POST", kVolumes, Status(202, {{"location", kMonitor}}));
    bmc_->On("GET", kMonitor, Json(500, ErrorBody("Controller fault.")));
    const RedfishStatus status = client->Post(kVolumes, {{"RAIDType", "RAID1"}});
    EXPECT_EQ(status.text, "BMC 10.0.0.5: HTTP 500 on POST "
                           "/redfish/v1/Systems/1/Storage/1/Volumes: Controller fault.");
}

TEST_F(RedfishClientTest, TaskPollingStaysWithinTheTotal) {
    auto settings = Settings();
    settings.total_limit = 10s;
    auto client = Client(settings);
    ASSERT_TRUE(client->Open().ok());
    bmc_->On("POST", kVolumes, Status(202, {{"location", kMonitor}}));
    bmc_->On("GET", kMonitor, Status(202, {{"retry-after", "1"}}));
    const RedfishStatus status = client->Post(kVolumes, {{"RAIDType", "RAID1"}});
    EXPECT_EQ(status.code, Quillon::RaidConfig::RAID_CONNECT_FAILED);
    EXPECT_EQ(status.text, "BMC 10.0.0.5: the task of POST "
                           "/redfish/v1/Systems/1/Storage/1/Volumes did not end within 10 s");
    EXPECT_LE(Slept(), std::chrono::milliseconds(10s));
    EXPECT_GE(bmc_->Count("GET", kMonitor), 5u);
    EXPECT_LE(bmc_->Count("GET", kMonitor), 10u);
}

TEST_F(RedfishClientTest, BackOffOfTaskPollingIsCapped) {
    auto settings = Settings();
    settings.max_poll_interval = 1000ms;
    auto client = Client(settings);
    ASSERT_TRUE(client->Open().ok());
    bmc_->On("POST", kVolumes, Status(202, {{"location", kMonitor}, {"retry-after", "30"}}));
    for (int i = 0; i < 5; ++i) {
        bmc_->On("GET", kMonitor, Status(202));
    }
    bmc_->On("GET", kMonitor, Status(204));
    ASSERT_TRUE(client->Post(kVolumes, {{"RAIDType", "RAID1"}}).ok());
    const std::vector<std::chrono::milliseconds> expected = {1000ms, 200ms,  400ms,
                                                             800ms,  1000ms, 1000ms};
    EXPECT_EQ(sleeps_, expected);
}

// --- cache and ETags -------------------------------------------------------------------------

TEST_F(RedfishClientTest, ReadsAreCachedUntilAWrite) {
    auto client = OpenClient();
    bmc_->On("GET", "/redfish/v1/Systems/1", Json(200, R"({"Id": "1", "Name": "a"})"));
    bmc_->On("GET", "/redfish/v1/Systems/1", Json(200, R"({"Id": "1", "Name": "b"})"));
    bmc_->On("PATCH", "/redfish/v1/Systems/1", Status(204));
    nlohmann::json out;
    ASSERT_TRUE(client->Get("/redfish/v1/Systems/1", out).ok());
    ASSERT_TRUE(client->Get("/redfish/v1/Systems/1", out).ok());
    EXPECT_EQ(out["Name"], "a");
    EXPECT_EQ(bmc_->Count("GET", "/redfish/v1/Systems/1"), 1u);
    const std::size_t sent = client->RequestsSent();

    ASSERT_TRUE(client->Patch("/redfish/v1/Systems/1", {{"AssetTag", "x"}}).ok());
    ASSERT_TRUE(client->Get("/redfish/v1/Systems/1", out).ok());
    EXPECT_EQ(out["Name"], "b");
    EXPECT_EQ(bmc_->Count("GET", "/redfish/v1/Systems/1"), 2u);
    EXPECT_EQ(client->RequestsSent(), sent + 2);
}

TEST_F(RedfishClientTest, FailedWriteDropsTheCacheToo) {
    auto client = OpenClient();
    bmc_->On("GET", "/x", Json(200, "{}"));
    nlohmann::json out;
    ASSERT_TRUE(client->Get("/x", out).ok());
    EXPECT_FALSE(client->Post("/y", nlohmann::json::object()).ok());
    ASSERT_TRUE(client->Get("/x", out).ok());
    EXPECT_EQ(bmc_->Count("GET", "/x"), 2u);
}

TEST_F(RedfishClientTest, PatchCarriesTheCachedETag) {
    auto client = OpenClient();
    bmc_->On("GET", "/a", Json(200, R"({"Id": "a"})", {{"etag", "\"a1\""}}));
    bmc_->On("GET", "/b", Json(200, R"({"Id": "b", "@odata.etag": "W/\"b1\""})"));
    bmc_->On("PATCH", "/a", Status(204));
    bmc_->On("PATCH", "/b", Status(204));
    bmc_->On("PATCH", "/c", Status(204));
    nlohmann::json out;
    ASSERT_TRUE(client->Get("/a", out).ok());
    ASSERT_TRUE(client->Patch("/a", {{"X", 1}}).ok());
    EXPECT_EQ(FakeBmc::HeaderOf(bmc_->requests.back(), "If-Match"), "\"a1\"");
    ASSERT_TRUE(client->Get("/b", out).ok());
    ASSERT_TRUE(client->Patch("/b", {{"X", 1}}).ok());
    EXPECT_EQ(FakeBmc::HeaderOf(bmc_->requests.back(), "If-Match"), "W/\"b1\"");
    ASSERT_TRUE(client->Patch("/c", {{"X", 1}}).ok());
    EXPECT_EQ(FakeBmc::HeaderOf(bmc_->requests.back(), "If-Match"), "");
    EXPECT_EQ(FakeBmc::HeaderOf(bmc_->requests.back(), "Content-Type"), "application/json");
}

// --- $expand ---------------------------------------------------------------------------------

constexpr const char* kStorage = "/redfish/v1/Systems/1/Storage/1";

// A Storage resource as a plain GET gives it, and what it links to.
void AddStorageTree(FakeBmc& bmc) {
    bmc.On("GET", kStorage,
           Json(200, R"({"@odata.id": "/redfish/v1/Systems/1/Storage/1", "Id": "1",)"
                     R"( "Drives": [{"@odata.id": "/d/0"}, {"@odata.id": "/d/1"}],)"
                     R"( "Volumes": {"@odata.id": "/redfish/v1/Systems/1/Storage/1/Volumes"},)"
                     R"( "Links": {"Enclosures": [{"@odata.id": "/redfish/v1/Chassis/1"}]},)"
                     R"( "@Redfish.Settings": {"SettingsObject": {"@odata.id": "/s"}},)"
                     R"( "Status": {"Health": "OK"}})"));
    bmc.On("GET", "/d/0",
           Json(200,
                R"({"@odata.id": "/d/0", "Id": "0", "Links": {"Volumes": [{"@odata.id": "/v/0"}]},)"
                R"( "Assembly": {"@odata.id": "/d/0/Assembly"}})"));
    bmc.On("GET", "/d/1", Json(200, R"({"@odata.id": "/d/1", "Id": "1"})"));
    bmc.On("GET", "/d/0/Assembly", Json(200, R"({"@odata.id": "/d/0/Assembly", "Id": "A"})"));
    bmc.On("GET", kVolumes,
           Json(200, R"({"@odata.id": "/redfish/v1/Systems/1/Storage/1/Volumes",)"
                     R"( "Members": [{"@odata.id": "/v/0"}], "Members@odata.count": 1})"));
    bmc.On("GET", "/v/0", Json(200, R"({"@odata.id": "/v/0", "Id": "0", "RAIDType": "RAID1"})"));
}

nlohmann::json ExpandedStorage() {
    return nlohmann::json::parse(
        R"({"@odata.id": "/redfish/v1/Systems/1/Storage/1", "Id": "1",)"
        R"( "Drives": [{"@odata.id": "/d/0", "Id": "0", "Links": {"Volumes": [{"@odata.id": "/v/0"}]},)"
        R"(   "Assembly": {"@odata.id": "/d/0/Assembly", "Id": "A"}},)"
        R"(   {"@odata.id": "/d/1", "Id": "1"}],)"
        R"( "Volumes": {"@odata.id": "/redfish/v1/Systems/1/Storage/1/Volumes",)"
        R"(   "Members": [{"@odata.id": "/v/0", "Id": "0", "RAIDType": "RAID1"}], "Members@odata.count": 1},)"
        R"( "Links": {"Enclosures": [{"@odata.id": "/redfish/v1/Chassis/1"}]},)"
        R"( "@Redfish.Settings": {"SettingsObject": {"@odata.id": "/s"}},)"
        R"( "Status": {"Health": "OK"}})");
}

TEST_F(RedfishClientTest, ExpandWithTheServiceWhenAdvertised) {
    bmc_ = std::make_shared<FakeBmc>();
    bmc_->StandardService(true);
    AddStorageTree(*bmc_);
    const std::string query = std::string(kStorage) + "?$expand=.($levels=2)";
    bmc_->On("GET", query, Json(200, ExpandedStorage().dump()));
    auto client = OpenClient();
    EXPECT_TRUE(client->ExpandSupported());
    const std::size_t before = client->RequestsSent();
    nlohmann::json out;
    const RedfishStatus status = client->GetExpanded(kStorage, 2, out);
    ASSERT_TRUE(status.ok()) << status.text;
    EXPECT_EQ(out, ExpandedStorage());
    EXPECT_EQ(client->RequestsSent(), before + 1);
    EXPECT_EQ(bmc_->Count("GET", query), 1u);

    // Again from the cache; the resources at the deepest level read as a plain GET gives them.
    ASSERT_TRUE(client->GetExpanded(kStorage, 2, out).ok());
    nlohmann::json volume;
    ASSERT_TRUE(client->Get("/v/0", volume).ok());
    EXPECT_EQ(volume["RAIDType"], "RAID1");
    nlohmann::json assembly;
    ASSERT_TRUE(client->Get("/d/0/Assembly", assembly).ok());
    EXPECT_EQ(client->RequestsSent(), before + 1);

    // A write drops the expanded read too.
    bmc_->On("DELETE", "/v/0", Status(204));
    ASSERT_TRUE(client->Delete("/v/0").ok());
    ASSERT_TRUE(client->GetExpanded(kStorage, 2, out).ok());
    EXPECT_EQ(bmc_->Count("GET", query), 2u);
}

TEST_F(RedfishClientTest, ExpandLevelsAreCappedByMaxLevels) {
    bmc_ = std::make_shared<FakeBmc>();
    bmc_->StandardService(true, 1);
    AddStorageTree(*bmc_);
    // The service expands one level; the client follows the second level itself.
    nlohmann::json one_level = nlohmann::json::parse(
        R"({"@odata.id": "/redfish/v1/Systems/1/Storage/1", "Id": "1",)"
        R"( "Drives": [{"@odata.id": "/d/0", "Id": "0", "Links": {"Volumes": [{"@odata.id": "/v/0"}]},)"
        R"(   "Assembly": {"@odata.id": "/d/0/Assembly"}},)"
        R"(   {"@odata.id": "/d/1", "Id": "1"}],)"
        R"( "Volumes": {"@odata.id": "/redfish/v1/Systems/1/Storage/1/Volumes",)"
        R"(   "Members": [{"@odata.id": "/v/0"}], "Members@odata.count": 1},)"
        R"( "Links": {"Enclosures": [{"@odata.id": "/redfish/v1/Chassis/1"}]},)"
        R"( "@Redfish.Settings": {"SettingsObject": {"@odata.id": "/s"}},)"
        R"( "Status": {"Health": "OK"}})");
    const std::string query = std::string(kStorage) + "?$expand=.($levels=1)";
    bmc_->On("GET", query, Json(200, one_level.dump()));
    auto client = OpenClient();
    nlohmann::json out;
    ASSERT_TRUE(client->GetExpanded(kStorage, 2, out).ok());
    EXPECT_EQ(out, ExpandedStorage());
    EXPECT_EQ(bmc_->Count("GET", query), 1u);
    EXPECT_EQ(bmc_->Count("GET", "/v/0"), 1u);
    EXPECT_EQ(bmc_->Count("GET", "/d/0/Assembly"), 1u);
    EXPECT_EQ(bmc_->Count("GET", "/d/0"), 0u);
    EXPECT_EQ(bmc_->Count("GET", kStorage), 0u);
}

TEST_F(RedfishClientTest, ExpandLinkByLinkWhenNotAdvertised) {
    AddStorageTree(*bmc_);
    auto client = OpenClient();
    EXPECT_FALSE(client->ExpandSupported());
    nlohmann::json out;
    const RedfishStatus status = client->GetExpanded(kStorage, 2, out);
    ASSERT_TRUE(status.ok()) << status.text;
    EXPECT_EQ(out, ExpandedStorage());
    for (const auto& request : bmc_->requests) {
        EXPECT_EQ(request.path.find("$expand"), std::string::npos) << request.path;
    }
    // Links and annotations stay as they are.
    EXPECT_EQ(bmc_->Count("GET", "/redfish/v1/Chassis/1"), 0u);
    EXPECT_EQ(bmc_->Count("GET", "/s"), 0u);
    // The resources were read once each and are cached.
    for (const char* path : {kStorage, "/d/0", "/d/1", "/d/0/Assembly", kVolumes, "/v/0"}) {
        EXPECT_EQ(bmc_->Count("GET", path), 1u) << path;
    }
    const std::size_t sent = client->RequestsSent();
    nlohmann::json drive;
    ASSERT_TRUE(client->Get("/d/1", drive).ok());
    ASSERT_TRUE(client->GetExpanded(kStorage, 2, out).ok());
    EXPECT_EQ(client->RequestsSent(), sent);

    // One level: the volumes collection is read, its members not.
    nlohmann::json shallow;
    bmc_ = std::make_shared<FakeBmc>();
    bmc_->StandardService();
    AddStorageTree(*bmc_);
    auto second = OpenClient();
    ASSERT_TRUE(second->GetExpanded(kStorage, 1, shallow).ok());
    EXPECT_EQ(shallow["Volumes"]["Members"][0], nlohmann::json({{"@odata.id", "/v/0"}}));
    EXPECT_EQ(shallow["Drives"][0]["Assembly"], nlohmann::json({{"@odata.id", "/d/0/Assembly"}}));
    EXPECT_EQ(bmc_->Count("GET", "/v/0"), 0u);
}

TEST_F(RedfishClientTest, ExpandFallsBackWhenTheServiceAnswers501) {
    bmc_ = std::make_shared<FakeBmc>();
    bmc_->StandardService(true);
    AddStorageTree(*bmc_);
    const std::string query = std::string(kStorage) + "?$expand=.($levels=2)";
    bmc_->On("GET", query, Json(501, ErrorBody("$expand is not implemented.")));
    auto client = OpenClient();
    nlohmann::json out;
    const RedfishStatus status = client->GetExpanded(kStorage, 2, out);
    ASSERT_TRUE(status.ok()) << status.text;
    EXPECT_EQ(out, ExpandedStorage());
    EXPECT_FALSE(client->ExpandSupported());
    // Later reads go link by link straight away.
    bmc_->On("GET", "/redfish/v1/Systems/1/Storage/2", Json(200, R"({"Id": "2"})"));
    ASSERT_TRUE(client->GetExpanded("/redfish/v1/Systems/1/Storage/2", 2, out).ok());
    EXPECT_EQ(bmc_->Count("GET", "/redfish/v1/Systems/1/Storage/2?$expand=.($levels=2)"), 0u);
    EXPECT_EQ(bmc_->Count("GET", query), 1u);
}

TEST_F(RedfishClientTest, ExpandIgnoredByTheServiceIsCompletedLinkByLink) {
    bmc_ = std::make_shared<FakeBmc>();
    bmc_->StandardService(true);
    AddStorageTree(*bmc_);
    auto client = OpenClient();
    nlohmann::json plain;
    ASSERT_TRUE(client->Get(kStorage, plain).ok());
    bmc_->On("GET", std::string(kStorage) + "?$expand=.($levels=2)", Json(200, plain.dump()));
    nlohmann::json out;
    ASSERT_TRUE(client->GetExpanded(kStorage, 2, out).ok());
    EXPECT_EQ(out, ExpandedStorage());
}

TEST_F(RedfishClientTest, BrokenLinksStayUnexpandedButAnUnreachableBmcFails) {
    AddStorageTree(*bmc_);
    bmc_->Clear("GET", "/d/1");
    bmc_->On("GET", "/d/1", Json(500, ErrorBody("Drive not readable.")));
    auto client = OpenClient();
    nlohmann::json out;
    ASSERT_TRUE(client->GetExpanded(kStorage, 1, out).ok());
    EXPECT_EQ(out["Drives"][1], nlohmann::json({{"@odata.id", "/d/1"}}));
    EXPECT_EQ(out["Drives"][0]["Id"], "0");

    client->DropCache();
    bmc_->Clear("GET", "/d/1");
    bmc_->On("GET", "/d/1", Broken(TransportError::Timeout, "no answer within 30 s"));
    const RedfishStatus status = client->GetExpanded(kStorage, 1, out);
    EXPECT_EQ(status.code, Quillon::RaidConfig::RAID_CONNECT_FAILED);
    EXPECT_EQ(status.text, "BMC 10.0.0.5: no answer within 30 s");
}

// --- secrets and the log ---------------------------------------------------------------------

TEST_F(RedfishClientTest, PasswordAndTokenNeverInTextsOrLog) {
    const std::string password = kPassword;
    const std::string basic = "YWRtaW46UGE1NS13MHJkIXg=";
    std::vector<std::string> texts;
    {
        auto client = OpenClient();
        bmc_->On("POST", kVolumes,
                 Json(500, ErrorBody("Cannot use token " + bmc_->token + " with " + password)));
        texts.push_back(client->Post(kVolumes, {{"Password", password}}).text);
        bmc_->On("POST", "/t", Status(202, {{"location", kMonitor}}));
        bmc_->On("GET", kMonitor,
                 Json(200, R"({"TaskState": "Exception", "Messages": [{"Message": "bad )" +
                               password + R"("}]})"));
        texts.push_back(client->Post("/t", nlohmann::json::object()).text);
        bmc_->On("GET", "/gone", Broken(TransportError::Reset, "broke " + password));
        nlohmann::json out;
        texts.push_back(client->Get("/gone", out).text);
    }
    // Basic authentication and a wrong password.
    bmc_ = std::make_shared<FakeBmc>();
    bmc_->StandardService();
    bmc_->Clear("POST", kSessions);
    bmc_->On("POST", kSessions, Status(501));
    bmc_->On("GET", "/redfish/v1/Systems", Json(401, ErrorBody("Bad password " + password)));
    texts.push_back(Client()->Open().text);

    for (const auto& text : texts) {
        EXPECT_FALSE(text.empty());
        EXPECT_EQ(text.find(password), std::string::npos) << text;
        EXPECT_EQ(text.find("tok-5f2e9a71c3"), std::string::npos) << text;
        EXPECT_EQ(text.find(basic), std::string::npos) << text;
    }
    const std::string log = LogText();
    ASSERT_FALSE(log.empty());
    EXPECT_EQ(log.find(password), std::string::npos) << log;
    EXPECT_EQ(log.find("tok-5f2e9a71c3"), std::string::npos) << log;
    EXPECT_EQ(log.find(basic), std::string::npos) << log;
}

TEST_F(RedfishClientTest, RequestLinesAreLoggedAtTraceLevel) {
    {
        auto client = OpenClient();
        bmc_->On("GET", "/redfish/v1/Systems",
                 Broken(TransportError::Timeout, "no answer within 30 s"));
        nlohmann::json out;
        EXPECT_FALSE(client->Get("/redfish/v1/Systems", out).ok());
    }
    const std::string log = LogText();
    EXPECT_TRUE(
        std::regex_search(log, std::regex(R"(TRACE \S+:\d+ GET /redfish/v1 -> 200 \(\d+ ms\))")))
        << log;
    EXPECT_TRUE(std::regex_search(
        log,
        std::regex(R"(TRACE \S+:\d+ POST /redfish/v1/SessionService/Sessions -> 201 \(\d+ ms\))")))
        << log;
    EXPECT_TRUE(std::regex_search(
        log,
        std::regex(R"(TRACE \S+:\d+ GET /redfish/v1/Systems -> no answer within 30 s \(\d+ ms\))")))
        << log;
    EXPECT_TRUE(std::regex_search(
        log, std::regex(R"(TRACE \S+:\d+ DELETE /redfish/v1/SessionService/Sessions/7 -> 204)")))
        << log;
}

} // namespace
