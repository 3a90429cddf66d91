#include <cstring>
#include <filesystem>
#include <map>
#include <string>
#include <vector>

#include <fcntl.h>
#include <sys/wait.h>
#include <unistd.h>

#include "tests/support/file_text.hpp"
#include "tests/support/temp_dir.hpp"

#include <gtest/gtest.h>

extern char** environ;

namespace {

const std::string kProgram = RAIDCFG_BIN_DIR "/raidcfg";

struct Outcome {
    int status = -1; // the exit status, -1 when the program did not exit normally
    std::string out;
    std::string err;
};

// Runs raidcfg with args in dir, stdout and stderr captured apart. The environment is the test's
// own without any RAIDCFG_ variable, plus env.
Outcome RunRaidcfg(const std::string& dir, const std::vector<std::string>& args,
                   const std::map<std::string, std::string>& env = {}) {
    raidcfg_test::TempDir capture;
    const std::string out_path = capture.File("stdout");
    const std::string err_path = capture.File("stderr");

    std::vector<std::string> environment;
    for (char** entry = environ; *entry != nullptr; ++entry) {
        if (std::strncmp(*entry, "RAIDCFG_", 8) != 0) {
            environment.emplace_back(*entry);
        }
    }
    for (const auto& [name, value] : env) {
        environment.push_back(name);
        environment.back().append("=").append(value);
    }
    std::vector<char*> env_pointers;
    env_pointers.reserve(environment.size() + 1);
    for (std::string& entry : environment) {
        env_pointers.push_back(entry.data());
    }
    env_pointers.push_back(nullptr);
    std::vector<std::string> argv_text{kProgram};
    argv_text.insert(argv_text.end(), args.begin(), args.end());
    std::vector<char*> argv;
    argv.reserve(argv_text.size() + 1);
    for (std::string& arg : argv_text) {
        argv.push_back(arg.data());
    }
    argv.push_back(nullptr);

    const pid_t child = fork();
    if (child == 0) {
        const int out_fd = open(out_path.c_str(), O_WRONLY | O_CREAT | O_TRUNC, 0600);
        const int err_fd = open(err_path.c_str(), O_WRONLY | O_CREAT | O_TRUNC, 0600);
        if (out_fd < 0 || err_fd < 0 || chdir(dir.c_str()) != 0 || dup2(out_fd, 1) < 0 ||
            dup2(err_fd, 2) < 0) {
            _exit(126);
        }
        execve(argv[0], argv.data(), env_pointers.data());
        _exit(127);
    }
    Outcome outcome;
    int status = 0;
    if (child > 0 && waitpid(child, &status, 0) == child && WIFEXITED(status)) {
        outcome.status = WEXITSTATUS(status);
    }
    outcome.out = raidcfg_test::ReadFile(out_path);
    outcome.err = raidcfg_test::ReadFile(err_path);
    return outcome;
}

std::vector<std::string> Lines(const std::string& text) {
    std::vector<std::string> lines;
    std::size_t start = 0;
    while (start < text.size()) {
        std::size_t end = text.find('\n', start);
        if (end == std::string::npos) {
            end = text.size();
        }
        lines.push_back(text.substr(start, end - start));
        start = end + 1;
    }
    return lines;
}

std::string LastLine(const std::string& text) {
    const std::vector<std::string> lines = Lines(text);
    return lines.empty() ? std::string() : lines.back();
}

bool IsEmptyDir(const std::string& dir) {
    return std::filesystem::is_empty(dir);
}

TEST(RaidcfgE2eTest, BadCommandLineWritesNothing) {
    raidcfg_test::TempDir dir;
    const Outcome outcome = RunRaidcfg(dir.path(), {"show", "--output", "sub", "--timeout", "0"});
    EXPECT_EQ(outcome.status, 5);
    EXPECT_EQ(outcome.err, "raidcfg: --timeout: '0' is not a positive whole number of seconds\n");
    EXPECT_EQ(outcome.out, "");
    EXPECT_TRUE(IsEmptyDir(dir.path()));
}

TEST(RaidcfgE2eTest, EveryKindOfBadCommandLineExitsWithFive) {
    raidcfg_test::TempDir dir;
    const std::vector<std::vector<std::string>> lines = {
        {},
        {"show", "extra"},
        {"show", "--bogus"},
        {"show", "--ctrl"},
        {"show", "--bmc", "bmc:0"},
        {"show", "--bmc", "a", "--local-bmc", "b"},
        {"show", "--insecure", "--cacert", "ca.pem"},
        {"show", "--cacert", "missing.pem"},
        {"show", "--machine", "missing.json"},
    };
    for (const std::vector<std::string>& args : lines) {
        const Outcome outcome = RunRaidcfg(dir.path(), args);
        EXPECT_EQ(outcome.status, 5) << outcome.err;
        ASSERT_EQ(Lines(outcome.err).size(), 1u) << outcome.err;
        EXPECT_EQ(outcome.err.rfind("raidcfg: ", 0), 0u) << outcome.err;
        EXPECT_EQ(outcome.out, "");
        EXPECT_TRUE(IsEmptyDir(dir.path()));
    }
}

TEST(RaidcfgE2eTest, UnknownWordEndsInGenericFailure) {
    raidcfg_test::TempDir dir;
    const Outcome outcome = RunRaidcfg(dir.path(), {"frobnicate"});
    EXPECT_EQ(outcome.status, 1);
    EXPECT_EQ(LastLine(outcome.out), "1 Generic Failure.");
    EXPECT_NE(outcome.err.find("'frobnicate' is not an action"), std::string::npos) << outcome.err;
    ASSERT_TRUE(raidcfg_test::FileExists(dir.File("raid_result.xml")));
    const std::string report = raidcfg_test::ReadFile(dir.File("raid_result.xml"));
    EXPECT_NE(report.find("<RETURNCODE>1</RETURNCODE>"), std::string::npos) << report;
    EXPECT_EQ(report.find("<ITEMS>"), std::string::npos) << report;

    ASSERT_TRUE(raidcfg_test::FileExists(dir.File("raidcfg.log")));
    const std::string log = raidcfg_test::ReadFile(dir.File("raidcfg.log"));
    EXPECT_NE(log.find(" INFO  host_runner.cpp:"), std::string::npos) << log;
    EXPECT_NE(log.find("\"frobnicate\""), std::string::npos) << log;
}

TEST(RaidcfgE2eTest, TargetWithCfcIsRefusedAndLeavesTheOldReport) {
    raidcfg_test::TempDir fresh;
    const Outcome first = RunRaidcfg(fresh.path(), {"show", "--target", "0", "--cfc"});
    EXPECT_EQ(first.status, 5);
    EXPECT_EQ(LastLine(first.out), "5 --target command is not supported on current system.");
    EXPECT_FALSE(raidcfg_test::FileExists(fresh.File("raid_result.xml")));

    raidcfg_test::TempDir used;
    const std::string earlier = "<?xml version=\"1.0\"?>\n<RAIDRESULT>earlier\r\n</RAIDRESULT>\n";
    raidcfg_test::WriteFile(used.File("raid_result.xml"), earlier);
    const Outcome second = RunRaidcfg(used.path(), {"show", "--target", "0", "--cfc"});
    EXPECT_EQ(second.status, 5);
    EXPECT_EQ(LastLine(second.out), "5 --target command is not supported on current system.");
    EXPECT_EQ(raidcfg_test::ReadFile(used.File("raid_result.xml")), earlier);
}

TEST(RaidcfgE2eTest, OutputAndLogDirectories) {
    raidcfg_test::TempDir dir;
    const Outcome outcome =
        RunRaidcfg(dir.path(), {"frobnicate", "--output", "out/deeper", "--log-dir", "logs"});
    EXPECT_EQ(outcome.status, 1);
    EXPECT_TRUE(raidcfg_test::FileExists(dir.File("out/deeper/raid_result.xml")));
    EXPECT_TRUE(raidcfg_test::FileExists(dir.File("logs/raidcfg.log")));
    EXPECT_FALSE(raidcfg_test::FileExists(dir.File("out/deeper/raidcfg.log")));
    EXPECT_FALSE(raidcfg_test::FileExists(dir.File("raidcfg.log")));

    const Outcome defaulted = RunRaidcfg(dir.path(), {"frobnicate", "--output", "other"});
    EXPECT_EQ(defaulted.status, 1);
    EXPECT_TRUE(raidcfg_test::FileExists(dir.File("other/raid_result.xml")));
    EXPECT_TRUE(raidcfg_test::FileExists(dir.File("other/raidcfg.log")));
}

TEST(RaidcfgE2eTest, OutputDirectoryThatCannotBeMade) {
    raidcfg_test::TempDir dir;
    raidcfg_test::WriteFile(dir.File("plain"), "x");
    const Outcome outcome = RunRaidcfg(dir.path(), {"frobnicate", "--output", "plain/sub"});
    EXPECT_EQ(outcome.status, 5);
    ASSERT_EQ(Lines(outcome.err).size(), 1u) << outcome.err;
    EXPECT_EQ(outcome.err.rfind("raidcfg: cannot create the output directory 'plain/sub/': ", 0),
              0u)
        << outcome.err;
    EXPECT_EQ(outcome.out, "");
    EXPECT_FALSE(raidcfg_test::FileExists(dir.File("raidcfg.log")));
}

TEST(RaidcfgE2eTest, PasswordAppearsNowhere) {
    const std::string secret = "Hx7-pass-Word";
    // Port 1 of the loopback address: nothing listens there, so a connection fails at once.
    const std::vector<std::pair<std::vector<std::string>, std::map<std::string, std::string>>>
        runs = {
            {{"show", "--bmc", "root:" + secret + "@127.0.0.1:1", "--timeout", "2"}, {}},
            {{"show", "--bmc", "root@127.0.0.1:1", "--timeout", "2"},
             {{"RAIDCFG_BMC_PASSWORD", secret}}},
            {{"frobnicate", "--local-bmc", "root:" + secret + "@127.0.0.1:1"}, {}},
            {{"show", "--bmc", "root:" + secret + "@127.0.0.1:0"}, {}},
        };
    for (const auto& [args, env] : runs) {
        raidcfg_test::TempDir dir;
        const Outcome outcome = RunRaidcfg(dir.path(), args, env);
        EXPECT_NE(outcome.status, -1);
        EXPECT_EQ(outcome.out.find(secret), std::string::npos) << outcome.out;
        EXPECT_EQ(outcome.err.find(secret), std::string::npos) << outcome.err;
        for (const char* name : {"raidcfg.log", "raid_result.xml"}) {
            if (raidcfg_test::FileExists(dir.File(name))) {
                EXPECT_EQ(raidcfg_test::ReadFile(dir.File(name)).find(secret), std::string::npos)
                    << name;
            }
        }
        if (raidcfg_test::FileExists(dir.File("raidcfg.log"))) {
            EXPECT_NE(raidcfg_test::ReadFile(dir.File("raidcfg.log")).find("127.0.0.1:1"),
                      std::string::npos);
        }
    }
}

TEST(RaidcfgE2eTest, Version) {
    raidcfg_test::TempDir dir;
    const Outcome outcome = RunRaidcfg(dir.path(), {"--version"});
    EXPECT_EQ(outcome.status, 0);
    EXPECT_EQ(outcome.out, "raidcfg " RAIDCFG_VERSION "\n");
    EXPECT_EQ(outcome.err, "");
    EXPECT_TRUE(IsEmptyDir(dir.path()));
}

TEST(RaidcfgE2eTest, Help) {
    raidcfg_test::TempDir dir;
    const Outcome program = RunRaidcfg(dir.path(), {"--help"});
    EXPECT_EQ(program.status, 0);
    EXPECT_EQ(program.err, "");
    EXPECT_EQ(program.out.rfind("Usage: raidcfg COMMAND [OPTIONS]\n", 0), 0u);
    for (const char* word : {"show", "add", "save", "clear", "makegood", "makejbod", "init",
                             "addhsp", "rmhsp", "changemode", "fwdeviceorder", "ekm", "envol"}) {
        EXPECT_NE(program.out.find("\n  " + std::string(word) + " "), std::string::npos) << word;
    }

    const Outcome action = RunRaidcfg(dir.path(), {"addhsp", "--help"});
    EXPECT_EQ(action.status, 0);
    EXPECT_EQ(action.out.rfind("Usage: raidcfg addhsp [OPTIONS]\n", 0), 0u);
    EXPECT_NE(action.out.find("--dg"), std::string::npos);

    const Outcome unknown = RunRaidcfg(dir.path(), {"unknownword", "--help"});
    EXPECT_EQ(unknown.status, 0);
    EXPECT_EQ(unknown.out, program.out);
    EXPECT_TRUE(IsEmptyDir(dir.path()));
}

TEST(RaidcfgE2eTest, SimulatedMachine) {
    raidcfg_test::TempDir dir;
    raidcfg_test::TempDir state;
    const Outcome demo = RunRaidcfg(dir.path(), {"frobnicate", "--machine", "demo"},
                                    {{"XDG_STATE_HOME", state.path()}});
    EXPECT_EQ(demo.status, 1);
    EXPECT_EQ(LastLine(demo.out), "1 Generic Failure.");

    raidcfg_test::TempDir other;
    raidcfg_test::TempDir files;
    raidcfg_test::WriteFile(files.File("list.json"), "[]");
    const Outcome bad =
        RunRaidcfg(other.path(), {"show"}, {{"RAIDCFG_MACHINE", files.File("list.json")}});
    EXPECT_EQ(bad.status, 5);
    EXPECT_EQ(bad.err, "raidcfg: RAIDCFG_MACHINE: " + files.File("list.json") +
                           ": (top): expected an object, got an array\n");
    EXPECT_TRUE(IsEmptyDir(other.path()));
}

} // namespace

namespace {

// The Quick start's first moment: the demo server shown on both roads.
TEST(RaidcfgE2eTest, ShowOnTheDemoMachineListsEveryLocalControllerAndSavesTheXml) {
    raidcfg_test::TempDir dir;
    raidcfg_test::TempDir state;
    const Outcome shown =
        RunRaidcfg(dir.path(), {"show", "--machine", "demo"}, {{"XDG_STATE_HOME", state.path()}});
    EXPECT_EQ(shown.status, 0) << shown.err;
    EXPECT_EQ(LastLine(shown.out), "0 Succeed.");
    for (const char* title : {"Broadcom Controller Information", "Microchip Controller Information",
                              "Marvell Controller Information", "VROC Controller Information",
                              "Show Configuration Result"}) {
        EXPECT_NE(shown.out.find(title), std::string::npos) << title;
    }
    EXPECT_TRUE(raidcfg_test::FileExists(dir.File("raid_show_result.xml")));
    EXPECT_FALSE(raidcfg_test::FileExists(dir.File("raid_result.html")));
    const std::string report = raidcfg_test::ReadFile(dir.File("raid_result.xml"));
    EXPECT_NE(report.find("<DEVICE>ctrl1</DEVICE>"), std::string::npos) << report;
    EXPECT_TRUE(raidcfg_test::FileExists(state.File("raidcfg/demo-machine.json")));
}

TEST(RaidcfgE2eTest, ShowOutOfBandOnTheDemoMachineWritesTheResultPage) {
    raidcfg_test::TempDir dir;
    raidcfg_test::TempDir state;
    const Outcome shown =
        RunRaidcfg(dir.path(), {"show", "--machine", "demo", "--bmc", "admin:secret@sim", "-q"},
                   {{"XDG_STATE_HOME", state.path()}});
    EXPECT_EQ(shown.status, 0) << shown.err;
    EXPECT_EQ(shown.out, "0 Succeed.\n");
    const std::string page = raidcfg_test::ReadFile(dir.File("raid_result.html"));
    EXPECT_NE(page.find("RaidConfig Show"), std::string::npos);
    EXPECT_EQ(page.find("secret"), std::string::npos);
}

TEST(RaidcfgE2eTest, ShowOutOfBandWithAWrongPasswordIsAuthenticationFailed) {
    raidcfg_test::TempDir dir;
    raidcfg_test::TempDir state;
    const Outcome shown =
        RunRaidcfg(dir.path(), {"show", "--machine", "demo", "--bmc", "admin@sim"},
                   {{"XDG_STATE_HOME", state.path()}, {"RAIDCFG_BMC_PASSWORD", "nope"}});
    EXPECT_EQ(shown.status, 12);
    EXPECT_EQ(LastLine(shown.out), "12 Authentication failed.");
}

} // namespace
