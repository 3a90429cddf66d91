// The machine service's cache: the file is read again only when it changed, and kept answers go
// with the machine they were rendered from.
#include <string>

#include <fcntl.h>
#include <sys/stat.h>

#include "emulator/render_cache.hpp"
#include "sim/demo_machine.hpp"
#include "sim/machine_store.hpp"
#include "tests/support/file_text.hpp"
#include "tests/support/temp_dir.hpp"

#include <gtest/gtest.h>

namespace emulator_test {
namespace {

class RenderCacheTest : public ::testing::Test {
protected:
    void SetUp() override { raidcfg_test::WriteFile(path_, sim::DemoMachine::Text()); }

    // The file's text with the BMC's user name replaced by one of the same length.
    static std::string Renamed(const std::string& text) {
        std::string changed = text;
        const std::string from = R"("user": "admin")";
        const std::size_t at = changed.find(from);
        EXPECT_NE(at, std::string::npos);
        changed.replace(at, from.size(), R"("user": "other")");
        return changed;
    }

    raidcfg_test::TempDir dir_;
    std::string path_ = dir_.File("machine.json");
    sim::MachineStore store_{path_};
    emulator::RenderCache cache_;
    std::string error_;
};

TEST_F(RenderCacheTest, AFileThatLooksUnchangedIsNotReadAgain) {
    const sim::Machine* first = cache_.Machine(store_, error_);
    ASSERT_NE(first, nullptr) << error_;
    EXPECT_EQ(first->bmc.user, "admin");
    struct stat before {};
    ASSERT_EQ(stat(path_.c_str(), &before), 0);
    // Same inode, size and time: an edit the cache cannot tell from no edit, so it proves the
    // file was not read again.
    raidcfg_test::WriteFile(path_, Renamed(raidcfg_test::ReadFile(path_)));
    const timespec times[2] = {before.st_atim, before.st_mtim};
    ASSERT_EQ(utimensat(AT_FDCWD, path_.c_str(), times, 0), 0);
    const sim::Machine* second = cache_.Machine(store_, error_);
    ASSERT_NE(second, nullptr);
    EXPECT_EQ(second->bmc.user, "admin");
    // Cleared, it reads the file as it is.
    cache_.Clear();
    EXPECT_EQ(cache_.Machine(store_, error_)->bmc.user, "other");
}

TEST_F(RenderCacheTest, AFileRewrittenByAnotherProcessIsReadAgainAndDropsKeptAnswers) {
    ASSERT_NE(cache_.Machine(store_, error_), nullptr) << error_;
    emulator::HttpResponse answer;
    answer.body = "{}";
    cache_.Keep("/redfish/v1?", answer);
    ASSERT_NE(cache_.Find("/redfish/v1?"), nullptr);
    EXPECT_EQ(cache_.Find("/redfish/v1?")->body, "{}");
    // A writer renames a new file over the old one.
    raidcfg_test::WriteFile(path_ + ".new", Renamed(raidcfg_test::ReadFile(path_)));
    ASSERT_EQ(std::rename((path_ + ".new").c_str(), path_.c_str()), 0);
    EXPECT_EQ(cache_.Machine(store_, error_)->bmc.user, "other");
    EXPECT_EQ(cache_.Find("/redfish/v1?"), nullptr);
}

TEST_F(RenderCacheTest, AFileThatCannotBeReadGivesNoMachineAndAReason) {
    raidcfg_test::WriteFile(path_, "{ not json");
    EXPECT_EQ(cache_.Machine(store_, error_), nullptr);
    EXPECT_FALSE(error_.empty());
}

} // namespace
} // namespace emulator_test
