#include <string>
#include <vector>

#include "collaborators/element_table_data.hpp"
#include "collaborators/html_stream.hpp"

#include <gtest/gtest.h>

namespace {

using HtmlPrint::ElementTableData;
using HtmlPrint::HtmlStream;
using Cells = std::vector<std::string>;

ElementTableData MakeTable(const std::string& title, const Cells& heads, const Cells& body) {
    ElementTableData table(title, heads.size());
    HtmlStream<std::string> stream;
    for (const std::string& head : heads) {
        stream.push_back(head);
    }
    table.SetTableClassBox(stream);
    for (const std::string& cell : body) {
        stream.push_back(cell);
    }
    table.SetContextBox(stream);
    return table;
}

TEST(HtmlStream, GathersCellsInOrder) {
    HtmlStream<std::string> stream;
    EXPECT_TRUE(stream.empty());
    stream.push_back("a");
    const std::string b = "b";
    stream.push_back(b);
    EXPECT_EQ(stream.size(), 2U);
    EXPECT_EQ(Cells(stream.begin(), stream.end()), (Cells{"a", "b"}));
    stream.clear();
    EXPECT_TRUE(stream.empty());
}

TEST(ElementTableData, KeepsTitleAndColumns) {
    const ElementTableData table("Disks", 3);
    EXPECT_EQ(table.GetTitle(), "Disks");
    EXPECT_EQ(table.GetColumns(), 3U);
    EXPECT_TRUE(table.GetTableClassBox().empty());
    EXPECT_TRUE(table.GetContextBox().empty());
    EXPECT_TRUE(table.GetAppendedTables().empty());
}

TEST(ElementTableData, SettingCellsTakesThemAndLeavesTheStreamEmpty) {
    ElementTableData table("Disks", 2);
    HtmlStream<std::string> stream;
    stream.push_back("Slot");
    stream.push_back("Size");
    table.SetTableClassBox(stream);
    EXPECT_TRUE(stream.empty());
    stream.push_back("0");
    stream.push_back("4 TB");
    table.SetContextBox(stream);
    EXPECT_TRUE(stream.empty());
    EXPECT_EQ(table.GetTableClassBox(), (Cells{"Slot", "Size"}));
    EXPECT_EQ(table.GetContextBox(), (Cells{"0", "4 TB"}));
}

TEST(ElementTableData, SettingCellsAgainReplacesThem) {
    ElementTableData table = MakeTable("T", {"A"}, {"1"});
    HtmlStream<std::string> stream;
    stream.push_back("2");
    table.SetContextBox(stream);
    EXPECT_EQ(table.GetContextBox(), (Cells{"2"}));
}

TEST(ElementTableData, AppendedTablesFollowInOrderAndAppendReturnsTheTable) {
    ElementTableData first = MakeTable("First", {"A"}, {"1"});
    ElementTableData& result = first.AppendTableData(MakeTable("Second", {"B"}, {"2"}))
                                   .AppendTableData(MakeTable("Third", {"C"}, {"3"}));
    EXPECT_EQ(&result, &first);
    ASSERT_EQ(first.GetAppendedTables().size(), 2U);
    EXPECT_EQ(first.GetAppendedTables()[0].GetTitle(), "Second");
    EXPECT_EQ(first.GetAppendedTables()[1].GetTitle(), "Third");
}

TEST(ElementTableData, AppendingAFamilyKeepsItFlat) {
    ElementTableData inner = MakeTable("Inner", {"A"}, {});
    inner.AppendTableData(MakeTable("Inner child", {"B"}, {}));
    ElementTableData outer = MakeTable("Outer", {"C"}, {});
    outer.AppendTableData(inner);
    ASSERT_EQ(outer.GetAppendedTables().size(), 2U);
    EXPECT_EQ(outer.GetAppendedTables()[0].GetTitle(), "Inner");
    EXPECT_TRUE(outer.GetAppendedTables()[0].GetAppendedTables().empty());
    EXPECT_EQ(outer.GetAppendedTables()[1].GetTitle(), "Inner child");
}

TEST(ElementTableData, AppendingATableToItselfAddsOneCopy) {
    ElementTableData table = MakeTable("Self", {"A"}, {"1"});
    table.AppendTableData(table);
    ASSERT_EQ(table.GetAppendedTables().size(), 1U);
    EXPECT_EQ(table.GetAppendedTables()[0].GetContextBox(), (Cells{"1"}));
    EXPECT_TRUE(table.GetAppendedTables()[0].GetAppendedTables().empty());
}

} // namespace
