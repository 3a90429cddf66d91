#include "emulator/http_exchange.hpp"

#include <boost/beast/http/error.hpp>
#include <boost/beast/http/field.hpp>

#include "emulator/redfish_errors.hpp"
#include "result/raid_error_code.hpp"

namespace emulator {

namespace http = boost::beast::http;
namespace rc = Quillon::RaidConfig;

HttpRequest HttpExchange::ToService(const WireRequest& request) {
    HttpRequest in;
    in.method = request.method() == http::verb::head ? std::string("GET")
                                                     : std::string(request.method_string());
    in.target = std::string(request.target());
    in.body = request.body();
    for (const auto& field : request) {
        in.headers.emplace_back(std::string(field.name_string()), std::string(field.value()));
    }
    return in;
}

HttpExchange::WireResponse HttpExchange::ToWire(const HttpResponse& response, bool head,
                                                bool keep_alive, unsigned version) {
    WireResponse out;
    out.version(version);
    out.result(static_cast<unsigned>(response.status));
    bool typed = false;
    for (const auto& [name, value] : response.headers) {
        typed = typed || boost::beast::iequals(name, "Content-Type");
        out.insert(name, value);
    }
    if (!typed && !response.body.empty()) {
        out.set(http::field::content_type, "application/json");
    }
    // No body, and no length, on the answers that never have one.
    const bool bodiless = response.status == 204 || response.status == 304 ||
                          (response.status >= 100 && response.status < 200);
    if (!bodiless) {
        out.content_length(response.body.size());
        if (!head) {
            out.body() = response.body;
        }
    }
    out.keep_alive(keep_alive);
    return out;
}

HttpResponse HttpExchange::FramingError(const boost::beast::error_code& error) {
    if (error == http::error::body_limit) {
        return RedfishErrors::Error(413, "Base.1.8.GeneralError",
                                    "The request body is larger than this service accepts.",
                                    rc::RAID_OPERATION_FAILED);
    }
    if (error == http::error::header_limit) {
        return RedfishErrors::Error(431, "Base.1.8.GeneralError",
                                    "The request headers are larger than this service accepts.",
                                    rc::RAID_OPERATION_FAILED);
    }
    return RedfishErrors::Error(400, "Base.1.8.GeneralError",
                                "The request is not valid HTTP/1.1: " + error.message() + ".",
                                rc::RAID_OPERATION_FAILED);
}

} // namespace emulator
