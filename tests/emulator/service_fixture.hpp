#pragma once

#include <functional>
#include <memory>
#include <set>
#include <string>
#include <utility>
#include <vector>

#include <nlohmann/json.hpp>

#include "emulator/http_request.hpp"
#include "emulator/http_response.hpp"
#include "emulator/redfish_service.hpp"
#include "sim/machine.hpp"
#include "sim/machine_store.hpp"
#include "tests/support/temp_dir.hpp"

#include <gtest/gtest.h>

namespace emulator_test {

// A Redfish service over a fresh copy of the demo machine in a temporary directory, with
// helpers to send requests the way a client would, without any socket.
class ServiceFixture : public ::testing::Test {
protected:
    using Headers = std::vector<std::pair<std::string, std::string>>;

    static constexpr const char* kStorage = "/redfish/v1/Systems/1/Storage";
    static constexpr const char* kChassisDrives = "/redfish/v1/Chassis/1/Drives";
    // "admin:secret", the demo machine's BMC credentials.
    static constexpr const char* kBasic = "Basic YWRtaW46c2VjcmV0";

    void SetUp() override;

    // Replaces the machine file (and the service) with this machine.
    void UseMachine(const sim::Machine& machine, bool expand = true);
    // A new service over the same file, with or without $expand.
    void Restart(bool expand);

    emulator::HttpResponse Send(const std::string& method, const std::string& target,
                                const std::string& body = "",
                                Headers headers = {{"Authorization", kBasic}});
    emulator::HttpResponse Get(const std::string& target);
    nlohmann::json GetJson(const std::string& target);
    emulator::HttpResponse Post(const std::string& target, const nlohmann::json& body);
    emulator::HttpResponse Patch(const std::string& target, const nlohmann::json& body);
    emulator::HttpResponse Delete(const std::string& target);

    // The machine file as it stands now.
    sim::Machine Machine() const;
    // A controller of the machine file as it stands now.
    sim::Controller Controller(const std::string& family, int id) const;
    static const sim::Disk& Disk(const sim::Controller& controller, int id);

    // What the simulated driver answers for the same operation on a copy of the machine file as
    // it stands now: the emulator must hand on exactly this code and text.
    struct DriverAnswer {
        int code = 0;
        std::string text;
    };
    using DriverCall =
        std::function<int(const std::shared_ptr<sim::MachineStore>& store, std::string& text)>;
    DriverAnswer OnTwin(const DriverCall& call) const;

    // Opens a session and creates a volume (a task), so that every kind of resource is served.
    void AddSessionAndTask();
    // Every resource the service links from its root, by URI, found by following every
    // @odata.id (not the fragments of embedded objects).
    nlohmann::json ServiceTree();
    // Every @odata.type in a body, at any depth, embedded objects and messages included.
    static void CollectTypes(const nlohmann::json& node, std::set<std::string>& types);

    // The first extended message of a response body, and its Oem code.
    static nlohmann::json FirstMessage(const emulator::HttpResponse& response);
    static int Code(const emulator::HttpResponse& response);

    raidcfg_test::TempDir dir_;
    std::string path_;
    std::shared_ptr<sim::MachineStore> store_;
    std::unique_ptr<emulator::RedfishService> service_;
};

} // namespace emulator_test
