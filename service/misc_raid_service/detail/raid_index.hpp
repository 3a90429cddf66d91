#pragma once

#include <cstdint>
#include <memory>

#include "backend/raid.hpp"
#include "backend/raid_target.hpp"

namespace service {
namespace detail {

// One controller under the flat number the user gives it across all families: the number, the
// controller's own id within its backend, its family and the backend that serves it. A default
// record stands for a number that names no controller.
struct RaidIndex {
    std::int32_t index = -1;
    std::int32_t id = 0;
    Quillon::RaidConfig::RaidTarget::Type type = Quillon::RaidConfig::RaidTarget::INVALID;
    std::shared_ptr<Quillon::RaidConfig::Raid> backend;
};

} // namespace detail
} // namespace service
