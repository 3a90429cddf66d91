// The HTTP layer in this process, on a loopback port: it serves either service, and logs each
// request it hands on.
#include <memory>
#include <string>
#include <thread>

#include <nlohmann/json.hpp>

#include "emulator/emulator_options.hpp"
#include "emulator/http_server.hpp"
#include "emulator/mockup_service.hpp"
#include "emulator/mockup_tree.hpp"
#include "emulator/redfish_service.hpp"
#include "emulator/request_log.hpp"
#include "sim/demo_machine.hpp"
#include "sim/machine_store.hpp"
#include "tests/emulator/httplib_include.hpp"
#include "tests/support/file_text.hpp"
#include "tests/support/temp_dir.hpp"

#include <gtest/gtest.h>

namespace emulator_test {
namespace {

using nlohmann::json;

class HttpServerTest : public ::testing::Test {
protected:
    // Serves the service on a free port with a request log, runs fn with a client, stops.
    template <typename Fn> void WithServer(emulator::RequestHandler& service, Fn fn) {
        std::string error;
        ASSERT_TRUE(log_.Open(log_path_, error)) << error;
        emulator::EmulatorOptions options;
        emulator::HttpServer server(service, options, &log_);
        ASSERT_TRUE(server.Bind(error)) << error;
        std::thread runner([&server] { server.Run(); });
        {
            httplib::Client client("127.0.0.1", server.port());
            client.set_keep_alive(true);
            fn(client);
        }
        server.Stop();
        runner.join();
    }

    raidcfg_test::TempDir dir_;
    std::string log_path_ = dir_.File("requests.log");
    emulator::RequestLog log_;
};

TEST_F(HttpServerTest, LogsEveryRequestOfAMockup) {
    emulator::MockupTree tree;
    std::string error;
    ASSERT_TRUE(emulator::MockupTree::Load(std::string(RAIDCFG_TEST_DATA_DIR) + "/mockups/short",
                                           tree, error))
        << error;
    emulator::MockupService service(std::move(tree), std::nullopt);
    WithServer(service, [](httplib::Client& client) {
        const auto root = client.Get("/redfish/v1/");
        ASSERT_TRUE(root);
        EXPECT_EQ(root->status, 200);
        EXPECT_EQ(root->get_header_value("OData-Version"), "4.0");
        EXPECT_EQ(json::parse(root->body)["Id"], "RootService");
        const auto refused = client.Get("/redfish/v1/Systems?$expand=.");
        ASSERT_TRUE(refused);
        EXPECT_EQ(refused->status, 401);
        client.set_basic_auth("any", "one");
        const auto head = client.Head("/redfish/v1/Systems/Sys.1");
        ASSERT_TRUE(head);
        EXPECT_EQ(head->status, 200);
        EXPECT_TRUE(head->body.empty());
        EXPECT_EQ(head->get_header_value("Content-Type"), "application/json");
        const auto missing = client.Delete("/redfish/v1/Systems/Sys%2E9");
        ASSERT_TRUE(missing);
        EXPECT_EQ(missing->status, 404);
    });
    EXPECT_EQ(raidcfg_test::ReadFile(log_path_), "GET /redfish/v1/ 200\n"
                                                 "GET /redfish/v1/Systems?$expand=. 401\n"
                                                 "HEAD /redfish/v1/Systems/Sys.1 200\n"
                                                 "DELETE /redfish/v1/Systems/Sys%2E9 404\n");
}

TEST_F(HttpServerTest, LogsEveryRequestOfAMachine) {
    const std::string machine = dir_.File("machine.json");
    raidcfg_test::WriteFile(machine, sim::DemoMachine::Text());
    emulator::RedfishService service(std::make_shared<sim::MachineStore>(machine), true);
    WithServer(service, [](httplib::Client& client) {
        const auto root = client.Get("/redfish/v1");
        ASSERT_TRUE(root);
        EXPECT_EQ(root->status, 200);
        client.set_basic_auth("admin", "secret");
        const auto storage = client.Get("/redfish/v1/Systems/1/Storage?$expand=.");
        ASSERT_TRUE(storage);
        EXPECT_EQ(storage->status, 200);
        const auto missing = client.Patch("/redfish/v1/Systems/2", "{}", "application/json");
        ASSERT_TRUE(missing);
        EXPECT_EQ(missing->status, 404);
    });
    EXPECT_EQ(raidcfg_test::ReadFile(log_path_), "GET /redfish/v1 200\n"
                                                 "GET /redfish/v1/Systems/1/Storage?$expand=. 200\n"
                                                 "PATCH /redfish/v1/Systems/2 404\n");
}

} // namespace
} // namespace emulator_test
