#pragma once

#include <map>
#include <memory>
#include <optional>
#include <string>
#include <utility>
#include <vector>

#include <nlohmann/json.hpp>

#include "model/machine.hpp"
#include "redfish/redfish_client.hpp"

namespace redfish {

// The BMC type query's answer for a standard Redfish BMC, one without our Oem section: the
// second generation (AMBIT_TYPE_V2), whose every request is standard Redfish.
constexpr int kStandardBmcType = 2;

// What the BMC's Manager tells about itself: its channels, how many REST connections it takes,
// its generation and whether it answers the support query. The defaults are those of a BMC
// that carries no Oem section of ours.
struct ManagerInfo {
    bool ssh = true;
    bool rest = true;
    bool cim = true;
    int rest_connections = 1;
    std::optional<int> ambit_type = kStandardBmcType; // unset: the BMC type query fails
    bool vantor_v3 = false;
    bool support_info = true;
};

// Where one controller's resources stand on the BMC.
struct ControllerLinks {
    std::string system;     // the Id of the ComputerSystem the Storage belongs to
    std::string storage;    // the Storage resource
    std::string controller; // its StorageController (a resource, or a pointer into Storage)
    std::string volumes;    // the Volumes collection
    std::map<int, std::string> drives;       // disk id -> Drive
    std::map<int, std::string> volume_paths; // volume id -> Volume
    std::map<int, std::string> pass_through; // disk id -> its pass-through volume (JBOD)
    // The Storage carries our Oem section (the emulator): its probe action answers reads' faults.
    bool ours = false;
    // The Storage lists Storage.ResetToDefaults among its actions.
    bool reset_to_defaults = false;
    // The RAID types the controller lists (SupportedRAIDTypes); empty when it lists none.
    std::vector<std::string> raid_types;
    // The target of Volume.Initialize of each volume whose Actions list it.
    std::map<int, std::string> initialize_targets;
    // A RAID volume of the Storage shows no WriteCachePolicy / ReadCachePolicy: the BMC does not
    // know that property, so a create does not send it.
    bool lacks_write_cache = false;
    bool lacks_read_cache = false;
    // Operations with an injected fault that still answers, and the argument it names.
    std::vector<std::pair<std::string, std::optional<std::string>>> pending_faults;
};

// The BMC's storage tree in the controller model both roads share: every out-of-band controller
// with its disks and volumes, sorted into its family, plus where each one lives on the BMC.
struct StorageTree {
    model::Machine machine;
    std::map<std::pair<std::string, int>, ControllerLinks> links; // (family, id) -> links

    const model::Controller* Find(const std::string& family, int id) const;
    const ControllerLinks* LinksOf(const std::string& family, int id) const;
};

// Reads the BMC's storage tree and its Manager through the run's client, and keeps what it
// read until the next write. With $expand a full read costs one request for the Storage
// collection and one per Storage resource (both served from the client's cache afterwards).
//
// Everything is found from the service root: Systems, each ComputerSystem's Storage, and the
// Manager the system names in Links.ManagedBy (else the Managers member of ManagerType "BMC").
// A failure while finding or reading the storage is kept and answers every later Load.
class StorageTreeReader {
public:
    // system: the Id of the one ComputerSystem to read; empty reads every system's storage.
    explicit StorageTreeReader(std::shared_ptr<RedfishClient> client, std::string system = {});

    RedfishClient& client() const { return *client_; }

    // The tree, read once and kept until Drop; after Drop of one Storage only that one is read.
    RedfishStatus Load(std::shared_ptr<const StorageTree>& tree);
    // The Manager's information; a BMC without our Oem section gives the defaults.
    RedfishStatus Manager(ManagerInfo& info);
    // The failure that stopped the last Load, ok when there was none.
    const RedfishStatus& failure() const { return failure_; }
    // Forgets what was read (the client drops its own cache by itself on every write).
    void Drop();
    // Forgets one Storage resource, after a write to it: the next read fetches that one again
    // and keeps the others, which no write to this Storage changes.
    void Drop(const std::string& storage);

    // The family a controller of this manufacturer and model belongs to ("OOB_LSI", ...).
    static std::string FamilyOf(const std::string& manufacturer, const std::string& model);
    // Adds one Storage resource, read with its links expanded two levels deep, to tree; system
    // is the Id of the ComputerSystem it belongs to.
    static void AddStorage(const nlohmann::json& storage, StorageTree& tree,
                           const std::string& system = {});
    // Reads a Manager resource.
    static ManagerInfo ManagerFrom(const nlohmann::json& manager);

private:
    struct StoragePlace {
        std::string path;   // the Storage resource
        std::string system; // the Id of its ComputerSystem
    };

    // Finds every Storage resource from the service root, and the Manager's path.
    RedfishStatus Discover();
    // The Manager when no system named one: the Managers member of ManagerType "BMC", else the
    // first member; empty when the BMC lists none.
    RedfishStatus FindManager(std::string& path);
    // Keeps a failure, so that the rest of the run fails at once with its reason.
    RedfishStatus Remember(const RedfishStatus& status);
    RedfishStatus Fail(Quillon::RaidConfig::RaidErrorCode code, const std::string& text);

    std::shared_ptr<RedfishClient> client_;
    std::string system_;
    RedfishStatus failure_;
    std::vector<StoragePlace> members_; // every Storage resource, once found
    std::string manager_path_;          // the Manager the first system names
    bool discovered_ = false;           // members_ and manager_path_ hold what Discover found
    std::map<std::string, nlohmann::json> storages_; // each Storage as read, expanded
    std::shared_ptr<const StorageTree> tree_;
    std::optional<ManagerInfo> manager_;
};

} // namespace redfish
