#pragma once

#include <map>
#include <memory>
#include <optional>
#include <string>
#include <utility>
#include <vector>

#include <nlohmann/json.hpp>

#include "redfish/redfish_client.hpp"
#include "sim/machine.hpp"
#include "sim/machine_store.hpp"

namespace redfish {

// What the BMC's Manager tells about itself: its channels, how many REST connections it takes,
// its generation and whether it answers the support query. The defaults are those of a BMC
// that carries no Oem section of ours.
struct ManagerInfo {
    bool ssh = true;
    bool rest = true;
    bool cim = true;
    int rest_connections = 1;
    std::optional<int> ambit_type = 2; // unset: the BMC type query fails
    bool vantor_v3 = false;
    bool support_info = true;
};

// Where one controller's resources stand on the BMC.
struct ControllerLinks {
    std::string storage;    // the Storage resource
    std::string controller; // its StorageController (a resource, or a pointer into Storage)
    std::string volumes;    // the Volumes collection
    std::map<int, std::string> drives;       // disk id -> Drive
    std::map<int, std::string> volume_paths; // volume id -> Volume
    std::map<int, std::string> pass_through; // disk id -> its pass-through volume (JBOD)
    // The Storage carries our Oem section (the emulator): its probe action answers reads' faults.
    bool ours = false;
    // Operations with an injected fault that still answers, and the argument it names.
    std::vector<std::pair<std::string, std::optional<std::string>>> pending_faults;
};

// The BMC's storage tree in the simulated machine's neutral model: every out-of-band controller
// with its disks and volumes, sorted into its family, plus where each one lives on the BMC.
struct StorageTree {
    sim::Machine machine;
    std::map<std::pair<std::string, int>, ControllerLinks> links; // (family, id) -> links

    const sim::Controller* Find(const std::string& family, int id) const;
    const ControllerLinks* LinksOf(const std::string& family, int id) const;
};

// Reads the BMC's storage tree and its Manager through the run's client, and keeps what it
// read until the next write. With $expand a full read costs one request for the Storage
// collection and one per Storage resource (both served from the client's cache afterwards).
class StorageTreeReader {
public:
    explicit StorageTreeReader(std::shared_ptr<RedfishClient> client);

    RedfishClient& client() const { return *client_; }

    // The tree, read once and kept until Drop; after Drop of one Storage only that one is read.
    RedfishStatus Load(std::shared_ptr<const StorageTree>& tree);
    // The tree as an in-memory machine store, so that the simulated machine's read operations
    // answer over it exactly as they answer over a machine file.
    RedfishStatus Store(std::shared_ptr<sim::MachineStore>& store,
                        std::shared_ptr<const StorageTree>& tree);
    // The Manager's information; a BMC without our Oem section gives the defaults.
    RedfishStatus Manager(ManagerInfo& info);
    // Forgets what was read (the client drops its own cache by itself on every write).
    void Drop();
    // Forgets one Storage resource, after a write to it: the next read fetches that one again
    // and keeps the others, which no write to this Storage changes.
    void Drop(const std::string& storage);

    // The family a controller of this manufacturer and model belongs to ("OOB_LSI", ...).
    static std::string FamilyOf(const std::string& manufacturer, const std::string& model);
    // Adds one Storage resource, read with its links expanded two levels deep, to tree.
    static void AddStorage(const nlohmann::json& storage, StorageTree& tree);
    // Reads a Manager resource.
    static ManagerInfo ManagerFrom(const nlohmann::json& manager);

private:
    // Keeps a failure to reach the BMC, so that the rest of the run fails at once.
    void Remember(const RedfishStatus& status);

    std::shared_ptr<RedfishClient> client_;
    RedfishStatus unreachable_;
    std::vector<std::string> members_;               // the Storage collection, once read
    std::map<std::string, nlohmann::json> storages_; // each Storage as read, expanded
    std::shared_ptr<const StorageTree> tree_;
    std::shared_ptr<sim::MachineStore> store_;
    std::optional<ManagerInfo> manager_;
};

} // namespace redfish
