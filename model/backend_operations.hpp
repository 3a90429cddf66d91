#pragma once

#include <string>
#include <vector>

namespace model {

// The operation names of the backend contract that act on one controller: what a machine
// file's fault may name, each matched by its own name only.
class BackendOperations {
public:
    static const std::vector<std::string>& Names();
    static bool Known(const std::string& name);
    // The names joined with ", ", for a message.
    static std::string List();
};

} // namespace model
