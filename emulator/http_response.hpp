#pragma once

#include <string>
#include <utility>
#include <vector>

namespace emulator {

// One HTTP response of the Redfish service: status, headers and a JSON body (or none).
struct HttpResponse {
    int status = 200;
    std::vector<std::pair<std::string, std::string>> headers;
    std::string body;

    // The first header of that name (exact spelling as the service writes it); empty if absent.
    std::string Header(const std::string& name) const;
};

} // namespace emulator
