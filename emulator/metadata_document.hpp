#pragma once

#include <string>

namespace emulator {

// The service's OData metadata document ($metadata): a reference to the schema of every
// namespace whose types the service writes (RedfishTypes), and the service's container.
class MetadataDocument {
public:
    static constexpr const char* kUri = "/redfish/v1/$metadata";

    // The CSDL document, built once.
    static const std::string& Xml();
    // Where the CSDL file of a namespace is published: "Drive" ->
    // "http://redfish.dmtf.org/schemas/v1/Drive_v1.xml"; ours ("Raidcfg") is served here.
    static std::string SchemaUri(const std::string& name);
};

} // namespace emulator
