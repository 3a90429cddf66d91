#include "emulator/http_request.hpp"

#include <strings.h>

namespace emulator {

std::string HttpRequest::Header(const std::string& name) const {
    for (const auto& [key, value] : headers) {
        if (strcasecmp(key.c_str(), name.c_str()) == 0) {
            return value;
        }
    }
    return {};
}

} // namespace emulator
