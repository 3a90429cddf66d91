// The system check, answered by the backend platform of the process.
#include "collaborators/system_check.hpp"

#include "backend/backend_platform.hpp"

namespace Quillon {

bool SystemCheck::IsVantorV3(const QuillonConnection::ConnectionInfo& info) {
    return RaidConfig::CurrentBackendPlatform().IsVantorV3(info);
}

} // namespace Quillon
