// The show part of the in-band driver: each controller or container as generic tables. A
// "Controller Information" or "Container Information" table holds its field names followed by
// their values; a "Disk Information" or "Volume Information" table holds rows of as many cells
// as it has columns, the heads first. A list without entries leaves its table out, so no table
// is ever made without columns. Heads become XML element names once their blanks are gone, so
// they hold no character an element name can't have ("IO Policy", not "I/O Policy").
#include <set>
#include <string>
#include <vector>

#include <boost/algorithm/string/classification.hpp>
#include <boost/algorithm/string/split.hpp>

#include "backend/arcconf_controller_info.hpp"
#include "backend/hw_raid_arcconf.hpp"
#include "backend/hw_raid_storcli.hpp"
#include "backend/inband_m2_raid.hpp"
#include "backend/m2_ctrl_info.hpp"
#include "backend/raid_configuration.hpp"
#include "backend/raid_configuration_names.hpp"
#include "backend/storcli_ctrl.hpp"
#include "backend/sw_raid_win.hpp"
#include "backend/sw_win_controller.hpp"
#include "backend/table.hpp"
#include "collaborators/log.hpp"

namespace Quillon {
namespace RaidConfig {

namespace {

using namespace configuration_names;
using Member = RaidConfiguration::Member;
using Row = std::vector<std::string>;

constexpr const char* kControllerTitle = "Controller Information";
constexpr const char* kContainerTitle = "Container Information";
constexpr const char* kDiskTitle = "Disk Information";
constexpr const char* kVolumeTitle = "Volume Information";

// Field names, then the values in the same order.
Table FieldTable(const std::string& title, const Row& names, const Row& values) {
    Table table;
    table.columns = static_cast<int>(names.size());
    table.cells.push_back(title);
    table.cells.insert(table.cells.end(), names.begin(), names.end());
    table.cells.insert(table.cells.end(), values.begin(), values.end());
    return table;
}

// The heads, then each row; added only when there is a row.
void AddRowTable(const std::string& title, const Row& heads, const std::vector<Row>& rows,
                 std::vector<Table>& tables) {
    if (rows.empty()) {
        return;
    }
    Table table;
    table.columns = static_cast<int>(heads.size());
    table.cells.push_back(title);
    table.cells.insert(table.cells.end(), heads.begin(), heads.end());
    for (const Row& row : rows) {
        table.cells.insert(table.cells.end(), row.begin(), row.end());
    }
    tables.push_back(table);
}

std::string Join(const std::vector<std::string>& parts) {
    std::string text;
    for (const std::string& part : parts) {
        text += text.empty() ? part : "," + part;
    }
    return text;
}

// The disks of an LSI drive group: the slot behind each "enclosure:" part.
std::string DriveGroupDisks(const protocol::StorcliCtrl& controller, int group) {
    const auto found = controller.drive_groups.find(group);
    if (found == controller.drive_groups.end()) {
        return {};
    }
    std::vector<std::string> slots;
    for (const std::string& disk : found->second) {
        const std::size_t colon = disk.find(':');
        slots.push_back(colon == std::string::npos ? disk : disk.substr(colon + 1));
    }
    return Join(slots);
}

std::string AccelerationText(int acceleration) {
    if (acceleration == 0) {
        return "None";
    }
    return acceleration == 1 ? "Controller Cache" : "SsdIOBypass";
}

void LsiTables(const Member& member, const protocol::StorcliCtrl& controller,
               std::vector<Table>& tables) {
    tables.push_back(FieldTable(kControllerTitle,
                                {"Target ID", "Family", "Product Name", "Serial No"},
                                {std::to_string(member.number), "Broadcom", controller.product_name,
                                 controller.serial_no}));
    std::vector<Row> disks;
    for (const protocol::StorcliDisk& disk : controller.disks) {
        disks.push_back({std::to_string(disk.id), disk.product_name, disk.state, disk.slot_no,
                         disk.disk_type, disk.media_type, disk.capacity, disk.serial_no,
                         disk.fru_no, disk.type});
    }
    AddRowTable(kDiskTitle,
                {"Disk ID", "Product Name", "State", "Slot No", "Disk Type", "Media Type",
                 "Capacity", "Serial No", "FRU No", "Type"},
                disks, tables);
    std::vector<Row> volumes;
    for (const protocol::StorcliVolume& volume : controller.volumes) {
        volumes.push_back({std::to_string(volume.id), volume.name, volume.raid_state,
                           DriveGroupDisks(controller, volume.drive_group), volume.status,
                           volume.stripe_size, volume.capacity, volume.read_policy,
                           volume.write_policy, volume.io_policy, volume.access_policy,
                           volume.disk_cache_policy});
    }
    AddRowTable(kVolumeTitle,
                {"Volume ID", "Name", "RAID State", "Disks", "Status", "Stripe Size", "Capacity",
                 "Read Policy", "Write Policy", "IO Policy", "Access Policy", "Disk Cache Policy"},
                volumes, tables);
}

void MicrochipTables(const Member& member, const ARCCONF::ControllerInfo& controller,
                     std::vector<Table>& tables) {
    tables.push_back(FieldTable(kControllerTitle,
                                {"Target ID", "Family", "Product Name", "Serial No"},
                                {std::to_string(member.number), "Microchip",
                                 controller.product_name, controller.serial_no}));
    std::vector<Row> connectors;
    for (const ARCCONF::ArcconfConnector& connector : controller.connectors) {
        connectors.push_back({connector.id, connector.name, connector.mode});
    }
    // Shown on the console; the XML reads only the three kinds of tables above.
    AddRowTable("Connectors Information", {"Connector ID", "Connector Name", "Connector Mode"},
                connectors, tables);
    std::vector<Row> disks;
    for (const ARCCONF::ArcconfDisk& disk : controller.disks) {
        disks.push_back({disk.id, disk.product_name, disk.state, disk.slot_no, disk.disk_type,
                         disk.media_type, disk.capacity, disk.serial_no, disk.fru,
                         disk.connector_id});
    }
    AddRowTable(kDiskTitle,
                {"Disk ID", "Product Name", "State", "Slot No", "Disk Type", "Media Type",
                 "Capacity", "Serial No", "FRU", "Connector ID"},
                disks, tables);
    std::vector<Row> volumes;
    for (const ARCCONF::ArcconfVolume& volume : controller.volumes) {
        volumes.push_back({volume.id, volume.name, "RAID" + volume.raid_state, Join(volume.disks),
                           volume.status, volume.stripe_size + "K", volume.capacity,
                           AccelerationText(volume.acceleration)});
    }
    AddRowTable(kVolumeTitle,
                {"Volume ID", "Name", "RAID State", "Disks", "Status", "Stripe Size", "Capacity",
                 "Acceleration Method"},
                volumes, tables);
}

void M2Tables(const M2CtrlInfo& controller, std::vector<Table>& tables) {
    tables.push_back(FieldTable(
        kControllerTitle, {"Target ID", "Family", "Name", "Version"},
        {"M.2-" + std::to_string(controller.id), "Marvell", controller.name, controller.version}));
    std::vector<Row> disks;
    for (const M2DiskInfo& disk : controller.disks) {
        disks.push_back(
            {disk.product_name, disk.slot_no, disk.media_type, disk.capacity, disk.manufacturer});
    }
    AddRowTable(kDiskTitle, {"Product Name", "Slot No", "Media Type", "Capacity", "Manufacturer"},
                disks, tables);
    std::vector<Row> volumes;
    for (const M2VolumeInfo& volume : controller.volumes) {
        volumes.push_back({volume.volume_id, volume.name, volume.physical_disks, volume.raid_level,
                           volume.stripe_size, volume.capacity, volume.status});
    }
    AddRowTable(
        kVolumeTitle,
        {"Volume ID", "Name", "Physical Disks", "Raid Level", "Stripe Size", "Capacity", "Status"},
        volumes, tables);
}

Row VrocDiskHeads() {
    return {"Disk ID", "Disk Type", "State",        "Size",  "System Disk",
            "Usage",   "Serial No", "Product Name", "FRU No"};
}

Row VrocDiskRow(const SWWinDisk& disk) {
    return {std::to_string(disk.id),
            disk.disk_type,
            disk.state,
            disk.size,
            disk.system_disk,
            disk.usage,
            disk.serial_no,
            disk.product_name,
            disk.fru_no};
}

Row VrocVolumeHeads() {
    return {"Volume ID",      "Name",  "RAID Level", "Size",         "Stripe Size",
            "Num Disks",      "State", "System",     "Cache Policy", "RWH Closure Policy",
            "Disks in Volume"};
}

Row VrocVolumeRow(const SWWinVolume& volume) {
    return {std::to_string(volume.id),
            volume.name,
            volume.raid_level,
            volume.size,
            volume.stripe_size,
            volume.num_disks,
            volume.state,
            volume.system,
            volume.cache_policy,
            volume.rwh_closure_policy,
            volume.disks_in_volume};
}

void VrocTables(const SWWinController& controller, std::vector<Table>& tables) {
    tables.push_back(FieldTable(kControllerTitle,
                                {"Target ID", "Family", "Name", "Supported RAID Levels"},
                                {"vroc" + std::to_string(controller.id), "VROC", controller.name,
                                 controller.supported_raid_levels}));
    std::vector<Row> disks;
    for (const SWWinDisk& disk : controller.disks) {
        disks.push_back(VrocDiskRow(disk));
    }
    AddRowTable(kDiskTitle, VrocDiskHeads(), disks, tables);
    std::vector<Row> volumes;
    for (const SWWinArray& array : controller.arrays) {
        for (const SWWinVolume& volume : array.volumes) {
            volumes.push_back(VrocVolumeRow(volume));
        }
    }
    AddRowTable(kVolumeTitle, VrocVolumeHeads(), volumes, tables);
}

// A container: its array's fields, the disks in the array, and the array's volumes.
void ContainerTables(const Member& member, const SWWinController& controller,
                     const SWWinArray& array, std::vector<Table>& tables) {
    tables.push_back(
        FieldTable(kContainerTitle,
                   {"Target ID", "Controller", "Name", "Size", "Free", "Num Disks", "Num Vols",
                    "Write Cache", "Volumes in Array", "Disks in Array"},
                   {"md" + std::to_string(member.number), "vroc" + std::to_string(controller.id),
                    array.name, array.size, array.free, array.num_disks, array.num_vols,
                    array.write_cache, array.volumes_in_array, array.disks_in_array}));
    std::vector<std::string> members;
    boost::algorithm::split(members, array.disks_in_array, boost::algorithm::is_any_of(","));
    const std::set<std::string> in_array(members.begin(), members.end());
    std::vector<Row> disks;
    for (const SWWinDisk& disk : controller.disks) {
        if (in_array.count(std::to_string(disk.id)) != 0) {
            disks.push_back(VrocDiskRow(disk));
        }
    }
    AddRowTable(kDiskTitle, VrocDiskHeads(), disks, tables);
    std::vector<Row> volumes;
    for (const SWWinVolume& volume : array.volumes) {
        volumes.push_back(VrocVolumeRow(volume));
    }
    AddRowTable(kVolumeTitle, VrocVolumeHeads(), volumes, tables);
}

} // namespace

void RaidConfiguration::GetRaidTableInfo(std::vector<std::vector<Table>>& tables) {
    RAIDCFG_LOG(4) << "Entering  Quillon::RaidConfig::RaidConfiguration::GetRaidTableInfo";
    results_.clear();
    tables.clear();
    for (const Member& member : members_) {
        if (!Missing(member)) {
            TablesOf(member, tables);
        }
    }
    RAIDCFG_LOG(4) << "Exiting  Quillon::RaidConfig::RaidConfiguration::GetRaidTableInfo";
}

void RaidConfiguration::TablesOf(const Member& member, std::vector<std::vector<Table>>& tables) {
    const std::string device = Device(member);
    Raid& backend = *member.backend;
    std::vector<Table> mine;
    RaidErrorCode code = RAID_FUNCTION_UNSUPPORTED;
    if (auto* const lsi = dynamic_cast<HWRaidStorcli*>(&backend); lsi != nullptr) {
        protocol::StorcliCtrl controller;
        code = lsi->GetController(member.id, controller);
        if (code == RAID_OK) {
            LsiTables(member, controller, mine);
        }
    } else if (auto* const microchip = dynamic_cast<HWRaidArcconf*>(&backend);
               microchip != nullptr) {
        ARCCONF::ControllerInfo controller;
        code = microchip->GetController(member.id, controller);
        if (code == RAID_OK) {
            MicrochipTables(member, controller, mine);
        }
    } else if (auto* const m2 = dynamic_cast<InbandM2Raid*>(&backend); m2 != nullptr) {
        M2CtrlInfo controller;
        code = m2->GetController(member.id, controller);
        if (code == RAID_OK) {
            M2Tables(controller, mine);
        }
    } else if (auto* const vroc = dynamic_cast<SWRaidWin*>(&backend); vroc != nullptr) {
        SWWinController controller;
        code = vroc->GetController(member.id, controller);
        if (code == RAID_OK && !member.container) {
            VrocTables(controller, mine);
        } else if (code == RAID_OK) {
            for (const SWWinArray& array : controller.arrays) {
                if (ContainerNumber(array.name) == member.number) {
                    ContainerTables(member, controller, array, mine);
                    break;
                }
            }
        }
    }
    if (code == RAID_OK) {
        tables.push_back(mine);
        AddRow(device, kSuccessText, code);
    } else if (code == RAID_TARGET_NOT_FOUND) {
        TakeError(backend);
        AddRow(device, NoTargetText(device), code);
    } else {
        AddRow(device, TakeError(backend), code);
    }
}

} // namespace RaidConfig
} // namespace Quillon
