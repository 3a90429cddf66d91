// The reports of the in-band road with targets: the driver's generic tables on the console and
// as "raid_show_result.xml", the result table and the summary of its rows.
#include <cstddef>
#include <exception>
#include <iostream>
#include <locale>

#include <boost/algorithm/string/erase.hpp>
#include <boost/property_tree/ptree.hpp>
#include <boost/property_tree/xml_parser.hpp>

#include "collaborators/log.hpp"
#include "collaborators/table_serializer.hpp"
#include "result/raid_error_code.hpp"
#include "result/result_values.hpp"
#include "service/misc_raid_service/detail/action_outcome.hpp"
#include "service/misc_raid_service/detail/inband_raid.hpp"
#include "service/misc_raid_service/detail/policy_file_preview.hpp"
#include "service/misc_raid_service/detail/raid_client.hpp"

namespace service {
namespace detail {

namespace {

namespace pt = boost::property_tree;
using Quillon::RaidConfig::Table;

// A column head as an element name: every blank taken out.
std::string ElementName(const std::string& head) {
    return boost::algorithm::erase_all_copy(head, " ");
}

// The rows after the heads of a volume or disk table, each as an element of its own with one
// child per column. A table of a header row alone adds nothing.
void AddRows(const Table& table, const char* element, pt::ptree& parent) {
    const auto columns = static_cast<std::size_t>(table.columns);
    const std::size_t body = table.cells.size() - 1;
    // A table of no columns can't be split into rows; the driver never delivers one.
    const std::size_t rows = body / columns;
    if (rows < 2) {
        return;
    }
    for (std::size_t row = 1; row < rows; ++row) {
        pt::ptree node;
        for (std::size_t column = 0; column < columns; ++column) {
            node.put(pt::ptree::path_type(ElementName(table.cells[1 + column]), '.'),
                     table.cells[1 + row * columns + column]);
        }
        parent.add_child(pt::ptree::path_type(element, '.'), node);
    }
}

} // namespace

void InbandRaid::PrintTable(const Tables& tables) const {
    RAIDCFG_LOG(4) << "Entering  service::detail::InbandRaid::PrintTable";
    if (tables.empty()) {
        RAIDCFG_LOG(4) << "There are no meta data.";
        RAIDCFG_LOG(4) << "Exiting  service::detail::InbandRaid::PrintTable";
        return;
    }
    for (const std::vector<Table>& controller : tables) {
        for (const Table& table : controller) {
            // A table without cells, or with its title alone, has nothing to show.
            if (table.cells.size() < 2) {
                continue;
            }
            TableSerializer serializer(static_cast<std::size_t>(table.columns), table.cells[0], 4);
            for (std::size_t cell = 1; cell < table.cells.size(); ++cell) {
                serializer.sstream() << table.cells[cell];
            }
            serializer.PrintTable(std::cout);
        }
    }
    RAIDCFG_LOG(4) << "Exiting  service::detail::InbandRaid::PrintTable";
}

std::uint32_t InbandRaid::SaveInbandRaidToXML(const Tables& tables) const {
    RAIDCFG_LOG(4) << "Entering  service::detail::InbandRaid::SaveInbandRaidToXML";
    pt::ptree root;
    pt::ptree controllers;
    for (const std::vector<Table>& tables_of_one : tables) {
        pt::ptree controller;
        pt::ptree disks;
        pt::ptree volumes;
        bool has_data = false;
        for (const Table& table : tables_of_one) {
            if (table.cells.empty()) {
                continue;
            }
            const std::string& title = table.cells[0];
            if (title == "Controller Information" || title == "Container Information") {
                // Field names first, then their values in the same order.
                const std::size_t half = (table.cells.size() - 1) / 2;
                if (half == 0) {
                    continue;
                }
                has_data = true;
                for (std::size_t i = 1; i <= half; ++i) {
                    controller.put(pt::ptree::path_type(ElementName(table.cells[i]), '.'),
                                   table.cells[i + half]);
                }
            } else if (title == "Volume Information") {
                AddRows(table, "VOLUME", volumes);
            } else if (title == "Disk Information") {
                AddRows(table, "DISK", disks);
            }
        }
        // A controller without its own fields is left out with whatever rows it held.
        if (has_data) {
            controller.add_child(pt::ptree::path_type("DISKS", '.'), disks);
            controller.add_child(pt::ptree::path_type("VOLUMES", '.'), volumes);
            controllers.add_child(pt::ptree::path_type("CONTROLLER", '.'), controller);
        }
    }
    root.add_child(pt::ptree::path_type("CONTROLLERS", '.'), controllers);

    const std::string path = option_.output_dir + "raid_show_result.xml";
    try {
        pt::write_xml(path, root, std::locale(),
                      pt::xml_writer_make_settings<std::string>('\t', 1, "utf-8"));
    } catch (const std::exception& error) {
        RAIDCFG_LOG(4) << error.what();
        RAIDCFG_LOG(4) << "Exiting  service::detail::InbandRaid::SaveInbandRaidToXML";
        return result::FileNotExist;
    }
    if (option_.console_output) {
        std::cout << "At the same time, the RAID configuration is saved into XML file:"
                  << std::endl;
        RAIDCFG_LOG(3) << "At the same time, the RAID configuration is saved into XML file:";
        std::cout << path << std::endl;
        RAIDCFG_LOG(3) << path;
    }
    RAIDCFG_LOG(4) << "Exiting  service::detail::InbandRaid::SaveInbandRaidToXML";
    return result::Success;
}

std::uint32_t InbandRaid::ShowPolicyFile(const std::string& path) const {
    return PolicyFilePreview::ShowPolicyFile(path, std::cout);
}

void InbandRaid::PrintResults(const std::vector<RaidResult>& rows, const std::string& title) {
    RAIDCFG_LOG(4) << "Entering  service::detail::InbandRaid::PrintResults";
    TableSerializer table(2, title, 4);
    table.sstream() << "Device"
                    << "Result";
    for (const RaidResult& row : rows) {
        std::string text;
        RaidClient::TrimResultText(row.result, text);
        table.sstream() << row.device << text;
    }
    table.PrintTable(std::cout);
    RAIDCFG_LOG(4) << "Exiting  service::detail::InbandRaid::PrintResults";
}

std::uint32_t InbandRaid::SummaryResults(const std::vector<RaidResult>& rows) {
    RAIDCFG_LOG(4) << "Entering  service::detail::InbandRaid::SummaryResults";
    const std::uint32_t value = ActionOutcome::Summarize(rows);
    RAIDCFG_LOG(4) << "Exiting  service::detail::InbandRaid::SummaryResults";
    return value;
}

} // namespace detail
} // namespace service
