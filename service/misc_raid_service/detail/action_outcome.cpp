#include "service/misc_raid_service/detail/action_outcome.hpp"

#include <cstddef>
#include <iostream>

#include <boost/algorithm/string/case_conv.hpp>
#include <boost/algorithm/string/trim.hpp>

#include "collaborators/log.hpp"
#include "result/raid_error_code.hpp"
#include "result/result_values.hpp"

namespace service {
namespace detail {

namespace {

void Tell(const std::string& text) {
    std::cout << text << std::endl;
    RAIDCFG_LOG(3) << text;
}

} // namespace

std::uint32_t ActionOutcome::Summarize(const std::vector<Quillon::RaidConfig::RaidResult>& rows) {
    if (rows.size() == 1) {
        // Alone, a row's code maps as it is: 34 (already so) counts as success.
        return result::RaidResultFromError(rows.front().code);
    }
    // Intended: among several rows only code 0 counts as good, so a row of 34 (already so)
    // counts as failed here; callers rely on this tally.
    std::size_t good = 0;
    std::size_t failed = 0;
    for (const Quillon::RaidConfig::RaidResult& row : rows) {
        if (row.code == Quillon::RaidConfig::RAID_OK) {
            ++good;
        } else {
            ++failed;
        }
    }
    if (failed == 0) {
        return result::Success;
    }
    return good == 0 ? result::RaidFailsOnAllTargets : result::RaidFailsOnSomeTargets;
}

bool ActionOutcome::Confirm(std::istream& input, const std::string& prompt) {
    Tell(prompt);
    for (int attempt = 0; attempt < 3; ++attempt) {
        Tell("Please type yes(y) or no(n):");
        std::string answer;
        std::getline(input, answer);
        boost::algorithm::to_lower(answer);
        boost::algorithm::trim(answer);
        if (answer == "yes" || answer == "y") {
            return true;
        }
        if (answer == "no" || answer == "n") {
            // The same words for every action: the log has always said so.
            RAIDCFG_LOG(4) << "user gave up creating the config.";
            return false;
        }
    }
    return false;
}

} // namespace detail
} // namespace service
