#pragma once

#include <optional>
#include <string>
#include <vector>

#include <nlohmann/json.hpp>

#include "model/machine.hpp"

namespace emulator {

// The AccountService of the emulated BMC: the one account of the machine file (an
// Administrator) and the predefined roles of the Redfish standard, read-only.
class AccountResources {
public:
    static constexpr const char* kRoot = "/redfish/v1/AccountService";

    explicit AccountResources(const model::Bmc& bmc) : bmc_(bmc) {}

    // The resource at the path segments {"redfish", "v1", "AccountService", ...}; empty when
    // there is none.
    std::optional<nlohmann::json> Build(const std::vector<std::string>& segments) const;

private:
    nlohmann::json Service() const;
    nlohmann::json Account() const;
    static std::optional<nlohmann::json> Role(const std::string& id);

    const model::Bmc& bmc_;
};

} // namespace emulator
