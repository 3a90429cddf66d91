// The end of every action: the result table, the summary of the rows and the result page.
#include <string>

#include "backend/backend_platform.hpp"
#include "collaborators/log.hpp"
#include "result/result_values.hpp"
#include "service/misc_raid_service/detail/raid_client.hpp"
#include "tests/support/file_text.hpp"
#include "tests/support/temp_dir.hpp"

#include <gtest/gtest.h>

namespace {

using Quillon::RaidConfig::RAID_DISK_NOT_FOUND;
using Quillon::RaidConfig::RAID_OK;
using Quillon::RaidConfig::RAID_OK_UNCHANGED;
using Quillon::RaidConfig::RAID_OPERATION_FAILED;
using Quillon::RaidConfig::RAID_TARGET_NOT_FOUND;
using raidcfg_test::FileExists;
using raidcfg_test::ReadFile;
using service::detail::RaidClient;

std::string Trimmed(const std::string& text) {
    std::string out = "left over";
    RaidClient::TrimResultText(text, out);
    return out;
}

bool Contains(const std::string& text, const std::string& part) {
    return text.find(part) != std::string::npos;
}

// The default platform serves these clients: no controllers, no BMC. The outcome step needs
// nothing from the backends.
class RaidClientOutcomeTest : public ::testing::Test {
protected:
    void SetUp() override {
        Quillon::RaidConfig::InstallBackendPlatform(nullptr);
        std::string error;
        ASSERT_TRUE(Quillon::SetLogDir(dir_.path(), error)) << error;
        option_.output_dir = dir_.path() + "/";
        option_.console_output = true;
    }

    // An out-of-band option record whose target text names host behind its "@".
    void OutOfBand(const std::string& target) {
        option_.connect_option.kind = 2;
        option_.connect_option.target = target;
        option_.connect_option.user = "admin";
        option_.connect_option.password = "secret";
    }

    std::string Page() const { return ReadFile(dir_.File("raid_result.html")); }

    raidcfg_test::TempDir dir_;
    RaidConfig::RaidConfigOption option_;
};

// --- TrimResultText ---

TEST_F(RaidClientOutcomeTest, AResultOfTwoLinesPartedByCarriageReturnAndLineFeedShowsTheFirstLine) {
    EXPECT_EQ(Trimmed("Volume created.\r\nDetails follow"), "Volume created.");
}

TEST_F(RaidClientOutcomeTest, AResultOfTwoLinesPartedByALineFeedAloneShowsTheFirstLine) {
    EXPECT_EQ(Trimmed("Volume created.\nDetails follow"), "Volume created.");
}

TEST_F(RaidClientOutcomeTest, AResultOfOneLineFeedShowsAnEmptyCell) {
    EXPECT_EQ(Trimmed("\n"), "");
}

TEST_F(RaidClientOutcomeTest, TrimKeepsATextWithoutLineBreaksWhole) {
    EXPECT_EQ(Trimmed(""), "");
    EXPECT_EQ(Trimmed("x"), "x");
    EXPECT_EQ(Trimmed("Success."), "Success.");
    // A carriage return alone is no line break here.
    EXPECT_EQ(Trimmed("a\rb"), "a\rb");
}

TEST_F(RaidClientOutcomeTest, TrimCutsBeforeTheFirstBreakOfEitherKind) {
    EXPECT_EQ(Trimmed("\r\n"), "");
    EXPECT_EQ(Trimmed("one\ntwo\r\nthree"), "one");
    EXPECT_EQ(Trimmed("one\r\ntwo\nthree"), "one");
    EXPECT_EQ(Trimmed("one\r\rtwo\r\n"), "one\r\rtwo");
}

// --- PrintResultTable ---

TEST_F(RaidClientOutcomeTest, ResultTablePrintsDeviceAndTheFirstLineOfEachResult) {
    RaidClient client(option_);
    client.AddRow("ctrl1", "Success.", RAID_OK);
    client.AddRow("ctrl2", "Controller busy\r\nretry later", RAID_OPERATION_FAILED);
    client.AddRow("ctrl10-disk3", "\n", RAID_DISK_NOT_FOUND);
    testing::internal::CaptureStdout();
    client.PrintResultTable("Show Configuration Result");
    EXPECT_EQ(testing::internal::GetCapturedStdout(), "Show Configuration Result\n"
                                                      "Device          Result\n"
                                                      "------------    ---------------\n"
                                                      "ctrl1           Success.\n"
                                                      "ctrl2           Controller busy\n"
                                                      "ctrl10-disk3\n"
                                                      "\n");
}

TEST_F(RaidClientOutcomeTest, ResultTableWithoutRowsPrintsItsHeads) {
    RaidClient client(option_);
    testing::internal::CaptureStdout();
    client.PrintResultTable("Make Good Result");
    EXPECT_EQ(testing::internal::GetCapturedStdout(), "Make Good Result\n"
                                                      "Device    Result\n"
                                                      "------    ------\n"
                                                      "\n");
}

TEST_F(RaidClientOutcomeTest, ResultTableIsSilentWithoutConsoleOutput) {
    option_.console_output = false;
    RaidClient client(option_);
    client.AddRow("ctrl1", "Success.", RAID_OK);
    testing::internal::CaptureStdout();
    client.PrintResultTable("Show Configuration Result");
    EXPECT_EQ(testing::internal::GetCapturedStdout(), "");
}

TEST_F(RaidClientOutcomeTest, ResultTableGoesOntoThePageWithTheSameCells) {
    OutOfBand("admin:secret@bmc1");
    option_.console_output = false;
    RaidClient client(option_, QuillonConnection::ConnectionInfo());
    client.AddRow("ctrl1", "Success.", RAID_OK);
    client.AddRow("ctrl2", "first\nsecond", RAID_OPERATION_FAILED);
    client.PrintResultTable("Clear Configuration Result");
    const auto& tables = client.result_page()->GetTableBox();
    ASSERT_EQ(tables.size(), 1U);
    EXPECT_EQ(tables[0].GetTitle(), "Clear Configuration Result");
    EXPECT_EQ(tables[0].GetColumns(), 2U);
    EXPECT_EQ(tables[0].GetTableClassBox(), (std::vector<std::string>{"Device", "Result"}));
    EXPECT_EQ(tables[0].GetContextBox(),
              (std::vector<std::string>{"ctrl1", "Success.", "ctrl2", "first"}));
}

// --- SummaryResults ---

TEST_F(RaidClientOutcomeTest, NoRowsSummarizeAsSucceed) {
    const RaidClient client(option_);
    EXPECT_EQ(client.SummaryResults(), result::Success);
}

TEST_F(RaidClientOutcomeTest, OneRowSummarizesAsTheMappedValueOfItsCode) {
    for (const auto& [code, value] :
         {std::pair{RAID_OK, result::Success},
          std::pair{RAID_TARGET_NOT_FOUND, result::RaidTargetNotExist},
          std::pair{RAID_OPERATION_FAILED, result::RaidFailsToOperate}}) {
        RaidClient client(option_);
        client.AddRow("ctrl1", "text", code);
        EXPECT_EQ(client.SummaryResults(), value) << code;
    }
}

TEST_F(RaidClientOutcomeTest, OneRowWithCode34GivesSucceed) {
    RaidClient client(option_);
    client.AddRow("ctrl1", "Already so.", RAID_OK_UNCHANGED);
    const TesselResult outcome(client.SummaryResults());
    EXPECT_EQ(outcome.value(), result::Success);
    EXPECT_EQ(outcome.message(), "Succeed.");
}

TEST_F(RaidClientOutcomeTest, SeveralGoodRowsGiveSucceed) {
    RaidClient client(option_);
    client.AddRow("ctrl1", "Success.", RAID_OK);
    client.AddRow("ctrl2", "Success.", RAID_OK);
    client.AddRow("ctrl3", "Success.", RAID_OK);
    EXPECT_EQ(client.SummaryResults(), result::Success);
}

TEST_F(RaidClientOutcomeTest, TwoRowsWithCodes0And34GiveTheOperationFailsOnSomeTargets) {
    RaidClient client(option_);
    client.AddRow("ctrl1", "Success.", RAID_OK);
    client.AddRow("ctrl2", "Already so.", RAID_OK_UNCHANGED);
    const TesselResult outcome(client.SummaryResults());
    EXPECT_EQ(outcome.value(), result::RaidFailsOnSomeTargets);
    EXPECT_EQ(outcome.message(), "The operation fails on some targets.");
}

TEST_F(RaidClientOutcomeTest, Code34AmongSeveralRowsCountsAsFailed) {
    RaidClient client(option_);
    client.AddRow("ctrl1", "Already so.", RAID_OK_UNCHANGED);
    client.AddRow("ctrl2", "Already so.", RAID_OK_UNCHANGED);
    EXPECT_EQ(client.SummaryResults(), result::RaidFailsOnAllTargets);
}

TEST_F(RaidClientOutcomeTest, SeveralFailedRowsGiveFailsOnAllTargetsWhateverTheirCodes) {
    RaidClient client(option_);
    client.AddRow("ctrl1", "gone", RAID_TARGET_NOT_FOUND);
    client.AddRow("ctrl2", "busy", RAID_OPERATION_FAILED);
    const TesselResult outcome(client.SummaryResults());
    EXPECT_EQ(outcome.value(), result::RaidFailsOnAllTargets);
    EXPECT_EQ(outcome.message(), "The operation fails on all targets.");
}

TEST_F(RaidClientOutcomeTest, GoodAndFailedRowsGiveFailsOnSomeTargets) {
    RaidClient client(option_);
    client.AddRow("ctrl1", "Success.", RAID_OK);
    client.AddRow("ctrl2", "gone", RAID_TARGET_NOT_FOUND);
    client.AddRow("ctrl3", "Success.", RAID_OK);
    EXPECT_EQ(client.SummaryResults(), result::RaidFailsOnSomeTargets);
}

// --- WriteResultPage ---

TEST_F(RaidClientOutcomeTest,
       ATargetTextWithAHostBehindItsAtAndTitleRaidConfigShowGiveRaidConfigShowHost) {
    OutOfBand("admin:secret@bmc-17.lab");
    RaidClient client(option_, QuillonConnection::ConnectionInfo());
    client.result_page()->SetPageTitle("RaidConfig Show");
    client.WriteResultPage(TesselResult(result::Success));
    EXPECT_EQ(client.result_page()->GetPageTitle(), "RaidConfig Show(bmc-17.lab)");
    const std::string page = Page();
    EXPECT_TRUE(Contains(page, "<title>RaidConfig Show(bmc-17.lab)</title>")) << page;
    EXPECT_FALSE(Contains(page, "secret")) << page;
}

TEST_F(RaidClientOutcomeTest, TheHostIsThePartBehindTheLastAt) {
    OutOfBand("user@corp:pass@10.0.0.5:8443");
    RaidClient client(option_, QuillonConnection::ConnectionInfo());
    client.result_page()->SetPageTitle("RaidConfig Add");
    client.WriteResultPage(TesselResult(result::Success));
    EXPECT_EQ(client.result_page()->GetPageTitle(), "RaidConfig Add(10.0.0.5:8443)");
}

TEST_F(RaidClientOutcomeTest, ATargetTextWithoutAtIsTakenWhole) {
    OutOfBand("bmc2");
    RaidClient client(option_, QuillonConnection::ConnectionInfo());
    client.result_page()->SetPageTitle("RaidConfig Clear");
    client.WriteResultPage(TesselResult(result::Success));
    EXPECT_EQ(client.result_page()->GetPageTitle(), "RaidConfig Clear(bmc2)");
}

TEST_F(RaidClientOutcomeTest, AnEmptyTitleGivesTheHostAloneWithoutBrackets) {
    OutOfBand("admin@bmc3");
    RaidClient client(option_, QuillonConnection::ConnectionInfo());
    client.result_page()->SetPageTitle("");
    client.WriteResultPage(TesselResult(result::Success));
    EXPECT_EQ(client.result_page()->GetPageTitle(), "bmc3");
    EXPECT_TRUE(Contains(Page(), "<title>bmc3</title>"));
}

TEST_F(RaidClientOutcomeTest, AFailedActionWithNoTablesOnThePageShowsTheMessageOnThePage) {
    OutOfBand("admin@bmc4");
    option_.console_output = false;
    RaidClient client(option_, QuillonConnection::ConnectionInfo());
    const std::uint32_t value = client.Show();
    EXPECT_EQ(value, result::RaidNoControllers);
    client.WriteResultPage(TesselResult(value, ""));
    const std::string page = Page();
    EXPECT_TRUE(Contains(page, "<title>RaidConfig Show(bmc4)</title>")) << page;
    EXPECT_TRUE(Contains(page, "<p class=\"message\">There are no controllers.</p>")) << page;
}

TEST_F(RaidClientOutcomeTest, AResultWithItsOwnTextPutsThatTextOnThePage) {
    OutOfBand("admin@bmc5");
    RaidClient client(option_, QuillonConnection::ConnectionInfo());
    client.WriteResultPage(TesselResult(result::GenericFailure, "Something particular."));
    EXPECT_TRUE(Contains(Page(), "<p class=\"message\">Something particular.</p>"));
}

TEST_F(RaidClientOutcomeTest, ASuccessLeavesAnEmptyPageWithoutMessage) {
    OutOfBand("admin@bmc6");
    RaidClient client(option_, QuillonConnection::ConnectionInfo());
    client.WriteResultPage(TesselResult(result::Success));
    EXPECT_TRUE(FileExists(dir_.File("raid_result.html")));
    EXPECT_FALSE(Contains(Page(), "class=\"message\""));
}

TEST_F(RaidClientOutcomeTest, AFailureWithATableOnThePageAddsNoMessage) {
    OutOfBand("admin@bmc7");
    option_.console_output = false;
    RaidClient client(option_, QuillonConnection::ConnectionInfo());
    client.AddRow("ctrl1", "gone", RAID_TARGET_NOT_FOUND);
    client.PrintResultTable("Show Configuration Result");
    client.WriteResultPage(TesselResult(client.SummaryResults(), ""));
    const std::string page = Page();
    EXPECT_FALSE(Contains(page, "class=\"message\"")) << page;
    EXPECT_TRUE(Contains(page, "Show Configuration Result")) << page;
}

TEST_F(RaidClientOutcomeTest, ALocalClientHasNoPageToWrite) {
    RaidClient client(option_);
    client.WriteResultPage(TesselResult(result::GenericFailure));
    EXPECT_FALSE(FileExists(dir_.File("raid_result.html")));
}

} // namespace
