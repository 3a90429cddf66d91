#include "host/file_text.hpp"

#include <array>
#include <cerrno>
#include <cstdio>
#include <cstring>
#include <filesystem>
#include <system_error>

namespace host {

bool FileText::Read(const std::string& path, std::string& content, std::string& reason) {
    content.clear();
    std::error_code code;
    if (std::filesystem::is_directory(path, code)) {
        reason = std::strerror(EISDIR);
        return false;
    }
    std::FILE* file = std::fopen(path.c_str(), "rb");
    if (file == nullptr) {
        reason = std::strerror(errno);
        return false;
    }
    std::array<char, 65536> buffer{};
    std::size_t count = 0;
    while ((count = std::fread(buffer.data(), 1, buffer.size(), file)) > 0) {
        content.append(buffer.data(), count);
    }
    const bool failed = std::ferror(file) != 0;
    const int error = errno;
    std::fclose(file);
    if (failed) {
        reason = std::strerror(error);
        return false;
    }
    return true;
}

} // namespace host
