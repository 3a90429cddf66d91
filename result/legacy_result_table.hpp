#pragma once

#include <cstdint>
#include <map>
#include <string>

namespace result {

// Messages of the update family, keyed by whole value, for codes of 256 and above. The rows are
// owned by the update command; this service carries the look-up step only, so the table starts
// with whatever rows the update family supplies and is filled at its first use.
std::map<std::int32_t, std::string>& LegacyResultTable();

} // namespace result
