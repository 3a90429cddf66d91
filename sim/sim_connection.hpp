#pragma once

#include <string>

#include "collaborators/connection_info.hpp"

namespace sim {

// A connection to the simulated machine's BMC, as its fetch operations hand it out.
class SimConnection : public QuillonConnection::Connection {
public:
    explicit SimConnection(std::string channel) : channel_(std::move(channel)) {}
    const std::string& channel() const { return channel_; } // "rest", "ssh" or "cim"

private:
    std::string channel_;
};

} // namespace sim
