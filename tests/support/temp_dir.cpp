#include "tests/support/temp_dir.hpp"

#include <cstdlib>
#include <filesystem>
#include <stdexcept>
#include <vector>

namespace raidcfg_test {

TempDir::TempDir() {
    std::string pattern = (std::filesystem::temp_directory_path() / "raidcfg-test-XXXXXX").string();
    std::vector<char> buffer(pattern.begin(), pattern.end());
    buffer.push_back('\0');
    if (mkdtemp(buffer.data()) == nullptr) {
        throw std::runtime_error("cannot create a temporary directory");
    }
    path_ = buffer.data();
}

TempDir::~TempDir() {
    std::error_code ignored;
    std::filesystem::remove_all(path_, ignored);
}

std::string TempDir::File(const std::string& name) const {
    return path_ + "/" + name;
}

} // namespace raidcfg_test
