#include "service/misc_raid_service/detail/policy_file_preview.hpp"

#include <locale>
#include <vector>

#include <boost/algorithm/string/classification.hpp>
#include <boost/algorithm/string/split.hpp>
#include <boost/algorithm/string/trim.hpp>
#include <boost/filesystem/operations.hpp>

#include "collaborators/log.hpp"
#include "collaborators/trace_scope.hpp"
#include "result/result_values.hpp"
#include "service/misc_raid_service/detail/raid_config_parser.hpp"

namespace service {
namespace detail {
namespace {

// One console line: the text and a line end to out, the same text to the log at level 3.
void ConsoleLine(std::ostream& out, const std::string& text) {
    out << text << '\n';
    RAIDCFG_LOG(3) << text;
}

} // namespace

std::uint32_t PolicyFilePreview::ShowPolicyFile(const std::string& path, std::ostream& out) {
    RAIDCFG_TRACE("service::detail::PolicyFilePreview::ShowPolicyFile");
    boost::system::error_code error;
    if (!boost::filesystem::exists(boost::filesystem::status(path, error))) {
        RAIDCFG_LOG(1) << "the file '" << path << "' doesn't exist.";
        return result::FileNotExist;
    }
    std::string raw;
    if (!RaidConfigParser::ReadFileText(path, raw)) {
        return result::FailedOpenFile;
    }
    const std::string text = RaidConfigParser::CleanText(raw);

    ConsoleLine(out, "\nThe policy file:");
    // CR and LF both end a line and a run of them is one break, so CR LF files print like LF
    // files and blank lines fall away.
    std::vector<std::string> pieces;
    boost::algorithm::split(pieces, text, boost::algorithm::is_any_of("\r\n"),
                            boost::algorithm::token_compress_on);
    for (const std::string& piece : pieces) {
        const std::string line = boost::algorithm::trim_copy(piece, std::locale::classic());
        if (line.empty() || line[0] == '#' || line[0] == ';') {
            continue;
        }
        if (line[0] == '[') {
            ConsoleLine(out, "\n" + line);
        } else {
            ConsoleLine(out, "    " + line);
        }
    }
    ConsoleLine(out, "");
    out.flush();
    return result::Success;
}

} // namespace detail
} // namespace service
