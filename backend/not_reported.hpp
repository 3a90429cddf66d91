#pragma once

#include <limits>

namespace Quillon {
namespace RaidConfig {

// A policy code or size a controller does not report (a BMC that lacks the property). Records
// carry it where a number is due; tables show it as the empty text and save leaves its key
// empty, so that add takes the controller's own default.
constexpr int kNotReported = std::numeric_limits<int>::min();

} // namespace RaidConfig
} // namespace Quillon
