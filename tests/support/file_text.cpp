#include "tests/support/file_text.hpp"

#include <cstdlib>
#include <filesystem>
#include <fstream>
#include <sstream>
#include <stdexcept>

#include <gtest/gtest.h>

namespace raidcfg_test {

std::string ReadFile(const std::string& path) {
    std::ifstream in(path, std::ios::binary);
    if (!in) {
        throw std::runtime_error("cannot read " + path);
    }
    std::ostringstream text;
    text << in.rdbuf();
    return text.str();
}

void WriteFile(const std::string& path, const std::string& text) {
    std::ofstream out(path, std::ios::binary | std::ios::trunc);
    if (!out) {
        throw std::runtime_error("cannot write " + path);
    }
    out << text;
}

bool FileExists(const std::string& path) {
    return std::filesystem::exists(path);
}

std::string GoldenPath(const std::string& data_dir, const std::string& name) {
    return data_dir + "/golden/" + name;
}

void ExpectGolden(const std::string& data_dir, const std::string& name, const std::string& actual) {
    const std::string path = GoldenPath(data_dir, name);
    const char* update = std::getenv("RAIDCFG_UPDATE_GOLDEN");
    if (update != nullptr && std::string(update) == "1") {
        std::filesystem::create_directories(std::filesystem::path(path).parent_path());
        WriteFile(path, actual);
        return;
    }
    ASSERT_TRUE(FileExists(path)) << "missing golden file " << path
                                  << " (run with RAIDCFG_UPDATE_GOLDEN=1 to create it)";
    EXPECT_EQ(ReadFile(path), actual) << "differs from golden file " << path;
}

std::string LastLine(const std::string& text) {
    std::string trimmed = text;
    while (!trimmed.empty() && trimmed.back() == '\n') {
        trimmed.pop_back();
    }
    const std::size_t newline = trimmed.rfind('\n');
    return newline == std::string::npos ? trimmed : trimmed.substr(newline + 1);
}

} // namespace raidcfg_test
