#include "collaborators/log.hpp"
#include "result/result_values.hpp"
#include "service/misc_raid_service/detail/service_raid_impl.hpp"
#include "tests/support/file_text.hpp"
#include "tests/support/temp_dir.hpp"

#include <gtest/gtest.h>

namespace {

using raidcfg_test::ExpectGolden;
using raidcfg_test::FileExists;
using raidcfg_test::ReadFile;
using service::detail::ServiceRaidImpl;

class ResultFileTest : public ::testing::Test {
protected:
    void SetUp() override {
        std::string error;
        ASSERT_TRUE(Quillon::SetLogDir(dir_.path(), error)) << error;
        option_.output_dir = dir_.path() + "/";
        option_.command = "show";
    }

    std::string ResultFile() const { return dir_.File("raid_result.xml"); }

    raidcfg_test::TempDir dir_;
    RaidConfig::RaidConfigOption option_;
};

TEST_F(ResultFileTest, NoRowGivesThreeChildrenAndNoItems) {
    ServiceRaidImpl impl(option_);
    EXPECT_EQ(impl.WriteResultFile(TesselResult(result::Success)), result::Success);
    ExpectGolden(RAIDCFG_TEST_DATA_DIR, "result_file_no_rows.xml", ReadFile(ResultFile()));
}

TEST_F(ResultFileTest, RowsAppearInDeviceOrderAndASameDeviceKeepsTheLaterText) {
    ServiceRaidImpl impl(option_);
    impl.AddResult("ctrl2", "Success.");
    impl.AddResult("ctrl10", "The target ctrl10 does not exist.");
    impl.AddResult("ctrl1", "first text");
    impl.AddResult("ctrl1", "RAID config fails to operate.");
    impl.WriteResultFile(TesselResult(result::RaidFailsOnSomeTargets));
    ExpectGolden(RAIDCFG_TEST_DATA_DIR, "result_file_rows.xml", ReadFile(ResultFile()));
}

TEST_F(ResultFileTest, ReturnCodeIsTheLowSixteenBits) {
    ServiceRaidImpl impl(option_);
    impl.WriteResultFile(TesselResult(result::RaidNoControllers));
    const std::string xml = ReadFile(ResultFile());
    EXPECT_NE(xml.find("<RETURNCODE>118</RETURNCODE>"), std::string::npos) << xml;
    EXPECT_NE(xml.find("<MESSAGE>There are no controllers.</MESSAGE>"), std::string::npos);
}

TEST_F(ResultFileTest, MarkupInTextsIsEscaped) {
    ServiceRaidImpl impl(option_);
    impl.AddResult("<disk & co>", "a \"quoted\" <b>");
    impl.WriteResultFile(TesselResult(result::GenericFailure, "x < y"));
    ExpectGolden(RAIDCFG_TEST_DATA_DIR, "result_file_escaped.xml", ReadFile(ResultFile()));
}

TEST_F(ResultFileTest, UnknownCommandWordGivesReturnCodeOneAndGenericFailure) {
    option_.command = "frobnicate";
    ServiceRaidImpl impl(option_);
    impl.Run();
    ExpectGolden(RAIDCFG_TEST_DATA_DIR, "result_file_unknown_command.xml", ReadFile(ResultFile()));
}

TEST_F(ResultFileTest, AMissingDirectoryCostsTheFileOnlyAndIsLogged) {
    option_.output_dir = dir_.File("missing") + "/";
    option_.command = "frobnicate";
    ServiceRaidImpl impl(option_);
    EXPECT_EQ(impl.WriteResultFile(TesselResult(result::Success)), result::FailedWriteFile);
    const TesselResult outcome = impl.Run();
    EXPECT_EQ(outcome.value(), result::GenericFailure);
    EXPECT_FALSE(FileExists(dir_.File("missing/raid_result.xml")));
    EXPECT_NE(
        ReadFile(dir_.File("raidcfg.log"))
            .find("Failed to write a result file to : " + option_.output_dir + "raid_result.xml"),
        std::string::npos);
}

TEST_F(ResultFileTest, ASuccessfulWriteIsLogged) {
    ServiceRaidImpl impl(option_);
    impl.WriteResultFile(TesselResult(result::Success));
    EXPECT_NE(ReadFile(dir_.File("raidcfg.log"))
                  .find("Written a result file to : " + option_.output_dir + "raid_result.xml"),
              std::string::npos);
}

TEST(ReportedLogFileName, IsTheFullNameAfterTheDirectory) {
    EXPECT_EQ(
        ServiceRaidImpl::ReportedLogFileName("/var/log/raidcfg/raidcfg.log", "/var/log/raidcfg/"),
        "raidcfg.log");
}

TEST(ReportedLogFileName, ADirectoryNotInTheFullNameIsUnknown) {
    EXPECT_EQ(ServiceRaidImpl::ReportedLogFileName("/var/log/raidcfg.log", "/tmp/"),
              "Unknown file name for log.");
}

TEST(ReportedLogFileName, ADirectoryLongerThanTheFullNameIsUnknown) {
    EXPECT_EQ(ServiceRaidImpl::ReportedLogFileName("a.log", "/a/much/longer/dir/"),
              "Unknown file name for log.");
}

TEST(ReportedLogFileName, AnEmptyDirectoryKeepsTheWholeName) {
    EXPECT_EQ(ServiceRaidImpl::ReportedLogFileName("raidcfg.log", ""), "raidcfg.log");
}

TEST(ReportedLogFileName, TheDirectoryIsCutByLengthWhereverItWasFound) {
    // Found in the middle, yet the first N characters are cut.
    EXPECT_EQ(ServiceRaidImpl::ReportedLogFileName("/x/logs/raidcfg.log", "logs/"),
              "gs/raidcfg.log");
}

TEST_F(ResultFileTest, LogFileIsNamedRelativeToTheLogDirectory) {
    ServiceRaidImpl impl(option_);
    impl.WriteResultFile(TesselResult(result::Success));
    EXPECT_NE(ReadFile(ResultFile()).find("<LOGFILE>raidcfg.log</LOGFILE>"), std::string::npos);
}

} // namespace
