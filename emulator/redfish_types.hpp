#pragma once

#include <string>
#include <vector>

namespace emulator {

// Every @odata.type the machine file's service writes, in one table: the resources name their
// types from here and $metadata references the schema of each, so the two cannot part.
class RedfishTypes {
public:
    static constexpr const char* kServiceRoot = "#ServiceRoot.v1_15_0.ServiceRoot";
    // The newest container at or below the root's version that $metadata's container extends.
    static constexpr const char* kServiceContainer = "ServiceRoot.v1_13_0.ServiceContainer";
    static constexpr const char* kComputerSystemCollection =
        "#ComputerSystemCollection.ComputerSystemCollection";
    static constexpr const char* kComputerSystem = "#ComputerSystem.v1_20_0.ComputerSystem";
    static constexpr const char* kManagerCollection = "#ManagerCollection.ManagerCollection";
    static constexpr const char* kManager = "#Manager.v1_19_0.Manager";
    static constexpr const char* kStorageCollection = "#StorageCollection.StorageCollection";
    static constexpr const char* kStorage = "#Storage.v1_15_0.Storage";
    static constexpr const char* kStorageControllerCollection =
        "#StorageControllerCollection.StorageControllerCollection";
    static constexpr const char* kStorageController = "#StorageController.v1_7_0.StorageController";
    static constexpr const char* kChassisCollection = "#ChassisCollection.ChassisCollection";
    static constexpr const char* kChassis = "#Chassis.v1_23_0.Chassis";
    static constexpr const char* kDriveCollection = "#DriveCollection.DriveCollection";
    static constexpr const char* kDrive = "#Drive.v1_17_0.Drive";
    static constexpr const char* kVolumeCollection = "#VolumeCollection.VolumeCollection";
    static constexpr const char* kVolume = "#Volume.v1_9_0.Volume";
    static constexpr const char* kSessionService = "#SessionService.v1_1_8.SessionService";
    static constexpr const char* kSessionCollection = "#SessionCollection.SessionCollection";
    static constexpr const char* kSession = "#Session.v1_6_0.Session";
    static constexpr const char* kTaskService = "#TaskService.v1_2_0.TaskService";
    static constexpr const char* kTaskCollection = "#TaskCollection.TaskCollection";
    static constexpr const char* kTask = "#Task.v1_7_0.Task";
    static constexpr const char* kAccountService = "#AccountService.v1_13_0.AccountService";
    static constexpr const char* kManagerAccountCollection =
        "#ManagerAccountCollection.ManagerAccountCollection";
    static constexpr const char* kManagerAccount = "#ManagerAccount.v1_10_0.ManagerAccount";
    static constexpr const char* kRoleCollection = "#RoleCollection.RoleCollection";
    static constexpr const char* kRole = "#Role.v1_3_1.Role";
    // The extended info of errors, of accepted writes and of task messages.
    static constexpr const char* kMessage = "#Message.v1_1_2.Message";
    // Our Oem.Raidcfg objects, defined by our own schema (OemSchema).
    static constexpr const char* kOemManager = "#Raidcfg.v1_0_0.Manager";
    static constexpr const char* kOemStorage = "#Raidcfg.v1_0_0.Storage";
    static constexpr const char* kOemStorageController = "#Raidcfg.v1_0_0.StorageController";
    static constexpr const char* kOemDrive = "#Raidcfg.v1_0_0.Drive";
    static constexpr const char* kOemVolume = "#Raidcfg.v1_0_0.Volume";
    static constexpr const char* kOemTask = "#Raidcfg.v1_0_0.Task";
    static constexpr const char* kOemMessage = "#Raidcfg.v1_0_0.Message";

    // Every type above, in the order written here.
    static const std::vector<std::string>& All();
};

} // namespace emulator
