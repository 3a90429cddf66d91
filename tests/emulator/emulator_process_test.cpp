// The raidcfg-bmc program itself: started on a copy of the demo machine or on a test mockup,
// reached over loopback sockets, stopped by signals.
#include <csignal>
#include <filesystem>
#include <string>

#include <nlohmann/json.hpp>

#include "sim/demo_machine.hpp"
#include "sim/machine_json.hpp"
#include "tests/emulator/emulator_process.hpp"
#include "tests/emulator/httplib_include.hpp"
#include "tests/emulator/test_certificate.hpp"
#include "tests/support/file_text.hpp"
#include "tests/support/temp_dir.hpp"

#include <gtest/gtest.h>

namespace emulator_test {
namespace {

using nlohmann::json;

class EmulatorProcessTest : public ::testing::Test {
protected:
    void SetUp() override {
        machine_ = dir_.File("machine.json");
        raidcfg_test::WriteFile(machine_, sim::DemoMachine::Text());
    }

    static int Port(EmulatorProcess& process) {
        const std::string line = process.FirstLine();
        if (line.empty() || line.find_first_not_of("0123456789") != std::string::npos) {
            ADD_FAILURE() << "first line of standard output: \"" << line
                          << "\"; stderr: " << process.Stderr();
            return 0;
        }
        return std::stoi(line);
    }

    static std::string Mockup() { return std::string(RAIDCFG_TEST_DATA_DIR) + "/mockups/short"; }

    raidcfg_test::TempDir dir_;
    std::string machine_;
};

TEST_F(EmulatorProcessTest, PrintsPortFirstWritesPortFileAndServes) {
    const std::string port_file = dir_.File("port");
    EmulatorProcess process(dir_.path(), {"--machine", machine_, "--port-file", port_file});
    const int port = Port(process);
    ASSERT_GT(port, 0);
    EXPECT_EQ(raidcfg_test::ReadFile(port_file), std::to_string(port) + "\n");

    httplib::Client client("127.0.0.1", port);
    const auto root = client.Get("/redfish/v1");
    ASSERT_TRUE(root);
    EXPECT_EQ(root->status, 200);
    EXPECT_EQ(json::parse(root->body)["Id"], "RootService");
    EXPECT_EQ(process.Stop(SIGTERM), 0);
    EXPECT_EQ(process.Stdout(), std::to_string(port) + "\n");
}

TEST_F(EmulatorProcessTest, CountsRequestsAndConnectionsAndStopsOnSigterm) {
    EmulatorProcess process(dir_.path(), {"--machine", machine_, "--latency-ms", "1"});
    const int port = Port(process);
    ASSERT_GT(port, 0);
    {
        // Three requests on one kept-alive connection, then one on a second connection.
        httplib::Client first("127.0.0.1", port);
        first.set_keep_alive(true);
        first.set_basic_auth("admin", "secret");
        for (int i = 0; i < 3; ++i) {
            const auto answer = first.Get("/redfish/v1/Systems/1/Storage");
            ASSERT_TRUE(answer);
            EXPECT_EQ(answer->status, 200);
        }
        httplib::Client second("127.0.0.1", port);
        const auto anonymous = second.Get("/redfish/v1/Managers/1");
        ASSERT_TRUE(anonymous);
        EXPECT_EQ(anonymous->status, 401);
    }
    EXPECT_EQ(process.Stop(SIGTERM), 0);
    EXPECT_EQ(process.LastErrorLine(), "raidcfg-bmc: served 4 requests on 2 connections");
}

TEST_F(EmulatorProcessTest, WritesReachTheMachineFileAndSigintStops) {
    EmulatorProcess process(dir_.path(), {"--machine", machine_, "--no-expand"});
    const int port = Port(process);
    ASSERT_GT(port, 0);
    httplib::Client client("127.0.0.1", port);
    client.set_keep_alive(true);
    const auto login =
        client.Post("/redfish/v1/SessionService/Sessions",
                    R"({"UserName": "admin", "Password": "secret"})", "application/json");
    ASSERT_TRUE(login);
    ASSERT_EQ(login->status, 201);
    const httplib::Headers session{{"X-Auth-Token", login->get_header_value("X-Auth-Token")}};
    const auto patched = client.Patch("/redfish/v1/Systems/1/Storage/OOB_LSI-0/Drives/6", session,
                                      R"({"HotspareType": "Global"})", "application/json");
    ASSERT_TRUE(patched);
    EXPECT_EQ(patched->status, 200);
    const auto expanded = client.Get("/redfish/v1/Systems/1/Storage?$expand=.", session);
    ASSERT_TRUE(expanded);
    EXPECT_EQ(expanded->status, 501);
    const auto logout = client.Delete(login->get_header_value("Location").c_str(), session);
    ASSERT_TRUE(logout);
    EXPECT_EQ(logout->status, 204);
    EXPECT_EQ(process.Stop(SIGINT), 0);
    EXPECT_EQ(process.LastErrorLine(), "raidcfg-bmc: served 4 requests on 1 connections");

    sim::Machine machine;
    std::string error;
    ASSERT_TRUE(sim::MachineJson::Parse(raidcfg_test::ReadFile(machine_), machine_, machine, error))
        << error;
    for (const sim::Controller& controller : machine.controllers) {
        if (controller.family == "OOB_LSI") {
            EXPECT_EQ(controller.disks.at(6).state, "GHS");
        }
    }
    EXPECT_EQ(process.Stderr().find("secret"), std::string::npos);
}

TEST_F(EmulatorProcessTest, ServesHttpsWithTheGivenCertificate) {
    const std::string cert = dir_.File("cert.pem");
    const std::string key = dir_.File("key.pem");
    TestCertificate::Write(cert, key);
    EmulatorProcess process(dir_.path(),
                            {"--machine", machine_, "--tls-cert", cert, "--tls-key", key});
    const int port = Port(process);
    ASSERT_GT(port, 0);
    {
        httplib::SSLClient client("127.0.0.1", port);
        client.set_ca_cert_path(cert.c_str());
        client.enable_server_certificate_verification(true);
        client.set_basic_auth("admin", "secret");
        const auto answer = client.Get("/redfish/v1/Managers/1");
        ASSERT_TRUE(answer) << httplib::to_string(answer.error());
        EXPECT_EQ(answer->status, 200);
    }
    {
        // Plain HTTP to the TLS port gets no answer.
        httplib::Client plain("127.0.0.1", port);
        plain.set_read_timeout(5, 0);
        const auto answer = plain.Get("/redfish/v1");
        EXPECT_FALSE(answer && answer->status == 200);
    }
    EXPECT_EQ(process.Stop(SIGTERM), 0);
    // The plain attempt was a connection, but never a request.
    EXPECT_EQ(process.LastErrorLine(), "raidcfg-bmc: served 1 requests on 2 connections");
}

TEST_F(EmulatorProcessTest, BadArgumentsExitWithFiveAndOneLine) {
    const std::vector<std::vector<std::string>> cases{
        {},
        {"--machine", machine_, "--listen", "nowhere"},
        {"--machine", machine_, "--tls-cert", machine_},
        {"--machine", machine_, "--tls-cert", machine_, "--tls-key", machine_},
        {"--machine", machine_, "--latency-ms", "-3"},
        {"--machine", machine_, "--bogus"},
        {"--machine", dir_.File("missing.json")},
        {"--mockup", dir_.File("nowhere")},
        {"--machine", machine_, "--mockup", Mockup()},
        {"--mockup", Mockup(), "--user", "admin"},
        {"--machine", machine_, "--user", "admin", "--password", "secret"},
        {"--mockup", Mockup(), "--no-expand"},
        {"--mockup", Mockup(), "--log-requests", dir_.File("missing/requests.log")},
    };
    for (const auto& args : cases) {
        const raidcfg_test::TempDir run;
        EmulatorProcess process(run.path(), args);
        EXPECT_EQ(process.Wait(), 5);
        const std::string err = process.Stderr();
        EXPECT_EQ(err.rfind("raidcfg-bmc: ", 0), 0U) << err;
        EXPECT_EQ(err.find('\n'), err.size() - 1) << err;
        EXPECT_EQ(process.Stdout(), "");
    }
}

TEST_F(EmulatorProcessTest, APortAnotherEmulatorListensOnIsRefused) {
    EmulatorProcess first(dir_.path(), {"--machine", machine_});
    const int port = Port(first);
    ASSERT_GT(port, 0);
    raidcfg_test::TempDir other;
    EmulatorProcess second(
        other.path(), {"--machine", machine_, "--listen", "127.0.0.1:" + std::to_string(port)});
    if (!second.FirstLine().empty()) {
        second.Stop(SIGTERM);
        FAIL() << "a second server took the port: the two would split the requests";
    }
    EXPECT_EQ(second.Wait(), 1);
    EXPECT_EQ(second.Stdout(), "");
    EXPECT_EQ(second.Stderr(), "raidcfg-bmc: cannot listen on 127.0.0.1:" + std::to_string(port) +
                                   ": Address already in use\n");
    // The first one still answers every request.
    httplib::Client client("127.0.0.1", port);
    const auto root = client.Get("/redfish/v1");
    ASSERT_TRUE(root);
    EXPECT_EQ(root->status, 200);
    EXPECT_EQ(first.Stop(SIGTERM), 0);
}

TEST_F(EmulatorProcessTest, UnusableMachineFileIsNamed) {
    raidcfg_test::WriteFile(machine_, R"({"controllers": [{"family": "OOB_LSI"}]})");
    EmulatorProcess process(dir_.path(), {"--machine", machine_});
    EXPECT_EQ(process.Wait(), 5);
    EXPECT_NE(process.Stderr().find("machine.json"), std::string::npos);
}

TEST_F(EmulatorProcessTest, ServesAMockupAndLogsItsRequests) {
    const std::string log = dir_.File("requests.log");
    EmulatorProcess process(dir_.path(), {"--mockup", Mockup(), "--log-requests", log});
    const int port = Port(process);
    ASSERT_GT(port, 0);
    {
        httplib::Client client("127.0.0.1", port);
        client.set_basic_auth("anyone", "anything");
        const auto system = client.Get("/redfish/v1/Systems/Sys.1?$expand=.");
        ASSERT_TRUE(system);
        EXPECT_EQ(system->status, 200);
        EXPECT_EQ(json::parse(system->body)["Storage"]["Members"][0]["@odata.id"],
                  "/redfish/v1/Systems/Sys.1/Storage/RAIDIntegrated");
    }
    EXPECT_EQ(process.Stop(SIGTERM), 0);
    const std::string err = process.Stderr();
    EXPECT_EQ(err.substr(0, err.find('\n')), "raidcfg-bmc: serving the mockup '" + Mockup() +
                                                 "' on http://127.0.0.1:" + std::to_string(port));
    EXPECT_EQ(process.LastErrorLine(), "raidcfg-bmc: served 1 requests on 1 connections");
    EXPECT_EQ(raidcfg_test::ReadFile(log), "GET /redfish/v1/Systems/Sys.1?$expand=. 200\n");
}

TEST_F(EmulatorProcessTest, MockupTakesOnlyTheGivenUser) {
    EmulatorProcess process(dir_.path(),
                            {"--mockup", Mockup(), "--user", "admin", "--password", "secret"});
    const int port = Port(process);
    ASSERT_GT(port, 0);
    {
        httplib::Client client("127.0.0.1", port);
        client.set_basic_auth("admin", "wrong");
        const auto refused = client.Get("/redfish/v1/Managers/BMC");
        ASSERT_TRUE(refused);
        EXPECT_EQ(refused->status, 401);
        client.set_basic_auth("admin", "secret");
        const auto manager = client.Get("/redfish/v1/Managers/BMC");
        ASSERT_TRUE(manager);
        EXPECT_EQ(manager->status, 200);
    }
    EXPECT_EQ(process.Stop(SIGINT), 0);
    EXPECT_EQ(process.Stderr().find("secret"), std::string::npos);
}

TEST_F(EmulatorProcessTest, LogsTheRequestsOfAMachineFile) {
    const std::string log = dir_.File("requests.log");
    EmulatorProcess process(dir_.path(), {"--machine", machine_, "--log-requests", log});
    const int port = Port(process);
    ASSERT_GT(port, 0);
    {
        httplib::Client client("127.0.0.1", port);
        const auto anonymous = client.Get("/redfish/v1/Managers/1");
        ASSERT_TRUE(anonymous);
        EXPECT_EQ(anonymous->status, 401);
    }
    EXPECT_EQ(process.Stop(SIGTERM), 0);
    EXPECT_EQ(raidcfg_test::ReadFile(log), "GET /redfish/v1/Managers/1 401\n");
}

TEST_F(EmulatorProcessTest, UnusableMockupIsNamed) {
    const std::string tree = dir_.File("tree");
    std::filesystem::create_directories(tree + "/Systems");
    raidcfg_test::WriteFile(tree + "/index.json", R"({"Id": "RootService"})");
    raidcfg_test::WriteFile(tree + "/Systems/index.json", "{");
    EmulatorProcess process(dir_.path(), {"--mockup", tree});
    EXPECT_EQ(process.Wait(), 5);
    const std::string err = process.Stderr();
    EXPECT_NE(err.find(tree + "/Systems/index.json"), std::string::npos) << err;
    EXPECT_EQ(err.find('\n'), err.size() - 1) << err;
    EXPECT_EQ(process.Stdout(), "");
}

} // namespace
} // namespace emulator_test
