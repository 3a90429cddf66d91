// raidcfg against raidcfg-bmc over real HTTP(S) on 127.0.0.1: every out-of-band action of the
// demo machine gives the same console output, files, machine and exit status as the same action
// on the simulated road, and the transport's failures end cleanly.
#include <csignal>
#include <cstring>
#include <filesystem>
#include <map>
#include <optional>
#include <regex>
#include <string>
#include <vector>

#include <fcntl.h>
#include <nlohmann/json.hpp>
#include <sys/wait.h>
#include <unistd.h>

#include "tests/support/bmc_emulator.hpp"
#include "tests/support/child_process.hpp"
#include "tests/support/file_text.hpp"
#include "tests/support/temp_dir.hpp"

#include <gtest/gtest.h>

namespace {

const std::string kRaidcfg = RAIDCFG_BIN_DIR "/raidcfg";
const std::string kEmulator = RAIDCFG_BIN_DIR "/raidcfg-bmc";
const std::string kDemoMachine = RAIDCFG_TEST_DATA_DIR "/../../sim/demo-machine.json";

using Outcome = raidcfg_test::ProgramOutcome;

pid_t Spawn(const std::string& program, const std::vector<std::string>& args,
            const std::string& dir, const std::string& out_path, const std::string& err_path) {
    return raidcfg_test::SpawnProgram(program, args, dir, out_path, err_path);
}

int WaitFor(pid_t child) {
    return raidcfg_test::WaitForProgram(child);
}

Outcome RunRaidcfg(const std::string& dir, const std::vector<std::string>& args) {
    return raidcfg_test::RunProgram(kRaidcfg, dir, args);
}

using raidcfg_test::LastLine;

// raidcfg-bmc on a machine file, on a free port of 127.0.0.1, for the life of the object.
class Emulator : public raidcfg_test::BmcEmulator {
public:
    explicit Emulator(const std::string& machine, std::vector<std::string> extra = {})
        : BmcEmulator(kEmulator, Arguments(machine, std::move(extra))) {}

private:
    static std::vector<std::string> Arguments(const std::string& machine,
                                              std::vector<std::string> extra) {
        extra.insert(extra.begin(), {"--machine", machine});
        return extra;
    }
};

// The result files of a run, which each step removes first so that every comparison is of
// what that step wrote.
const char* const kResultFiles[] = {"raid_result.xml", "raid_result.html", "raid_show_result.xml"};

void RemoveResults(const std::string& dir) {
    for (const char* name : kResultFiles) {
        std::filesystem::remove(dir + "/" + name);
    }
}

// Two working directories and two copies of the demo machine: one behind the emulator, one on
// the simulated road. Each step runs the same action on both and compares everything.
class BothRoads : public ::testing::Test {
protected:
    // Both roads start from the same machine file.
    void Start(const std::string& machine_text) {
        std::filesystem::create_directories(work_.File("bmc"));
        std::filesystem::create_directories(work_.File("sim"));
        raidcfg_test::WriteFile(work_.File("bmc.json"), machine_text);
        raidcfg_test::WriteFile(work_.File("sim.json"), machine_text);
        emulator_.emplace(work_.File("bmc.json"));
        ASSERT_TRUE(emulator_->running());
    }

    void Step(const std::vector<std::string>& args) {
        SCOPED_TRACE(::testing::PrintToString(args));
        const std::string over_bmc = work_.File("bmc");
        const std::string simulated = work_.File("sim");
        RemoveResults(over_bmc);
        RemoveResults(simulated);
        std::vector<std::string> bmc_args = args;
        bmc_args.insert(bmc_args.end(), {"--bmc", emulator_->Bmc(), "--http", "--timeout", "10"});
        std::vector<std::string> sim_args = args;
        sim_args.insert(sim_args.end(),
                        {"--machine", work_.File("sim.json"), "--bmc", "admin:secret@sim"});
        const Outcome redfish = RunRaidcfg(over_bmc, bmc_args);
        const Outcome sim = RunRaidcfg(simulated, sim_args);
        EXPECT_NE(redfish.status, -1);
        EXPECT_EQ(redfish.status, sim.status);
        EXPECT_EQ(redfish.out, sim.out);
        EXPECT_EQ(redfish.err, sim.err);
        for (const auto& entry : std::filesystem::directory_iterator(simulated)) {
            const std::string name = entry.path().filename().string();
            if (name == "raidcfg.log") {
                continue; // a log of how each road went, which differs by design
            }
            SCOPED_TRACE(name);
            const std::string written = (std::filesystem::path(over_bmc) / name).string();
            ASSERT_TRUE(raidcfg_test::FileExists(written));
            std::string text = raidcfg_test::ReadFile(written);
            if (name == "raid_result.html") {
                // The page's title names the BMC the run reached.
                const std::string address = "127.0.0.1:" + emulator_->port();
                for (std::size_t at = text.find(address); at != std::string::npos;
                     at = text.find(address)) {
                    text.replace(at, address.size(), "sim");
                }
            }
            EXPECT_EQ(text, raidcfg_test::ReadFile(entry.path().string()));
        }
        // Both machines went through the same changes.
        EXPECT_EQ(raidcfg_test::ReadFile(work_.File("bmc.json")),
                  raidcfg_test::ReadFile(work_.File("sim.json")));
        last_ = redfish;
    }

    raidcfg_test::TempDir work_;
    std::optional<Emulator> emulator_;
    Outcome last_;
};

TEST_F(BothRoads, EveryOutOfBandActionGivesWhatTheSimulatedRoadGives) {
    Start(raidcfg_test::ReadFile(kDemoMachine));
    Step({"show"});
    EXPECT_EQ(LastLine(last_.out), "0 Succeed.");
    // Both roads agree, and agree with what the demo machine has always shown.
    raidcfg_test::ExpectGolden(RAIDCFG_TEST_DATA_DIR, "oob_show_demo.txt", last_.out);
    raidcfg_test::ExpectGolden(RAIDCFG_TEST_DATA_DIR, "oob_show_demo.xml",
                               raidcfg_test::ReadFile(work_.File("bmc/raid_show_result.xml")));
    Step({"show", "--cfc"});
    raidcfg_test::ExpectGolden(RAIDCFG_TEST_DATA_DIR, "oob_show_demo_cfc.txt", last_.out);
    Step({"save", "--file", "saved.ini"});
    EXPECT_EQ(last_.status, 0);
    raidcfg_test::ExpectGolden(RAIDCFG_TEST_DATA_DIR, "oob_save_demo.ini",
                               raidcfg_test::ReadFile(work_.File("bmc/saved.ini")));
    Step({"save", "--file", "saved-cfc.ini", "--cfc"});
    EXPECT_EQ(last_.status, 0);
    Step({"makegood", "--ctrl", "1", "-y"});
    EXPECT_EQ(last_.status, 0);
    Step({"makegood", "--ctrl", "1", "--disk", "3", "-y"}); // an Online disk: refused
    EXPECT_NE(last_.status, 0);
    Step({"makejbod", "--ctrl", "1", "--disk", "6", "-y"});
    EXPECT_EQ(last_.status, 0);
    Step({"makejbod", "--ctrl", "1", "--disk", "0", "-y"}); // refused
    Step({"makegood", "--ctrl", "1", "--disk", "6", "-y"}); // a JBOD disk again
    EXPECT_EQ(last_.status, 0);
    Step({"addhsp", "--ctrl", "1", "--disk", "7", "-y"});
    EXPECT_EQ(last_.status, 0);
    Step({"addhsp", "--ctrl", "2", "--disk", "6", "--dg", "0", "-y"});
    EXPECT_EQ(last_.status, 0);
    Step({"addhsp", "--ctrl", "1", "--disk", "0", "-y"}); // refused
    Step({"rmhsp", "--ctrl", "1", "--disk", "7", "-y"});
    EXPECT_EQ(last_.status, 0);
    Step({"rmhsp", "--ctrl", "1", "--disk", "0", "-y"}); // refused
    Step({"init", "--ctrl", "1", "--vol", "0", "-y"});
    EXPECT_EQ(last_.status, 0);
    Step({"init", "--ctrl", "1", "--vol", "9", "-y"}); // no such volume
    Step({"fwdeviceorder"});
    Step({"fwdeviceorder", "--ctrl", "1", "--mode", "Disabled", "-y"});
    Step({"fwdeviceorder", "--ctrl", "1", "--mode", "disabled", "-y"}); // already so
    Step({"fwdeviceorder", "--ctrl", "1", "--mode", "Sideways", "-y"});
    Step({"ekm"});
    Step({"ekm", "--ctrl", "1", "--mode", "local", "-y"});
    Step({"ekm", "--ctrl", "1", "--mode", "LOCAL", "-y"}); // already so
    Step({"envol"});
    Step({"envol", "--ctrl", "1", "--mode", "enable", "--vol", "0", "-y"});
    Step({"envol", "--ctrl", "1"});
    Step({"clear", "--ctrl", "1", "--vol", "0", "-y"});
    EXPECT_EQ(last_.status, 0);
    for (const char* controller : {"1", "2", "3", "4"}) {
        Step({"clear", "--ctrl", controller, "-y"});
    }
    Step({"clear", "--ctrl", "1", "--cfc", "-y"});
    Step({"show"});
    Step({"add", "--file", "saved.ini", "-y"});
    EXPECT_EQ(last_.status, 0);
    Step({"add", "--file", "saved-cfc.ini", "--cfc", "-y"});
    Step({"save", "--file", "again.ini"});
    Step({"show", "--cfc"});
}

TEST_F(BothRoads, InjectedFaultsAnswerAlikeOnBothRoads) {
    // The demo's out-of-band LSI controller with faults of a read, of a write and of a read that
    // only the firmware device order and show ask for; each answers once.
    nlohmann::json machine = nlohmann::json::parse(raidcfg_test::ReadFile(kDemoMachine));
    bool found = false;
    for (auto& controller : machine["controllers"]) {
        if (controller["family"] == "OOB_LSI") {
            controller["faults"] = nlohmann::json::parse(R"([
                {"op": "GetConfig", "code": 26, "error_text": "config busy", "times": 1},
                {"op": "AddGlobalHotSpare", "arg": "6", "code": 15, "error_text": "spare busy",
                 "times": 1},
                {"op": "GetController", "code": 4, "times": 1}])");
            found = true;
        }
    }
    ASSERT_TRUE(found);
    Start(machine.dump(2));
    Step({"show"});
    EXPECT_NE(last_.status, 0);
    Step({"save", "--file", "saved.ini"});
    EXPECT_NE(last_.status, 0);
    Step({"save", "--file", "saved.ini"});
    EXPECT_EQ(last_.status, 0);
    Step({"addhsp", "--ctrl", "1", "--disk", "6", "-y"});
    EXPECT_NE(last_.status, 0);
    Step({"addhsp", "--ctrl", "1", "--disk", "6", "-y"});
    EXPECT_EQ(last_.status, 0);
    Step({"fwdeviceorder"});
}

TEST_F(BothRoads, FaultTextsBehindSuccessAndAllVolumeFaultsAnswerAlikeOnBothRoads) {
    // Key management on, a success that carries the controller's detail, an encryption of
    // every volume that fails, and an empty fault text.
    nlohmann::json machine = nlohmann::json::parse(raidcfg_test::ReadFile(kDemoMachine));
    for (auto& controller : machine["controllers"]) {
        if (controller["family"] == "OOB_LSI") {
            controller["ekm_mode"] = "Local";
            controller["faults"] = nlohmann::json::parse(R"json([
                {"op": "changeEKMmode", "code": 0, "error_text": " (applied after reboot)",
                 "times": 1},
                {"op": "enableEncryptionAllVolumes", "code": 32, "times": 1},
                {"op": "MakeGood", "arg": "6", "code": 2, "error_text": "", "times": 1}])json");
        }
    }
    Start(machine.dump(2));
    Step({"ekm", "--ctrl", "1", "--mode", "external", "-y"});
    EXPECT_NE(last_.out.find("Success. (applied after reboot)"), std::string::npos) << last_.out;
    Step({"ekm", "--ctrl", "1", "--mode", "external", "-y"}); // already so
    Step({"envol", "--ctrl", "1", "--mode", "enable", "-y"});
    EXPECT_NE(last_.out.find("Failed to operate Rest API."), std::string::npos) << last_.out;
    Step({"makegood", "--ctrl", "1", "--disk", "6", "-y"});
    EXPECT_NE(last_.status, 0);
}

TEST(RaidcfgBmcE2eTest, DiffReadsTheBmcAndSendsNoWrite) {
    raidcfg_test::TempDir work;
    std::filesystem::copy_file(kDemoMachine, work.File("machine.json"));
    Emulator emulator(work.File("machine.json"));
    ASSERT_TRUE(emulator.running());
    const std::vector<std::string> bmc = {"--bmc", emulator.Bmc(), "--http"};
    std::vector<std::string> save = {"save", "--file", "s.ini", "-q"};
    save.insert(save.end(), bmc.begin(), bmc.end());
    ASSERT_EQ(RunRaidcfg(work.path(), save).status, 0);
    std::vector<std::string> diff = {"diff", "--file", "s.ini"};
    diff.insert(diff.end(), bmc.begin(), bmc.end());
    const Outcome same = RunRaidcfg(work.path(), diff);
    EXPECT_EQ(same.status, 0) << same.out << same.err;
    EXPECT_EQ(same.out, "The server matches the policy.\n");
    raidcfg_test::WriteFile(work.File("other.ini"), "[ctrl1-vol0]\ndisks=6,7\nraid_level=1\n");
    diff[2] = "other.ini";
    const Outcome other = RunRaidcfg(work.path(), diff);
    EXPECT_EQ(other.status, 3) << other.out << other.err;
    EXPECT_EQ(raidcfg_test::ReadFile(work.File("machine.json")),
              raidcfg_test::ReadFile(kDemoMachine));
}

TEST(RaidcfgBmcE2eTest, AFullShowNeedsFewRequestsOnOneConnection) {
    raidcfg_test::TempDir work;
    std::filesystem::copy_file(kDemoMachine, work.File("machine.json"));
    Emulator emulator(work.File("machine.json"));
    ASSERT_TRUE(emulator.running());
    const Outcome shown =
        RunRaidcfg(work.path(), {"show", "--bmc", emulator.Bmc(), "--http", "-q"});
    EXPECT_EQ(shown.status, 0) << shown.out << shown.err;
    int requests = 0;
    int connections = 0;
    ASSERT_TRUE(Emulator::Served(emulator.Stop(), requests, connections));
    // The demo machine has seven out-of-band controllers, one Storage resource each.
    const int storages = 7;
    EXPECT_LE(requests, 4 + 2 * storages);
    EXPECT_EQ(connections, 1);
}

TEST(RaidcfgBmcE2eTest, WithoutExpandTheLinksAreFollowedToTheSameOutput) {
    raidcfg_test::TempDir work;
    std::filesystem::copy_file(kDemoMachine, work.File("machine.json"));
    std::filesystem::create_directories(work.File("a"));
    std::filesystem::create_directories(work.File("b"));
    Emulator expanding(work.File("machine.json"));
    Emulator linking(work.File("machine.json"), {"--no-expand"});
    ASSERT_TRUE(expanding.running() && linking.running());
    const Outcome expanded =
        RunRaidcfg(work.File("a"), {"show", "--bmc", expanding.Bmc(), "--http"});
    const Outcome linked = RunRaidcfg(work.File("b"), {"show", "--bmc", linking.Bmc(), "--http"});
    EXPECT_EQ(expanded.status, 0);
    EXPECT_EQ(linked.status, 0);
    EXPECT_EQ(linked.out, expanded.out);
    EXPECT_EQ(raidcfg_test::ReadFile(work.File("b/raid_show_result.xml")),
              raidcfg_test::ReadFile(work.File("a/raid_show_result.xml")));
    int expanded_requests = 0;
    int linked_requests = 0;
    int connections = 0;
    ASSERT_TRUE(Emulator::Served(expanding.Stop(), expanded_requests, connections));
    ASSERT_TRUE(Emulator::Served(linking.Stop(), linked_requests, connections));
    EXPECT_EQ(connections, 1);
    EXPECT_GT(linked_requests, expanded_requests);
}

TEST(RaidcfgBmcE2eTest, HttpsIsVerifiedAgainstTheGivenCertificate) {
    raidcfg_test::TempDir work;
    const std::string key = work.File("key.pem");
    const std::string cert = work.File("cert.pem");
    const std::string command = "openssl req -x509 -newkey rsa:2048 -nodes -days 2 -subj "
                                "/CN=127.0.0.1 -addext subjectAltName=IP:127.0.0.1 -keyout '" +
                                key + "' -out '" + cert + "' >/dev/null 2>&1";
    ASSERT_EQ(std::system(command.c_str()), 0) << "openssl could not make a test certificate";
    std::filesystem::copy_file(kDemoMachine, work.File("machine.json"));
    Emulator emulator(work.File("machine.json"), {"--tls-cert", cert, "--tls-key", key});
    ASSERT_TRUE(emulator.running());

    const Outcome verified =
        RunRaidcfg(work.path(), {"show", "--bmc", emulator.Bmc(), "--cacert", cert});
    EXPECT_EQ(verified.status, 0) << verified.out << verified.err;
    EXPECT_NE(verified.out.find("Broadcom Controller Information"), std::string::npos);

    const Outcome refused = RunRaidcfg(work.path(), {"show", "--bmc", emulator.Bmc()});
    EXPECT_EQ(refused.status, 13);
    EXPECT_EQ(LastLine(refused.out), "13 Connection failed.");
    EXPECT_EQ(refused.err, "raidcfg: BMC 127.0.0.1:" + emulator.port() +
                               ": TLS certificate check failed (SSL certificate problem: "
                               "self-signed certificate)\n")
        << "the reason stands beside the result";

    const Outcome insecure =
        RunRaidcfg(work.path(), {"show", "--bmc", emulator.Bmc(), "--insecure"});
    EXPECT_EQ(insecure.status, 0);
    EXPECT_EQ(insecure.out, verified.out);

    // Plain HTTP to an HTTPS port gets no Redfish answer either.
    const Outcome plain = RunRaidcfg(work.path(), {"show", "--bmc", emulator.Bmc(), "--http"});
    EXPECT_EQ(plain.status, 13);
}

TEST(RaidcfgBmcE2eTest, AWrongPasswordIsRefusedOnceWithCodeTwelve) {
    raidcfg_test::TempDir work;
    std::filesystem::copy_file(kDemoMachine, work.File("machine.json"));
    Emulator emulator(work.File("machine.json"));
    ASSERT_TRUE(emulator.running());
    const Outcome refused =
        RunRaidcfg(work.path(), {"show", "--bmc", emulator.Bmc("admin:wrong"), "--http"});
    EXPECT_EQ(refused.status, 12);
    EXPECT_EQ(LastLine(refused.out), "12 Authentication failed.");
    int requests = 0;
    int connections = 0;
    ASSERT_TRUE(Emulator::Served(emulator.Stop(), requests, connections));
    // The service root and one log-in: the refusal is not tried again and again.
    EXPECT_LE(requests, 3);
    EXPECT_EQ(connections, 1);
    EXPECT_EQ(raidcfg_test::ReadFile(work.File("raidcfg.log")).find("wrong"), std::string::npos);
}

TEST(RaidcfgBmcE2eTest, AnUnreachableBmcIsAConnectionFailure) {
    raidcfg_test::TempDir work;
    std::filesystem::copy_file(kDemoMachine, work.File("machine.json"));
    std::string port;
    {
        Emulator gone(work.File("machine.json"));
        ASSERT_TRUE(gone.running());
        port = gone.port();
    }
    const Outcome outcome =
        RunRaidcfg(work.path(), {"show", "--bmc", "admin:secret@127.0.0.1:" + port, "--http"});
    EXPECT_EQ(outcome.status, 13);
    EXPECT_EQ(LastLine(outcome.out), "13 Connection failed.");
}

TEST(RaidcfgBmcE2eTest, TheEmulatorKilledMidRunEndsTheRunCleanly) {
    raidcfg_test::TempDir work;
    std::filesystem::copy_file(kDemoMachine, work.File("machine.json"));
    Emulator emulator(work.File("machine.json"), {"--latency-ms", "100"});
    ASSERT_TRUE(emulator.running());
    const pid_t run = Spawn(kRaidcfg, {"show", "--bmc", emulator.Bmc(), "--http", "--timeout", "5"},
                            work.path(), work.File("stdout"), work.File("stderr"));
    // Once the run has started reading the storage tree, the BMC goes away.
    const std::string log = work.File("raidcfg.log");
    while (!raidcfg_test::FileExists(log) ||
           raidcfg_test::ReadFile(log).find("/redfish/v1/Systems/1/Storage") == std::string::npos) {
        if (waitpid(run, nullptr, WNOHANG) == run) {
            FAIL() << "the run ended before it read the storage tree";
        }
        usleep(10000);
    }
    emulator.Kill();
    const int status = WaitFor(run);
    EXPECT_GT(status, 0) << "the run must end with a failure, not a crash";
    const std::string out = raidcfg_test::ReadFile(work.File("stdout"));
    EXPECT_TRUE(std::regex_match(LastLine(out), std::regex("[0-9]+ .+"))) << out;
    EXPECT_EQ(std::to_string(status), LastLine(out).substr(0, LastLine(out).find(' ')));
}

} // namespace
