#include <cstddef>
#include <iostream>
#include <sstream>
#include <string>
#include <vector>

#include <boost/property_tree/ptree.hpp>

#include "collaborators/log.hpp"
#include "collaborators/table_serializer.hpp"
#include "collaborators/table_stream.hpp"
#include "service/misc_raid_service/detail/service_raid_utils.hpp"

namespace service {
namespace detail {

namespace {

namespace pt = boost::property_tree;

constexpr std::size_t kSpacing = 4;

// Element names are single names, never paths: none of ours holds a dot, but say so anyway.
pt::ptree::path_type Name(const char* name) {
    return pt::ptree::path_type(name, '.');
}

void PutText(pt::ptree& node, const char* name, const std::string& text) {
    node.put(Name(name), text);
}

// Numbers go in as decimal text, independent of the global locale.
void PutNumber(pt::ptree& node, const char* name, int value) {
    node.put(Name(name), std::to_string(value));
}

// Writes the heads as the first cells of the table.
void WriteHeads(TableStream& stream, const std::vector<std::string>& heads) {
    for (const std::string& head : heads) {
        stream << head;
    }
}

// Prints the table to the console, or appends it to text when the caller collects.
void Emit(TableSerializer& table, std::string& text, bool collect) {
    if (!collect) {
        table.PrintTable(std::cout);
        return;
    }
    std::ostringstream out;
    table.PrintTable(out);
    text += out.str();
}

// The disks of an LSI volume's drive group, each cut to the part behind its first ":" (a text
// without one is kept whole), joined with ",". No entry gives an empty text.
std::string DriveGroupDisks(const Quillon::protocol::StorcliCtrl& ctrl, int drive_group) {
    const auto group = ctrl.drive_groups.find(drive_group);
    if (group == ctrl.drive_groups.end()) {
        return {};
    }
    std::string joined;
    for (std::size_t i = 0; i < group->second.size(); ++i) {
        const std::string& disk = group->second[i];
        const std::size_t colon = disk.find(':');
        if (i != 0) {
            joined += ',';
        }
        joined += colon == std::string::npos ? disk : disk.substr(colon + 1);
    }
    return joined;
}

// The disks of a Microchip volume, whole, joined with ",".
std::string JoinWhole(const std::vector<std::string>& disks) {
    std::string joined;
    for (std::size_t i = 0; i < disks.size(); ++i) {
        if (i != 0) {
            joined += ',';
        }
        joined += disks[i];
    }
    return joined;
}

std::string AccelerationText(int acceleration) {
    if (acceleration == 0) {
        return "None";
    }
    if (acceleration == 1) {
        return "Controller Cache";
    }
    return "SsdIOBypass";
}

std::string RaidStateText(const Quillon::ARCCONF::ArcconfVolume& volume) {
    return "RAID" + volume.raid_state;
}

std::string StripeSizeText(const Quillon::ARCCONF::ArcconfVolume& volume) {
    return volume.stripe_size + "K";
}

std::string M2TargetId(const Quillon::RaidConfig::M2CtrlInfo& ctrl) {
    return "M.2-" + std::to_string(ctrl.id);
}

// Starts a "CONTROLLER" subtree with the elements every controller begins with.
pt::ptree ControllerNode(int flat_id, const char* type) {
    pt::ptree node;
    PutNumber(node, "ControllerID", flat_id);
    PutText(node, "TYPE", type);
    return node;
}

} // namespace

RaidUtils::RaidUtils()
    : broadcom_title("Broadcom Controller Information"),
      microchip_title("Microchip Controller Information"),
      marvell_title("Marvell Controller Information"), vroc_title("VROC Controller Information"),
      ekm_title("External Key Management Information") {}

void RaidUtils::PrintBroadcomController(int flat_id, const Quillon::protocol::StorcliCtrl& ctrl,
                                        std::string& text, bool collect) {
    RAIDCFG_LOG(4) << "Entering  service::detail::RaidUtils::PrintBroadcomController";
    {
        const std::vector<std::string> heads{"Controller ID", "Target ID", "Product Name",
                                             "Serial No"};
        TableSerializer table(heads.size(), broadcom_title, kSpacing);
        TableStream& stream = table.sstream();
        WriteHeads(stream, heads);
        stream << flat_id << ctrl.target_id << ctrl.product_name << ctrl.serial_no;
        Emit(table, text, collect);
    }
    if (!ctrl.disks.empty()) {
        const std::vector<std::string> heads{"Disk ID",   "Product Name", "State",    "Slot No",
                                             "Disk Type", "Media Type",   "Capacity", "Serial No",
                                             "FRU No",    "Type"};
        TableSerializer table(heads.size(), "Disk Information", kSpacing);
        TableStream& stream = table.sstream();
        WriteHeads(stream, heads);
        for (const auto& disk : ctrl.disks) {
            stream << disk.id << disk.product_name << disk.state << disk.slot_no << disk.disk_type
                   << disk.media_type << disk.capacity << disk.serial_no << disk.fru_no
                   << disk.type;
        }
        Emit(table, text, collect);
    }
    if (!ctrl.volumes.empty()) {
        const std::vector<std::string> heads{"Volume ID",  "Name",          "RAID State",
                                             "Disks",      "Status",        "Stripe Size",
                                             "Capacity",   "Read Policy",   "Write Policy",
                                             "I/O Policy", "Access Policy", "Disk Cache Policy"};
        TableSerializer table(heads.size(), "Volume Information", kSpacing);
        TableStream& stream = table.sstream();
        WriteHeads(stream, heads);
        for (const auto& volume : ctrl.volumes) {
            stream << volume.id << volume.name << volume.raid_state
                   << DriveGroupDisks(ctrl, volume.drive_group) << volume.status
                   << volume.stripe_size << volume.capacity << volume.read_policy
                   << volume.write_policy << volume.io_policy << volume.access_policy
                   << volume.disk_cache_policy;
        }
        Emit(table, text, collect);
    }
    RAIDCFG_LOG(4) << "Exiting  service::detail::RaidUtils::PrintBroadcomController";
}

void RaidUtils::PrintMicrochipController(int flat_id, const Quillon::ARCCONF::ControllerInfo& ctrl,
                                         std::string& text, bool collect) {
    RAIDCFG_LOG(4) << "Entering  service::detail::RaidUtils::PrintMicrochipController";
    {
        const std::vector<std::string> heads{"Controller ID", "Target ID", "Product Name",
                                             "Serial No"};
        TableSerializer table(heads.size(), microchip_title, kSpacing);
        TableStream& stream = table.sstream();
        WriteHeads(stream, heads);
        stream << flat_id << ctrl.target_id << ctrl.product_name << ctrl.serial_no;
        Emit(table, text, collect);
    }
    if (!ctrl.connectors.empty()) {
        const std::vector<std::string> heads{"Connector ID", "Connector Name", "Connector Mode"};
        TableSerializer table(heads.size(), "Connectors Information", kSpacing);
        TableStream& stream = table.sstream();
        WriteHeads(stream, heads);
        for (const auto& connector : ctrl.connectors) {
            stream << connector.id << connector.name << connector.mode;
        }
        Emit(table, text, collect);
    }
    if (!ctrl.disks.empty()) {
        // "FRU" rather than "FRU No" is this family's head, kept on purpose.
        const std::vector<std::string> heads{"Disk ID",   "Product Name", "State",    "Slot No",
                                             "Disk Type", "Media Type",   "Capacity", "Serial No",
                                             "FRU",       "Connector ID"};
        TableSerializer table(heads.size(), "Disk Information", kSpacing);
        TableStream& stream = table.sstream();
        WriteHeads(stream, heads);
        for (const auto& disk : ctrl.disks) {
            stream << disk.id << disk.product_name << disk.state << disk.slot_no << disk.disk_type
                   << disk.media_type << disk.capacity << disk.serial_no << disk.fru
                   << disk.connector_id;
        }
        Emit(table, text, collect);
    }
    if (!ctrl.volumes.empty()) {
        // The first three heads end in a blank; that is intended.
        const std::vector<std::string> heads{
            "Volume ID ", "Name ",       "RAID State ", "Disks",
            "Status",     "Stripe Size", "Capacity",    "Acceleration Method"};
        TableSerializer table(heads.size(), "Volume Information", kSpacing);
        TableStream& stream = table.sstream();
        WriteHeads(stream, heads);
        for (const auto& volume : ctrl.volumes) {
            stream << volume.id << volume.name << RaidStateText(volume) << JoinWhole(volume.disks)
                   << volume.status << StripeSizeText(volume) << volume.capacity
                   << AccelerationText(volume.acceleration);
        }
        Emit(table, text, collect);
    }
    RAIDCFG_LOG(4) << "Exiting  service::detail::RaidUtils::PrintMicrochipController";
}

void RaidUtils::PrintMarvellController(int flat_id, const Quillon::RaidConfig::M2CtrlInfo& ctrl,
                                       std::string& text, bool collect) {
    RAIDCFG_LOG(4) << "Entering  service::detail::RaidUtils::PrintMarvellController";
    {
        const std::vector<std::string> heads{"Controller ID", "Target ID", "Name", "Version"};
        TableSerializer table(heads.size(), marvell_title, kSpacing);
        TableStream& stream = table.sstream();
        WriteHeads(stream, heads);
        stream << flat_id << M2TargetId(ctrl) << ctrl.name << ctrl.version;
        Emit(table, text, collect);
    }
    if (!ctrl.disks.empty()) {
        // An M.2 disk has no id of its own.
        const std::vector<std::string> heads{"Product Name", "Slot No", "Media Type", "Capacity",
                                             "Manufacturer"};
        TableSerializer table(heads.size(), "Disk Information", kSpacing);
        TableStream& stream = table.sstream();
        WriteHeads(stream, heads);
        for (const auto& disk : ctrl.disks) {
            stream << disk.product_name << disk.slot_no << disk.media_type << disk.capacity
                   << disk.manufacturer;
        }
        Emit(table, text, collect);
    }
    if (!ctrl.volumes.empty()) {
        const std::vector<std::string> heads{"Volume ID",  "Name",        "Physical Disks",
                                             "Raid Level", "Stripe Size", "Capacity",
                                             "Status"};
        TableSerializer table(heads.size(), "Volume Information", kSpacing);
        TableStream& stream = table.sstream();
        WriteHeads(stream, heads);
        for (const auto& volume : ctrl.volumes) {
            stream << volume.volume_id << volume.name << volume.physical_disks << volume.raid_level
                   << volume.stripe_size << volume.capacity << volume.status;
        }
        Emit(table, text, collect);
    }
    RAIDCFG_LOG(4) << "Exiting  service::detail::RaidUtils::PrintMarvellController";
}

void RaidUtils::PrintWinVrocController(int flat_id,
                                       const Quillon::RaidConfig::SWWinController& ctrl,
                                       std::string& text, bool collect) {
    RAIDCFG_LOG(4) << "Entering  service::detail::RaidUtils::PrintWinVrocController";
    {
        const std::vector<std::string> heads{"Controller ID", "Target ID", "Name",
                                             "Supported RAID Levels"};
        TableSerializer table(heads.size(), vroc_title, kSpacing);
        TableStream& stream = table.sstream();
        WriteHeads(stream, heads);
        stream << flat_id << ctrl.target_id << ctrl.name << ctrl.supported_raid_levels;
        Emit(table, text, collect);
    }
    if (!ctrl.disks.empty()) {
        const std::vector<std::string> heads{"Disk ID",   "Disk Type",    "State",
                                             "Size",      "System Disk",  "Usage",
                                             "Serial No", "Product Name", "FRU No"};
        TableSerializer table(heads.size(), "Disk Information", kSpacing);
        TableStream& stream = table.sstream();
        WriteHeads(stream, heads);
        for (const auto& disk : ctrl.disks) {
            stream << disk.id << disk.disk_type << disk.state << disk.size << disk.system_disk
                   << disk.usage << disk.serial_no << disk.product_name << disk.fru_no;
        }
        Emit(table, text, collect);
    }
    if (!ctrl.arrays.empty()) {
        // One container table for the whole controller, printed again after each array is
        // added, so it shows the rows so far each time; the repetition is intended. The lower
        // case "container" of the title is intended too.
        const std::vector<std::string> container_heads{"Name",
                                                       "Size",
                                                       "Free",
                                                       "Num Disks",
                                                       "Num Vols",
                                                       "Write Cache",
                                                       "Volumes in Array",
                                                       "Disks in Array"};
        TableSerializer containers(container_heads.size(), "container Information", kSpacing);
        TableStream& container_stream = containers.sstream();
        WriteHeads(container_stream, container_heads);
        for (const auto& array : ctrl.arrays) {
            container_stream << array.name << array.size << array.free << array.num_disks
                             << array.num_vols << array.write_cache << array.volumes_in_array
                             << array.disks_in_array;
            Emit(containers, text, collect);
            if (array.volumes.empty()) {
                continue;
            }
            const std::vector<std::string> heads{
                "Volume ID",      "Name",  "RAID Level", "Size",         "Stripe Size",
                "Num Disks",      "State", "System",     "Cache Policy", "RWH Closure Policy",
                "Disks in Volume"};
            TableSerializer table(heads.size(), "Volume Information", kSpacing);
            TableStream& stream = table.sstream();
            WriteHeads(stream, heads);
            for (const auto& volume : array.volumes) {
                stream << volume.id << volume.name << volume.raid_level << volume.size
                       << volume.stripe_size << volume.num_disks << volume.state << volume.system
                       << volume.cache_policy << volume.rwh_closure_policy
                       << volume.disks_in_volume;
            }
            Emit(table, text, collect);
        }
    }
    RAIDCFG_LOG(4) << "Exiting  service::detail::RaidUtils::PrintWinVrocController";
}

void RaidUtils::SaveLSIController2Xml(int flat_id, const Quillon::protocol::StorcliCtrl& ctrl,
                                      boost::property_tree::ptree& show_tree) {
    RAIDCFG_LOG(4) << "Entering  service::detail::RaidUtils::SaveLSIController2Xml";
    pt::ptree node = ControllerNode(flat_id, "LSI");
    PutNumber(node, "TargetID", ctrl.target_id);
    PutText(node, "ProductName", ctrl.product_name);
    PutText(node, "SerialNo", ctrl.serial_no);
    if (!ctrl.disks.empty()) {
        pt::ptree disks;
        for (const auto& disk : ctrl.disks) {
            pt::ptree item;
            PutNumber(item, "DiskID", disk.id);
            PutText(item, "ProductName", disk.product_name);
            PutText(item, "State", disk.state);
            PutText(item, "SlotNo", disk.slot_no);
            PutText(item, "DiskType", disk.disk_type);
            PutText(item, "MediaType", disk.media_type);
            PutText(item, "Capacity", disk.capacity);
            PutText(item, "SerialNo", disk.serial_no);
            PutText(item, "FRUNo", disk.fru_no);
            PutText(item, "Type", disk.type);
            disks.add_child(Name("DISK"), item);
        }
        node.add_child(Name("DISKS"), disks);
    }
    if (!ctrl.volumes.empty()) {
        pt::ptree volumes;
        for (const auto& volume : ctrl.volumes) {
            pt::ptree item;
            PutNumber(item, "VolumeID", volume.id);
            PutText(item, "Name", volume.name);
            PutText(item, "RAIDState", volume.raid_state);
            PutText(item, "Disks", DriveGroupDisks(ctrl, volume.drive_group));
            PutText(item, "Status", volume.status);
            PutText(item, "StripeSize", volume.stripe_size);
            PutText(item, "Capacity", volume.capacity);
            PutText(item, "ReadPolicy", volume.read_policy);
            PutText(item, "WritePolicy", volume.write_policy);
            PutText(item, "IOPolicy", volume.io_policy);
            PutText(item, "AccessPolicy", volume.access_policy);
            PutText(item, "DiskCachePolicy", volume.disk_cache_policy);
            volumes.add_child(Name("VOLUME"), item);
        }
        node.add_child(Name("VOLUMES"), volumes);
    }
    show_tree.add_child(Name("CONTROLLER"), node);
    RAIDCFG_LOG(4) << "Exiting  service::detail::RaidUtils::SaveLSIController2Xml";
}

void RaidUtils::SaveMicrochipController2Xml(int flat_id,
                                            const Quillon::ARCCONF::ControllerInfo& ctrl,
                                            boost::property_tree::ptree& show_tree) {
    RAIDCFG_LOG(4) << "Entering  service::detail::RaidUtils::SaveMicrochipController2Xml";
    pt::ptree node = ControllerNode(flat_id, "MICROCHIP");
    PutText(node, "TargetID", ctrl.target_id);
    PutText(node, "ProductName", ctrl.product_name);
    PutText(node, "SerialNo", ctrl.serial_no);
    // The connectors are shown as a table only; the file doesn't carry them.
    if (!ctrl.disks.empty()) {
        pt::ptree disks;
        for (const auto& disk : ctrl.disks) {
            pt::ptree item;
            PutText(item, "DiskID", disk.id);
            PutText(item, "ProductName", disk.product_name);
            PutText(item, "State", disk.state);
            PutText(item, "SlotNo", disk.slot_no);
            PutText(item, "DiskType", disk.disk_type);
            PutText(item, "MediaType", disk.media_type);
            PutText(item, "Capacity", disk.capacity);
            PutText(item, "SerialNo", disk.serial_no);
            PutText(item, "FRU", disk.fru);
            PutText(item, "ConnectorID", disk.connector_id);
            disks.add_child(Name("DISK"), item);
        }
        node.add_child(Name("DISKS"), disks);
    }
    if (!ctrl.volumes.empty()) {
        pt::ptree volumes;
        for (const auto& volume : ctrl.volumes) {
            pt::ptree item;
            PutText(item, "VolumeID", volume.id);
            PutText(item, "Name", volume.name);
            PutText(item, "RAIDState", RaidStateText(volume));
            PutText(item, "Disks", JoinWhole(volume.disks));
            PutText(item, "Status", volume.status);
            PutText(item, "StripeSize", StripeSizeText(volume));
            PutText(item, "Capacity", volume.capacity);
            PutText(item, "AccelerationMethod", AccelerationText(volume.acceleration));
            volumes.add_child(Name("VOLUME"), item);
        }
        node.add_child(Name("VOLUMES"), volumes);
    }
    show_tree.add_child(Name("CONTROLLER"), node);
    RAIDCFG_LOG(4) << "Exiting  service::detail::RaidUtils::SaveMicrochipController2Xml";
}

void RaidUtils::SaveM2ToXml(int flat_id, const Quillon::RaidConfig::M2CtrlInfo& ctrl,
                            boost::property_tree::ptree& show_tree) {
    RAIDCFG_LOG(4) << "Entering  service::detail::RaidUtils::SaveM2ToXml";
    pt::ptree node = ControllerNode(flat_id, "M2");
    PutText(node, "TargetID", M2TargetId(ctrl));
    PutText(node, "Name", ctrl.name);
    PutText(node, "Version", ctrl.version);
    if (!ctrl.disks.empty()) {
        pt::ptree disks;
        for (const auto& disk : ctrl.disks) {
            pt::ptree item;
            PutText(item, "ProductName", disk.product_name);
            PutText(item, "SlotNo", disk.slot_no);
            PutText(item, "MediaType", disk.media_type);
            PutText(item, "Capacity", disk.capacity);
            PutText(item, "Manufacturer", disk.manufacturer);
            disks.add_child(Name("DISK"), item);
        }
        node.add_child(Name("DISKS"), disks);
    }
    if (!ctrl.volumes.empty()) {
        pt::ptree volumes;
        for (const auto& volume : ctrl.volumes) {
            pt::ptree item;
            PutText(item, "VolumeID", volume.volume_id);
            PutText(item, "Name", volume.name);
            PutText(item, "PhysicalDisks", volume.physical_disks);
            PutText(item, "RaidLevel", volume.raid_level);
            PutText(item, "StripeSize", volume.stripe_size);
            PutText(item, "Capacity", volume.capacity);
            PutText(item, "Status", volume.status);
            volumes.add_child(Name("VOLUME"), item);
        }
        node.add_child(Name("VOLUMES"), volumes);
    }
    show_tree.add_child(Name("CONTROLLER"), node);
    RAIDCFG_LOG(4) << "Exiting  service::detail::RaidUtils::SaveM2ToXml";
}

void RaidUtils::SaveVrocWin2Xml(int flat_id, const Quillon::RaidConfig::SWWinController& ctrl,
                                boost::property_tree::ptree& show_tree) {
    RAIDCFG_LOG(4) << "Entering  service::detail::RaidUtils::SaveVrocWin2Xml";
    pt::ptree node = ControllerNode(flat_id, "VROC");
    PutText(node, "TargetID", ctrl.target_id);
    PutText(node, "Name", ctrl.name);
    PutText(node, "SupportedRAIDLevels", ctrl.supported_raid_levels);
    if (!ctrl.disks.empty()) {
        pt::ptree disks;
        for (const auto& disk : ctrl.disks) {
            pt::ptree item;
            PutNumber(item, "DiskID", disk.id);
            PutText(item, "DiskType", disk.disk_type);
            PutText(item, "State", disk.state);
            PutText(item, "Size", disk.size);
            PutText(item, "SystemDisk", disk.system_disk);
            PutText(item, "Usage", disk.usage);
            PutText(item, "SerialNo", disk.serial_no);
            PutText(item, "ProductName", disk.product_name);
            PutText(item, "FRUNo", disk.fru_no);
            disks.add_child(Name("DISK"), item);
        }
        node.add_child(Name("DISKS"), disks);
    }
    // Containers have no element: the volumes of all arrays go into one "VOLUMES", which stands
    // whenever there are arrays, even arrays without volumes (an empty element, on purpose).
    if (!ctrl.arrays.empty()) {
        pt::ptree volumes;
        for (const auto& array : ctrl.arrays) {
            for (const auto& volume : array.volumes) {
                pt::ptree item;
                PutNumber(item, "VolumeID", volume.id);
                PutText(item, "Name", volume.name);
                PutText(item, "RAIDLevel", volume.raid_level);
                PutText(item, "Size", volume.size);
                PutText(item, "StripeSize", volume.stripe_size);
                PutText(item, "NumDisks", volume.num_disks);
                PutText(item, "State", volume.state);
                PutText(item, "System", volume.system);
                PutText(item, "CachePolicy", volume.cache_policy);
                PutText(item, "RWHClosurePolicy", volume.rwh_closure_policy);
                PutText(item, "DisksinVolume", volume.disks_in_volume);
                volumes.add_child(Name("VOLUME"), item);
            }
        }
        node.add_child(Name("VOLUMES"), volumes);
    }
    show_tree.add_child(Name("CONTROLLER"), node);
    RAIDCFG_LOG(4) << "Exiting  service::detail::RaidUtils::SaveVrocWin2Xml";
}

} // namespace detail
} // namespace service
