#include "model/backend_operations.hpp"

#include <algorithm>

namespace model {

const std::vector<std::string>& BackendOperations::Names() {
    static const std::vector<std::string> names{
        // The RAID backends.
        "GetController", "GetConfig", "Add", "AddRaidIndex", "ClearConfig", "RemoveVolume",
        "GetCanMakeGoodDiskIds", "GetCanMakeJbodDiskIds", "MakeGood", "MakeJbod",
        "AddGlobalHotSpare", "AddDedicatedHotSpare", "RemoveHotSpare", "FastInit", "GetAllVolumes",
        "RaidChangeConnectorMode", "GetSupportedRaidLevels", "GetFirmwareDeviceOrderCtrl",
        "SetFirmwareDeviceOrderCtrl",
        // Key management and volume encryption.
        "getController", "getControllerWithVolumes", "changeEKMmode", "enableEncryptionVolume",
        "enableEncryptionAllVolumes",
        // The firmware device order of the out-of-band LSI controller.
        "TurnFirmwareDeviceOrder"};
    return names;
}

bool BackendOperations::Known(const std::string& name) {
    const std::vector<std::string>& names = Names();
    return std::find(names.begin(), names.end(), name) != names.end();
}

std::string BackendOperations::List() {
    std::string list;
    for (const std::string& name : Names()) {
        list += (list.empty() ? "" : ", ") + name;
    }
    return list;
}

} // namespace model
