#include "tests/emulator/mockup_fixture.hpp"

#include <stdexcept>

#include "emulator/mockup_tree.hpp"
#include "tests/support/file_text.hpp"

namespace emulator_test {

using nlohmann::json;

std::string MockupFixture::MockupDir(const std::string& name) {
    return std::string(RAIDCFG_EMULATOR_MOCKUPS) + "/" + name;
}

json MockupFixture::Recorded(const std::string& name, const std::string& file) {
    return json::parse(raidcfg_test::ReadFile(MockupDir(name) + "/" + file));
}

void MockupFixture::Serve(const std::string& name,
                          std::optional<emulator::MockupService::Credentials> credentials) {
    emulator::MockupTree tree;
    std::string error;
    if (!emulator::MockupTree::Load(MockupDir(name), tree, error)) {
        throw std::runtime_error(error);
    }
    service_ = std::make_unique<emulator::MockupService>(std::move(tree), std::move(credentials));
}

emulator::HttpResponse MockupFixture::Send(const std::string& method, const std::string& target,
                                           const std::string& body, Headers headers) {
    emulator::HttpRequest request;
    request.method = method;
    request.target = target;
    request.body = body;
    request.headers = std::move(headers);
    return service_->Handle(request);
}

json MockupFixture::GetJson(const std::string& target) {
    const emulator::HttpResponse response = Get(target);
    if (response.status != 200) {
        throw std::runtime_error("GET " + target + " answered " + std::to_string(response.status));
    }
    return json::parse(response.body);
}

json MockupFixture::Body(const emulator::HttpResponse& response) {
    return json::parse(response.body);
}

std::string MockupFixture::MessageId(const emulator::HttpResponse& response) {
    const json body = json::parse(response.body, nullptr, false);
    if (body.is_discarded() || !body.contains("error")) {
        return {};
    }
    return body["error"]["@Message.ExtendedInfo"].at(0).value("MessageId", "");
}

} // namespace emulator_test
