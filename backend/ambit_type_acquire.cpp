// The BMC type query, answered by the backend platform of the process.
#include "collaborators/ambit_type_acquire.hpp"

#include "backend/backend_platform.hpp"

namespace Quillon {
namespace Agentless {

AmbitTypeAcquire::AmbitTypeAcquire(const QuillonConnection::ConnectionInfo& info) : info_(info) {}

AmbitTypeAcquire::~AmbitTypeAcquire() = default;

int AmbitTypeAcquire::GetAmbitType(AmbitTypeValue& value) {
    return RaidConfig::CurrentBackendPlatform().GetAmbitType(info_, value);
}

} // namespace Agentless
} // namespace Quillon
