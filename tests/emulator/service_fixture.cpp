#include "tests/emulator/service_fixture.hpp"

#include <stdexcept>

#include "sim/demo_machine.hpp"
#include "sim/machine_json.hpp"
#include "tests/support/file_text.hpp"

namespace emulator_test {

using nlohmann::json;

void ServiceFixture::SetUp() {
    path_ = dir_.File("machine.json");
    raidcfg_test::WriteFile(path_, sim::DemoMachine::Text());
    Restart(true);
}

void ServiceFixture::UseMachine(const sim::Machine& machine, bool expand) {
    raidcfg_test::WriteFile(path_, sim::MachineJson::Serialize(machine));
    Restart(expand);
}

void ServiceFixture::Restart(bool expand) {
    store_ = std::make_shared<sim::MachineStore>(path_);
    service_ = std::make_unique<emulator::RedfishService>(store_, expand);
}

emulator::HttpResponse ServiceFixture::Send(const std::string& method, const std::string& target,
                                            const std::string& body, Headers headers) {
    emulator::HttpRequest request;
    request.method = method;
    request.target = target;
    request.body = body;
    request.headers = std::move(headers);
    return service_->Handle(request);
}

emulator::HttpResponse ServiceFixture::Get(const std::string& target) {
    return Send("GET", target);
}

json ServiceFixture::GetJson(const std::string& target) {
    const emulator::HttpResponse response = Get(target);
    if (response.status != 200) {
        throw std::runtime_error("GET " + target + " answered " + std::to_string(response.status));
    }
    return json::parse(response.body);
}

emulator::HttpResponse ServiceFixture::Post(const std::string& target, const json& body) {
    return Send("POST", target, body.dump());
}

emulator::HttpResponse ServiceFixture::Patch(const std::string& target, const json& body) {
    return Send("PATCH", target, body.dump());
}

emulator::HttpResponse ServiceFixture::Delete(const std::string& target) {
    return Send("DELETE", target);
}

sim::Machine ServiceFixture::Machine() const {
    sim::Machine machine;
    std::string error;
    const std::string text = raidcfg_test::ReadFile(path_);
    if (!sim::MachineJson::Parse(text, path_, machine, error)) {
        throw std::runtime_error(error);
    }
    return machine;
}

sim::Controller ServiceFixture::Controller(const std::string& family, int id) const {
    for (const sim::Controller& controller : Machine().controllers) {
        if (controller.family == family && controller.id == id) {
            return controller;
        }
    }
    throw std::runtime_error("no controller " + family + " " + std::to_string(id));
}

const sim::Disk& ServiceFixture::Disk(const sim::Controller& controller, int id) {
    for (const sim::Disk& disk : controller.disks) {
        if (disk.id == id) {
            return disk;
        }
    }
    throw std::runtime_error("no disk " + std::to_string(id));
}

ServiceFixture::DriverAnswer ServiceFixture::OnTwin(const DriverCall& call) const {
    const std::string twin = dir_.File("twin.json");
    raidcfg_test::WriteFile(twin, raidcfg_test::ReadFile(path_));
    DriverAnswer answer;
    answer.code = call(std::make_shared<sim::MachineStore>(twin), answer.text);
    return answer;
}

namespace {

void FollowLinks(const json& node, std::vector<std::string>& links) {
    if (node.is_array()) {
        for (const json& element : node) {
            FollowLinks(element, links);
        }
        return;
    }
    if (!node.is_object()) {
        return;
    }
    for (auto item = node.begin(); item != node.end(); ++item) {
        if (item.key() == "@odata.id" && item.value().is_string()) {
            const std::string uri = item.value().get<std::string>();
            if (uri.find('#') == std::string::npos) {
                links.push_back(uri);
            }
        } else {
            FollowLinks(item.value(), links);
        }
    }
}

} // namespace

void ServiceFixture::AddSessionAndTask() {
    if (Send("POST", "/redfish/v1/SessionService/Sessions",
             R"({"UserName": "admin", "Password": "secret"})", {})
            .status != 201) {
        throw std::runtime_error("the log-in failed");
    }
    const json volume = {{"RAIDType", "RAID1"},
                         {"Oem", {{"Raidcfg", {{"RAIDLevel", "1"}, {"Spans", {{6, 7}}}}}}}};
    const emulator::HttpResponse created =
        Post(std::string(kStorage) + "/OOB_LSI-0/Volumes", volume);
    if (created.status != 202) {
        throw std::runtime_error("the volume was not created: " + created.body);
    }
}

json ServiceFixture::ServiceTree() {
    json tree = json::object();
    std::vector<std::string> pending = {"/redfish/v1"};
    while (!pending.empty()) {
        const std::string uri = pending.back();
        pending.pop_back();
        if (tree.contains(uri)) {
            continue;
        }
        tree[uri] = GetJson(uri);
        FollowLinks(tree[uri], pending);
    }
    return tree;
}

void ServiceFixture::CollectTypes(const json& node, std::set<std::string>& types) {
    if (node.is_array()) {
        for (const json& element : node) {
            CollectTypes(element, types);
        }
        return;
    }
    if (!node.is_object()) {
        return;
    }
    for (auto item = node.begin(); item != node.end(); ++item) {
        if (item.key() == "@odata.type" && item.value().is_string()) {
            types.insert(item.value().get<std::string>());
        } else {
            CollectTypes(item.value(), types);
        }
    }
}

json ServiceFixture::FirstMessage(const emulator::HttpResponse& response) {
    const json body = json::parse(response.body);
    if (body.contains("error")) {
        return body["error"]["@Message.ExtendedInfo"].at(0);
    }
    return body["@Message.ExtendedInfo"].at(0);
}

int ServiceFixture::Code(const emulator::HttpResponse& response) {
    return FirstMessage(response)["Oem"]["Raidcfg"]["Code"].get<int>();
}

} // namespace emulator_test
