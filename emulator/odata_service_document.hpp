#pragma once

#include <nlohmann/json.hpp>

namespace emulator {

// The OData service document (/redfish/v1/odata): the service root and the top-level
// collections and services it links, each named as the root names it, so the two always agree.
class ODataServiceDocument {
public:
    static constexpr const char* kUri = "/redfish/v1/odata";

    // The document of this service root: "Service" (the root itself), every property of the root
    // that links a resource, and the root's Links.Sessions.
    static nlohmann::json Of(const nlohmann::json& service_root);
};

} // namespace emulator
