#pragma once

#include <optional>
#include <string>
#include <vector>

#include "backend/not_reported.hpp"

// The model of a server's RAID controllers, as a machine file describes a simulated one and as
// the Redfish road reads a real BMC's storage tree into. Both roads render their records from it.
namespace model {

// A number the source never gave: what a BMC does not report (a policy, a capacity). Rendered
// as the empty text; a machine file never holds it.
constexpr int kNotReported = Quillon::RaidConfig::kNotReported;

struct Disk {
    int id = 0;
    std::string slot_no;
    // "UGood", "UBad", "Online", "JBOD", "GHS", "DHS", "Offline" or "Failed".
    std::string state = "UGood";
    long long capacity_mb = 0;
    std::string product_name;
    std::string disk_type;  // "SAS", "SATA", "NVMe", ...
    std::string media_type; // "HDD" or "SSD"
    std::string health_status;
    std::string serial_no;
    std::string fru_no;
    std::string part_no;
    std::string manufacturer;
    int connector_id = 0;
};

struct Volume {
    int id = 0;
    std::string name;
    std::string raid_level;              // as in a policy file: "0", "1", "5", "10", "1triple", ...
    std::vector<std::vector<int>> spans; // disk ids, grouped as the policy file groups them
    long long size_mb = 0;
    int strip_kb = 0;
    std::string status = "Optimal";
    bool bootable = false;
    // False where the source does not say whether the volume boots (a BMC without
    // IsBootCapable): shown as the empty text. A machine file always says.
    bool bootable_known = true;
    int write_policy = 0;
    int read_policy = 0;
    int io_policy = 0;
    int access_policy = 0;
    int cache_policy = 0;
    int initialization = 0;
    bool encrypted = false;
    std::vector<int> dedicated_spares; // disk ids of the "DHS" disks that serve this volume
};

struct Connector {
    int id = 0;
    std::string name;
    std::string mode;
};

// Makes the first matching backend operation of a controller fail instead of acting.
struct Fault {
    std::string op;                 // an operation name of the backend contract
    std::optional<std::string> arg; // when set: the disk, volume or connector as decimal text
    int code = 0;                   // the backend code to answer with
    // The text the operation gives with the code, "" included; unset: a default text.
    std::optional<std::string> error_text;
    std::optional<int> times; // counts down; the fault is dropped at 0; unset: always
};

struct Controller {
    // "LSI", "MICROCHIP", "M2", "VROC_WIN", "OOB_LSI", "OOB_CFC", "OOB_M2", "OOB_MICROCHIP" or
    // "OOB_VROC": the backend class that lists the controller.
    std::string family;
    int id = 0;
    std::string product_name;
    std::string serial_no;
    std::string fru_no;
    std::string part_no;
    std::string vendor; // for OOB_CFC: "Broadcom", "Microchip", anything else is M.2
    std::string manufacturer;
    std::string version;
    std::string model;
    std::string name;
    std::vector<std::string> raid_levels;
    int min_stripe_kb = 0;
    int max_stripe_kb = 0;
    std::vector<Connector> connectors;
    std::vector<std::string> connector_modes;
    std::optional<std::string> fw_device_order; // unset: the controller lacks the function
    std::vector<std::string> fw_device_order_modes;
    std::optional<std::string> ekm_mode; // unset: the controller lacks the function
    std::vector<std::string> ekm_modes;
    int slot = 0;
    std::vector<Disk> disks;
    std::vector<Volume> volumes;
    std::vector<int> global_hot_spares;
    std::vector<Fault> faults;
};

struct Bmc {
    std::string user = "admin";
    std::string password = "secret";
    bool ssh = true;
    bool rest = true;
    bool cim = true;
    int rest_connections = 1;
    std::optional<int> bmc_type = 2; // unset (null in the file): the type query fails
    bool vantor_v3 = false;
    bool support_info = true;
};

struct Machine {
    int format = 1;
    bool persist = true;
    Bmc bmc;
    std::vector<Controller> controllers; // in file order
};

} // namespace model
