// show, add and clear of the demo machine over Redfish, against raidcfg-bmc standing in for a
// slow real BMC (every answer 50 ms late), with and without $expand. Wall time is that of the
// raidcfg run alone; the counters are the requests and connections the emulator served.
#include <chrono>
#include <csignal>
#include <cstdlib>
#include <filesystem>
#include <fstream>
#include <regex>
#include <sstream>
#include <string>
#include <vector>

#include <fcntl.h>
#include <nlohmann/json.hpp>
#include <sys/resource.h>
#include <sys/wait.h>
#include <unistd.h>

#include <benchmark/benchmark.h>

namespace {

const std::string kRaidcfg = RAIDCFG_BIN_DIR "/raidcfg";
const std::string kEmulator = RAIDCFG_BIN_DIR "/raidcfg-bmc";
const std::string kDemoMachine = RAIDCFG_DEMO_MACHINE;

std::string ReadAll(const std::string& path) {
    std::ifstream in(path);
    std::ostringstream text;
    text << in.rdbuf();
    return text.str();
}

// Runs program with args in dir, output to files there; returns the child's id.
pid_t Spawn(const std::string& program, const std::vector<std::string>& args,
            const std::string& dir, const std::string& tag) {
    std::vector<std::string> text{program};
    text.insert(text.end(), args.begin(), args.end());
    std::vector<char*> argv;
    argv.reserve(text.size() + 1);
    for (std::string& arg : text) {
        argv.push_back(arg.data());
    }
    argv.push_back(nullptr);
    const std::string out = dir + "/" + tag + ".out";
    const std::string err = dir + "/" + tag + ".err";
    const pid_t child = fork();
    if (child == 0) {
        const int out_fd = open(out.c_str(), O_WRONLY | O_CREAT | O_TRUNC, 0600);
        const int err_fd = open(err.c_str(), O_WRONLY | O_CREAT | O_TRUNC, 0600);
        if (out_fd < 0 || err_fd < 0 || chdir(dir.c_str()) != 0 || dup2(out_fd, 1) < 0 ||
            dup2(err_fd, 2) < 0) {
            _exit(126);
        }
        execv(argv[0], argv.data());
        _exit(127);
    }
    return child;
}

// The child's exit status; cpu_seconds, when given, gets the user and system time it used.
int Wait(pid_t child, double* cpu_seconds = nullptr) {
    int status = 0;
    rusage usage{};
    const bool ended = child > 0 && wait4(child, &status, 0, &usage) == child;
    if (cpu_seconds != nullptr) {
        const auto seconds = [](const timeval& t) {
            return static_cast<double>(t.tv_sec) + static_cast<double>(t.tv_usec) / 1e6;
        };
        *cpu_seconds = seconds(usage.ru_utime) + seconds(usage.ru_stime);
    }
    return ended && WIFEXITED(status) ? WEXITSTATUS(status) : -1;
}

// A machine of many large controllers: copies of the demo's out-of-band LSI controller, each
// with its disks and RAID 1 volumes over the first disks, the rest unconfigured.
void WriteLargeMachine(const std::string& path, int controllers, int disks, int volumes) {
    nlohmann::json machine = nlohmann::json::parse(ReadAll(kDemoMachine));
    nlohmann::json model;
    for (const nlohmann::json& controller : machine["controllers"]) {
        if (controller["family"] == "OOB_LSI") {
            model = controller;
        }
    }
    machine["controllers"] = nlohmann::json::array();
    for (int c = 0; c < controllers; ++c) {
        nlohmann::json controller = model;
        controller["id"] = c;
        controller["slot"] = c;
        controller["serial_no"] = "SKT" + std::to_string(1000000 + c);
        controller["global_hot_spares"] = nlohmann::json::array();
        controller["disks"] = nlohmann::json::array();
        controller["volumes"] = nlohmann::json::array();
        for (int d = 0; d < disks; ++d) {
            nlohmann::json disk = model["disks"][0];
            disk["id"] = d;
            disk["slot_no"] = std::to_string(d);
            disk["serial_no"] = "S" + std::to_string(c) + "-" + std::to_string(d);
            disk["connector_id"] = d % 2;
            disk["state"] = d < 2 * volumes ? "Online" : "UGood";
            controller["disks"].push_back(disk);
        }
        for (int v = 0; v < volumes; ++v) {
            nlohmann::json volume = model["volumes"][0];
            volume["id"] = v;
            volume["name"] = "vd" + std::to_string(v);
            volume["raid_level"] = "1";
            volume["spans"] = nlohmann::json::array({nlohmann::json::array({2 * v, 2 * v + 1})});
            volume["size_mb"] = model["disks"][0]["capacity_mb"];
            volume["dedicated_spares"] = nlohmann::json::array();
            controller["volumes"].push_back(volume);
        }
        machine["controllers"].push_back(controller);
    }
    std::ofstream(path) << machine.dump();
}

// A scratch directory with a copy of the demo machine, removed afterwards.
class Scratch {
public:
    Scratch() {
        std::string pattern =
            (std::filesystem::temp_directory_path() / "raidcfg-bench-XXXXXX").string();
        if (mkdtemp(pattern.data()) != nullptr) {
            path_ = pattern;
            std::filesystem::copy_file(kDemoMachine, path_ + "/machine.json");
        }
    }
    ~Scratch() {
        std::error_code ignored;
        std::filesystem::remove_all(path_, ignored);
    }
    Scratch(const Scratch&) = delete;
    Scratch& operator=(const Scratch&) = delete;
    const std::string& path() const { return path_; }
    std::string Machine() const { return path_ + "/machine.json"; }

    // An action on the simulated road, to prepare the machine.
    int Simulated(const std::vector<std::string>& args) const {
        std::vector<std::string> full = args;
        full.insert(full.end(), {"--machine", Machine(), "--bmc", "admin:secret@sim", "-q"});
        return Wait(Spawn(kRaidcfg, full, path_, "prepare"));
    }

private:
    std::string path_;
};

struct Served {
    double requests = 0;
    double connections = 0;
    // The user and system time of the raidcfg run.
    double client_cpu = 0;
};

// One timed raidcfg run against a fresh emulator on the scratch machine.
// mockup, when given, is a recorded Redfish tree the emulator serves instead of the machine.
bool TimedRun(const Scratch& scratch, const std::vector<std::string>& action, bool expand,
              double& seconds, Served& served, const std::string& mockup = {},
              int latency_ms = 50) {
    std::vector<std::string> emulator_args = {"--port-file", scratch.path() + "/port",
                                              "--latency-ms", std::to_string(latency_ms)};
    if (mockup.empty()) {
        emulator_args.insert(emulator_args.begin(), {"--machine", scratch.Machine()});
    } else {
        emulator_args.insert(emulator_args.begin(), {"--mockup", mockup});
    }
    if (!expand) {
        emulator_args.emplace_back("--no-expand");
    }
    std::filesystem::remove(scratch.path() + "/port");
    const pid_t emulator = Spawn(kEmulator, emulator_args, scratch.path(), "bmc");
    std::string port;
    while (port.empty()) {
        port = ReadAll(scratch.path() + "/port");
        while (!port.empty() && (port.back() == '\n' || port.back() == '\r')) {
            port.pop_back();
        }
        if (port.empty()) {
            if (waitpid(emulator, nullptr, WNOHANG) == emulator) {
                return false;
            }
            usleep(5000);
        }
    }
    std::vector<std::string> args = action;
    args.insert(args.end(), {"--bmc", "admin:secret@127.0.0.1:" + port, "--http", "-q"});
    const auto start = std::chrono::steady_clock::now();
    const int status = Wait(Spawn(kRaidcfg, args, scratch.path(), "run"), &served.client_cpu);
    seconds = std::chrono::duration<double>(std::chrono::steady_clock::now() - start).count();
    kill(emulator, SIGTERM);
    Wait(emulator);
    std::smatch match;
    const std::string err = ReadAll(scratch.path() + "/bmc.err");
    static const std::regex line("served ([0-9]+) requests on ([0-9]+) connections");
    if (status != 0 || !std::regex_search(err, match, line)) {
        return false;
    }
    served.requests = std::stod(match[1].str());
    served.connections = std::stod(match[2].str());
    return true;
}

void Report(benchmark::State& state, const Served& total) {
    const auto average = benchmark::Counter::kAvgIterations;
    state.counters["requests"] = benchmark::Counter(total.requests, average);
    state.counters["connections"] = benchmark::Counter(total.connections, average);
}

// state.range(0): 1 with $expand, 0 without.
void BM_RedfishShow(benchmark::State& state) {
    Served total;
    for (auto _ : state) {
        Scratch scratch;
        double seconds = 0;
        Served served;
        if (!TimedRun(scratch, {"show"}, state.range(0) != 0, seconds, served)) {
            state.SkipWithError("show over Redfish failed");
            break;
        }
        state.SetIterationTime(seconds);
        total.requests += served.requests;
        total.connections += served.connections;
    }
    Report(state, total);
}

// Creates the volumes of the demo's saved policy file again on its cleared LSI controllers.
void BM_RedfishAdd(benchmark::State& state) {
    Served total;
    for (auto _ : state) {
        Scratch scratch;
        bool ready = scratch.Simulated({"save", "--file", "policy.ini"}) == 0;
        for (const char* controller : {"1", "2", "3", "4"}) {
            ready = ready && scratch.Simulated({"clear", "--ctrl", controller, "-y"}) == 0;
        }
        double seconds = 0;
        Served served;
        if (!ready || !TimedRun(scratch, {"add", "--file", "policy.ini", "-y"}, state.range(0) != 0,
                                seconds, served)) {
            state.SkipWithError("add over Redfish failed");
            break;
        }
        state.SetIterationTime(seconds);
        total.requests += served.requests;
        total.connections += served.connections;
    }
    Report(state, total);
}

// Clears the demo's out-of-band LSI controller (its volume and hot spares).
void BM_RedfishClear(benchmark::State& state) {
    Served total;
    for (auto _ : state) {
        Scratch scratch;
        double seconds = 0;
        Served served;
        if (!TimedRun(scratch, {"clear", "--ctrl", "1", "-y"}, state.range(0) != 0, seconds,
                      served)) {
            state.SkipWithError("clear over Redfish failed");
            break;
        }
        state.SetIterationTime(seconds);
        total.requests += served.requests;
        total.connections += served.connections;
    }
    Report(state, total);
}

// show of a recorded tree of a BMC without our Oem section: DMTF's public-tower mockup (four
// Storage resources) when it is beside the repository, else our own rack-server tree (three).
void BM_RedfishShowMockup(benchmark::State& state) {
    const std::string tower = RAIDCFG_MOCKUPS_DIR "/public-tower";
    const std::string mockup =
        std::filesystem::is_directory(tower) ? tower : std::string(RAIDCFG_RACK_SERVER_MOCKUP);
    state.SetLabel(std::filesystem::path(mockup).filename().string());
    Served total;
    for (auto _ : state) {
        Scratch scratch;
        double seconds = 0;
        Served served;
        if (!TimedRun(scratch, {"show"}, true, seconds, served, mockup)) {
            state.SkipWithError("show of the mockup over Redfish failed");
            break;
        }
        state.SetIterationTime(seconds);
        total.requests += served.requests;
        total.connections += served.connections;
    }
    Report(state, total);
}

// show of a machine of 32 controllers x 240 disks x 64 volumes with $expand, every answer 20 ms
// late. client_side is what the run costs on raidcfg's side alone (its CPU time plus the
// latency of every request); the rest of the wall time is the emulator's.
void BM_RedfishShowLarge(benchmark::State& state) {
    Served total;
    double client_side = 0;
    constexpr int kLatencyMs = 20;
    for (auto _ : state) {
        Scratch scratch;
        WriteLargeMachine(scratch.Machine(), 32, 240, 64);
        double seconds = 0;
        Served served;
        if (!TimedRun(scratch, {"show"}, true, seconds, served, {}, kLatencyMs)) {
            state.SkipWithError("show of the large machine over Redfish failed");
            break;
        }
        state.SetIterationTime(seconds);
        total.requests += served.requests;
        total.connections += served.connections;
        client_side += served.client_cpu + served.requests * kLatencyMs / 1000.0;
    }
    Report(state, total);
    state.counters["client_side_s"] =
        benchmark::Counter(client_side, benchmark::Counter::kAvgIterations);
}

// One policy applied by ansible-playbook (raidcfg.fleet.raid_policy, forks = servers) to
// state.range(0) emulated servers, each answering 50 ms late: the wall time of the play, for
// 1, 8 and 32 servers. Needs ansible-playbook and ansible-galaxy on PATH.
void BM_FleetPolicy(benchmark::State& state) {
    const int servers = static_cast<int>(state.range(0));
    for (auto _ : state) {
        Scratch scratch;
        const std::string& dir = scratch.path();
        if (Wait(Spawn(
                "/usr/bin/ansible-galaxy",
                {"collection", "install", RAIDCFG_ANSIBLE_COLLECTION, "-p", dir + "/collections"},
                dir, "galaxy")) != 0) {
            state.SkipWithError("ansible-galaxy could not install the collection");
            break;
        }
        // The demo's LSI controller as saved, and one more volume on its free disks.
        if (Wait(Spawn(kRaidcfg,
                       {"save", "--ctrl", "1", "--file", dir + "/policy.ini", "--machine",
                        scratch.Machine(), "--bmc", "admin:secret@sim", "-q"},
                       dir, "save")) != 0) {
            state.SkipWithError("the policy could not be saved");
            break;
        }
        std::ofstream(dir + "/policy.ini", std::ios::app)
            << "\n[ctrl1-vol1]\n    disks=6,7\n    raid_level=1\n    vol_name=fleet\n"
               "    volume_size=100GB\n";
        std::vector<pid_t> emulators;
        std::string inventory = "[servers]\n";
        bool started = true;
        for (int i = 0; i < servers && started; ++i) {
            const std::string machine = dir + "/m" + std::to_string(i) + ".json";
            const std::string port_file = dir + "/port" + std::to_string(i);
            std::filesystem::copy_file(kDemoMachine, machine);
            emulators.push_back(Spawn(
                kEmulator, {"--machine", machine, "--port-file", port_file, "--latency-ms", "50"},
                dir, "bmc" + std::to_string(i)));
            std::string port;
            for (int tries = 0; port.empty() && tries < 2000; ++tries) {
                port = ReadAll(port_file);
                while (!port.empty() && (port.back() == '\n' || port.back() == '\r')) {
                    port.pop_back();
                }
                if (port.empty()) {
                    usleep(5000);
                }
            }
            started = !port.empty();
            inventory += "srv" + std::to_string(i) + " bmc=127.0.0.1:" + port + "\n";
        }
        inventory += "[servers:vars]\nansible_connection=local\n"
                     "ansible_python_interpreter=/usr/bin/python3\n";
        std::ofstream(dir + "/inventory.ini") << inventory;
        std::ofstream(dir + "/play.yml")
            << "- hosts: servers\n  gather_facts: false\n  tasks:\n"
               "    - raidcfg.fleet.raid_policy:\n        bmc: \"{{ bmc }}\"\n"
               "        user: admin\n        password: secret\n        http: true\n"
               "        policy_file: "
            << dir << "/policy.ini\n        raidcfg_path: " << kRaidcfg << "\n";
        setenv("ANSIBLE_COLLECTIONS_PATH", (dir + "/collections").c_str(), 1);
        setenv("ANSIBLE_LOCAL_TEMP", (dir + "/tmp").c_str(), 1);
        const auto start = std::chrono::steady_clock::now();
        const int status = started ? Wait(Spawn("/usr/bin/ansible-playbook",
                                                {"-i", dir + "/inventory.ini", "-f",
                                                 std::to_string(servers), dir + "/play.yml"},
                                                dir, "play"))
                                   : -1;
        const double seconds =
            std::chrono::duration<double>(std::chrono::steady_clock::now() - start).count();
        for (const pid_t emulator : emulators) {
            kill(emulator, SIGTERM);
            Wait(emulator);
        }
        if (status != 0) {
            state.SkipWithError("the play failed");
            break;
        }
        state.SetIterationTime(seconds);
    }
    state.counters["servers"] = servers;
}

BENCHMARK(BM_FleetPolicy)
    ->ArgName("servers")
    ->Arg(1)
    ->Arg(8)
    ->Arg(32)
    ->UseManualTime()
    ->Iterations(2)
    ->Unit(benchmark::kMillisecond);
BENCHMARK(BM_RedfishShowLarge)->UseManualTime()->Iterations(3)->Unit(benchmark::kMillisecond);
BENCHMARK(BM_RedfishShowMockup)->UseManualTime()->Iterations(3)->Unit(benchmark::kMillisecond);
BENCHMARK(BM_RedfishShow)
    ->ArgName("expand")
    ->Arg(1)
    ->Arg(0)
    ->UseManualTime()
    ->Iterations(3)
    ->Unit(benchmark::kMillisecond);
BENCHMARK(BM_RedfishAdd)
    ->ArgName("expand")
    ->Arg(1)
    ->Arg(0)
    ->UseManualTime()
    ->Iterations(3)
    ->Unit(benchmark::kMillisecond);
BENCHMARK(BM_RedfishClear)
    ->ArgName("expand")
    ->Arg(1)
    ->Arg(0)
    ->UseManualTime()
    ->Iterations(3)
    ->Unit(benchmark::kMillisecond);

} // namespace
