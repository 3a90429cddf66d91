#include "result/tessel_result.hpp"

#include <utility>

#include "result/result_catalogue.hpp"

TesselResult::TesselResult(const std::uint32_t& value)
    : value_(value), message_(result::GetResultMessage(static_cast<std::int32_t>(value))) {}

TesselResult::TesselResult(std::uint32_t value, std::string message)
    : value_(value), message_(std::move(message)) {}

bool TesselResult::operator==(std::uint32_t other) const {
    return (value_ & 0xFFFFU) == (other & 0xFFFFU);
}

bool TesselResult::operator!=(std::uint32_t other) const {
    return !(*this == other);
}

std::uint16_t TesselResult::code() const {
    return static_cast<std::uint16_t>(value_ & 0xFFFFU);
}

std::string TesselResult::message() const {
    if (!message_.empty()) {
        return message_;
    }
    return result::GetResultMessage(static_cast<std::int32_t>(value_));
}

std::ostream& operator<<(std::ostream& out, const TesselResult& result) {
    out << static_cast<unsigned int>(result.code()) << ' ' << result.message();
    return out;
}
