#pragma once

#include <cstdint>
#include <iosfwd>
#include <string>
#include <vector>

#include "backend/raid_result.hpp"

namespace service {
namespace detail {

// What every road of an action shares at its end and before a change: folding the rows into
// one result value, and asking the user to confirm.
class ActionOutcome {
public:
    // The rows folded into one result value. A single row maps as its code does (34, already
    // so, counts as success); among several only code 0 counts as good.
    static std::uint32_t Summarize(const std::vector<Quillon::RaidConfig::RaidResult>& rows);

    // Shows the prompt (standard output and the log) and reads up to three answers from
    // input: true on "yes" or "y", false on "no", "n" or after three answers of neither kind.
    static bool Confirm(std::istream& input, const std::string& prompt);
};

} // namespace detail
} // namespace service
