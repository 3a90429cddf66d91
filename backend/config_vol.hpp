#pragma once

namespace Quillon {
namespace RaidConfig {

// The volume request of the generic hardware backend's volume creation. The service never builds
// or reads one, so it carries no fields.
struct ConfigVol {};

} // namespace RaidConfig
} // namespace Quillon
