#pragma once

#include <optional>
#include <string>
#include <vector>

#include <nlohmann/json.hpp>

#include "sim/machine.hpp"

namespace emulator {

// Renders the machine model as Redfish resources: the service root, the system and its Storage
// tree, the Chassis with the drives, and the Manager of the BMC (docs/redfish.md). Sessions and
// tasks live in the service.
class ResourceBuilder {
public:
    static constexpr const char* kStorageRoot = "/redfish/v1/Systems/1/Storage";
    static constexpr const char* kSystemReset =
        "/redfish/v1/Systems/1/Actions/ComputerSystem.Reset";
    // The ResetType values the system's reset takes.
    static const std::vector<std::string>& SystemResetTypes();

    ResourceBuilder(const sim::Machine& machine, bool expand_supported);

    // The resource at path (no query, no trailing "/"); empty when there is none.
    std::optional<nlohmann::json> Build(const std::string& path) const;

    // {"@odata.id": uri}
    static nlohmann::json Reference(const std::string& uri);
    // A collection of type ("#DriveCollection.DriveCollection") with references to members.
    static nlohmann::json Collection(const std::string& uri, const std::string& type,
                                     const std::string& name,
                                     const std::vector<std::string>& members);
    // @odata.id, @odata.type and @odata.context of a resource of type ("#Drive.v1_17_0.Drive").
    static nlohmann::json Head(const std::string& uri, const std::string& type);
    // The served controller with that Storage id ("OOB_LSI-0"), or nullptr.
    static const sim::Controller* FindStorage(const sim::Machine& machine, const std::string& sid);
    // The path segments of a path: "/redfish/v1/Systems" -> {"redfish", "v1", "Systems"}.
    static std::vector<std::string> Segments(const std::string& path);

private:
    nlohmann::json ServiceRoot() const;
    nlohmann::json System() const;
    nlohmann::json Manager() const;
    nlohmann::json StorageCollection() const;
    static nlohmann::json Storage(const sim::Controller& controller);
    static nlohmann::json StorageController(const sim::Controller& controller,
                                            const std::string& uri);
    static nlohmann::json Drive(const sim::Controller& controller, const sim::Disk& disk);
    // The drive of the controller whose id is disk_text exactly; empty when there is none.
    static std::optional<nlohmann::json> DriveOf(const sim::Controller& controller,
                                                 const std::string& disk_text);
    static nlohmann::json Volume(const sim::Controller& controller, const sim::Volume& volume);
    static nlohmann::json PassThrough(const sim::Controller& controller, const sim::Disk& disk);
    static nlohmann::json VolumeCollection(const sim::Controller& controller);
    std::optional<nlohmann::json> StorageResource(const std::vector<std::string>& segments) const;
    // The Chassis collection, the one Chassis and the drives under it.
    std::optional<nlohmann::json> ChassisResource(const std::vector<std::string>& segments) const;
    static nlohmann::json Chassis();

    const sim::Machine& machine_;
    bool expand_supported_;
};

} // namespace emulator
