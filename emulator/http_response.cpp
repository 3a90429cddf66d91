#include "emulator/http_response.hpp"

namespace emulator {

std::string HttpResponse::Header(const std::string& name) const {
    for (const auto& [key, value] : headers) {
        if (key == name) {
            return value;
        }
    }
    return {};
}

} // namespace emulator
