#include <array>
#include <exception>
#include <locale>

#include <boost/property_tree/ptree.hpp>
#include <boost/property_tree/xml_parser.hpp>

#include "collaborators/log.hpp"
#include "result/result_values.hpp"
#include "service/misc_raid_service/detail/service_raid_impl.hpp"

namespace service {
namespace detail {

std::string ServiceRaidImpl::ReportedLogFileName(const std::string& full_name,
                                                 const std::string& dir) {
    if (dir.size() > full_name.size() || full_name.find(dir) == std::string::npos) {
        return "Unknown file name for log.";
    }
    // Cut by length wherever the directory was found: the two strings come from one library.
    return full_name.substr(dir.size());
}

// The result comes by value: the caller hands over a copy of what Run returns.
std::uint32_t ServiceRaidImpl::WriteResultFile(
    TesselResult result) { // NOLINT(performance-unnecessary-value-param)
    namespace pt = boost::property_tree;
    const std::string path = option_.output_dir + "raid_result.xml";

    const pt::stream_translator<char, std::char_traits<char>, std::allocator<char>, unsigned int>
        classic_number(std::locale::classic());
    pt::ptree report;
    report.put(pt::ptree::path_type("RETURNCODE", '.'), static_cast<unsigned int>(result.code()),
               classic_number);
    report.put(pt::ptree::path_type("MESSAGE", '.'), result.message());
    std::array<char, 1024> log_dir{};
    Quillon::GetLogDir(log_dir.data(), log_dir.size());
    report.put(pt::ptree::path_type("LOGFILE", '.'),
               ReportedLogFileName(Quillon::GetLogFileName(), std::string(log_dir.data())));

    pt::ptree items;
    for (const auto& [device, text] : results_) {
        pt::ptree item;
        item.put(pt::ptree::path_type("DEVICE", '.'), device);
        item.put(pt::ptree::path_type("RESULT", '.'), text);
        items.add_child(pt::ptree::path_type("ITEM", '.'), item);
    }
    if (!items.empty()) {
        report.add_child(pt::ptree::path_type("ITEMS", '.'), items);
    }
    pt::ptree root;
    root.add_child(pt::ptree::path_type("RAIDRESULT", '.'), report);

    try {
        pt::write_xml(path, root, std::locale(),
                      pt::xml_writer_make_settings<std::string>('\t', 1, "utf-8"));
    } catch (const std::exception&) {
        // A report that cannot be written costs the report only; the action's result stands.
        RAIDCFG_LOG(1) << "Failed to write a result file to : " << path;
        return result::FailedWriteFile;
    }
    RAIDCFG_LOG(3) << "Written a result file to : " << path;
    return result::Success;
}

} // namespace detail
} // namespace service
