// The out-of-band half of RaidUtils: controller tables that also feed the result page, and the
// show XML of the out-of-band families.

#include <algorithm>
#include <cstddef>
#include <iostream>
#include <memory>
#include <sstream>
#include <string>
#include <utility>
#include <vector>

#include <boost/algorithm/string/join.hpp>
#include <boost/property_tree/ptree.hpp>

#include "backend/records.hpp"
#include "collaborators/basic_element_page.hpp"
#include "collaborators/element_table_data.hpp"
#include "collaborators/html_stream.hpp"
#include "collaborators/log.hpp"
#include "collaborators/table_serializer.hpp"
#include "collaborators/table_stream.hpp"
#include "collaborators/trace_scope.hpp"
#include "service/misc_raid_service/detail/service_raid_utils.hpp"

namespace service {
namespace detail {
namespace {

using boost::property_tree::ptree;
using Quillon::protocol::MicrochipCtrl;
using Quillon::protocol::ProtocolDisk;
using Quillon::protocol::VolManDevCtrl;
using Quillon::RaidConfig::Controller;
using Quillon::RaidConfig::Disk;
using Quillon::RaidConfig::M2CtrlInfo;
using Quillon::RaidConfig::Pool;
using Quillon::RaidConfig::PoolVolume;

constexpr std::size_t kSpacing = 4;
// Title of the first table of a controller named by its target rather than its flat number.
constexpr const char* kTargetTitle = "Controller Information";
// The flat number of a controller named by its target.
constexpr int kNoFlatId = -1;

// One table and its page twin, filled cell by cell in the same order.
class TwinTable {
public:
    TwinTable(const std::string& title, const std::vector<std::string>& heads)
        : serializer_(heads.size(), title, kSpacing), stream_(serializer_.sstream()),
          twin_(title, heads.size()) {
        HtmlPrint::HtmlStream<std::string> head_cells;
        for (const std::string& head : heads) {
            stream_ << head;
            head_cells.push_back(head);
        }
        twin_.SetTableClassBox(head_cells);
    }

    TwinTable& operator<<(const std::string& cell) {
        stream_ << cell;
        cells_.push_back(cell);
        ++count_;
        return *this;
    }
    TwinTable& operator<<(int cell) {
        stream_ << cell;
        cells_.push_back(std::to_string(cell));
        ++count_;
        return *this;
    }

    bool HasRows() const { return count_ > 0; }
    TableSerializer& Serializer() { return serializer_; }
    // The twin with the body cells given over; call once, when the table is complete.
    const HtmlPrint::ElementTableData& Twin() {
        twin_.SetContextBox(cells_);
        return twin_;
    }

private:
    TableSerializer serializer_;
    TableStream stream_;
    HtmlPrint::ElementTableData twin_;
    HtmlPrint::HtmlStream<std::string> cells_;
    std::size_t count_ = 0;
};

// Where the tables of one controller go: the console, the collected text or nowhere, and the
// page in every case. The first table opens the controller's block on the page; the later ones
// are appended to it.
class ControllerBlock {
public:
    ControllerBlock(bool console, std::shared_ptr<HtmlPrint::BasicElementPage> page,
                    std::string& text, bool collect)
        : console_(console), page_(std::move(page)), text_(text), collect_(collect) {}

    void Put(TwinTable& table) {
        if (console_) {
            table.Serializer().PrintTable(std::cout);
        } else if (collect_) {
            std::ostringstream out;
            table.Serializer().PrintTable(out);
            text_ += out.str();
        }
        const HtmlPrint::ElementTableData& twin = table.Twin();
        // The client always hands its page over; without one, only the page is left out.
        if (!page_) {
            return;
        }
        std::vector<HtmlPrint::ElementTableData>& box = page_->GetTableBox();
        if (first_ || box.empty()) {
            page_->AddTable(twin);
        } else {
            box.back().AppendTableData(twin);
        }
        first_ = false;
    }

private:
    bool console_;
    std::shared_ptr<HtmlPrint::BasicElementPage> page_;
    std::string& text_;
    bool collect_;
    bool first_ = true;
};

const std::string& WritePolicyOrDefault(const std::string& write_policy,
                                        const std::string& default_write_policy) {
    return write_policy.empty() ? default_write_policy : write_policy;
}

// The ids of a CFC pool's disks, as its volumes show them.
std::string JoinDiskIds(const std::vector<Disk>& disks) {
    std::string joined;
    for (const Disk& disk : disks) {
        if (!joined.empty()) {
            joined += ", ";
        }
        joined += std::to_string(disk.id);
    }
    return joined;
}

std::string M2TargetId(int id) {
    return "M.2-" + std::to_string(id);
}

void PutDiskTable(ControllerBlock& block, const std::vector<Disk>& disks, bool all_columns) {
    if (disks.empty()) {
        return;
    }
    std::vector<std::string> heads = {"Disk ID",       "Product Name", "State",
                                      "Slot No",       "Disk Type",    "Media Type",
                                      "Health Status", "Capacity",     "Serial No"};
    if (all_columns) {
        heads.emplace_back("FRU No");
        heads.emplace_back("Part No");
    }
    TwinTable table("Disk Information", heads);
    for (const Disk& disk : disks) {
        table << disk.id << disk.product_name << disk.state << disk.slot_no << disk.disk_type
              << disk.media_type << disk.health_status << disk.capacity << disk.serial_no;
        if (all_columns) {
            table << disk.fru_no << disk.part_no;
        }
    }
    block.Put(table);
}

void PutProtocolDiskTable(ControllerBlock& block, const std::vector<ProtocolDisk>& disks) {
    if (disks.empty()) {
        return;
    }
    TwinTable table("Disk Information", {"Disk ID", "Product Name", "State", "Slot No", "Disk Type",
                                         "Media Type", "Health Status", "Capacity", "Manufacturer",
                                         "Serial No", "FRU No", "Part No"});
    for (const ProtocolDisk& disk : disks) {
        table << disk.id << disk.product_name << disk.state << disk.slot_no << disk.disk_type
              << disk.media_type << disk.health_status << disk.capacity << disk.manufacturer
              << disk.serial_no << disk.fru_no << disk.part_no;
    }
    block.Put(table);
}

template <typename PoolT> void PutPoolTable(ControllerBlock& block, const PoolT& pool) {
    TwinTable table("Pool Information", {"Pool ID", "RAID State", "RAID Capacity", "Holes"});
    table << pool.id << pool.raid_state << pool.raid_capacity << pool.holes;
    block.Put(table);
}

// The volume table of the LSI and Microchip pools; the write policy falls back to the default.
template <typename VolumeT>
void PutPolicyVolumeTable(ControllerBlock& block, const std::vector<VolumeT>& volumes) {
    if (volumes.empty()) {
        return;
    }
    TwinTable table("Volume Information", {"Volume ID", "Name", "Status", "Stripe Size", "Bootable",
                                           "Capacity", "Read Policy", "Write Policy", "I/O Policy",
                                           "Access Policy", "Disk Cache Policy"});
    for (const VolumeT& volume : volumes) {
        table << volume.id << volume.name << volume.status << volume.stripe_size << volume.bootable
              << volume.capacity << volume.read_policy
              << WritePolicyOrDefault(volume.write_policy, volume.default_write_policy)
              << volume.io_policy << volume.access_policy << volume.disk_cache_policy;
    }
    block.Put(table);
}

// The three CFC kinds: the same walk over a sorted record, with different columns.
enum class CfcKind { Broadcom, Microchip, Marvell };

void PutCfcController(int flat_id, Controller& ctrl, const std::string& title, CfcKind kind,
                      ControllerBlock& block) {
    const auto by_id = [](const auto& left, const auto& right) { return left.id < right.id; };
    std::stable_sort(ctrl.disks.begin(), ctrl.disks.end(), by_id);
    std::stable_sort(ctrl.pools.begin(), ctrl.pools.end(), by_id);

    const bool with_serial = kind != CfcKind::Marvell;
    std::vector<std::string> heads = {"Controller ID", "Product Name"};
    if (with_serial) {
        heads.emplace_back("Serial No");
    }
    TwinTable first(title, heads);
    first << flat_id << ctrl.product_name;
    if (with_serial) {
        first << ctrl.serial_no;
    }
    block.Put(first);

    PutDiskTable(block, ctrl.disks, false);

    const bool with_policies = kind == CfcKind::Broadcom;
    std::vector<std::string> volume_heads;
    if (with_policies) {
        volume_heads = {"Volume ID",    "Name",        "RAID state",    "Disks",
                        "Status",       "Stripe Size", "Capacity",      "Read Policy",
                        "Write Policy", "I/O Policy",  "Access Policy", "Disk Cache Policy"};
    } else {
        volume_heads = {"Volume ID", "Name", "RAID state", "Disks", "Stripe Size", "Capacity"};
    }
    // One table gathers the volumes of all pools and is shown once the last pool is walked.
    TwinTable volumes("Volume Information", volume_heads);
    for (const Pool& pool : ctrl.pools) {
        const std::string raid_state = "RAID" + pool.raid_state;
        const std::string disk_ids = JoinDiskIds(pool.disks);
        for (const PoolVolume& volume : pool.volumes) {
            volumes << volume.id << volume.name << raid_state << disk_ids;
            if (with_policies) {
                // No fallback to the default write policy in this family: intended.
                volumes << volume.status << volume.stripe_size << volume.capacity
                        << volume.read_policy << volume.write_policy << volume.io_policy
                        << volume.access_policy << volume.disk_cache_policy;
            } else {
                volumes << volume.stripe_size << volume.capacity;
            }
        }
    }
    if (volumes.HasRows()) {
        block.Put(volumes);
    }
}

// XML helpers: every field is an element with text, numbers in decimal.

// Decimal text whatever the global locale, which the tree's own conversion would follow.
void PutNumber(ptree& node, const char* name, int value) {
    node.put(name, std::to_string(value));
}

void PutSupportInfo(ptree& node, const std::string& min_stripe_size,
                    const std::string& max_stripe_size,
                    const std::vector<std::string>& support_raid_levels) {
    node.put("MinStripeSize", min_stripe_size);
    node.put("MaxStripeSize", max_stripe_size);
    node.put("SupportRaidLevels", boost::algorithm::join(support_raid_levels, ","));
}

ptree DiskNode(const Disk& disk) {
    ptree node;
    PutNumber(node, "DiskID", disk.id);
    node.put("ProductName", disk.product_name);
    node.put("State", disk.state);
    node.put("SlotNo", disk.slot_no);
    node.put("DiskType", disk.disk_type);
    node.put("MediaType", disk.media_type);
    node.put("HealthStatus", disk.health_status);
    node.put("Capacity", disk.capacity);
    node.put("SerialNo", disk.serial_no);
    return node;
}

ptree ProtocolDiskNode(const ProtocolDisk& disk) {
    ptree node;
    PutNumber(node, "DiskID", disk.id);
    node.put("ProductName", disk.product_name);
    node.put("State", disk.state);
    node.put("SlotNo", disk.slot_no);
    node.put("DiskType", disk.disk_type);
    node.put("MediaType", disk.media_type);
    node.put("HealthStatus", disk.health_status);
    node.put("Capacity", disk.capacity);
    node.put("Manufacturer", disk.manufacturer);
    node.put("SerialNo", disk.serial_no);
    node.put("FRUNo", disk.fru_no);
    node.put("PartNo", disk.part_no);
    return node;
}

void PutProtocolDisks(ptree& node, const std::vector<ProtocolDisk>& disks) {
    if (disks.empty()) {
        return;
    }
    ptree disks_node;
    for (const ProtocolDisk& disk : disks) {
        disks_node.add_child("DISK", ProtocolDiskNode(disk));
    }
    node.add_child("DISKS", disks_node);
}

// The controller's disks that lie in no pool. "DISKS" is written whenever the controller has
// disks, also when all of them are pooled and it comes out empty.
void PutUnpooledDisks(ptree& node, const Controller& ctrl) {
    if (ctrl.disks.empty()) {
        return;
    }
    const auto pooled = [&ctrl](const Disk& disk) {
        return std::any_of(ctrl.pools.begin(), ctrl.pools.end(), [&disk](const Pool& pool) {
            return std::any_of(pool.disks.begin(), pool.disks.end(),
                               [&disk](const Disk& member) { return member.id == disk.id; });
        });
    };
    ptree disks_node;
    for (const Disk& disk : ctrl.disks) {
        if (!pooled(disk)) {
            disks_node.add_child("DISK", DiskNode(disk));
        }
    }
    node.add_child("DISKS", disks_node);
}

// The volume node of the LSI and Microchip pools; the caller picks the write policy.
template <typename VolumeT>
ptree PolicyVolumeNode(const VolumeT& volume, const std::string& write) {
    ptree node;
    PutNumber(node, "VolumeID", volume.id);
    node.put("Name", volume.name);
    node.put("Status", volume.status);
    node.put("StripeSize", volume.stripe_size);
    node.put("Bootable", volume.bootable);
    node.put("Capacity", volume.capacity);
    node.put("ReadPolicy", volume.read_policy);
    node.put("WritePolicy", write);
    node.put("IOPolicy", volume.io_policy);
    node.put("AccessPolicy", volume.access_policy);
    node.put("DiskCachePolicy", volume.disk_cache_policy);
    return node;
}

ptree ControllerNode(int flat_id, const char* type) {
    ptree node;
    PutNumber(node, "ControllerID", flat_id);
    node.put("TYPE", std::string(type));
    return node;
}

void SaveCfcController(int flat_id, const Controller& ctrl, const char* type, CfcKind kind,
                       ptree& show_tree) {
    ptree node = ControllerNode(flat_id, type);
    node.put("ProductName", ctrl.product_name);
    node.put("RaidUrl", ctrl.raid_url);
    PutSupportInfo(node, ctrl.min_stripe_size, ctrl.max_stripe_size, ctrl.support_raid_levels);
    PutUnpooledDisks(node, ctrl);
    if (!ctrl.pools.empty()) {
        const bool with_policies = kind == CfcKind::Broadcom;
        ptree pools_node;
        for (const Pool& pool : ctrl.pools) {
            // A CFC pool carries no fields and no disks of its own: only its volumes.
            ptree pool_node;
            if (!pool.volumes.empty()) {
                const std::string raid_state = "RAID" + pool.raid_state;
                const std::string disk_ids = JoinDiskIds(pool.disks);
                ptree volumes_node;
                for (const PoolVolume& volume : pool.volumes) {
                    ptree volume_node;
                    PutNumber(volume_node, "VolumeID", volume.id);
                    volume_node.put("Name", volume.name);
                    volume_node.put("RAIDState", raid_state);
                    volume_node.put("Disks", disk_ids);
                    if (with_policies) {
                        volume_node.put("Status", volume.status);
                    }
                    volume_node.put("StripeSize", volume.stripe_size);
                    volume_node.put("Capacity", volume.capacity);
                    if (with_policies) {
                        volume_node.put("ReadPolicy", volume.read_policy);
                        volume_node.put("WritePolicy", volume.write_policy);
                        volume_node.put("IOPolicy", volume.io_policy);
                        volume_node.put("AccessPolicy", volume.access_policy);
                        volume_node.put("DiskCachePolicy", volume.disk_cache_policy);
                    }
                    volumes_node.add_child("VOLUME", volume_node);
                }
                pool_node.add_child("VOLUMES", volumes_node);
            }
            pools_node.add_child("POOL", pool_node);
        }
        node.add_child("POOLS", pools_node);
    }
    show_tree.add_child("CONTROLLER", node);
}

} // namespace

void RaidUtils::PrintOobBroadcomCController(
    int flat_id, const Controller& ctrl, bool console,
    std::shared_ptr<HtmlPrint::BasicElementPage> result_page, std::string& text, bool collect) {
    RAIDCFG_TRACE("service::detail::RaidUtils::PrintOobBroadcomCController");
    ControllerBlock block(console, std::move(result_page), text, collect);

    const bool by_target = flat_id == kNoFlatId;
    std::vector<std::string> heads = {"Target ID", "Product Name", "Serial No", "FRU No",
                                      "Part No"};
    if (!by_target) {
        heads.insert(heads.begin(), "Controller ID");
    }
    TwinTable first(by_target ? kTargetTitle : broadcom_title, heads);
    if (!by_target) {
        first << flat_id;
    }
    first << ctrl.id << ctrl.product_name << ctrl.serial_no << ctrl.fru_no << ctrl.part_no;
    block.Put(first);

    PutDiskTable(block, ctrl.disks, true);
    for (const Pool& pool : ctrl.pools) {
        PutPoolTable(block, pool);
        PutPolicyVolumeTable(block, pool.volumes);
    }
}

void RaidUtils::PrintOobMarvellController(int flat_id, const M2CtrlInfo& ctrl, bool console,
                                          std::shared_ptr<HtmlPrint::BasicElementPage> result_page,
                                          std::string& text, bool collect) {
    RAIDCFG_TRACE("service::detail::RaidUtils::PrintOobMarvellController");
    ControllerBlock block(console, std::move(result_page), text, collect);

    const bool by_target = flat_id == kNoFlatId;
    std::vector<std::string> heads = {"Target ID", "Name", "Version"};
    if (!by_target) {
        heads.insert(heads.begin(), "Controller ID");
    }
    TwinTable first(by_target ? kTargetTitle : marvell_title, heads);
    if (!by_target) {
        first << flat_id;
    }
    first << M2TargetId(ctrl.id) << ctrl.name << ctrl.version;
    block.Put(first);

    if (!ctrl.disks.empty()) {
        TwinTable disks("Disk Information",
                        {"Product Name", "Slot No", "Media Type", "Capacity", "Manufacturer"});
        for (const Quillon::RaidConfig::M2DiskInfo& disk : ctrl.disks) {
            disks << disk.product_name << disk.slot_no << disk.media_type << disk.capacity
                  << disk.manufacturer;
        }
        block.Put(disks);
    }
    if (!ctrl.volumes.empty()) {
        TwinTable volumes("Volume Information",
                          {"Volume ID", "Name", "Physical Disks", "Raid Level", "Stripe Size",
                           "Capacity", "Status"});
        for (const Quillon::RaidConfig::M2VolumeInfo& volume : ctrl.volumes) {
            volumes << volume.volume_id << volume.name << volume.physical_disks << volume.raid_level
                    << volume.stripe_size << volume.capacity << volume.status;
        }
        block.Put(volumes);
    }
}

void RaidUtils::PrintOobMicrochipController(
    int flat_id, const MicrochipCtrl& ctrl, bool console,
    std::shared_ptr<HtmlPrint::BasicElementPage> result_page, std::string& text, bool collect) {
    RAIDCFG_TRACE("service::detail::RaidUtils::PrintOobMicrochipController");
    ControllerBlock block(console, std::move(result_page), text, collect);

    TwinTable first(microchip_title, {"Controller ID", "Product Name", "Manufacturer", "Serial No",
                                      "FRU No", "Part No"});
    first << flat_id << ctrl.product_name << ctrl.manufacturer << ctrl.serial_no << ctrl.fru_no
          << ctrl.part_no;
    block.Put(first);

    PutProtocolDiskTable(block, ctrl.disks);
    for (const Quillon::protocol::MicrochipPool& pool : ctrl.pools) {
        PutPoolTable(block, pool);
        PutPolicyVolumeTable(block, pool.volumes);
    }
}

void RaidUtils::PrintOobVrocController(int flat_id, const VolManDevCtrl& ctrl, bool console,
                                       std::shared_ptr<HtmlPrint::BasicElementPage> result_page,
                                       std::string& text, bool collect) {
    RAIDCFG_TRACE("service::detail::RaidUtils::PrintOobVrocController");
    ControllerBlock block(console, std::move(result_page), text, collect);

    TwinTable first(vroc_title,
                    {"Controller ID", "Product Name", "Version", "Manufacturer", "Model"});
    first << flat_id << ctrl.product_name << ctrl.version << ctrl.manufacturer << ctrl.model;
    block.Put(first);

    PutProtocolDiskTable(block, ctrl.disks);
    for (const Quillon::protocol::VolManDevPool& pool : ctrl.pools) {
        PutPoolTable(block, pool);
        if (pool.volumes.empty()) {
            continue;
        }
        TwinTable volumes("Volume Information",
                          {"Volume ID", "Name", "Status", "Stripe Size", "Bootable", "Capacity"});
        for (const Quillon::protocol::VolManDevVolume& volume : pool.volumes) {
            volumes << volume.id << volume.name << volume.status << volume.stripe_size
                    << volume.bootable << volume.capacity;
        }
        block.Put(volumes);
    }
}

void RaidUtils::PrintOobBroadcomControllerCFC(
    int flat_id, Controller& ctrl, bool console,
    std::shared_ptr<HtmlPrint::BasicElementPage> result_page, std::string& text, bool collect) {
    RAIDCFG_TRACE("service::detail::RaidUtils::PrintOobBroadcomControllerCFC");
    ControllerBlock block(console, std::move(result_page), text, collect);
    PutCfcController(flat_id, ctrl, broadcom_title, CfcKind::Broadcom, block);
}

void RaidUtils::PrintOobMarvellControllerCFC(
    int flat_id, Controller& ctrl, bool console,
    std::shared_ptr<HtmlPrint::BasicElementPage> result_page, std::string& text, bool collect) {
    RAIDCFG_TRACE("service::detail::RaidUtils::PrintOobMarvellControllerCFC");
    ControllerBlock block(console, std::move(result_page), text, collect);
    PutCfcController(flat_id, ctrl, marvell_title, CfcKind::Marvell, block);
}

void RaidUtils::PrintOobMicrochipControllerCFC(
    int flat_id, Controller& ctrl, bool console,
    std::shared_ptr<HtmlPrint::BasicElementPage> result_page, std::string& text, bool collect) {
    RAIDCFG_TRACE("service::detail::RaidUtils::PrintOobMicrochipControllerCFC");
    ControllerBlock block(console, std::move(result_page), text, collect);
    PutCfcController(flat_id, ctrl, microchip_title, CfcKind::Microchip, block);
}

void RaidUtils::SaveOobLSIController2Xml(int flat_id, const Controller& ctrl, ptree& show_tree) {
    RAIDCFG_TRACE("service::detail::RaidUtils::SaveOobLSIController2Xml");
    ptree node = ControllerNode(flat_id, "OOBLSI");
    PutNumber(node, "ID", ctrl.id);
    node.put("ProductName", ctrl.product_name);
    PutNumber(node, "RaidSlotNo", ctrl.id);
    PutSupportInfo(node, ctrl.min_stripe_size, ctrl.max_stripe_size, ctrl.support_raid_levels);
    PutUnpooledDisks(node, ctrl);
    if (!ctrl.pools.empty()) {
        ptree pools_node;
        for (const Pool& pool : ctrl.pools) {
            ptree pool_node;
            PutNumber(pool_node, "PoolID", pool.id);
            pool_node.put("RAIDState", pool.raid_state);
            pool_node.put("RAIDCapacity", pool.raid_capacity);
            if (!pool.disks.empty()) {
                ptree disks_node;
                for (const Disk& disk : pool.disks) {
                    disks_node.add_child("DISK", DiskNode(disk));
                }
                pool_node.add_child("DISKS", disks_node);
            }
            if (!pool.volumes.empty()) {
                ptree volumes_node;
                for (const PoolVolume& volume : pool.volumes) {
                    volumes_node.add_child(
                        "VOLUME", PolicyVolumeNode(
                                      volume, WritePolicyOrDefault(volume.write_policy,
                                                                   volume.default_write_policy)));
                }
                pool_node.add_child("VOLUMES", volumes_node);
            }
            pools_node.add_child("POOL", pool_node);
        }
        node.add_child("POOLS", pools_node);
    }
    show_tree.add_child("CONTROLLER", node);
}

void RaidUtils::SaveOobLSIController2XmlCFC(int flat_id, const Controller& ctrl, ptree& show_tree) {
    RAIDCFG_TRACE("service::detail::RaidUtils::SaveOobLSIController2XmlCFC");
    SaveCfcController(flat_id, ctrl, "OOBCFCLSI", CfcKind::Broadcom, show_tree);
}

void RaidUtils::SaveOobM2Controller2XmlCFC(int flat_id, const Controller& ctrl, ptree& show_tree) {
    RAIDCFG_TRACE("service::detail::RaidUtils::SaveOobM2Controller2XmlCFC");
    SaveCfcController(flat_id, ctrl, "OOBCFCM2", CfcKind::Marvell, show_tree);
}

void RaidUtils::SaveOobMicrochipController2XmlCFC(int flat_id, const Controller& ctrl,
                                                  ptree& show_tree) {
    RAIDCFG_TRACE("service::detail::RaidUtils::SaveOobMicrochipController2XmlCFC");
    SaveCfcController(flat_id, ctrl, "OOBCFCMICROCHIP", CfcKind::Microchip, show_tree);
}

void RaidUtils::SaveOobM2ToXml(int flat_id, const M2CtrlInfo& ctrl, ptree& show_tree) {
    RAIDCFG_TRACE("service::detail::RaidUtils::SaveOobM2ToXml");
    ptree node = ControllerNode(flat_id, "OOBM2");
    node.put("ID", M2TargetId(ctrl.id));
    node.put("ProductName", ctrl.name);
    node.put("Version", ctrl.version);
    PutSupportInfo(node, ctrl.min_stripe_size, ctrl.max_stripe_size, ctrl.support_raid_levels);

    ptree disks_node;
    for (const Quillon::RaidConfig::M2DiskInfo& disk : ctrl.disks) {
        ptree disk_node;
        disk_node.put("ProductName", disk.product_name);
        disk_node.put("SlotNo", disk.slot_no);
        disk_node.put("MediaType", disk.media_type);
        disk_node.put("Capacity", disk.capacity);
        disk_node.put("Manufacturer", disk.manufacturer);
        disks_node.add_child("DISK", disk_node);
    }
    if (!ctrl.disks.empty()) {
        node.add_child("DISKS", disks_node);
    }
    if (!ctrl.volumes.empty()) {
        // M.2 has no pools: one pool with empty fields is made up to hold all disks and volumes,
        // so the disks stand twice in the file. Intended.
        ptree pool_node;
        pool_node.put("ID", std::string());
        pool_node.put("STATE", std::string());
        pool_node.put("CAPACITY", std::string());
        if (!ctrl.disks.empty()) {
            pool_node.add_child("DISKS", disks_node);
        }
        ptree volumes_node;
        for (const Quillon::RaidConfig::M2VolumeInfo& volume : ctrl.volumes) {
            ptree volume_node;
            volume_node.put("VolumeID", volume.volume_id);
            volume_node.put("Name", volume.name);
            volume_node.put("PhysicalDisks", volume.physical_disks);
            volume_node.put("RaidLevel", volume.raid_level);
            volume_node.put("StripeSize", volume.stripe_size);
            volume_node.put("Capacity", volume.capacity);
            volume_node.put("Status", volume.status);
            volumes_node.add_child("VOLUME", volume_node);
        }
        pool_node.add_child("VOLUMES", volumes_node);
        ptree pools_node;
        pools_node.add_child("POOL", pool_node);
        node.add_child("POOLS", pools_node);
    }
    show_tree.add_child("CONTROLLER", node);
}

void RaidUtils::SaveOobMicrochipController2Xml(int flat_id, const MicrochipCtrl& ctrl,
                                               ptree& show_tree) {
    RAIDCFG_TRACE("service::detail::RaidUtils::SaveOobMicrochipController2Xml");
    ptree node = ControllerNode(flat_id, "OOBMICROCHIP");
    node.put("ProductName", ctrl.product_name);
    PutNumber(node, "RaidSlotNo", ctrl.id);
    PutSupportInfo(node, ctrl.min_stripe_size, ctrl.max_stripe_size, ctrl.support_raid_levels);
    PutProtocolDisks(node, ctrl.disks);
    if (!ctrl.pools.empty()) {
        ptree pools_node;
        for (const Quillon::protocol::MicrochipPool& pool : ctrl.pools) {
            ptree pool_node;
            PutNumber(pool_node, "PoolID", pool.id);
            pool_node.put("RAIDState", pool.raid_state);
            pool_node.put("RAIDCapacity", pool.raid_capacity);
            pool_node.put("Holes", pool.holes);
            if (!pool.volumes.empty()) {
                ptree volumes_node;
                for (const Quillon::protocol::MicrochipVolume& volume : pool.volumes) {
                    // The plain write policy, unlike the table, which falls back: intended.
                    volumes_node.add_child("VOLUME", PolicyVolumeNode(volume, volume.write_policy));
                }
                pool_node.add_child("VOLUMES", volumes_node);
            }
            pools_node.add_child("POOL", pool_node);
        }
        node.add_child("POOLS", pools_node);
    }
    show_tree.add_child("CONTROLLER", node);
}

void RaidUtils::SaveOobVrocController2Xml(int flat_id, const VolManDevCtrl& ctrl,
                                          ptree& show_tree) {
    RAIDCFG_TRACE("service::detail::RaidUtils::SaveOobVrocController2Xml");
    ptree node = ControllerNode(flat_id, "OOBVROC");
    node.put("ProductName", ctrl.product_name);
    PutNumber(node, "RaidSlotNo", ctrl.id);
    node.put("Version", ctrl.version);
    node.put("Manufacturer", ctrl.manufacturer);
    node.put("Model", ctrl.model);
    PutSupportInfo(node, ctrl.min_stripe_size, ctrl.max_stripe_size, ctrl.support_raid_levels);
    PutProtocolDisks(node, ctrl.disks);
    if (!ctrl.pools.empty()) {
        ptree pools_node;
        for (const Quillon::protocol::VolManDevPool& pool : ctrl.pools) {
            ptree pool_node;
            PutNumber(pool_node, "PoolID", pool.id);
            pool_node.put("RAIDState", pool.raid_state);
            pool_node.put("RAIDCapacity", pool.raid_capacity);
            pool_node.put("Holes", pool.holes);
            if (!pool.volumes.empty()) {
                ptree volumes_node;
                for (const Quillon::protocol::VolManDevVolume& volume : pool.volumes) {
                    ptree volume_node;
                    PutNumber(volume_node, "VolumeID", volume.id);
                    volume_node.put("Name", volume.name);
                    volume_node.put("Status", volume.status);
                    volume_node.put("StripeSize", volume.stripe_size);
                    volume_node.put("Bootable", volume.bootable);
                    volume_node.put("Capacity", volume.capacity);
                    volumes_node.add_child("VOLUME", volume_node);
                }
                pool_node.add_child("VOLUMES", volumes_node);
            }
            pools_node.add_child("POOL", pool_node);
        }
        node.add_child("POOLS", pools_node);
    }
    show_tree.add_child("CONTROLLER", node);
}

} // namespace detail
} // namespace service
