#pragma once

#include <cstdint>
#include <ostream>
#include <string>

#include "result/raidcfg_export.hpp"

// A 32-bit result value (code | category << 16) with its message. An empty message means the
// catalogue text is looked up when asked for.
class RAIDCFG_EXPORT TesselResult {
public:
    TesselResult() = default;
    explicit TesselResult(const std::uint32_t& value);
    TesselResult(std::uint32_t value, std::string message);

    // Only the low 16 bits take part: a family code equals a generic code of the same number.
    bool operator==(std::uint32_t other) const;
    bool operator!=(std::uint32_t other) const;

    std::uint16_t code() const;
    std::uint32_t value() const { return value_; }
    std::string message() const;

private:
    std::uint32_t value_ = 0;
    std::string message_;
};

// Writes the 16-bit code in decimal, one blank, and the message.
RAIDCFG_EXPORT std::ostream& operator<<(std::ostream& out, const TesselResult& result);
