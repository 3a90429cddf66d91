#pragma once

#include <string>

namespace raidcfg_test {

// The whole content of a file; throws when it cannot be read, so a missing file fails a test.
std::string ReadFile(const std::string& path);
void WriteFile(const std::string& path, const std::string& text);
bool FileExists(const std::string& path);
// The last line of a program's output, without its line end: where raidcfg prints its result.
std::string LastLine(const std::string& text);

// A golden file of the test tree: RAIDCFG_TEST_DATA_DIR of the calling test + "/" + name.
// With RAIDCFG_UPDATE_GOLDEN=1 in the environment, ExpectGolden rewrites the file instead.
std::string GoldenPath(const std::string& data_dir, const std::string& name);
void ExpectGolden(const std::string& data_dir, const std::string& name, const std::string& actual);

} // namespace raidcfg_test
