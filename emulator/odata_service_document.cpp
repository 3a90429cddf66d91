#include "emulator/odata_service_document.hpp"

#include <string>

#include "emulator/metadata_document.hpp"

namespace emulator {

using nlohmann::json;

namespace {

bool IsLink(const json& value) {
    return value.is_object() && value.size() == 1 && value.contains("@odata.id") &&
           value["@odata.id"].is_string();
}

json Singleton(const std::string& name, const std::string& url) {
    return {{"name", name}, {"kind", "Singleton"}, {"url", url}};
}

} // namespace

json ODataServiceDocument::Of(const json& service_root) {
    json value = json::array({Singleton("Service", "/redfish/v1/")});
    for (auto item = service_root.begin(); item != service_root.end(); ++item) {
        if (IsLink(item.value())) {
            value.push_back(Singleton(item.key(), item.value()["@odata.id"].get<std::string>()));
        }
    }
    if (service_root.contains("Links") && service_root["Links"].contains("Sessions") &&
        IsLink(service_root["Links"]["Sessions"])) {
        value.push_back(Singleton(
            "Sessions", service_root["Links"]["Sessions"]["@odata.id"].get<std::string>()));
    }
    return {{"@odata.context", MetadataDocument::kUri}, {"value", value}};
}

} // namespace emulator
