#include <sstream>

#include "result/result_values.hpp"
#include "result/tessel_result.hpp"

#include <gtest/gtest.h>

namespace {

TEST(TesselResult, ComparesOnTheLowSixteenBitsOnly) {
    const TesselResult no_controllers(result::RaidNoControllers);
    EXPECT_TRUE(no_controllers == 118U);
    EXPECT_FALSE(no_controllers != 118U);
    EXPECT_FALSE(no_controllers == 0U);
    EXPECT_TRUE(no_controllers != 0U);
    // A generic code equals a family code of the same number.
    EXPECT_TRUE(TesselResult(result::GenericFailure) == 0x180001U);
}

TEST(TesselResult, CodeAccessorGivesTheLowSixteenBits) {
    EXPECT_EQ(TesselResult(0x180076U).code(), 118);
    EXPECT_EQ(TesselResult(0x180076U).value(), 0x180076U);
}

TEST(TesselResult, FromAValueTakesTheCatalogueMessage) {
    EXPECT_EQ(TesselResult(result::RaidNoControllers).message(), "There are no controllers.");
    EXPECT_EQ(TesselResult(result::Success).message(), "Succeed.");
}

TEST(TesselResult, EmptyStoredMessagePrintsTheCatalogueText) {
    std::ostringstream out;
    out << TesselResult(result::RaidNoControllers, "");
    EXPECT_EQ(out.str(), "118 There are no controllers.");
}

TEST(TesselResult, SetMessagePrintsItselfAfterTheCodeAndABlank) {
    std::ostringstream out;
    out << TesselResult(result::InvalidParameter,
                        "--target command is not supported on current system.");
    EXPECT_EQ(out.str(), "5 --target command is not supported on current system.");
    EXPECT_EQ(TesselResult(result::InvalidParameter, "own text").message(), "own text");
}

TEST(TesselResult, DefaultIsSuccessWithTheCatalogueText) {
    const TesselResult nothing;
    EXPECT_TRUE(nothing == 0U);
    EXPECT_EQ(nothing.message(), "Succeed.");
}

TEST(TesselResult, StreamWritesTheCodeInDecimalNotTheWholeValue) {
    std::ostringstream out;
    out << TesselResult(0x2B02U);
    EXPECT_EQ(out.str(), "11010 Unknown error");
}

} // namespace
