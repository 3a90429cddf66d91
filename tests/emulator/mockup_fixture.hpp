#pragma once

#include <memory>
#include <optional>
#include <string>
#include <utility>
#include <vector>

#include <nlohmann/json.hpp>

#include "emulator/http_request.hpp"
#include "emulator/http_response.hpp"
#include "emulator/mockup_service.hpp"

#include <gtest/gtest.h>

namespace emulator_test {

// A mockup service over one of the hand-written trees of tests/emulator/mockups, with helpers
// to send requests the way a client would, without any socket.
class MockupFixture : public ::testing::Test {
public:
    // The folder of a test tree: "short" (no redfish/v1 folders) or "long".
    static std::string MockupDir(const std::string& name);
    // A file of a test tree, parsed.
    static nlohmann::json Recorded(const std::string& name, const std::string& file);

protected:
    using Headers = std::vector<std::pair<std::string, std::string>>;

    // "admin:secret"; any credentials pass unless the service is given its own.
    static constexpr const char* kBasic = "Basic YWRtaW46c2VjcmV0";
    static constexpr const char* kSystem = "/redfish/v1/Systems/Sys.1";
    static constexpr const char* kStorage = "/redfish/v1/Systems/Sys.1/Storage/RAIDIntegrated";
    static constexpr const char* kVolumes =
        "/redfish/v1/Systems/Sys.1/Storage/RAIDIntegrated/Volumes";

    void SetUp() override { Serve("short"); }
    // Replaces the service with one over a test tree.
    void Serve(const std::string& name,
               std::optional<emulator::MockupService::Credentials> credentials = std::nullopt);

    emulator::HttpResponse Send(const std::string& method, const std::string& target,
                                const std::string& body = "",
                                Headers headers = {{"Authorization", kBasic}});
    emulator::HttpResponse Get(const std::string& target) { return Send("GET", target); }
    nlohmann::json GetJson(const std::string& target);
    emulator::HttpResponse Post(const std::string& target, const nlohmann::json& body) {
        return Send("POST", target, body.dump());
    }
    emulator::HttpResponse Patch(const std::string& target, const nlohmann::json& body) {
        return Send("PATCH", target, body.dump());
    }
    emulator::HttpResponse Delete(const std::string& target) { return Send("DELETE", target); }

    static nlohmann::json Body(const emulator::HttpResponse& response);
    // The MessageId of an error answer.
    static std::string MessageId(const emulator::HttpResponse& response);

    std::unique_ptr<emulator::MockupService> service_;
};

} // namespace emulator_test
