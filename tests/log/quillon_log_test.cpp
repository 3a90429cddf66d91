#include <cstddef>
#include <filesystem>
#include <regex>
#include <sstream>
#include <string>
#include <thread>
#include <vector>

#include "collaborators/log.hpp"
#include "log/log_settings.hpp"
#include "tests/support/file_text.hpp"
#include "tests/support/temp_dir.hpp"

#include <gtest/gtest.h>

namespace {

std::vector<std::string> Lines(const std::string& text) {
    std::vector<std::string> lines;
    std::istringstream in(text);
    std::string line;
    while (std::getline(in, line)) {
        lines.push_back(line);
    }
    return lines;
}

class QuillonLogTest : public ::testing::Test {
protected:
    void SetUp() override {
        Quillon::ResetLogState();
        std::string error;
        ASSERT_TRUE(Quillon::SetLogDir(temp_.path(), error)) << error;
    }
    void TearDown() override { Quillon::ResetLogState(); }

    std::string LogText() const { return raidcfg_test::ReadFile(temp_.File("raidcfg.log")); }

    raidcfg_test::TempDir temp_;
};

TEST_F(QuillonLogTest, LineHoldsTimeLevelFileLineAndText) {
    Quillon::Log(3, "some/where/service_raid_impl.cpp", 42).Stream() << "Written " << 7 << " rows";
    const std::regex expected(R"(\d{4}-\d{2}-\d{2} \d{2}:\d{2}:\d{2}\.\d{3} )"
                              R"(INFO  service_raid_impl\.cpp:42 Written 7 rows\n)");
    EXPECT_TRUE(std::regex_match(LogText(), expected)) << LogText();
}

TEST_F(QuillonLogTest, LevelWords) {
    Quillon::Log(1, "a.cpp", 1).Stream() << "e";
    Quillon::Log(2, "a.cpp", 2).Stream() << "w";
    Quillon::Log(3, "a.cpp", 3).Stream() << "i";
    Quillon::Log(4, "a.cpp", 4).Stream() << "t";
    Quillon::Log(9, "a.cpp", 5).Stream() << "n";
    const std::vector<std::string> lines = Lines(LogText());
    ASSERT_EQ(lines.size(), 5u);
    const std::size_t body = std::string("2026-11-22 01:40:00.123 ").size();
    EXPECT_EQ(lines[0].substr(body), "ERROR a.cpp:1 e");
    EXPECT_EQ(lines[1].substr(body), "WARN  a.cpp:2 w");
    EXPECT_EQ(lines[2].substr(body), "INFO  a.cpp:3 i");
    EXPECT_EQ(lines[3].substr(body), "TRACE a.cpp:4 t");
    EXPECT_EQ(lines[4].substr(body), "L9    a.cpp:5 n");
}

TEST_F(QuillonLogTest, SeveralObjectsGiveLinesInOrder) {
    for (int i = 0; i < 5; ++i) {
        RAIDCFG_LOG(3) << "line " << i;
    }
    const std::vector<std::string> lines = Lines(LogText());
    ASSERT_EQ(lines.size(), 5u);
    for (int i = 0; i < 5; ++i) {
        EXPECT_NE(lines[i].find("INFO  quillon_log_test.cpp:"), std::string::npos) << lines[i];
        EXPECT_EQ(lines[i].substr(lines[i].size() - 7), " line " + std::to_string(i));
    }
}

TEST_F(QuillonLogTest, NewlinesInTextStayOnOneLine) {
    Quillon::Log(2, "a.cpp", 1).Stream() << "first\nsecond\r\nthird\n";
    const std::vector<std::string> lines = Lines(LogText());
    ASSERT_EQ(lines.size(), 1u);
    EXPECT_NE(lines[0].find("WARN  a.cpp:1 first | second | third"), std::string::npos);
    EXPECT_EQ(lines[0].back(), 'd');
}

TEST_F(QuillonLogTest, NoFileUntilTheFirstLine) {
    EXPECT_FALSE(raidcfg_test::FileExists(temp_.File("raidcfg.log")));
    RAIDCFG_LOG(4) << "now";
    EXPECT_TRUE(raidcfg_test::FileExists(temp_.File("raidcfg.log")));
}

TEST(QuillonLogDirTest, DefaultsToTheCurrentDirectory) {
    Quillon::ResetLogState();
    char buffer[64];
    EXPECT_EQ(Quillon::GetLogDir(buffer, sizeof buffer), 0);
    EXPECT_STREQ(buffer, "./");
    EXPECT_EQ(Quillon::GetLogFileName(), "./raidcfg.log");
}

TEST(QuillonLogDirTest, SetLogDirCreatesTheDirectoryAndAddsTheSlash) {
    Quillon::ResetLogState();
    raidcfg_test::TempDir temp;
    const std::string dir = temp.File("a/b");
    std::string error;
    ASSERT_TRUE(Quillon::SetLogDir(dir, error)) << error;
    EXPECT_TRUE(std::filesystem::is_directory(dir));
    char buffer[512];
    EXPECT_EQ(Quillon::GetLogDir(buffer, sizeof buffer), 0);
    EXPECT_EQ(std::string(buffer), dir + "/");
    EXPECT_EQ(Quillon::GetLogFileName(), dir + "/raidcfg.log");

    ASSERT_TRUE(Quillon::SetLogDir(dir + "/", error)) << error;
    EXPECT_EQ(Quillon::GetLogFileName(), dir + "/raidcfg.log");
    Quillon::ResetLogState();
}

TEST(QuillonLogDirTest, GetLogDirWithTooSmallBuffer) {
    Quillon::ResetLogState();
    raidcfg_test::TempDir temp;
    std::string error;
    ASSERT_TRUE(Quillon::SetLogDir(temp.File("logs"), error)) << error;
    const std::string dir = temp.File("logs") + "/";

    std::vector<char> exact(dir.size() + 1, 'x');
    EXPECT_EQ(Quillon::GetLogDir(exact.data(), exact.size()), 0);
    EXPECT_EQ(std::string(exact.data()), dir);

    char small[5] = {'x', 'x', 'x', 'x', 'x'};
    EXPECT_EQ(Quillon::GetLogDir(small, sizeof small), -1);
    EXPECT_EQ(std::string(small), dir.substr(0, 4));

    std::vector<char> one_short(dir.size(), 'x');
    EXPECT_EQ(Quillon::GetLogDir(one_short.data(), one_short.size()), -1);
    EXPECT_EQ(std::string(one_short.data()), dir.substr(0, dir.size() - 1));

    char untouched = 'x';
    EXPECT_EQ(Quillon::GetLogDir(&untouched, 0), -1);
    EXPECT_EQ(untouched, 'x');
    Quillon::ResetLogState();
}

TEST(QuillonLogDirTest, SetLogDirOnAFileFails) {
    Quillon::ResetLogState();
    raidcfg_test::TempDir temp;
    raidcfg_test::WriteFile(temp.File("plain"), "x");
    std::string error;
    EXPECT_FALSE(Quillon::SetLogDir(temp.File("plain"), error));
    EXPECT_FALSE(error.empty());
    EXPECT_EQ(Quillon::GetLogFileName(), "./raidcfg.log");
}

TEST_F(QuillonLogTest, UnwritableDirectoryWarnsOnceAndDropsLines) {
    // The directory is replaced by a plain file: opening the log must fail, whoever runs the test.
    const std::string dir = temp_.File("gone");
    std::string error;
    ASSERT_TRUE(Quillon::SetLogDir(dir, error)) << error;
    std::filesystem::remove(dir);
    raidcfg_test::WriteFile(dir, "not a directory");

    ::testing::internal::CaptureStderr();
    RAIDCFG_LOG(1) << "first";
    RAIDCFG_LOG(3) << "second";
    const std::string warning = ::testing::internal::GetCapturedStderr();
    EXPECT_EQ(warning,
              "raidcfg: cannot write the log file " + dir + "/raidcfg.log: Not a directory\n");
    EXPECT_EQ(raidcfg_test::ReadFile(dir), "not a directory");
}

TEST_F(QuillonLogTest, SwitchingDirectoryClosesTheOldFile) {
    RAIDCFG_LOG(3) << "in the first";
    const std::string second = temp_.File("second");
    std::string error;
    ASSERT_TRUE(Quillon::SetLogDir(second, error)) << error;
    RAIDCFG_LOG(3) << "in the second";
    EXPECT_EQ(Lines(LogText()).size(), 1u);
    const std::string moved = raidcfg_test::ReadFile(second + "/raidcfg.log");
    ASSERT_EQ(Lines(moved).size(), 1u);
    EXPECT_NE(moved.find("in the second"), std::string::npos);
}

TEST_F(QuillonLogTest, RotatesBySize) {
    Quillon::SetLogRotation(300, 2);
    for (int i = 0; i < 40; ++i) {
        RAIDCFG_LOG(3) << "rotation line number " << i;
    }
    EXPECT_TRUE(raidcfg_test::FileExists(temp_.File("raidcfg.log")));
    EXPECT_TRUE(raidcfg_test::FileExists(temp_.File("raidcfg.1.log")));
    EXPECT_TRUE(raidcfg_test::FileExists(temp_.File("raidcfg.2.log")));
    EXPECT_FALSE(raidcfg_test::FileExists(temp_.File("raidcfg.3.log")));
    EXPECT_LE(std::filesystem::file_size(temp_.File("raidcfg.log")), 300u);
    EXPECT_LE(std::filesystem::file_size(temp_.File("raidcfg.1.log")), 300u);
    const std::vector<std::string> newest = Lines(LogText());
    ASSERT_FALSE(newest.empty());
    EXPECT_NE(newest.back().find("rotation line number 39"), std::string::npos);
}

TEST_F(QuillonLogTest, LinesFromThreadsStayWhole) {
    std::vector<std::thread> threads;
    threads.reserve(4);
    for (int t = 0; t < 4; ++t) {
        threads.emplace_back([t] {
            for (int i = 0; i < 50; ++i) {
                RAIDCFG_LOG(4) << "thread " << t << " line " << i;
            }
        });
    }
    for (std::thread& thread : threads) {
        thread.join();
    }
    const std::vector<std::string> lines = Lines(LogText());
    ASSERT_EQ(lines.size(), 200u);
    const std::regex whole(R"(\S+ \S+ TRACE quillon_log_test\.cpp:\d+ thread \d line \d+)");
    for (const std::string& line : lines) {
        EXPECT_TRUE(std::regex_match(line, whole)) << line;
    }
}

} // namespace
