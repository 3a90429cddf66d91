#include "emulator/redfish_types.hpp"

namespace emulator {

const std::vector<std::string>& RedfishTypes::All() {
    static const std::vector<std::string> types = {kServiceRoot,
                                                   kComputerSystemCollection,
                                                   kComputerSystem,
                                                   kManagerCollection,
                                                   kManager,
                                                   kStorageCollection,
                                                   kStorage,
                                                   kStorageControllerCollection,
                                                   kStorageController,
                                                   kChassisCollection,
                                                   kChassis,
                                                   kDriveCollection,
                                                   kDrive,
                                                   kVolumeCollection,
                                                   kVolume,
                                                   kSessionService,
                                                   kSessionCollection,
                                                   kSession,
                                                   kTaskService,
                                                   kTaskCollection,
                                                   kTask,
                                                   kAccountService,
                                                   kManagerAccountCollection,
                                                   kManagerAccount,
                                                   kRoleCollection,
                                                   kRole,
                                                   kMessage,
                                                   kOemManager,
                                                   kOemStorage,
                                                   kOemStorageController,
                                                   kOemDrive,
                                                   kOemVolume,
                                                   kOemTask,
                                                   kOemMessage};
    return types;
}

} // namespace emulator
