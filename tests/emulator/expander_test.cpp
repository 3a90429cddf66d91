// The $expand forms and how far they reach.
#include <map>
#include <string>

#include <nlohmann/json.hpp>

#include "emulator/expander.hpp"

#include <gtest/gtest.h>

namespace emulator_test {
namespace {

using emulator::Expander;
using nlohmann::json;

TEST(EmulatorExpandTest, ParsesTheThreeFormsWithLevels) {
    Expander::Mode mode = Expander::Mode::All;
    int levels = 0;
    ASSERT_TRUE(Expander::Parse(".", mode, levels));
    EXPECT_EQ(mode, Expander::Mode::NoLinks);
    EXPECT_EQ(levels, 1);
    ASSERT_TRUE(Expander::Parse("~($levels=2)", mode, levels));
    EXPECT_EQ(mode, Expander::Mode::LinksOnly);
    EXPECT_EQ(levels, 2);
    ASSERT_TRUE(Expander::Parse("*($levels=9)", mode, levels));
    EXPECT_EQ(mode, Expander::Mode::All);
    EXPECT_EQ(levels, Expander::kMaxLevels);
    EXPECT_FALSE(Expander::Parse("", mode, levels));
    EXPECT_FALSE(Expander::Parse("Members", mode, levels));
    EXPECT_FALSE(Expander::Parse(".($levels=0)", mode, levels));
    EXPECT_FALSE(Expander::Parse(".($levels=)", mode, levels));
    EXPECT_FALSE(Expander::Parse(".(levels=1)", mode, levels));
}

TEST(EmulatorExpandTest, ExpandsByLevelAndLeavesActionsAndOemAlone) {
    const std::map<std::string, json> resources{
        {"/a", {{"@odata.id", "/a"}, {"Child", {{"@odata.id", "/b"}}}}},
        {"/b", {{"@odata.id", "/b"}, {"Leaf", {{"@odata.id", "/c"}}}}},
        {"/c", {{"@odata.id", "/c"}, {"Value", 3}}},
    };
    const Expander::Resolver resolve = [&](const std::string& uri) -> std::optional<json> {
        const auto found = resources.find(uri);
        return found == resources.end() ? std::nullopt : std::optional<json>(found->second);
    };
    const json top = {{"Items", json::array({{{"@odata.id", "/a"}}, {{"@odata.id", "/gone"}}})},
                      {"Links", {{"Next", {{"@odata.id", "/c"}}}}},
                      {"Actions", {{"Target", {{"@odata.id", "/c"}}}}},
                      {"Oem", {{"Ref", {{"@odata.id", "/c"}}}}}};

    const json one = Expander::Expand(top, Expander::Mode::NoLinks, 1, resolve);
    EXPECT_EQ(one["Items"][0]["Child"], json({{"@odata.id", "/b"}}));
    EXPECT_EQ(one["Items"][1], json({{"@odata.id", "/gone"}}));
    EXPECT_EQ(one["Links"]["Next"], json({{"@odata.id", "/c"}}));
    EXPECT_EQ(one["Actions"], top["Actions"]);
    EXPECT_EQ(one["Oem"], top["Oem"]);

    const json two = Expander::Expand(top, Expander::Mode::NoLinks, 2, resolve);
    EXPECT_EQ(two["Items"][0]["Child"]["Leaf"], json({{"@odata.id", "/c"}}));

    const json links = Expander::Expand(top, Expander::Mode::LinksOnly, 1, resolve);
    EXPECT_EQ(links["Links"]["Next"]["Value"], 3);
    EXPECT_EQ(links["Items"][0], json({{"@odata.id", "/a"}}));

    const json all = Expander::Expand(top, Expander::Mode::All, 1, resolve);
    EXPECT_EQ(all["Links"]["Next"]["Value"], 3);
    EXPECT_EQ(all["Items"][0]["@odata.id"], "/a");
    EXPECT_TRUE(all["Items"][0].contains("Child"));
}

} // namespace
} // namespace emulator_test
