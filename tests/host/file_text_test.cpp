// Files the host reads whole, with the system's reason when it cannot.
#include <string>

#include "host/file_text.hpp"
#include "tests/support/file_text.hpp"
#include "tests/support/temp_dir.hpp"

#include <gtest/gtest.h>

namespace {

TEST(FileText, AFileIsReadWholeIntoAnEmptiedString) {
    raidcfg_test::TempDir dir;
    raidcfg_test::WriteFile(dir.File("p.ini"), "[ctrl1]\nglobal_hot_spares=5\n");
    std::string content = "left over";
    std::string reason;
    ASSERT_TRUE(host::FileText::Read(dir.File("p.ini"), content, reason)) << reason;
    EXPECT_EQ(content, "[ctrl1]\nglobal_hot_spares=5\n");
}

TEST(FileText, AMissingFileAndADirectoryGiveTheSystemsReason) {
    raidcfg_test::TempDir dir;
    std::string content;
    std::string reason;
    EXPECT_FALSE(host::FileText::Read(dir.File("missing.ini"), content, reason));
    EXPECT_EQ(reason, "No such file or directory");
    EXPECT_FALSE(host::FileText::Read(dir.path(), content, reason));
    EXPECT_EQ(reason, "Is a directory");
}

} // namespace
