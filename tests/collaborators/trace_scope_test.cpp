// The trace of an operation carries the operation's own file and line, on the way in and out.
#include <sstream>
#include <string>
#include <vector>

#include "collaborators/trace_scope.hpp"
#include "log/log_settings.hpp"
#include "tests/support/file_text.hpp"
#include "tests/support/temp_dir.hpp"

#include <gtest/gtest.h>

namespace {

std::vector<std::string> Bodies(const std::string& text) {
    std::vector<std::string> bodies;
    std::istringstream in(text);
    std::string line;
    const std::size_t time = std::string("2026-11-22 01:40:00.123 ").size();
    while (std::getline(in, line)) {
        bodies.push_back(line.substr(time));
    }
    return bodies;
}

class TraceScopeTest : public ::testing::Test {
protected:
    void SetUp() override {
        Quillon::ResetLogState();
        std::string error;
        ASSERT_TRUE(Quillon::SetLogDir(temp_.path(), error)) << error;
    }
    void TearDown() override { Quillon::ResetLogState(); }

    raidcfg_test::TempDir temp_;
};

int TracedOperation(bool leave_early) {
    RAIDCFG_TRACE("service::detail::Example::Operation");
    const int line = __LINE__ - 1;
    if (leave_early) {
        return line;
    }
    RAIDCFG_LOG(3) << "working";
    return line;
}

TEST_F(TraceScopeTest, EnteringAndExitingCarryTheLineOfTheTracedOperation) {
    const int line = TracedOperation(false);
    const std::string where = "trace_scope_test.cpp:" + std::to_string(line) + " ";
    EXPECT_EQ(Bodies(raidcfg_test::ReadFile(temp_.File("raidcfg.log"))),
              (std::vector<std::string>{
                  "TRACE " + where + "Entering  service::detail::Example::Operation",
                  "INFO  trace_scope_test.cpp:" + std::to_string(line + 5) + " working",
                  "TRACE " + where + "Exiting  service::detail::Example::Operation"}));
}

TEST_F(TraceScopeTest, AnEarlyWayOutIsTracedToo) {
    const int line = TracedOperation(true);
    const std::string where = "trace_scope_test.cpp:" + std::to_string(line) + " ";
    EXPECT_EQ(Bodies(raidcfg_test::ReadFile(temp_.File("raidcfg.log"))),
              (std::vector<std::string>{
                  "TRACE " + where + "Entering  service::detail::Example::Operation",
                  "TRACE " + where + "Exiting  service::detail::Example::Operation"}));
}

} // namespace
