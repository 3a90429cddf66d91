#include "collaborators/log.hpp"
#include "result/result_values.hpp"
#include "service/misc_raid_service/detail/service_raid_impl.hpp"
#include "tests/support/file_text.hpp"
#include "tests/support/temp_dir.hpp"

#include <gtest/gtest.h>

namespace {

using raidcfg_test::FileExists;
using raidcfg_test::ReadFile;
using service::detail::ServiceRaidImpl;

class ServiceRaidImplTest : public ::testing::Test {
protected:
    void SetUp() override {
        std::string error;
        ASSERT_TRUE(Quillon::SetLogDir(dir_.path(), error)) << error;
        option_.output_dir = dir_.path() + "/";
    }

    std::string ResultFile() const { return dir_.File("raid_result.xml"); }

    raidcfg_test::TempDir dir_;
    RaidConfig::RaidConfigOption option_;
};

TEST_F(ServiceRaidImplTest, TargetWithCfcIsRefusedWithItsOwnMessageForAnyCommand) {
    option_.target = "0";
    option_.cfc = true;
    for (const char* word : {"show", "add", "frobnicate", ""}) {
        option_.command = word;
        ServiceRaidImpl impl(option_);
        const TesselResult outcome = impl.Run();
        EXPECT_EQ(outcome.value(), result::InvalidParameter) << word;
        EXPECT_EQ(outcome.message(), "--target command is not supported on current system.");
        EXPECT_FALSE(FileExists(ResultFile())) << word;
    }
}

TEST_F(ServiceRaidImplTest, RefusalLeavesAnEarlierResultFileAsItWas) {
    raidcfg_test::WriteFile(ResultFile(), "earlier run\n");
    option_.target = "LSI:0";
    option_.cfc = true;
    option_.command = "show";
    ServiceRaidImpl impl(option_);
    EXPECT_EQ(impl.Run().code(), 5);
    EXPECT_EQ(ReadFile(ResultFile()), "earlier run\n");
}

TEST_F(ServiceRaidImplTest, UnknownCommandIsGenericFailureWithAResultFile) {
    option_.command = "frobnicate";
    ServiceRaidImpl impl(option_);
    const TesselResult outcome = impl.Run();
    EXPECT_EQ(outcome.value(), result::GenericFailure);
    EXPECT_EQ(outcome.message(), "Generic Failure.");
    const std::string xml = ReadFile(ResultFile());
    EXPECT_NE(xml.find("<RETURNCODE>1</RETURNCODE>"), std::string::npos) << xml;
    EXPECT_EQ(xml.find("<ITEMS>"), std::string::npos) << xml;
}

TEST_F(ServiceRaidImplTest, CommandWordInCapitalsIsUnknown) {
    option_.command = "SHOW";
    ServiceRaidImpl impl(option_);
    EXPECT_EQ(impl.Run().value(), result::GenericFailure);
    EXPECT_NE(ReadFile(dir_.File("raidcfg.log")).find("Unknown raid command: \"SHOW\""),
              std::string::npos);
}

TEST_F(ServiceRaidImplTest, ConnectionKindTwoIsOutOfBandWhateverElseIsSet) {
    option_.connect_option.kind = 2;
    option_.target = "LSI:0";
    option_.cfc = true;
    EXPECT_TRUE(ServiceRaidImpl(option_).out_of_band());
    option_.connect_option = TesselConnect::ConnectOption{};
    option_.connect_option.kind = 2;
    EXPECT_TRUE(ServiceRaidImpl(option_).out_of_band());
}

TEST_F(ServiceRaidImplTest, AnyOtherConnectionKindIsTheLocalRoad) {
    for (int kind : {0, 1, 3, -2}) {
        option_.connect_option.kind = kind;
        EXPECT_FALSE(ServiceRaidImpl(option_).out_of_band()) << kind;
    }
}

TEST_F(ServiceRaidImplTest, TheOptionRecordIsCopied) {
    auto option = std::make_unique<RaidConfig::RaidConfigOption>(option_);
    option->command = "frobnicate";
    ServiceRaidImpl impl(*option);
    option.reset();
    EXPECT_EQ(impl.Run().value(), result::GenericFailure);
    EXPECT_TRUE(FileExists(ResultFile()));
}

TEST_F(ServiceRaidImplTest, ASecondRunKeepsTheRowsOfTheFirst) {
    option_.command = "frobnicate";
    ServiceRaidImpl impl(option_);
    impl.AddResult("ctrl1", "Success.");
    impl.Run();
    impl.Run();
    EXPECT_EQ(impl.results().size(), 1U);
    EXPECT_NE(ReadFile(ResultFile()).find("<DEVICE>ctrl1</DEVICE>"), std::string::npos);
}

} // namespace
