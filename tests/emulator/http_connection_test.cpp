// HTTP/1.1 framing on every connection, plain and TLS, checked byte by byte with a raw client:
// bodies are read whatever the method, pipelined requests are answered in order, an unreadable
// request gets a Redfish error and a closed connection, HEAD mirrors GET.
#include <memory>
#include <sstream>
#include <string>
#include <thread>
#include <vector>

#include <nlohmann/json.hpp>

#include "emulator/emulator_options.hpp"
#include "emulator/http_server.hpp"
#include "emulator/redfish_service.hpp"
#include "sim/demo_machine.hpp"
#include "sim/machine_store.hpp"
#include "tests/emulator/raw_client.hpp"
#include "tests/emulator/test_certificate.hpp"
#include "tests/support/file_text.hpp"
#include "tests/support/temp_dir.hpp"

#include <gtest/gtest.h>

namespace emulator_test {
namespace {

using nlohmann::json;

const std::string kAuth = "Authorization: Basic YWRtaW46c2VjcmV0\r\n"; // admin:secret

std::string Get(const std::string& target, const std::string& extra = "") {
    return "GET " + target + " HTTP/1.1\r\nHost: 127.0.0.1\r\n" + extra + "\r\n";
}

std::string Hex(std::size_t size) {
    std::ostringstream out;
    out << std::hex << size;
    return out.str();
}

class HttpConnectionTest : public ::testing::TestWithParam<bool> {
protected:
    void SetUp() override {
        raidcfg_test::WriteFile(machine_, sim::DemoMachine::Text());
        service_ = std::make_unique<emulator::RedfishService>(
            std::make_shared<sim::MachineStore>(machine_), true);
        emulator::EmulatorOptions options;
        if (GetParam()) {
            options.tls_cert = dir_.File("cert.pem");
            options.tls_key = dir_.File("key.pem");
            TestCertificate::Write(options.tls_cert, options.tls_key);
        }
        server_ = std::make_unique<emulator::HttpServer>(*service_, options);
        std::string error;
        ASSERT_TRUE(server_->Bind(error)) << error;
        runner_ = std::thread([this] { server_->Run(); });
    }
    void TearDown() override {
        if (server_) {
            server_->Stop();
        }
        if (runner_.joinable()) {
            runner_.join();
        }
    }
    std::unique_ptr<RawClient> Connect() {
        return std::make_unique<RawClient>(server_->port(), GetParam());
    }

    raidcfg_test::TempDir dir_;
    std::string machine_ = dir_.File("machine.json");
    std::unique_ptr<emulator::RedfishService> service_;
    std::unique_ptr<emulator::HttpServer> server_;
    std::thread runner_;
};

TEST_P(HttpConnectionTest, ABodyOnAGetIsReadAndTheNextRequestIsAnswered) {
    auto client = Connect();
    client->Send(Get("/redfish/v1", "Content-Length: 11\r\n") + "hello world" + Get("/redfish"));
    const auto answers = RawClient::Split(client->Read());
    ASSERT_EQ(answers.size(), 2U);
    EXPECT_EQ(answers[0].status, 200);
    EXPECT_EQ(json::parse(answers[0].body)["Id"], "RootService");
    EXPECT_EQ(answers[1].status, 200);
    EXPECT_EQ(answers[1].body, R"({"v1":"/redfish/v1/"})");
    EXPECT_FALSE(client->closed());
}

TEST_P(HttpConnectionTest, PipelinedRequestsAreAnsweredInOrder) {
    auto client = Connect();
    client->Send(Get("/redfish") + Get("/redfish/v1/Systems") + Get("/redfish/v1/Managers", kAuth) +
                 Get("/redfish/v1/Nothing", kAuth));
    const auto answers = RawClient::Split(client->Read());
    ASSERT_EQ(answers.size(), 4U);
    EXPECT_EQ(answers[0].body, R"({"v1":"/redfish/v1/"})");
    EXPECT_EQ(answers[1].status, 401);
    EXPECT_EQ(answers[2].status, 200);
    EXPECT_EQ(json::parse(answers[2].body)["@odata.id"], "/redfish/v1/Managers");
    EXPECT_EQ(answers[3].status, 404);
}

TEST_P(HttpConnectionTest, AChunkedBodyIsRead) {
    auto client = Connect();
    const std::string login = R"({"UserName":"admin","Password":"secret"})";
    client->Send("POST /redfish/v1/SessionService/Sessions HTTP/1.1\r\nHost: 127.0.0.1\r\n"
                 "Content-Type: application/json\r\nTransfer-Encoding: chunked\r\n\r\n"
                 "10\r\n" +
                 login.substr(0, 16) + "\r\n" + Hex(login.size() - 16) + "\r\n" + login.substr(16) +
                 "\r\n0\r\n\r\n" + Get("/redfish"));
    const auto answers = RawClient::Split(client->Read());
    ASSERT_EQ(answers.size(), 2U);
    EXPECT_EQ(answers[0].status, 201);
    EXPECT_FALSE(answers[0].Header("X-Auth-Token").empty());
    EXPECT_EQ(answers[1].status, 200);
}

TEST_P(HttpConnectionTest, AnUnreadableRequestGetsARedfishErrorAndTheConnectionCloses) {
    auto client = Connect();
    client->Send("NOT HTTP AT ALL\r\n\r\n" + Get("/redfish"));
    const auto answers = RawClient::Split(client->Read());
    ASSERT_EQ(answers.size(), 1U);
    EXPECT_EQ(answers[0].status, 400);
    EXPECT_EQ(answers[0].Header("Connection"), "close");
    EXPECT_EQ(answers[0].Header("Content-Type"), "application/json");
    const json error = json::parse(answers[0].body);
    EXPECT_EQ(error["error"]["code"], "Base.1.8.GeneralError");
    EXPECT_EQ(error["error"]["@Message.ExtendedInfo"][0]["MessageId"], "Base.1.8.GeneralError");
    EXPECT_TRUE(client->closed());
}

TEST_P(HttpConnectionTest, ABodyOverTheLimitIsRefusedWith413) {
    auto client = Connect();
    client->Send("POST /redfish/v1/SessionService/Sessions HTTP/1.1\r\nHost: 127.0.0.1\r\n"
                 "Content-Length: 999999999\r\n\r\n{");
    const auto answers = RawClient::Split(client->Read());
    ASSERT_EQ(answers.size(), 1U);
    EXPECT_EQ(answers[0].status, 413);
    EXPECT_EQ(json::parse(answers[0].body)["error"]["code"], "Base.1.8.GeneralError");
    EXPECT_TRUE(client->closed());
}

TEST_P(HttpConnectionTest, HeadCarriesTheHeadersOfTheGet) {
    auto client = Connect();
    client->Send("HEAD /redfish/v1/Systems/1 HTTP/1.1\r\nHost: 127.0.0.1\r\n" + kAuth + "\r\n" +
                 Get("/redfish/v1/Systems/1", kAuth));
    const auto answers = RawClient::Split(client->Read(), {true, false});
    ASSERT_EQ(answers.size(), 2U);
    EXPECT_EQ(answers[0].status, 200);
    EXPECT_EQ(answers[0].body, "");
    EXPECT_EQ(answers[0].head, answers[1].head);
    EXPECT_EQ(answers[0].Header("Content-Length"), std::to_string(answers[1].body.size()));
    EXPECT_FALSE(answers[1].Header("ETag").empty());
}

TEST_P(HttpConnectionTest, ConnectionCloseIsHonouredAfterTheAnswer) {
    auto client = Connect();
    client->Send(Get("/redfish", "Connection: close\r\n") + Get("/redfish"));
    const auto answers = RawClient::Split(client->Read());
    ASSERT_EQ(answers.size(), 1U);
    EXPECT_EQ(answers[0].status, 200);
    EXPECT_EQ(answers[0].Header("Connection"), "close");
    EXPECT_TRUE(client->closed());
}

TEST_P(HttpConnectionTest, AClientThatExpectsContinueGetsItBeforeSendingTheBody) {
    auto client = Connect();
    const std::string login = R"({"UserName":"admin","Password":"secret"})";
    client->Send("POST /redfish/v1/SessionService/Sessions HTTP/1.1\r\nHost: 127.0.0.1\r\n"
                 "Expect: 100-continue\r\nContent-Length: " +
                 std::to_string(login.size()) + "\r\n\r\n");
    const auto interim = RawClient::Split(client->Read(500));
    ASSERT_EQ(interim.size(), 1U);
    EXPECT_EQ(interim[0].status, 100);
    client->Send(login);
    const auto answers = RawClient::Split(client->Read());
    ASSERT_EQ(answers.size(), 1U);
    EXPECT_EQ(answers[0].status, 201);
}

INSTANTIATE_TEST_SUITE_P(PlainAndTls, HttpConnectionTest, ::testing::Values(false, true),
                         [](const ::testing::TestParamInfo<bool>& info) {
                             return info.param ? std::string("Tls") : std::string("Plain");
                         });

} // namespace
} // namespace emulator_test
