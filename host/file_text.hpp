#pragma once

#include <string>

namespace host {

// Files the host reads whole: the files the command line names, and the policy files of diff.
class FileText {
public:
    // The whole content of a file, or false with the system's reason.
    static bool Read(const std::string& path, std::string& content, std::string& reason);
};

} // namespace host
