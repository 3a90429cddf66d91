#pragma once

#include <cstdint>

#include "collaborators/connection_info.hpp"

namespace Quillon {
namespace Agentless {

// The BMC generations a connection can report.
enum AmbitTypeValue : std::int32_t {
    AMBIT_TYPE_UNKNOWN = 0,
    AMBIT_TYPE_V1 = 1,
    AMBIT_TYPE_V2 = 2,
    AMBIT_TYPE_VANTOR_V3 = 3,
};

// Asks the BMC behind one connection which generation it is; lives for one query.
class AmbitTypeAcquire {
public:
    explicit AmbitTypeAcquire(const QuillonConnection::ConnectionInfo& info);
    ~AmbitTypeAcquire();
    AmbitTypeAcquire(const AmbitTypeAcquire&) = delete;
    AmbitTypeAcquire& operator=(const AmbitTypeAcquire&) = delete;

    // 0 on success, with the type in value.
    int GetAmbitType(AmbitTypeValue& value);

private:
    QuillonConnection::ConnectionInfo info_;
};

} // namespace Agentless
} // namespace Quillon
