#pragma once

#include "collaborators/connection_info.hpp"

namespace Quillon {

// Checks about the managed system as seen through a BMC connection.
class SystemCheck {
public:
    // True when the BMC reports a Vantor v3 system.
    static bool IsVantorV3(const QuillonConnection::ConnectionInfo& info);
};

} // namespace Quillon
