#include "fuzz/policy_file_fuzz_target.hpp"

#include <algorithm>
#include <map>
#include <string>
#include <vector>

#include "service/misc_raid_service/detail/raid_config_parser.hpp"

namespace raidcfg_fuzz {
namespace {

// The one-controller operations run for a few ids only: enough to reach every path, while an
// input naming thousands of controllers doesn't slow every run down by as much.
constexpr std::size_t kMaxIds = 4;

void ParseOneController(const service::detail::RaidConfigParser& parser, int id) {
    service::detail::CtrlSection lsi;
    parser.ParseCtrlSection(id, lsi);
    service::detail::MicroCtrlSection micro;
    parser.ParseMicroSection(id, micro);
    service::detail::OobMicroCtrlSection oob_micro;
    parser.ParseOobMicroSection(id, oob_micro);
    service::detail::OobVrocCtrlSection oob_vroc;
    parser.ParseOobVrocSection(id, oob_vroc);
    service::detail::VrocWinCtrlSection vroc_win;
    parser.ParseVrocWinSection(id, vroc_win);
    service::detail::M2Section m2;
    parser.ParseM2Section(id, m2);
}

} // namespace

int PolicyFileInput(const std::uint8_t* data, std::size_t size) {
    const std::string text(reinterpret_cast<const char*>(data), size);
    service::detail::RaidConfigParser parser;
    parser.ReadIniText(text);

    std::vector<int> ids = parser.GetSectionIds();
    std::map<int, service::detail::CtrlSection> controllers;
    parser.ParseCtrlSections(controllers);
    std::map<int, service::detail::M2Section> m2_volumes;
    parser.ParseM2Sections(m2_volumes);

    ids.resize(std::min(ids.size(), kMaxIds));
    ids.push_back(0);
    for (const int id : ids) {
        ParseOneController(parser, id);
    }
    return 0;
}

} // namespace raidcfg_fuzz
