// raidcfg-bmc: serves the out-of-band RAID controllers of a machine file, or a recorded Redfish
// tree, as a Redfish BMC, so that raidcfg can be tried and tested over real HTTP without a server.
#include <atomic>
#include <chrono>
#include <csignal>
#include <cstdio>
#include <cstdlib>
#include <fstream>
#include <iostream>
#include <memory>
#include <optional>
#include <string>
#include <thread>
#include <utility>

#include <pthread.h>

#include "emulator/emulator_options.hpp"
#include "emulator/http_server.hpp"
#include "emulator/mockup_service.hpp"
#include "emulator/mockup_tree.hpp"
#include "emulator/redfish_service.hpp"
#include "emulator/request_log.hpp"
#include "sim/demo_machine.hpp"
#include "sim/machine_store.hpp"

namespace {

constexpr int kBadArguments = 5;
constexpr int kCannotServe = 1;

// Written beside the target and renamed over it, so a reader never sees half a number.
bool WritePortFile(const std::string& path, int port) {
    const std::string temporary = path + ".tmp";
    {
        std::ofstream out(temporary, std::ios::trunc);
        out << port << '\n';
        if (!out.flush()) {
            return false;
        }
    }
    return std::rename(temporary.c_str(), path.c_str()) == 0;
}

} // namespace

int main(int argc, char** argv) {
    emulator::EmulatorOptions options;
    std::string help;
    std::string error;
    if (!emulator::EmulatorOptions::Parse(argc, argv, options, help, error)) {
        std::cerr << "raidcfg-bmc: " << error << '\n';
        return kBadArguments;
    }
    if (!help.empty()) {
        std::cout << help;
        return 0;
    }
    // The service of a machine file or of a mockup, and what the start line says it serves.
    std::unique_ptr<emulator::RequestHandler> service;
    std::string serving;
    if (!options.mockup.empty()) {
        emulator::MockupTree tree;
        if (!emulator::MockupTree::Load(options.mockup, tree, error)) {
            std::cerr << "raidcfg-bmc: --mockup: " << error << '\n';
            return kBadArguments;
        }
        std::optional<emulator::MockupService::Credentials> credentials;
        if (options.credentials) {
            credentials = emulator::MockupService::Credentials{options.user, options.password};
        }
        service = std::make_unique<emulator::MockupService>(std::move(tree), credentials);
        serving = "the mockup '" + options.mockup + "'";
    } else {
        std::string path = options.machine;
        if (path == "demo") {
            path = sim::DemoMachine::Prepare(error);
            if (path.empty()) {
                std::cerr << "raidcfg-bmc: --machine: " << error << '\n';
                return kBadArguments;
            }
        }
        auto store = std::make_shared<sim::MachineStore>(path);
        if (!store->Check(error)) {
            std::cerr << "raidcfg-bmc: --machine: " << error << '\n';
            return kBadArguments;
        }
        service = std::make_unique<emulator::RedfishService>(store, !options.no_expand);
        serving = "'" + path + "'";
    }
    emulator::RequestLog log;
    if (!options.log_requests.empty() && !log.Open(options.log_requests, error)) {
        std::cerr << "raidcfg-bmc: --log-requests: " << error << '\n';
        return kBadArguments;
    }

    // SIGTERM and SIGINT are taken by sigwait below; every thread started later inherits the
    // mask, so no worker is interrupted by them. A peer that goes away must not kill us.
    sigset_t stop_signals;
    sigemptyset(&stop_signals);
    sigaddset(&stop_signals, SIGTERM);
    sigaddset(&stop_signals, SIGINT);
    pthread_sigmask(SIG_BLOCK, &stop_signals, nullptr);
    std::signal(SIGPIPE, SIG_IGN);

    emulator::HttpServer server(*service, options, options.log_requests.empty() ? nullptr : &log);
    if (!server.Bind(error)) {
        std::cerr << "raidcfg-bmc: " << error << '\n';
        return options.tls_cert.empty() ? kCannotServe : kBadArguments;
    }
    std::cout << server.port() << std::endl;
    if (!options.port_file.empty() && !WritePortFile(options.port_file, server.port())) {
        std::cerr << "raidcfg-bmc: --port-file: cannot write '" << options.port_file << "'\n";
        return kCannotServe;
    }
    std::cerr << "raidcfg-bmc: serving " << serving << " on "
              << (options.tls_cert.empty() ? "http://" : "https://") << options.host << ':'
              << server.port() << std::endl;

    std::atomic<bool> finished{false};
    std::thread runner([&] {
        server.Run();
        finished = true;
    });
    int received = 0;
    sigwait(&stop_signals, &received);
    // Stop only takes once the server runs; repeat until Run has returned. Requests under way
    // (with their latency) finish within the grace period.
    const auto deadline = std::chrono::steady_clock::now() + std::chrono::milliseconds(1000) +
                          2 * std::chrono::milliseconds(options.latency_ms);
    while (!finished && std::chrono::steady_clock::now() < deadline) {
        server.Stop();
        std::this_thread::sleep_for(std::chrono::milliseconds(10));
    }
    const bool drained = finished;
    if (!drained) {
        // A client that keeps an idle connection open would hold the workers until its
        // keep-alive timeout. Intended: end without waiting for it, but never in the middle of
        // a request, so the machine file is never left half-changed.
        service->Hold();
    } else {
        runner.join();
    }
    std::cerr << "raidcfg-bmc: served " << server.requests() << " requests on "
              << server.connections() << " connections" << std::endl;
    if (!drained) {
        std::_Exit(0);
    }
    return 0;
}
