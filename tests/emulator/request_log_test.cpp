// The --log-requests file: one whole line per request, appended.
#include <string>
#include <thread>
#include <vector>

#include "emulator/request_log.hpp"
#include "tests/support/file_text.hpp"
#include "tests/support/temp_dir.hpp"

#include <gtest/gtest.h>

namespace emulator_test {
namespace {

TEST(RequestLogTest, AppendsOneLinePerRequest) {
    raidcfg_test::TempDir dir;
    const std::string path = dir.File("requests.log");
    raidcfg_test::WriteFile(path, "GET /redfish 200\n");
    emulator::RequestLog log;
    std::string error;
    ASSERT_TRUE(log.Open(path, error)) << error;
    log.Write("GET", "/redfish/v1/Systems?$expand=.($levels=2)", 200);
    // Each line is in the file as soon as it is written.
    EXPECT_EQ(raidcfg_test::ReadFile(path),
              "GET /redfish 200\nGET /redfish/v1/Systems?$expand=.($levels=2) 200\n");
    log.Write("DELETE", "/redfish/v1/SessionService/Sessions/1", 204);
    EXPECT_EQ(raidcfg_test::ReadFile(path),
              "GET /redfish 200\nGET /redfish/v1/Systems?$expand=.($levels=2) 200\n"
              "DELETE /redfish/v1/SessionService/Sessions/1 204\n");
}

TEST(RequestLogTest, LinesOfThreadsStayWhole) {
    raidcfg_test::TempDir dir;
    const std::string path = dir.File("requests.log");
    emulator::RequestLog log;
    std::string error;
    ASSERT_TRUE(log.Open(path, error)) << error;
    constexpr int kThreads = 4;
    constexpr int kLines = 500;
    std::vector<std::thread> threads;
    threads.reserve(kThreads);
    for (int t = 0; t < kThreads; ++t) {
        threads.emplace_back([&log, t] {
            for (int i = 0; i < kLines; ++i) {
                log.Write("GET", "/redfish/v1/Thread" + std::to_string(t), 200);
            }
        });
    }
    for (std::thread& thread : threads) {
        thread.join();
    }
    const std::string text = raidcfg_test::ReadFile(path);
    std::size_t lines = 0;
    std::size_t start = 0;
    for (std::size_t end = text.find('\n'); end != std::string::npos;
         start = end + 1, end = text.find('\n', start)) {
        const std::string line = text.substr(start, end - start);
        EXPECT_EQ(line.rfind("GET /redfish/v1/Thread", 0), 0U) << line;
        EXPECT_EQ(line.substr(line.size() - 4), " 200") << line;
        ++lines;
    }
    EXPECT_EQ(start, text.size());
    EXPECT_EQ(lines, static_cast<std::size_t>(kThreads * kLines));
}

TEST(RequestLogTest, UnwritablePathIsRefused) {
    raidcfg_test::TempDir dir;
    emulator::RequestLog log;
    std::string error;
    EXPECT_FALSE(log.Open(dir.File("missing/requests.log"), error));
    EXPECT_EQ(error, "cannot write '" + dir.File("missing/requests.log") + "'");
}

} // namespace
} // namespace emulator_test
