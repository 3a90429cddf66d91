#include <cstdint>
#include <filesystem>
#include <string>
#include <vector>

#include "collaborators/log.hpp"
#include "fuzz/policy_file_fuzz_target.hpp"
#include "tests/support/file_text.hpp"
#include "tests/support/temp_dir.hpp"

#include <gtest/gtest.h>

namespace {

// Every input kept for the policy file fuzzer: the seeds and each input that ever crashed it.
std::vector<std::filesystem::path> CorpusFiles() {
    std::vector<std::filesystem::path> files;
    for (const auto& entry :
         std::filesystem::directory_iterator(RAIDCFG_TEST_DATA_DIR "/policy_file_corpus")) {
        if (entry.is_regular_file()) {
            files.push_back(entry.path());
        }
    }
    return files;
}

class PolicyFileCorpusTest : public ::testing::Test {
protected:
    void SetUp() override {
        std::string error;
        ASSERT_TRUE(Quillon::SetLogDir(dir_.path(), error)) << error;
    }

    raidcfg_test::TempDir dir_;
};

TEST_F(PolicyFileCorpusTest, CorpusHoldsTheSeeds) {
    EXPECT_GE(CorpusFiles().size(), 12U);
}

TEST_F(PolicyFileCorpusTest, EveryKeptInputRunsThroughTheParser) {
    for (const std::filesystem::path& file : CorpusFiles()) {
        SCOPED_TRACE(file.filename().string());
        const std::string bytes = raidcfg_test::ReadFile(file.string());
        EXPECT_EQ(raidcfg_fuzz::PolicyFileInput(reinterpret_cast<const std::uint8_t*>(bytes.data()),
                                                bytes.size()),
                  0);
    }
}

} // namespace
