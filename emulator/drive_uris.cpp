#include "emulator/drive_uris.hpp"

#include "emulator/redfish_names.hpp"

namespace emulator {

std::string DriveUris::Id(const sim::Controller& controller, int disk) {
    return RedfishNames::StorageId(controller) + "-" + std::to_string(disk);
}

std::string DriveUris::Uri(const sim::Controller& controller, int disk) {
    return std::string(kDrives) + "/" + Id(controller, disk);
}

std::optional<DriveUris::Parts> DriveUris::Split(const sim::Machine& machine,
                                                 const std::string& id) {
    for (const sim::Controller& controller : machine.controllers) {
        if (!RedfishNames::IsServedFamily(controller.family)) {
            continue;
        }
        const std::string sid = RedfishNames::StorageId(controller);
        // Storage ids end in a number, so no Storage id with its dash starts another's.
        if (id.size() > sid.size() + 1 && id.compare(0, sid.size() + 1, sid + "-") == 0) {
            return Parts{sid, id.substr(sid.size() + 1)};
        }
    }
    return std::nullopt;
}

std::string DriveUris::DiskOf(const std::string& sid, const std::string& id) {
    const std::string prefix = sid + "-";
    if (id.size() > prefix.size() && id.compare(0, prefix.size(), prefix) == 0) {
        return id.substr(prefix.size());
    }
    return id;
}

} // namespace emulator
