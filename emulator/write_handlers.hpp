#pragma once

#include <memory>
#include <optional>
#include <string>
#include <vector>

#include <nlohmann/json.hpp>

#include "emulator/http_response.hpp"
#include "emulator/task_store.hpp"
#include "sim/machine_store.hpp"

namespace emulator {

// The writes of the Redfish mapping (docs/redfish.md), each carried out by the simulated
// machine's own driver operation on the machine file, so that every rule, code, text and fault
// is the simulated machine's.
class WriteHandlers {
public:
    WriteHandlers(std::shared_ptr<sim::MachineStore> store, TaskStore& tasks);

    // A write below /redfish/v1/Systems/1/Storage/{sid} (a drive under the Chassis is addressed
    // as the drive below its Storage): rest holds the segments after the Storage id. Empty when no
    // write is served at that place with that method.
    std::optional<HttpResponse> Handle(const std::string& method, const std::string& sid,
                                       const std::vector<std::string>& rest,
                                       const nlohmann::json& body);

private:
    HttpResponse CreateVolume(const nlohmann::json& body);
    HttpResponse MakeJbod(const nlohmann::json& body);
    HttpResponse DeleteVolume(const std::string& volume);
    HttpResponse PatchDrive(const std::string& disk, const nlohmann::json& body);
    HttpResponse PatchVolume(const std::string& volume, const nlohmann::json& body);
    HttpResponse PatchStorage(const nlohmann::json& body);
    HttpResponse PatchController(const nlohmann::json& body);
    HttpResponse EncryptVolumes(const std::vector<int>& volumes);
    HttpResponse Probe(const nlohmann::json& body);

    // The machine's copy of this request's controller, read anew; nullptr when it is gone.
    std::optional<sim::Controller> ReadController() const;
    // "OOB_LSI-0" and the Storage's URI.
    std::string Sid() const;
    std::string StorageUri() const;

    std::shared_ptr<sim::MachineStore> store_;
    TaskStore& tasks_;
    // The controller the current request addresses.
    std::string family_;
    int controller_ = 0;
};

} // namespace emulator
