#pragma once

#include <cstdint>
#include <string>

#include "result/raidcfg_export.hpp"

namespace result {

// Stores message under (code | category << 16): category 0 and below go to the generic table,
// every other category to a table of its own. Returns the value.
std::uint32_t RegisterResult(std::int32_t category, std::uint32_t code, const std::string& message);

// Generic table first, then the table of the category; "Unknow error" when neither holds it.
std::string LookupResult(std::uint32_t value, std::int32_t category);

// The user's message for a value. Codes of 256 and above are looked up in the legacy update
// table instead.
RAIDCFG_EXPORT std::string GetResultMessage(std::int32_t value);

} // namespace result
