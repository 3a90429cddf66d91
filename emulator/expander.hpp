#pragma once

#include <functional>
#include <optional>
#include <string>

#include <nlohmann/json.hpp>

namespace emulator {

// The $expand query: replaces references ({"@odata.id": uri} alone) in a resource by the
// resources they name, to a number of levels.
class Expander {
public:
    static constexpr int kMaxLevels = 2;

    enum class Mode {
        NoLinks,  // "." : every reference outside Links
        All,      // "*" : every reference
        LinksOnly // "~" : only the references inside Links
    };

    using Resolver = std::function<std::optional<nlohmann::json>(const std::string& uri)>;

    // Parses ".", "*", "~", optionally followed by "($levels=N)". False when the form is not
    // one of these or N is below 1; N above kMaxLevels is taken as kMaxLevels.
    static bool Parse(const std::string& text, Mode& mode, int& levels);

    static nlohmann::json Expand(const nlohmann::json& resource, Mode mode, int levels,
                                 const Resolver& resolve);

private:
    static void Walk(nlohmann::json& node, bool in_links, Mode mode, int levels,
                     const Resolver& resolve);
};

} // namespace emulator
