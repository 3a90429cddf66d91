#pragma once

#include <cstdint>
#include <ostream>
#include <string>

namespace service {
namespace detail {

// Shows the policy file as it will be read, before `add` changes anything, so that the user
// confirms with the content in view. It doesn't parse: sections and keys are shown as found,
// cleaned of comments and blank lines, with each section head set off by an empty line and each
// other line indented by four blanks.
class PolicyFilePreview {
public:
    // Prints the file to out, each line also to the log at level 3. Returns result::Success,
    // result::FileNotExist (nothing printed) or result::FailedOpenFile (nothing printed).
    static std::uint32_t ShowPolicyFile(const std::string& path, std::ostream& out);
};

} // namespace detail
} // namespace service
