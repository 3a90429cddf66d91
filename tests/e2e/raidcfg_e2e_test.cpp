#include <cstring>
#include <filesystem>
#include <map>
#include <optional>
#include <string>
#include <vector>

#include <fcntl.h>
#include <sys/wait.h>
#include <unistd.h>

#include "tests/support/child_process.hpp"
#include "tests/support/file_text.hpp"
#include "tests/support/temp_dir.hpp"

#include <gtest/gtest.h>

namespace {

const std::string kProgram = RAIDCFG_BIN_DIR "/raidcfg";

using Outcome = raidcfg_test::ProgramOutcome;

// Runs raidcfg with args in dir; with input, standard input reads that text.
Outcome RunRaidcfg(const std::string& dir, const std::vector<std::string>& args,
                   const std::map<std::string, std::string>& env = {},
                   const std::optional<std::string>& input = std::nullopt) {
    return raidcfg_test::RunProgram(kProgram, dir, args, env, input);
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

namespace {

// A server with one controller of each in-band family. Configured, it holds volumes and hot
// spares as a save finds them; cleared, the same disks stand free, as on a machine that the saved
// policy file is to be applied to. Flat numbers: LSI 1, Microchip 2, M.2 3, software RAID 4.
std::string InBandServer(bool configured) {
    const std::string member = configured ? "Online" : "UGood";
    const std::string dedicated = configured ? "DHS" : "UGood";
    const std::string global = configured ? "GHS" : "UGood";
    const auto disk = [](int id, const std::string& state, int capacity_mb) {
        return R"({"id": )" + std::to_string(id) + R"(, "slot_no": ")" + std::to_string(id) +
               R"(", "state": ")" + state + R"(", "capacity_mb": )" + std::to_string(capacity_mb) +
               "}";
    };
    const auto when = [configured](const std::string& text) {
        return configured ? text : std::string();
    };
    return R"({"persist": true, "controllers": [
  {"family": "LSI", "id": 0, "raid_levels": ["0", "1", "5", "10"], "min_stripe_kb": 64,
   "max_stripe_kb": 1024, "disks": [)" +
           disk(0, member, 953869) + ", " + disk(1, member, 953869) + ", " +
           disk(2, member, 953869) + ", " + disk(3, member, 953869) + ", " +
           disk(4, member, 953869) + ", " + disk(5, dedicated, 953869) + ", " +
           disk(6, global, 953869) + "]" + when(R"(,
   "volumes": [
     {"id": 0, "name": "os", "raid_level": "1", "spans": [[0, 1]], "size_mb": 953869,
      "strip_kb": 256, "write_policy": 1, "read_policy": 1},
     {"id": 1, "name": "data", "raid_level": "5", "spans": [[2, 3, 4]], "size_mb": 1907738,
      "strip_kb": 128, "write_policy": 2, "io_policy": 1, "cache_policy": 2,
      "dedicated_spares": [5]}],
   "global_hot_spares": [6])") +
           R"(},
  {"family": "MICROCHIP", "id": 0, "min_stripe_kb": 16, "max_stripe_kb": 1024, "disks": [)" +
           disk(0, member, 1831054) + ", " + disk(1, member, 1831054) + ", " +
           disk(2, member, 1831054) + ", " + disk(3, member, 1831054) + ", " +
           disk(4, global, 1831054) + "]" + when(R"(,
   "volumes": [{"id": 0, "name": "db", "raid_level": "10", "spans": [[0, 1], [2, 3]],
                "size_mb": 3662108, "strip_kb": 256}],
   "global_hot_spares": [4])") +
           R"(},
  {"family": "M2", "id": 0, "raid_levels": ["0", "1"], "min_stripe_kb": 32,
   "max_stripe_kb": 128, "disks": [)" +
           disk(0, member, 457763) + ", " + disk(1, member, 457763) + "]" + when(R"(,
   "volumes": [{"id": 0, "name": "boot", "raid_level": "1", "spans": [[0, 1]],
                "size_mb": 457763, "strip_kb": 64}])") +
           R"(},
  {"family": "VROC_WIN", "id": 0, "raid_levels": ["0", "1", "5", "10"], "disks": [)" +
           disk(0, member, 3662109) + ", " + disk(1, member, 3662109) + ", " +
           disk(2, member, 3662109) + ", " + disk(3, global, 3662109) + "]" + when(R"(,
   "volumes": [{"id": 0, "name": "Volume0", "raid_level": "5", "spans": [[0, 1, 2]],
                "size_mb": 7324218, "strip_kb": 64}],
   "global_hot_spares": [3])") +
           R"(}
]})";
}

TEST(RaidcfgE2eTest, SaveWritesThePolicyFileOfTheMachine) {
    raidcfg_test::TempDir dir;
    raidcfg_test::WriteFile(dir.File("machine.json"), InBandServer(true));
    const Outcome saved =
        RunRaidcfg(dir.path(), {"save", "--file", "saved.ini", "--machine", "machine.json"});
    EXPECT_EQ(saved.status, 0) << saved.out << saved.err;
    EXPECT_EQ(LastLine(saved.out), "0 Succeed.");
    EXPECT_NE(saved.out.find("Save Configuration Result"), std::string::npos) << saved.out;
    ASSERT_TRUE(raidcfg_test::FileExists(dir.File("saved.ini")));
    const std::string text = raidcfg_test::ReadFile(dir.File("saved.ini"));
    for (const char* head :
         {"[ctrl1-vol0]\n", "[ctrl1-vol1]\n", "[ctrl1]\n    global_hot_spares=6\n",
          "[ctrl2-vol0]\n", "[ctrl2]\n", "[ctrl3-vol0]\n", "[ctrl4-vol0]\n", "[ctrl4]\n"}) {
        EXPECT_NE(text.find(head), std::string::npos) << head << "\n" << text;
    }
    const std::string report = raidcfg_test::ReadFile(dir.File("raid_result.xml"));
    EXPECT_NE(report.find("<DEVICE>ctrl4</DEVICE>"), std::string::npos) << report;
}

TEST(RaidcfgE2eTest, ASavedPolicyFileIsAcceptedByAddOnTheClearedMachine) {
    raidcfg_test::TempDir dir;
    raidcfg_test::WriteFile(dir.File("machine.json"), InBandServer(true));
    const Outcome saved =
        RunRaidcfg(dir.path(), {"save", "--file", "saved.ini", "--machine", "machine.json"});
    ASSERT_EQ(saved.status, 0) << saved.out << saved.err;

    // The same server with its volumes and hot spares cleared takes the file back whole: every
    // size and strip the simulated backends report fits what add checks.
    raidcfg_test::WriteFile(dir.File("cleared.json"), InBandServer(false));
    const Outcome added = RunRaidcfg(
        dir.path(), {"add", "--file", "saved.ini", "--yes", "--machine", "cleared.json", "-q"});
    EXPECT_EQ(added.status, 0) << added.out << added.err;
    EXPECT_EQ(LastLine(added.out), "0 Succeed.");

    // Saved again, the cleared server gives the same file: each run is a process of its own, so
    // the software RAID volumes are numbered from 0 both times.
    const Outcome again =
        RunRaidcfg(dir.path(), {"save", "--file", "again.ini", "--machine", "cleared.json", "-q"});
    EXPECT_EQ(again.status, 0) << again.out << again.err;
    EXPECT_EQ(raidcfg_test::ReadFile(dir.File("again.ini")),
              raidcfg_test::ReadFile(dir.File("saved.ini")));
}

TEST(RaidcfgE2eTest, SaveToOutputPutsThePolicyFileInTheOutputDirectory) {
    raidcfg_test::TempDir dir;
    raidcfg_test::TempDir state;
    const Outcome saved = RunRaidcfg(dir.path(),
                                     {"save", "--file", "saved.ini", "--output", "out",
                                      "--save-to-output", "--machine", "demo", "-q"},
                                     {{"XDG_STATE_HOME", state.path()}});
    EXPECT_EQ(saved.status, 0) << saved.out << saved.err;
    EXPECT_TRUE(raidcfg_test::FileExists(dir.File("out/saved.ini")));
    EXPECT_FALSE(raidcfg_test::FileExists(dir.File("saved.ini")));
}

TEST(RaidcfgE2eTest, SaveOutOfBandOnTheDemoMachineWritesThePolicyFileAndThePage) {
    raidcfg_test::TempDir dir;
    raidcfg_test::TempDir state;
    const Outcome saved = RunRaidcfg(
        dir.path(),
        {"save", "--file", "oob.ini", "--machine", "demo", "--bmc", "admin:secret@sim", "-q"},
        {{"XDG_STATE_HOME", state.path()}});
    EXPECT_EQ(saved.status, 0) << saved.out << saved.err;
    EXPECT_EQ(saved.out, "0 Succeed.\n");
    const std::string text = raidcfg_test::ReadFile(dir.File("oob.ini"));
    EXPECT_EQ(text.rfind("[ctrl1-vol0]\n", 0), 0U) << text;
    const std::string page = raidcfg_test::ReadFile(dir.File("raid_result.html"));
    EXPECT_NE(page.find("RaidConfig Save"), std::string::npos);
}

TEST(RaidcfgE2eTest, SaveWithoutAFileIsAnInvalidParameter) {
    raidcfg_test::TempDir dir;
    raidcfg_test::TempDir state;
    const Outcome saved = RunRaidcfg(dir.path(), {"save", "--machine", "demo", "-q"},
                                     {{"XDG_STATE_HOME", state.path()}});
    EXPECT_EQ(saved.status, 5);
    EXPECT_EQ(LastLine(saved.out), "5 Invalid parameter.");
}

} // namespace

namespace {

// For the demo server: a global hot spare and a volume on its LSI controller (number 1), and a
// mirror on its Microchip controller (number 2), all on disks that stand free there.
const char* const kDemoAddPolicy = R"([ctrl1]
global_hot_spares=8
[ctrl1-vol2]
disks=7
raid_level=0
vol_name=e2e_data
volume_size=100GB
[ctrl2-vol1]
disks=5,6
raid_level=1
vol_name=e2e_fast
volume_size=100GB
)";

// The text without any white space, so that a check does not depend on how it is laid out.
std::string Squeezed(const std::string& text) {
    std::string squeezed;
    for (const char c : text) {
        if (c != ' ' && c != '\n' && c != '\r' && c != '\t') {
            squeezed.push_back(c);
        }
    }
    return squeezed;
}

// The demo machine's file with one piece of text replaced (the first after the text after), for
// a variant of the demo server.
std::string DemoWith(const std::string& from, const std::string& to,
                     const std::string& after = "") {
    std::string text = raidcfg_test::ReadFile(RAIDCFG_DEMO_MACHINE);
    const std::size_t at = text.find(from, text.find(after));
    EXPECT_NE(at, std::string::npos) << from;
    if (at != std::string::npos) {
        text.replace(at, from.size(), to);
    }
    return text;
}

std::size_t Count(const std::string& text, const std::string& what) {
    std::size_t count = 0;
    for (std::size_t at = text.find(what); at != std::string::npos;
         at = text.find(what, at + what.size())) {
        ++count;
    }
    return count;
}

TEST(RaidcfgE2eTest, WithoutASupportHelperTheSupportElementsAreEmptyAndPresent) {
    for (const char* variant : {R"("rest_connections": 0)", R"("support_info": false)"}) {
        raidcfg_test::TempDir dir;
        const std::string from = std::string(variant).find("rest") != std::string::npos
                                     ? R"("rest_connections": 1)"
                                     : R"("support_info": true)";
        raidcfg_test::WriteFile(dir.File("m.json"), DemoWith(from, variant));
        const Outcome shown = RunRaidcfg(
            dir.path(), {"show", "--machine", "m.json", "--bmc", "admin:secret@sim", "-q"});
        EXPECT_EQ(shown.status, 0) << variant << shown.out << shown.err;
        const std::string xml = raidcfg_test::ReadFile(dir.File("raid_show_result.xml"));
        const std::size_t controllers = Count(xml, "<MinStripeSize");
        EXPECT_GT(controllers, 0U) << xml;
        EXPECT_EQ(Count(xml, "<MinStripeSize/>"), controllers) << variant;
        EXPECT_EQ(Count(xml, "<MaxStripeSize/>"), controllers) << variant;
        EXPECT_EQ(Count(xml, "<SupportRaidLevels/>"), controllers) << variant;
    }
}

TEST(RaidcfgE2eTest, AStripeLimitTheControllerDoesNotTellIsEmptyWithAHelper) {
    raidcfg_test::TempDir dir;
    raidcfg_test::WriteFile(
        dir.File("m.json"),
        DemoWith(R"("min_stripe_kb": 64,)", R"("min_stripe_kb": 0,)", R"("family": "OOB_LSI")"));
    const Outcome shown =
        RunRaidcfg(dir.path(), {"show", "--machine", "m.json", "--bmc", "admin:secret@sim", "-q"});
    EXPECT_EQ(shown.status, 0) << shown.out << shown.err;
    const std::string xml = raidcfg_test::ReadFile(dir.File("raid_show_result.xml"));
    EXPECT_EQ(Count(xml, "<MinStripeSize/>"), 1U) << xml;
    EXPECT_EQ(xml.find("<MinStripeSize>0K</MinStripeSize>"), std::string::npos);
}

// The demo with faults on its out-of-band LSI controller, whose key management is turned on.
std::string DemoWithOobLsiFaults(const std::string& faults) {
    std::string text =
        DemoWith(R"("ekm_mode": "None")", R"("ekm_mode": "Local")", R"("family": "OOB_LSI")");
    const std::string none = R"("faults": [])";
    const std::size_t at = text.find(none, text.find(R"("family": "OOB_LSI")"));
    text.replace(at, none.size(), R"("faults": )" + faults);
    return text;
}

TEST(RaidcfgE2eTest, AFaultOnEncryptingAllVolumesFiresForThatOperationAndEncryptsNothing) {
    raidcfg_test::TempDir dir;
    raidcfg_test::WriteFile(
        dir.File("m.json"),
        DemoWithOobLsiFaults(R"([{"op": "enableEncryptionAllVolumes", "code": 32}])"));
    const Outcome run =
        RunRaidcfg(dir.path(), {"envol", "--mode", "enable", "--ctrl", "1", "-y", "--machine",
                                "m.json", "--bmc", "admin:secret@sim"});
    EXPECT_NE(run.out.find("ctrl1     Failed to operate Rest API.\n"), std::string::npos)
        << run.out;
    EXPECT_EQ(Count(raidcfg_test::ReadFile(dir.File("m.json")), R"("encrypted": true)"), 0U);
}

TEST(RaidcfgE2eTest, AFaultWithCodeZeroKeepsItsTextBehindSuccess) {
    raidcfg_test::TempDir dir;
    raidcfg_test::WriteFile(
        dir.File("m.json"),
        DemoWithOobLsiFaults(
            R"json([{"op": "changeEKMmode", "code": 0, "error_text": " (applied after reboot)"}])json"));
    const Outcome run =
        RunRaidcfg(dir.path(), {"ekm", "--mode", "external", "--ctrl", "1", "--machine", "m.json",
                                "--bmc", "admin:secret@sim"});
    EXPECT_EQ(run.status, 0) << run.out << run.err;
    EXPECT_NE(run.out.find("ctrl1     Success. (applied after reboot)\n"), std::string::npos)
        << run.out;
}

TEST(RaidcfgE2eTest, AMachineFileWhoseFaultNamesNoOperationIsRefused) {
    raidcfg_test::TempDir dir;
    raidcfg_test::WriteFile(
        dir.File("m.json"),
        DemoWithOobLsiFaults(R"([{"op": "getControllerWithVolume", "code": 3}])"));
    const Outcome run = RunRaidcfg(dir.path(), {"show", "--machine", "m.json"});
    EXPECT_EQ(run.status, 5);
    EXPECT_NE(run.err.find("m.json: controllers[4].faults[0].op: \"getControllerWithVolume\" is "
                           "not an operation of the backend contract ("),
              std::string::npos)
        << run.err;
}

TEST(RaidcfgE2eTest, SettingAConnectorToTheModeItHasSaysSo) {
    raidcfg_test::TempDir dir;
    raidcfg_test::WriteFile(dir.File("m.json"), raidcfg_test::ReadFile(RAIDCFG_DEMO_MACHINE));
    const Outcome run = RunRaidcfg(dir.path(), {"changemode", "--ctrl", "2", "--connector", "0",
                                                "--mode", "RAID", "-y", "--machine", "m.json"});
    EXPECT_EQ(run.status, 0) << run.out << run.err;
    EXPECT_NE(run.out.find("ctrl2-connector0    connector 0 is already in RAID mode\n"),
              std::string::npos)
        << run.out;
}

TEST(RaidcfgE2eTest, ASavedM2MirrorComesBackOnItsTwoDisks) {
    raidcfg_test::TempDir dir;
    raidcfg_test::WriteFile(dir.File("m.json"), raidcfg_test::ReadFile(RAIDCFG_DEMO_MACHINE));
    const std::vector<std::string> oob = {"--machine", "m.json", "--bmc", "admin:secret@sim", "-q"};
    const auto run = [&](std::vector<std::string> args) {
        args.insert(args.end(), oob.begin(), oob.end());
        return RunRaidcfg(dir.path(), args);
    };
    const std::string before = Squeezed(raidcfg_test::ReadFile(dir.File("m.json")));
    const std::string mirror = R"("name":"boot","raid_level":"1","spans":[[0,1]],"size_mb":915527)";
    ASSERT_NE(before.find(mirror), std::string::npos) << before;
    EXPECT_EQ(run({"save", "--ctrl", "4", "--file", "s.ini"}).status, 0);
    EXPECT_EQ(run({"clear", "--ctrl", "4", "-y"}).status, 0);
    ASSERT_EQ(Squeezed(raidcfg_test::ReadFile(dir.File("m.json"))).find(mirror), std::string::npos);
    const Outcome added = run({"add", "--file", "s.ini", "-y"});
    EXPECT_EQ(added.status, 0) << added.out << added.err;
    EXPECT_NE(Squeezed(raidcfg_test::ReadFile(dir.File("m.json"))).find(mirror), std::string::npos);
}

TEST(RaidcfgDiffE2eTest, ASavedPolicyMatchesItsServerOnEveryRoad) {
    const std::vector<std::vector<std::string>> roads = {{"--bmc", "admin:secret@sim"},
                                                         {},
                                                         {"--target", "all"},
                                                         {"--cfc", "--bmc", "admin:secret@sim"}};
    for (const auto& road : roads) {
        SCOPED_TRACE(::testing::PrintToString(road));
        raidcfg_test::TempDir dir;
        raidcfg_test::WriteFile(dir.File("m.json"), raidcfg_test::ReadFile(RAIDCFG_DEMO_MACHINE));
        std::vector<std::string> save = {"save", "--file", "s.ini", "--machine", "m.json", "-q"};
        save.insert(save.end(), road.begin(), road.end());
        ASSERT_EQ(RunRaidcfg(dir.path(), save).status, 0);
        std::filesystem::remove(dir.File("raid_result.xml"));
        std::vector<std::string> diff = {"diff", "--file", "s.ini", "--machine", "m.json"};
        diff.insert(diff.end(), road.begin(), road.end());
        const Outcome run = RunRaidcfg(dir.path(), diff);
        EXPECT_EQ(run.status, 0) << run.out << run.err;
        EXPECT_EQ(run.out, "The server matches the policy.\n");
        // diff leaves no result file of the read it made.
        EXPECT_FALSE(raidcfg_test::FileExists(dir.File("raid_result.xml")));
    }
}

TEST(RaidcfgDiffE2eTest, ADifferentServerExitsThreeWithTheDifferences) {
    raidcfg_test::TempDir dir;
    raidcfg_test::WriteFile(dir.File("m.json"), raidcfg_test::ReadFile(RAIDCFG_DEMO_MACHINE));
    raidcfg_test::WriteFile(dir.File("p.ini"), "[ctrl1-vol0]\ndisks=0,1,2,3\nvol_name=data\n"
                                               "[ctrl1-vol1]\ndisks=6,7\nraid_level=1\n");
    const std::vector<std::string> args = {"diff",   "--file", "p.ini",           "--machine",
                                           "m.json", "--bmc",  "admin:secret@sim"};
    const Outcome run = RunRaidcfg(dir.path(), args);
    EXPECT_EQ(run.status, 3) << run.err;
    EXPECT_EQ(run.out, "ctrl1-vol0    differs: vol_name is \"vd0\", the policy says \"data\"\n"
                       "ctrl1-vol1    create: RAID 1 on disks 6,7\n"
                       "2 differences from the policy.\n");
    std::vector<std::string> json = args;
    json.emplace_back("--json");
    const Outcome document = RunRaidcfg(dir.path(), json);
    EXPECT_EQ(document.status, 3);
    EXPECT_NE(document.out.find(R"("matches": false)"), std::string::npos) << document.out;
    EXPECT_NE(document.out.find(R"("kind": "create")"), std::string::npos) << document.out;
    // The machine did not change.
    EXPECT_EQ(raidcfg_test::ReadFile(dir.File("m.json")),
              raidcfg_test::ReadFile(RAIDCFG_DEMO_MACHINE));
}

TEST(RaidcfgDiffE2eTest, AFailedReadEndsWithItsCodeAndABadPolicyFileWithFive) {
    raidcfg_test::TempDir dir;
    raidcfg_test::WriteFile(dir.File("m.json"), raidcfg_test::ReadFile(RAIDCFG_DEMO_MACHINE));
    raidcfg_test::WriteFile(dir.File("p.ini"), "[ctrl1-vol0]\ndisks=0\n");
    const Outcome refused = RunRaidcfg(
        dir.path(), {"diff", "--file", "p.ini", "--machine", "m.json", "--bmc", "root:nope@sim"});
    EXPECT_EQ(refused.status, 12);
    EXPECT_EQ(refused.out, "12 Authentication failed.\n");
    raidcfg_test::WriteFile(dir.File("bad.ini"), "disks=0\n");
    const Outcome bad =
        RunRaidcfg(dir.path(), {"diff", "--file", "bad.ini", "--machine", "m.json"});
    EXPECT_EQ(bad.status, 5);
    EXPECT_EQ(bad.err, "raidcfg: --file: 'bad.ini': line 1: a key before any section\n");
}

TEST(RaidcfgE2eTest, AHotSpareBeyondIntIsTheLimitOfIntAsStreamExtractionGivesIt) {
    raidcfg_test::TempDir dir;
    raidcfg_test::TempDir state;
    raidcfg_test::WriteFile(dir.File("add.ini"),
                            "[ctrl1]\nglobal_hot_spares=99999999999999999999\n");
    const Outcome added =
        RunRaidcfg(dir.path(), {"add", "--file", "add.ini", "-y", "--machine", "demo"},
                   {{"XDG_STATE_HOME", state.path()}});
    EXPECT_EQ(added.status, 124) << added.out << added.err;
    EXPECT_NE(added.out.find("ctrl1-disk2147483647    The disk ID 2147483647 does not exist.\n"),
              std::string::npos)
        << added.out;
}

TEST(RaidcfgE2eTest, AddWithYesCreatesWhatThePolicyFileAsksFor) {
    raidcfg_test::TempDir dir;
    raidcfg_test::TempDir state;
    raidcfg_test::WriteFile(dir.File("add.ini"), kDemoAddPolicy);
    const std::map<std::string, std::string> env{{"XDG_STATE_HOME", state.path()}};
    const Outcome added =
        RunRaidcfg(dir.path(), {"add", "--file", "add.ini", "--yes", "--machine", "demo"}, env);
    EXPECT_EQ(added.status, 0) << added.out << added.err;
    EXPECT_EQ(LastLine(added.out), "0 Succeed.");
    EXPECT_EQ(added.out.find("Please type yes(y) or no(n):"), std::string::npos) << added.out;
    for (const char* row : {"ctrl1-disk8    Disk has been assigned global hot spare sucessfully.",
                            "ctrl1-vol2     Volume has been created successfully.",
                            "ctrl2-vol1     Volume has been created successfully."}) {
        EXPECT_NE(added.out.find(row), std::string::npos) << row << "\n" << added.out;
    }
    const std::string report = raidcfg_test::ReadFile(dir.File("raid_result.xml"));
    EXPECT_NE(report.find("<DEVICE>ctrl1-vol2</DEVICE>"), std::string::npos) << report;

    const Outcome shown = RunRaidcfg(dir.path(), {"show", "--machine", "demo"}, env);
    EXPECT_EQ(shown.status, 0) << shown.err;
    EXPECT_NE(shown.out.find("e2e_data"), std::string::npos) << shown.out;
    EXPECT_NE(shown.out.find("e2e_fast"), std::string::npos) << shown.out;

    const std::string machine =
        Squeezed(raidcfg_test::ReadFile(state.File("raidcfg/demo-machine.json")));
    EXPECT_NE(machine.find(R"("name":"e2e_data","raid_level":"0","spans":[[7]])"),
              std::string::npos);
    EXPECT_NE(machine.find(R"("name":"e2e_fast","raid_level":"1","spans":[[5,6]])"),
              std::string::npos);
    EXPECT_NE(machine.find(R"("global_hot_spares":[6,8])"), std::string::npos);
}

TEST(RaidcfgE2eTest, AddWithoutYesAsksOnStandardInputAndNoChangesNothing) {
    raidcfg_test::TempDir dir;
    raidcfg_test::TempDir state;
    raidcfg_test::WriteFile(dir.File("add.ini"), kDemoAddPolicy);
    const std::map<std::string, std::string> env{{"XDG_STATE_HOME", state.path()}};
    // The first run puts the demo machine's file in place.
    ASSERT_EQ(RunRaidcfg(dir.path(), {"show", "--machine", "demo", "-q"}, env).status, 0);
    const std::string before = raidcfg_test::ReadFile(state.File("raidcfg/demo-machine.json"));

    const Outcome declined = RunRaidcfg(
        dir.path(), {"add", "--file", "add.ini", "--machine", "demo"}, env, std::string("n\n"));
    EXPECT_EQ(declined.status, 0) << declined.out << declined.err;
    EXPECT_EQ(LastLine(declined.out), "0 Succeed.");
    EXPECT_NE(declined.out.find("Are you sure you want to continue creating the config.\n"
                                "Please type yes(y) or no(n):\n"),
              std::string::npos)
        << declined.out;
    EXPECT_NE(declined.out.find("[ctrl1-vol2]"), std::string::npos) << declined.out;
    EXPECT_EQ(declined.out.find("Add Configuration Result"), std::string::npos) << declined.out;
    EXPECT_EQ(raidcfg_test::ReadFile(state.File("raidcfg/demo-machine.json")), before);

    const Outcome accepted = RunRaidcfg(
        dir.path(), {"add", "--file", "add.ini", "--machine", "demo"}, env, std::string("y\n"));
    EXPECT_EQ(accepted.status, 0) << accepted.out << accepted.err;
    EXPECT_NE(accepted.out.find("Add Configuration Result"), std::string::npos) << accepted.out;
    EXPECT_NE(raidcfg_test::ReadFile(state.File("raidcfg/demo-machine.json")), before);
}

TEST(RaidcfgE2eTest, AddOutOfBandOnAMachineFileWritesThePage) {
    raidcfg_test::TempDir dir;
    raidcfg_test::WriteFile(dir.File("machine.json"), R"({"controllers": [
  {"family": "OOB_LSI", "id": 3,
   "disks": [{"id": 0, "capacity_mb": 953869}, {"id": 1, "capacity_mb": 953869}]}]})");
    raidcfg_test::WriteFile(dir.File("add.ini"), "[ctrl1-vol0]\ndisks=0,1\nraid_level=1\n"
                                                 "vol_name=oob\nvolume_size=50%\n");
    const Outcome added =
        RunRaidcfg(dir.path(), {"add", "--file", "add.ini", "--yes", "--machine", "machine.json",
                                "--bmc", "admin:secret@sim", "-q"});
    EXPECT_EQ(added.status, 0) << added.out << added.err;
    EXPECT_EQ(LastLine(added.out), "0 Succeed.");
    const std::string page = raidcfg_test::ReadFile(dir.File("raid_result.html"));
    EXPECT_NE(page.find("RaidConfig Add"), std::string::npos);
    const std::string machine = Squeezed(raidcfg_test::ReadFile(dir.File("machine.json")));
    EXPECT_NE(machine.find(R"("name":"oob","raid_level":"1","spans":[[0,1]])"), std::string::npos)
        << machine;
}

} // namespace

namespace {

// A free or configured disk of a machine file, with its slot named after its id.
std::string MachineDisk(int id, const std::string& state, int capacity_mb) {
    return R"({"id": )" + std::to_string(id) + R"(, "slot_no": ")" + std::to_string(id) +
           R"(", "state": ")" + state + R"(", "capacity_mb": )" + std::to_string(capacity_mb) + "}";
}

// A server reached through its BMC, with one controller of each out-of-band family. Configured,
// it holds volumes and hot spares as a save finds them; cleared, the same disks stand free. Flat
// numbers: LSI 1, Microchip 2, VROC 3, M.2 4. Hot spares stand only where the family carries them
// through a save and an add: the Microchip family reads and writes dedicated spares but no global
// ones, VROC takes global spares but no dedicated ones, and M.2 takes none.
std::string OutOfBandServer(bool configured) {
    const std::string member = configured ? "Online" : "UGood";
    const std::string dedicated = configured ? "DHS" : "UGood";
    const std::string global = configured ? "GHS" : "UGood";
    const auto when = [configured](const std::string& text) {
        return configured ? text : std::string();
    };
    return R"({"persist": true, "controllers": [
  {"family": "OOB_LSI", "id": 0, "raid_levels": ["0", "1", "5", "10"], "min_stripe_kb": 64,
   "max_stripe_kb": 1024, "disks": [)" +
           MachineDisk(0, member, 953869) + ", " + MachineDisk(1, member, 953869) + ", " +
           MachineDisk(2, member, 953869) + ", " + MachineDisk(3, member, 953869) + ", " +
           MachineDisk(4, member, 953869) + ", " + MachineDisk(5, dedicated, 953869) + ", " +
           MachineDisk(6, global, 953869) + "]" + when(R"(,
   "volumes": [
     {"id": 0, "name": "os", "raid_level": "1", "spans": [[0, 1]], "size_mb": 953869,
      "strip_kb": 256, "write_policy": 1, "read_policy": 1},
     {"id": 1, "name": "data", "raid_level": "5", "spans": [[2, 3, 4]], "size_mb": 1907738,
      "strip_kb": 128, "write_policy": 2, "io_policy": 1, "cache_policy": 2,
      "dedicated_spares": [5]}],
   "global_hot_spares": [6])") +
           R"(},
  {"family": "OOB_MICROCHIP", "id": 0, "raid_levels": ["0", "1", "10", "1triple"],
   "min_stripe_kb": 16, "max_stripe_kb": 1024, "disks": [)" +
           MachineDisk(0, member, 1831054) + ", " + MachineDisk(1, member, 1831054) + ", " +
           MachineDisk(2, member, 1831054) + ", " + MachineDisk(3, member, 1831054) + ", " +
           MachineDisk(4, dedicated, 1831054) + "]" + when(R"(,
   "volumes": [{"id": 0, "name": "db", "raid_level": "10", "spans": [[0, 1], [2, 3]],
                "size_mb": 3662108, "strip_kb": 256, "write_policy": 2, "read_policy": 1,
                "dedicated_spares": [4]}])") +
           R"(},
  {"family": "OOB_VROC", "id": 0, "raid_levels": ["0", "1", "5", "10"], "disks": [)" +
           MachineDisk(0, member, 3662109) + ", " + MachineDisk(1, member, 3662109) + ", " +
           MachineDisk(2, member, 3662109) + ", " + MachineDisk(3, global, 3662109) + "]" +
           when(R"(,
   "volumes": [{"id": 0, "name": "Volume0", "raid_level": "5", "spans": [[0, 1, 2]],
                "size_mb": 7324218, "strip_kb": 64}],
   "global_hot_spares": [3])") +
           R"(},
  {"family": "OOB_M2", "id": 0, "raid_levels": ["0", "1"], "min_stripe_kb": 32,
   "max_stripe_kb": 128, "disks": [)" +
           MachineDisk(0, member, 457763) + ", " + MachineDisk(1, member, 457763) + "]" + when(R"(,
   "volumes": [{"id": 0, "name": "boot", "raid_level": "1", "spans": [[0, 1]],
                "size_mb": 457763, "strip_kb": 64}])") +
           R"(}
]})";
}

// A CFC system: three controllers behind one BMC interface, told apart by their vendor. Flat
// numbers: Broadcom 1, Microchip 2, M.2 3. The Broadcom controller's volume with a dedicated
// spare is there on purpose: a CFC save writes no hot_spares line, so the spare stays free on
// the cleared copy while both saved files still agree.
std::string CfcServer(bool configured) {
    const std::string member = configured ? "Online" : "UGood";
    const std::string dedicated = configured ? "DHS" : "UGood";
    const std::string global = configured ? "GHS" : "UGood";
    const auto when = [configured](const std::string& text) {
        return configured ? text : std::string();
    };
    return R"({"persist": true, "controllers": [
  {"family": "OOB_CFC", "id": 0, "vendor": "Broadcom", "raid_levels": ["0", "1", "5", "10"],
   "min_stripe_kb": 64, "max_stripe_kb": 1024, "disks": [)" +
           MachineDisk(0, member, 953869) + ", " + MachineDisk(1, member, 953869) + ", " +
           MachineDisk(2, member, 953869) + ", " + MachineDisk(3, member, 953869) + ", " +
           MachineDisk(4, member, 953869) + ", " + MachineDisk(5, dedicated, 953869) + ", " +
           MachineDisk(6, global, 953869) + "]" + when(R"(,
   "volumes": [
     {"id": 0, "name": "os", "raid_level": "1", "spans": [[0, 1]], "size_mb": 953869,
      "strip_kb": 256, "write_policy": 1, "read_policy": 1, "initialization": 1},
     {"id": 1, "name": "data", "raid_level": "5", "spans": [[2, 3, 4]], "size_mb": 1907738,
      "strip_kb": 128, "write_policy": 2, "access_policy": 2, "cache_policy": 2,
      "dedicated_spares": [5]}],
   "global_hot_spares": [6])") +
           R"(},
  {"family": "OOB_CFC", "id": 1, "vendor": "Microchip", "raid_levels": ["0", "1", "10"],
   "min_stripe_kb": 16, "max_stripe_kb": 1024, "disks": [)" +
           MachineDisk(0, member, 1831054) + ", " + MachineDisk(1, member, 1831054) + ", " +
           MachineDisk(2, member, 1831054) + ", " + MachineDisk(3, member, 1831054) + ", " +
           MachineDisk(4, global, 1831054) + "]" + when(R"(,
   "volumes": [{"id": 0, "name": "db", "raid_level": "10", "spans": [[0, 1], [2, 3]],
                "size_mb": 3662108, "strip_kb": 256}],
   "global_hot_spares": [4])") +
           R"(},
  {"family": "OOB_CFC", "id": 2, "vendor": "Marvell", "raid_levels": ["0", "1"],
   "min_stripe_kb": 32, "max_stripe_kb": 128, "disks": [)" +
           MachineDisk(0, member, 457763) + ", " + MachineDisk(1, member, 457763) + "]" + when(R"(,
   "volumes": [{"id": 0, "name": "", "raid_level": "1", "spans": [[0, 1]],
                "size_mb": 457763, "strip_kb": 64}])") +
           R"(}
]})";
}

const char* const kSimulatedBmc = "admin:secret@sim";

TEST(RaidcfgE2eTest, AnOutOfBandSavedPolicyFileIsAcceptedByAddOnTheClearedMachine) {
    raidcfg_test::TempDir dir;
    raidcfg_test::WriteFile(dir.File("machine.json"), OutOfBandServer(true));
    const Outcome saved = RunRaidcfg(dir.path(), {"save", "--file", "saved.ini", "--machine",
                                                  "machine.json", "--bmc", kSimulatedBmc, "-q"});
    ASSERT_EQ(saved.status, 0) << saved.out << saved.err;
    const std::string text = raidcfg_test::ReadFile(dir.File("saved.ini"));
    for (const char* head :
         {"[ctrl1-vol0]\n", "[ctrl1-vol1]\n", "[ctrl1]\n    global_hot_spares=6\n",
          "[ctrl2-vol0]\n    disks=0,1:2,3\n    hot_spares=4\n", "[ctrl3-vol0]\n",
          "[ctrl3]\n    global_hot_spares=3\n", "[ctrl4-vol0]\n"}) {
        EXPECT_NE(text.find(head), std::string::npos) << head << "\n" << text;
    }

    raidcfg_test::WriteFile(dir.File("cleared.json"), OutOfBandServer(false));
    const Outcome added =
        RunRaidcfg(dir.path(), {"add", "--file", "saved.ini", "--yes", "--machine", "cleared.json",
                                "--bmc", kSimulatedBmc});
    EXPECT_EQ(added.status, 0) << added.out << added.err;
    EXPECT_EQ(LastLine(added.out), "0 Succeed.");
    for (const char* row : {"ctrl1-disk6    Disk has been assigned global hot spare sucessfully.",
                            "ctrl1-vol0     Volume has been created successfully.",
                            "ctrl1-vol1     Volume has been created successfully.",
                            "ctrl2-vol0     Volume has been created successfully.",
                            "ctrl3-disk3    Disk has been assigned global hot spare sucessfully.",
                            "ctrl3-vol0     Volume has been created successfully.",
                            "ctrl4-vol0     Volume has been created successfully."}) {
        EXPECT_NE(added.out.find(row), std::string::npos) << row << "\n" << added.out;
    }

    // Every family carries its own part of the file through add unchanged, so the cleared server
    // saved again gives the same bytes.
    const Outcome again = RunRaidcfg(dir.path(), {"save", "--file", "again.ini", "--machine",
                                                  "cleared.json", "--bmc", kSimulatedBmc, "-q"});
    EXPECT_EQ(again.status, 0) << again.out << again.err;
    EXPECT_EQ(raidcfg_test::ReadFile(dir.File("again.ini")), text);
}

TEST(RaidcfgE2eTest, ACfcSavedPolicyFileIsAcceptedByAddOnTheClearedMachine) {
    raidcfg_test::TempDir dir;
    raidcfg_test::WriteFile(dir.File("machine.json"), CfcServer(true));
    const Outcome saved =
        RunRaidcfg(dir.path(), {"save", "--file", "saved.ini", "--machine", "machine.json", "--bmc",
                                kSimulatedBmc, "--cfc", "-q"});
    ASSERT_EQ(saved.status, 0) << saved.out << saved.err;
    const std::string text = raidcfg_test::ReadFile(dir.File("saved.ini"));
    // Broadcom keeps its policies and initialization; the other vendors write neither, and no
    // vendor writes a volume's hot spares. An M.2 volume may go without a name here.
    for (const char* part :
         {"[ctrl1-vol0]\n    disks=0,1\n    raid_level=1\n    vol_name=os\n    write_policy=1\n",
          "    initialization=1\n", "[ctrl1]\n    global_hot_spares=6\n",
          "[ctrl2-vol0]\n    disks=0,1:2,3\n    raid_level=10\n    vol_name=db\n",
          "    vol_name=db\n    volume_size=3662108MB\n", "[ctrl2]\n    global_hot_spares=4\n",
          "[ctrl3-vol0]\n    disks=0,1\n    raid_level=1\n    vol_name=\n"}) {
        EXPECT_NE(text.find(part), std::string::npos) << part << "\n" << text;
    }
    EXPECT_EQ(text.find("    hot_spares="), std::string::npos) << text;

    raidcfg_test::WriteFile(dir.File("cleared.json"), CfcServer(false));
    const Outcome added =
        RunRaidcfg(dir.path(), {"add", "--file", "saved.ini", "--yes", "--machine", "cleared.json",
                                "--bmc", kSimulatedBmc, "--cfc"});
    EXPECT_EQ(added.status, 0) << added.out << added.err;
    EXPECT_EQ(LastLine(added.out), "0 Succeed.");
    for (const char* row : {"ctrl1-disk6    Disk has been assigned global hot spare sucessfully.",
                            "ctrl1-vol0     Volume has been created successfully.",
                            "ctrl1-vol1     Volume has been created successfully.",
                            "ctrl2-disk4    Disk has been assigned global hot spare sucessfully.",
                            "ctrl2-vol0     Volume has been created successfully.",
                            "ctrl3-vol0     Volume has been created successfully."}) {
        EXPECT_NE(added.out.find(row), std::string::npos) << row << "\n" << added.out;
    }
    // The dedicated spare the file never named stays free.
    const std::string machine = Squeezed(raidcfg_test::ReadFile(dir.File("cleared.json")));
    EXPECT_NE(machine.find(R"({"id":5,"slot_no":"5","state":"UGood")"), std::string::npos)
        << machine;

    const Outcome again =
        RunRaidcfg(dir.path(), {"save", "--file", "again.ini", "--machine", "cleared.json", "--bmc",
                                kSimulatedBmc, "--cfc", "-q"});
    EXPECT_EQ(again.status, 0) << again.out << again.err;
    EXPECT_EQ(raidcfg_test::ReadFile(dir.File("again.ini")), text);
}

// One LSI controller, id 0, behind the BMC, with three free disks.
const char* const kTargetServer = R"({"persist": true, "controllers": [
  {"family": "OOB_LSI", "id": 0, "raid_levels": ["0", "1", "5", "10"], "min_stripe_kb": 64,
   "max_stripe_kb": 1024, "disks": [{"id": 0, "capacity_mb": 953869},
   {"id": 1, "capacity_mb": 953869}, {"id": 2, "capacity_mb": 953869}]}]})";

// On the target road sections are named by controller id: controller 0 is there, 7 is not.
const char* const kTargetPolicy = R"([ctrl0-vol0]
disks=0,1
raid_level=1
vol_name=mirror
volume_size=100GB
strip_size=256K
[ctrl0]
global_hot_spares=2
[ctrl7-vol0]
disks=0
raid_level=0
vol_name=ghost
volume_size=10GB
strip_size=64K
)";

// The ITEM rows of a raid_result.xml, as device and result, in the order the file holds them.
std::vector<std::pair<std::string, std::string>> ResultRows(const std::string& report) {
    const auto element = [&report](const std::string& name, std::size_t& at) {
        const std::string open = "<" + name + ">";
        const std::size_t start = report.find(open, at);
        if (start == std::string::npos) {
            at = std::string::npos;
            return std::string();
        }
        const std::size_t end = report.find("</" + name + ">", start);
        at = end;
        return report.substr(start + open.size(), end - start - open.size());
    };
    const auto unescaped = [](std::string text) {
        for (const auto& [entity, plain] : std::vector<std::pair<std::string, std::string>>{
                 {"&apos;", "'"}, {"&quot;", "\""}, {"&lt;", "<"}, {"&gt;", ">"}, {"&amp;", "&"}}) {
            for (std::size_t at = text.find(entity); at != std::string::npos;
                 at = text.find(entity, at + plain.size())) {
                text.replace(at, entity.size(), plain);
            }
        }
        return text;
    };
    std::vector<std::pair<std::string, std::string>> rows;
    std::size_t at = 0;
    while (true) {
        std::string device = element("DEVICE", at);
        if (at == std::string::npos) {
            break;
        }
        std::string result = element("RESULT", at);
        if (at == std::string::npos) {
            break;
        }
        rows.emplace_back(unescaped(device), unescaped(result));
    }
    return rows;
}

using Rows = std::vector<std::pair<std::string, std::string>>;

TEST(RaidcfgE2eTest, AddToTargetAllWorksFromTheFileAndReportsAControllerThatIsNotThere) {
    raidcfg_test::TempDir dir;
    raidcfg_test::WriteFile(dir.File("machine.json"), kTargetServer);
    raidcfg_test::WriteFile(dir.File("add.ini"), kTargetPolicy);
    const Outcome added =
        RunRaidcfg(dir.path(), {"add", "--file", "add.ini", "--yes", "--machine", "machine.json",
                                "--bmc", kSimulatedBmc, "--target", "all"});
    EXPECT_EQ(added.status, 119) << added.out << added.err;
    EXPECT_EQ(LastLine(added.out), "119 The operation fails on some targets.");
    const std::string report = raidcfg_test::ReadFile(dir.File("raid_result.xml"));
    EXPECT_EQ(ResultRows(report),
              (Rows{{"ctrl[7]", "The target ctrl[7] does not exist."},
                    {"disk[0-2]", "Disk has been assigned global hot spare sucessfully."},
                    {"vol[0-0]", "Volume has been created successfully."}}))
        << report;
    const std::string machine = Squeezed(raidcfg_test::ReadFile(dir.File("machine.json")));
    EXPECT_NE(machine.find(R"("name":"mirror","raid_level":"1","spans":[[0,1]])"),
              std::string::npos)
        << machine;
    EXPECT_NE(machine.find(R"("global_hot_spares":[2])"), std::string::npos) << machine;
}

TEST(RaidcfgE2eTest, AddToATargetTheFileNamesAppliesOnlyThatController) {
    raidcfg_test::TempDir dir;
    raidcfg_test::WriteFile(dir.File("machine.json"), kTargetServer);
    raidcfg_test::WriteFile(dir.File("add.ini"), kTargetPolicy);
    const Outcome added =
        RunRaidcfg(dir.path(), {"add", "--file", "add.ini", "--yes", "--machine", "machine.json",
                                "--bmc", kSimulatedBmc, "--target", "0"});
    EXPECT_EQ(added.status, 0) << added.out << added.err;
    EXPECT_EQ(LastLine(added.out), "0 Succeed.");
    const std::string report = raidcfg_test::ReadFile(dir.File("raid_result.xml"));
    EXPECT_EQ(ResultRows(report),
              (Rows{{"disk[0-2]", "Disk has been assigned global hot spare sucessfully."},
                    {"vol[0-0]", "Volume has been created successfully."}}))
        << report;
    const std::string machine = Squeezed(raidcfg_test::ReadFile(dir.File("machine.json")));
    EXPECT_NE(machine.find(R"("name":"mirror","raid_level":"1","spans":[[0,1]])"),
              std::string::npos)
        << machine;
}

TEST(RaidcfgE2eTest, AddToATargetTheFileLacksIsAPolicyFileErrorAndChangesNothing) {
    raidcfg_test::TempDir dir;
    raidcfg_test::WriteFile(dir.File("machine.json"), kTargetServer);
    raidcfg_test::WriteFile(dir.File("add.ini"), kTargetPolicy);
    const Outcome added =
        RunRaidcfg(dir.path(), {"add", "--file", "add.ini", "--yes", "--machine", "machine.json",
                                "--bmc", kSimulatedBmc, "--target", "5"});
    EXPECT_EQ(added.status, 122) << added.out << added.err;
    EXPECT_EQ(LastLine(added.out), "122 RAID config ini file error.");
    const std::string report = raidcfg_test::ReadFile(dir.File("raid_result.xml"));
    EXPECT_EQ(ResultRows(report),
              (Rows{{"ctrl[5]", "Policy file doesn't contain controller ctrl[5] raid policy."}}))
        << report;
    EXPECT_EQ(raidcfg_test::ReadFile(dir.File("machine.json")), kTargetServer);
}

} // namespace

namespace {

// Clear and fast initialisation from the command line.

TEST(RaidcfgE2eTest, ClearOfOneControllerLeavesItWithoutVolumes) {
    raidcfg_test::TempDir dir;
    raidcfg_test::TempDir state;
    const std::map<std::string, std::string> env{{"XDG_STATE_HOME", state.path()}};
    const Outcome cleared =
        RunRaidcfg(dir.path(), {"clear", "--ctrl", "1", "--yes", "--machine", "demo"}, env);
    EXPECT_EQ(cleared.status, 0) << cleared.out << cleared.err;
    EXPECT_EQ(LastLine(cleared.out), "0 Succeed.");
    EXPECT_EQ(cleared.out.find("Please type yes(y) or no(n):"), std::string::npos) << cleared.out;
    EXPECT_NE(cleared.out.find("Clear Configuration Result"), std::string::npos) << cleared.out;
    const std::string report = raidcfg_test::ReadFile(dir.File("raid_result.xml"));
    EXPECT_NE(report.find("<DEVICE>ctrl1</DEVICE>"), std::string::npos) << report;
    EXPECT_NE(report.find("<RESULT>Success.</RESULT>"), std::string::npos) << report;

    const std::string machine =
        Squeezed(raidcfg_test::ReadFile(state.File("raidcfg/demo-machine.json")));
    // The in-band LSI controller stands first in the demo file, the Microchip one after it.
    const std::size_t lsi = machine.find(R"("family":"LSI")");
    const std::size_t next = machine.find(R"("family":"MICROCHIP")");
    ASSERT_NE(lsi, std::string::npos);
    ASSERT_NE(next, std::string::npos);
    const std::string controller = machine.substr(lsi, next - lsi);
    EXPECT_NE(controller.find(R"("volumes":[])"), std::string::npos) << controller;
    EXPECT_NE(machine.find(R"("name":"db")"), std::string::npos) << machine;

    const Outcome shown = RunRaidcfg(dir.path(), {"show", "--ctrl", "1", "--machine", "demo"}, env);
    EXPECT_EQ(shown.status, 0) << shown.err;
    EXPECT_NE(shown.out.find("Broadcom Controller Information"), std::string::npos) << shown.out;
    EXPECT_EQ(shown.out.find("data"), std::string::npos) << shown.out;
    EXPECT_EQ(shown.out.find("RAID1"), std::string::npos) << shown.out;
}

TEST(RaidcfgE2eTest, ClearDeclinedOnStandardInputChangesNothing) {
    raidcfg_test::TempDir dir;
    raidcfg_test::TempDir state;
    const std::map<std::string, std::string> env{{"XDG_STATE_HOME", state.path()}};
    ASSERT_EQ(RunRaidcfg(dir.path(), {"show", "--machine", "demo", "-q"}, env).status, 0);
    const std::string before = raidcfg_test::ReadFile(state.File("raidcfg/demo-machine.json"));
    const Outcome declined = RunRaidcfg(dir.path(), {"clear", "--ctrl", "1", "--machine", "demo"},
                                        env, std::string("n\n"));
    EXPECT_EQ(declined.status, 0) << declined.out << declined.err;
    EXPECT_NE(declined.out.find("are you sure you want to continue clearing the RAID.\n"
                                "Please type yes(y) or no(n):\n"),
              std::string::npos)
        << declined.out;
    EXPECT_EQ(raidcfg_test::ReadFile(state.File("raidcfg/demo-machine.json")), before);
}

const char* const kInitServer = R"({"controllers": [
  {"family": "OOB_LSI", "id": 2,
   "disks": [{"id": 0, "state": "Online", "capacity_mb": 1000},
             {"id": 1, "state": "Online", "capacity_mb": 1000}],
   "volumes": [{"id": 0, "name": "a", "raid_level": "0", "spans": [[0]], "size_mb": 1000},
               {"id": 1, "name": "b", "raid_level": "0", "spans": [[1]], "size_mb": 1000}]}
]})";

TEST(RaidcfgE2eTest, InitOutOfBandStartsEveryVolumeOfTheTarget) {
    raidcfg_test::TempDir dir;
    raidcfg_test::WriteFile(dir.File("machine.json"), kInitServer);
    const Outcome started = RunRaidcfg(dir.path(), {"init", "--target", "2", "--yes", "--machine",
                                                    "machine.json", "--bmc", "admin:secret@sim"});
    EXPECT_EQ(started.status, 0) << started.out << started.err;
    EXPECT_EQ(LastLine(started.out), "0 Succeed.");
    EXPECT_NE(started.out.find("Fast Init Result"), std::string::npos) << started.out;
    const std::string report = raidcfg_test::ReadFile(dir.File("raid_result.xml"));
    EXPECT_NE(report.find("<DEVICE>vol[2-0]</DEVICE>"), std::string::npos) << report;
    EXPECT_NE(report.find("<DEVICE>vol[2-1]</DEVICE>"), std::string::npos) << report;
    EXPECT_NE(raidcfg_test::ReadFile(dir.File("raid_result.html")).find("RaidConfig Init"),
              std::string::npos);
}

TEST(RaidcfgE2eTest, InitWithoutTheBmcIsNotSupported) {
    raidcfg_test::TempDir dir;
    raidcfg_test::WriteFile(dir.File("machine.json"), kInitServer);
    const Outcome refused =
        RunRaidcfg(dir.path(), {"init", "--target", "2", "--yes", "--machine", "machine.json"});
    EXPECT_EQ(refused.status, 25) << refused.out << refused.err;
    EXPECT_EQ(LastLine(refused.out), "25 Function is not supported on target system.");
    EXPECT_EQ(raidcfg_test::ReadFile(dir.File("machine.json")), kInitServer);
}

} // namespace

namespace {

// The row of a disk or connector table whose first column is id, from a show's output.
std::string TableRow(const std::string& out, const std::string& id) {
    for (const std::string& line : Lines(out)) {
        if (line.rfind(id + " ", 0) == 0) {
            return line;
        }
    }
    return {};
}

// The columns of a table row, split at runs of spaces.
std::vector<std::string> Columns(const std::string& line) {
    std::vector<std::string> columns;
    std::size_t start = 0;
    while (start < line.size()) {
        const std::size_t end = line.find("  ", start);
        columns.push_back(line.substr(start, end - start));
        if (end == std::string::npos) {
            break;
        }
        start = line.find_first_not_of(' ', end);
    }
    return columns;
}

TEST(RaidcfgHotSpareE2eTest, AddHotSpareMakesTheDiskGhsAndRemoveHotSpareTakesItBack) {
    raidcfg_test::TempDir dir;
    raidcfg_test::TempDir state;
    const std::map<std::string, std::string> env{{"XDG_STATE_HOME", state.path()}};

    const Outcome added = RunRaidcfg(
        dir.path(), {"addhsp", "--ctrl", "1", "--disk", "7", "--yes", "--machine", "demo"}, env);
    EXPECT_EQ(added.status, 0) << added.out << added.err;
    EXPECT_EQ(LastLine(added.out), "0 Succeed.");
    EXPECT_EQ(ResultRows(raidcfg_test::ReadFile(dir.File("raid_result.xml"))),
              (Rows{{"ctrl1-disk7", "Success."}}));
    const Outcome shown = RunRaidcfg(dir.path(), {"show", "--ctrl", "1", "--machine", "demo"}, env);
    EXPECT_EQ(shown.status, 0) << shown.out << shown.err;
    const std::vector<std::string> spare = Columns(TableRow(shown.out, "7"));
    ASSERT_GE(spare.size(), 3U) << shown.out;
    EXPECT_EQ(spare[2], "GHS") << shown.out;

    const Outcome removed = RunRaidcfg(
        dir.path(), {"rmhsp", "--ctrl", "1", "--disk", "7", "--yes", "--machine", "demo"}, env);
    EXPECT_EQ(removed.status, 0) << removed.out << removed.err;
    EXPECT_EQ(ResultRows(raidcfg_test::ReadFile(dir.File("raid_result.xml"))),
              (Rows{{"ctrl1-disk7", "Success."}}));
    const Outcome again = RunRaidcfg(dir.path(), {"show", "--ctrl", "1", "--machine", "demo"}, env);
    const std::vector<std::string> unused = Columns(TableRow(again.out, "7"));
    ASSERT_GE(unused.size(), 3U) << again.out;
    EXPECT_EQ(unused[2], "UGood") << again.out;
}

TEST(RaidcfgHotSpareE2eTest, DeclinedAddHotSpareLeavesTheDemoMachineAsItWas) {
    raidcfg_test::TempDir dir;
    raidcfg_test::TempDir state;
    const std::map<std::string, std::string> env{{"XDG_STATE_HOME", state.path()}};
    const Outcome first = RunRaidcfg(dir.path(), {"show", "--machine", "demo"}, env);
    ASSERT_EQ(first.status, 0) << first.out << first.err;
    const std::string machine = state.File("raidcfg/demo-machine.json");
    const std::string before = raidcfg_test::ReadFile(machine);
    const Outcome declined = RunRaidcfg(
        dir.path(), {"addhsp", "--ctrl", "1", "--disk", "7", "--machine", "demo"}, env, "n\n");
    EXPECT_EQ(declined.status, 0) << declined.out << declined.err;
    EXPECT_NE(declined.out.find("Are you sure you want to continue doing add hot spare operation."),
              std::string::npos)
        << declined.out;
    EXPECT_EQ(raidcfg_test::ReadFile(machine), before);
}

TEST(RaidcfgConnectorE2eTest, ChangeModeSetsTheConnectorModeThatShowTells) {
    raidcfg_test::TempDir dir;
    raidcfg_test::TempDir state;
    const std::map<std::string, std::string> env{{"XDG_STATE_HOME", state.path()}};
    const Outcome changed = RunRaidcfg(dir.path(),
                                       {"changemode", "--ctrl", "2", "--connector", "0", "--mode",
                                        "hba", "--yes", "--machine", "demo"},
                                       env);
    EXPECT_EQ(changed.status, 0) << changed.out << changed.err;
    EXPECT_EQ(LastLine(changed.out), "0 Succeed.");
    EXPECT_EQ(ResultRows(raidcfg_test::ReadFile(dir.File("raid_result.xml"))),
              (Rows{{"ctrl2-connector0", "Success."}}));
    const Outcome shown = RunRaidcfg(dir.path(), {"show", "--ctrl", "2", "--machine", "demo"}, env);
    EXPECT_EQ(shown.status, 0) << shown.out << shown.err;
    const std::vector<std::string> connector = Columns(TableRow(shown.out, "0"));
    ASSERT_GE(connector.size(), 3U) << shown.out;
    EXPECT_EQ(connector[2], "HBA") << shown.out;
}

} // namespace

namespace {

// The show line of one disk: the line that starts with its id.
std::string DiskLine(const std::string& shown, int disk) {
    const std::string head = std::to_string(disk) + " ";
    for (const std::string& line : Lines(shown)) {
        if (line.rfind(head, 0) == 0) {
            return line;
        }
    }
    return {};
}

TEST(RaidcfgE2eTest, MakeJbodOnTheDemoMachineShowsTheDiskAsJbod) {
    raidcfg_test::TempDir dir;
    raidcfg_test::TempDir state;
    const std::map<std::string, std::string> env{{"XDG_STATE_HOME", state.path()}};
    const Outcome made = RunRaidcfg(
        dir.path(), {"makejbod", "--ctrl", "1", "--disk", "7", "--yes", "--machine", "demo"}, env);
    EXPECT_EQ(made.status, 0) << made.err;
    EXPECT_NE(made.out.find("Make JBOD Result"), std::string::npos) << made.out;
    EXPECT_NE(made.out.find("ctrl1-disk7    Success."), std::string::npos) << made.out;
    EXPECT_EQ(LastLine(made.out), "0 Succeed.");

    const Outcome shown = RunRaidcfg(dir.path(), {"show", "--ctrl", "1", "--machine", "demo"}, env);
    EXPECT_EQ(shown.status, 0) << shown.err;
    const std::string line = DiskLine(shown.out, 7);
    EXPECT_NE(line.find("JBOD"), std::string::npos) << shown.out;
    EXPECT_EQ(line.find("UGood"), std::string::npos) << line;
}

TEST(RaidcfgE2eTest, MakeGoodTurnsAnUnconfiguredBadDiskGood) {
    raidcfg_test::TempDir dir;
    raidcfg_test::WriteFile(dir.File("machine.json"), R"({"persist": true, "controllers": [
  {"family": "LSI", "id": 0, "disks": [
    {"id": 6, "slot_no": "6", "state": "Online", "capacity_mb": 953869},
    {"id": 7, "slot_no": "7", "state": "UBad", "capacity_mb": 953869}]}
]})");
    const Outcome made = RunRaidcfg(dir.path(), {"makegood", "--ctrl", "1", "--disk", "7", "--yes",
                                                 "--machine", dir.File("machine.json")});
    EXPECT_EQ(made.status, 0) << made.err;
    EXPECT_NE(made.out.find("Make Good Result"), std::string::npos) << made.out;
    EXPECT_EQ(LastLine(made.out), "0 Succeed.");

    const Outcome shown =
        RunRaidcfg(dir.path(), {"show", "--ctrl", "1", "--machine", dir.File("machine.json")});
    EXPECT_EQ(shown.status, 0) << shown.err;
    const std::string line = DiskLine(shown.out, 7);
    EXPECT_NE(line.find("UGood"), std::string::npos) << shown.out;
    EXPECT_EQ(line.find("UBad"), std::string::npos) << line;

    // A member of a volume cannot be made good.
    const Outcome again = RunRaidcfg(dir.path(), {"makegood", "--ctrl", "1", "--disk", "6", "--yes",
                                                  "--machine", dir.File("machine.json")});
    EXPECT_NE(again.out.find("The disk 6 can't do makegood operation"), std::string::npos)
        << again.out;
}

} // namespace

TEST(RaidcfgKeysE2eTest, FirmwareDeviceOrderIsShownChangedAndThenAlreadySo) {
    raidcfg_test::TempDir dir;
    raidcfg_test::TempDir state;
    const std::map<std::string, std::string> env{{"XDG_STATE_HOME", state.path()}};
    const Outcome shown = RunRaidcfg(dir.path(), {"fwdeviceorder", "--machine", "demo"}, env);
    EXPECT_EQ(shown.status, 0) << shown.err;
    EXPECT_NE(shown.out.find("Firmware Device Order"), std::string::npos) << shown.out;
    EXPECT_NE(shown.out.find("Disabled"), std::string::npos) << shown.out;
    EXPECT_EQ(LastLine(shown.out), "0 Succeed.");

    const std::vector<std::string> change{"fwdeviceorder", "--ctrl",    "1",   "--mode",
                                          "Enabled",       "--machine", "demo"};
    const Outcome changed = RunRaidcfg(dir.path(), change, env);
    EXPECT_EQ(changed.status, 0) << changed.err;
    EXPECT_NE(changed.out.find("The firmware device order mode for controller ID 1 has been "
                               "successfully changed. Please reboot the system for the changes "
                               "to take effect."),
              std::string::npos)
        << changed.out;

    const Outcome again = RunRaidcfg(dir.path(), change, env);
    EXPECT_EQ(again.status, 0) << again.err;
    EXPECT_NE(again.out.find("The firmware device order mode for controller ID 1 is already "
                             "Enabled."),
              std::string::npos)
        << again.out;
    const Outcome after = RunRaidcfg(dir.path(), {"fwdeviceorder", "--machine", "demo"}, env);
    EXPECT_NE(after.out.find("Enabled"), std::string::npos) << after.out;

    // Out-of-band the order table also goes onto the result page.
    const Outcome oob = RunRaidcfg(
        dir.path(), {"fwdeviceorder", "--machine", "demo", "--bmc", "admin:secret@sim"}, env);
    EXPECT_EQ(oob.status, 0) << oob.err;
    EXPECT_NE(oob.out.find("FRU No"), std::string::npos) << oob.out;
}

TEST(RaidcfgKeysE2eTest, KeyManagementInBandNeedsTheBmcCredentials) {
    raidcfg_test::TempDir dir;
    raidcfg_test::TempDir state;
    const std::map<std::string, std::string> env{{"XDG_STATE_HOME", state.path()}};
    const Outcome refused = RunRaidcfg(dir.path(), {"ekm", "--machine", "demo"}, env);
    EXPECT_EQ(refused.status, 5);
    EXPECT_EQ(refused.out, "Please specify bmc username and bmc password\n5 Invalid parameter.\n");

    const Outcome shown = RunRaidcfg(
        dir.path(), {"ekm", "--machine", "demo", "--local-bmc", "admin:secret@sim"}, env);
    EXPECT_EQ(shown.status, 0) << shown.err;
    EXPECT_NE(shown.out.find("External Key Management Information"), std::string::npos)
        << shown.out;
    EXPECT_NE(shown.out.find("External Key Management Result"), std::string::npos) << shown.out;
    EXPECT_EQ(LastLine(shown.out), "0 Succeed.");

    const Outcome changed = RunRaidcfg(dir.path(),
                                       {"ekm", "--ctrl", "1", "--mode", "Local", "--machine",
                                        "demo", "--local-bmc", "admin:secret@sim"},
                                       env);
    EXPECT_EQ(changed.status, 0) << changed.err;
    const Outcome after = RunRaidcfg(
        dir.path(), {"ekm", "--machine", "demo", "--local-bmc", "admin:secret@sim"}, env);
    EXPECT_NE(after.out.find("local"), std::string::npos) << after.out;
}

TEST(RaidcfgKeysE2eTest, AUserNameTakesThePasswordFromTheEnvironment) {
    raidcfg_test::TempDir dir;
    raidcfg_test::TempDir state;
    const std::map<std::string, std::string> env{{"XDG_STATE_HOME", state.path()},
                                                 {"RAIDCFG_BMC_PASSWORD", "secret"}};
    const Outcome shown =
        RunRaidcfg(dir.path(), {"ekm", "--machine", "demo", "--user", "admin"}, env);
    EXPECT_EQ(shown.status, 0) << shown.out << shown.err;
    EXPECT_EQ(LastLine(shown.out), "0 Succeed.");
}

TEST(RaidcfgKeysE2eTest, VolumeEncryptionIsShownEnabledAndThenVisible) {
    raidcfg_test::TempDir dir;
    raidcfg_test::TempDir state;
    const std::map<std::string, std::string> env{{"XDG_STATE_HOME", state.path()}};
    const std::vector<std::string> bmc{"--machine", "demo", "--bmc", "admin:secret@sim"};
    const auto run = [&](std::vector<std::string> args) {
        args.insert(args.end(), bmc.begin(), bmc.end());
        return RunRaidcfg(dir.path(), args, env);
    };

    const Outcome all = run({"envol"});
    EXPECT_EQ(all.status, 0) << all.err;
    EXPECT_NE(all.out.find("Volume Encryption Result"), std::string::npos) << all.out;
    EXPECT_NE(all.out.find("ctrl1     Success\n"), std::string::npos) << all.out;

    const Outcome one = run({"envol", "--ctrl", "1"});
    EXPECT_EQ(one.status, 0) << one.err;
    EXPECT_NE(one.out.find("false"), std::string::npos) << one.out;
    EXPECT_EQ(one.out.find("ctrl2"), std::string::npos) << one.out;

    // Encryption needs key management on; then every volume of controller 1 is encrypted.
    EXPECT_EQ(run({"ekm", "--ctrl", "1", "--mode", "local"}).status, 0);
    const Outcome enabled = run({"envol", "--ctrl", "1", "--mode", "ENABLE", "--yes"});
    EXPECT_EQ(enabled.status, 0) << enabled.err;
    EXPECT_NE(enabled.out.find("Success. 1 volume newly encrypted."), std::string::npos)
        << enabled.out;
    EXPECT_EQ(enabled.out.find("irreversible"), std::string::npos) << enabled.out;

    const Outcome after = run({"envol", "--ctrl", "1"});
    EXPECT_NE(after.out.find("true"), std::string::npos) << after.out;
    EXPECT_EQ(after.out.find("false"), std::string::npos) << after.out;
}

TEST(RaidcfgKeysE2eTest, VolumeEncryptionWithAnotherWordAnswers104OnlyAfterConnecting) {
    raidcfg_test::TempDir dir;
    raidcfg_test::TempDir state;
    const std::map<std::string, std::string> env{{"XDG_STATE_HOME", state.path()}};
    const Outcome wrong_password = RunRaidcfg(
        dir.path(), {"envol", "--mode", "disable", "--machine", "demo", "--bmc", "admin:wrong@sim"},
        env);
    EXPECT_EQ(wrong_password.status, 12);
    EXPECT_EQ(LastLine(wrong_password.out), "12 Authentication failed.");

    const Outcome refused = RunRaidcfg(
        dir.path(),
        {"envol", "--mode", "disable", "--machine", "demo", "--bmc", "admin:secret@sim"}, env);
    EXPECT_EQ(refused.status, 104);
    EXPECT_EQ(LastLine(refused.out),
              "104 Tessel can only enable Volume Encryption, cannot perform other operations.");
}
