#pragma once

#include <string>

namespace emulator {

// The CSDL schema of our Oem extensions (namespaces Raidcfg and Raidcfg.v1_0_0): a complex type
// for every Oem.Raidcfg object the service writes and a bound action for every Oem action, so
// that generic clients and validators can read them. $metadata references it at kUri.
class OemSchema {
public:
    static constexpr const char* kUri = "/redfish/v1/schemas/Raidcfg_v1.xml";

    // The CSDL document, built once.
    static const std::string& Xml();
};

} // namespace emulator
