// The RaidUtils tables of the firmware device order and of key management. They go to standard
// output whatever the console setting: these actions exist to show exactly this.

#include <algorithm>
#include <cstddef>
#include <iostream>
#include <memory>
#include <string>
#include <utility>
#include <vector>

#include "backend/records.hpp"
#include "collaborators/basic_element_page.hpp"
#include "collaborators/element_table_data.hpp"
#include "collaborators/html_stream.hpp"
#include "collaborators/log.hpp"
#include "collaborators/table_serializer.hpp"
#include "collaborators/table_stream.hpp"
#include "service/misc_raid_service/detail/service_raid_utils.hpp"

namespace service {
namespace detail {
namespace {

using Quillon::RaidConfig::EKMController;
using Quillon::RaidConfig::EKMVolume;

constexpr std::size_t kSpacing = 4;
constexpr const char* kScope = "service::detail::RaidUtils::";

void WriteHeads(TableStream& stream, const std::vector<std::string>& heads) {
    for (const std::string& head : heads) {
        stream << head;
    }
}

// The one-row key management table of a single controller.
void PrintEkmController(const std::string& title, int flat_id, const EKMController& record) {
    const std::vector<std::string> heads{"Controller ID", "Slot", "Product Name",
                                         "Encryption Mode"};
    TableSerializer table(heads.size(), title, kSpacing);
    TableStream stream(table.sstream());
    WriteHeads(stream, heads);
    stream << flat_id << record.slot << record.product_name << record.encryption_mode;
    table.PrintTable(std::cout);
}

// One table per volume: the heads repeat for each, which is intended, so that every volume
// stands on its own under its controller.
void PrintVolume(const EKMVolume& volume) {
    const std::vector<std::string> heads{"Volume ID", "Name", "RAID Type", "Encrypted"};
    TableSerializer table(heads.size(), "Volume Encryption Information", kSpacing);
    TableStream stream(table.sstream());
    WriteHeads(stream, heads);
    stream << volume.id << volume.name << volume.raid_type
           << std::string(volume.encrypted == 1 ? "true" : "false");
    table.PrintTable(std::cout);
}

std::vector<EKMVolume> SortedVolumes(const EKMController& record) {
    std::vector<EKMVolume> volumes = record.volumes;
    std::stable_sort(
        volumes.begin(), volumes.end(),
        [](const EKMVolume& left, const EKMVolume& right) { return left.id < right.id; });
    return volumes;
}

} // namespace

void RaidUtils::PrintFwDeviceOrder(const std::vector<int>& ids,
                                   const std::vector<Quillon::protocol::FWDevOrderCtrl>& records) {
    RAIDCFG_LOG(4) << "Entering  " << kScope << "PrintFwDeviceOrder";
    // Nothing found: no table and, intended, no "Exiting  " line either.
    if (ids.empty() && records.empty()) {
        return;
    }
    const std::vector<std::string> heads{"Controller ID", "Product Name", "Serial No",
                                         "Firmware Device Order"};
    TableSerializer table(heads.size(), broadcom_title, kSpacing);
    TableStream stream(table.sstream());
    WriteHeads(stream, heads);
    const std::size_t rows = std::min(ids.size(), records.size());
    for (std::size_t i = 0; i < rows; ++i) {
        stream << ids[i] << records[i].product_name << records[i].serial_no
               << records[i].firmware_device_order;
    }
    table.PrintTable(std::cout);
    RAIDCFG_LOG(4) << "Exiting  " << kScope << "PrintFwDeviceOrder";
}

void RaidUtils::PrintOobFwDeviceOrder(
    const std::vector<int>& ids,
    const std::vector<Quillon::RaidConfig::FWDevOrderController>& records,
    std::shared_ptr<HtmlPrint::BasicElementPage> result_page) {
    const std::shared_ptr<HtmlPrint::BasicElementPage> page = std::move(result_page);
    RAIDCFG_LOG(4) << "Entering  " << kScope << "PrintOobFwDeviceOrder";
    // Nothing found: no table and, intended, no "Exiting  " line either.
    if (ids.empty() && records.empty()) {
        return;
    }
    const std::vector<std::string> heads{"Controller ID", "Product Name", "Serial No",
                                         "FRU No",        "Part No",      "Firmware Device Order"};
    TableSerializer table(heads.size(), broadcom_title, kSpacing);
    TableStream stream(table.sstream());
    HtmlPrint::ElementTableData twin(broadcom_title, heads.size());
    HtmlPrint::HtmlStream<std::string> head_cells;
    for (const std::string& head : heads) {
        stream << head;
        head_cells.push_back(head);
    }
    twin.SetTableClassBox(head_cells);
    HtmlPrint::HtmlStream<std::string> cells;
    const std::size_t rows = std::min(ids.size(), records.size());
    for (std::size_t i = 0; i < rows; ++i) {
        const Quillon::RaidConfig::FWDevOrderController& record = records[i];
        stream << ids[i] << record.product_name << record.serial_no << record.fru_no
               << record.part_no << record.firmware_device_order;
        for (const std::string& cell :
             {std::to_string(ids[i]), record.product_name, record.serial_no, record.fru_no,
              record.part_no, record.firmware_device_order}) {
            cells.push_back(cell);
        }
    }
    twin.SetContextBox(cells);
    table.PrintTable(std::cout);
    if (page) {
        page->AddTable(twin);
    }
    RAIDCFG_LOG(4) << "Exiting  " << kScope << "PrintOobFwDeviceOrder";
}

void RaidUtils::PrintEKM(const std::vector<int>& ids,
                         const std::vector<Quillon::RaidConfig::EKMController>& records) {
    RAIDCFG_LOG(4) << "Entering  " << kScope << "PrintEKM";
    // Nothing found: no table and, intended, no "Exiting  " line either.
    if (ids.empty() && records.empty()) {
        return;
    }
    const std::vector<std::string> heads{"Controller ID", "Slot", "Product Name",
                                         "Encryption Mode"};
    TableSerializer table(heads.size(), ekm_title, kSpacing);
    TableStream stream(table.sstream());
    WriteHeads(stream, heads);
    const std::size_t rows = std::min(ids.size(), records.size());
    for (std::size_t i = 0; i < rows; ++i) {
        stream << ids[i] << records[i].slot << records[i].product_name
               << records[i].encryption_mode;
    }
    table.PrintTable(std::cout);
    RAIDCFG_LOG(4) << "Exiting  " << kScope << "PrintEKM";
}

int RaidUtils::PrintVolumesEncryption(int flat_id, const EKMController& record) {
    RAIDCFG_LOG(4) << "Entering  " << kScope << "PrintVolumesEncryption";
    PrintEkmController(ekm_title, flat_id, record);
    int printed = 0;
    for (const EKMVolume& volume : SortedVolumes(record)) {
        PrintVolume(volume);
        printed = 1;
    }
    RAIDCFG_LOG(4) << "Exiting  " << kScope << "PrintVolumesEncryption";
    return printed;
}

int RaidUtils::PrintVolumeEncryption(int flat_id, const std::vector<int>& volume_ids,
                                     const EKMController& record) {
    RAIDCFG_LOG(4) << "Entering  " << kScope << "PrintVolumeEncryption";
    PrintEkmController(ekm_title, flat_id, record);
    int found = 0;
    if (!record.volumes.empty()) {
        const std::vector<EKMVolume> volumes = SortedVolumes(record);
        for (const int wanted : volume_ids) {
            for (const EKMVolume& volume : volumes) {
                if (volume.id == wanted) {
                    PrintVolume(volume);
                    found = 1;
                }
            }
        }
    }
    RAIDCFG_LOG(4) << "Exiting  " << kScope << "PrintVolumeEncryption";
    return found;
}

} // namespace detail
} // namespace service
