#pragma once

#include <string>
#include <utility>
#include <vector>

namespace emulator {

// One HTTP request as the Redfish service sees it, free of any socket, so that the service can
// be driven directly by tests.
struct HttpRequest {
    std::string method; // "GET", "POST", "PATCH", "DELETE", ...
    std::string target; // path with an optional query: "/redfish/v1/Systems?$expand=."
    std::vector<std::pair<std::string, std::string>> headers;
    std::string body;

    // The first header of that name, in any letter case; empty when absent.
    std::string Header(const std::string& name) const;
};

} // namespace emulator
