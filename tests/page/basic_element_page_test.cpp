#include <memory>
#include <string>
#include <vector>

#include "collaborators/basic_element_page.hpp"
#include "collaborators/basic_page.hpp"
#include "collaborators/element_table_data.hpp"
#include "collaborators/html_stream.hpp"
#include "tests/support/file_text.hpp"
#include "tests/support/temp_dir.hpp"

#include <gtest/gtest.h>

namespace {

using HtmlPrint::BasicElementPage;
using HtmlPrint::BasicPage;
using HtmlPrint::ElementTableData;
using HtmlPrint::HtmlStream;
using Cells = std::vector<std::string>;

ElementTableData MakeTable(const std::string& title, std::size_t columns, const Cells& heads,
                           const Cells& body) {
    ElementTableData table(title, columns);
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

std::string Generate(BasicElementPage& page, const raidcfg_test::TempDir& dir) {
    EXPECT_EQ(page.GeneratePage(), 0);
    return raidcfg_test::ReadFile(dir.File("result.html"));
}

TEST(BasicElementPage, NewPageHasNoTables) {
    BasicElementPage page("result.html", "");
    EXPECT_TRUE(page.GetTableBox().empty());
}

TEST(BasicElementPage, TitleStartsAsTheFileNameAndCanBeReplaced) {
    BasicElementPage page("raid_result.html", "");
    EXPECT_EQ(page.GetPageTitle(), "raid_result");
    page.SetPageTitle("RAID configuration");
    EXPECT_EQ(page.GetPageTitle(), "RAID configuration");
}

TEST(BasicElementPage, SaveDirIsTheDirectoryOfTheFile) {
    const raidcfg_test::TempDir dir;
    const BasicElementPage page(dir.File("result.html"), "");
    EXPECT_EQ(page.GetSaveDir(), dir.path());
    const BasicElementPage bare("result.html", "");
    EXPECT_EQ(bare.GetSaveDir(), ".");
}

TEST(BasicElementPage, WorksThroughTheBasicPageInterface) {
    const raidcfg_test::TempDir dir;
    const std::shared_ptr<BasicPage> page =
        std::make_shared<BasicElementPage>(dir.File("result.html"), "");
    EXPECT_EQ(page->GetSaveDir(), dir.path());
    EXPECT_EQ(page->GeneratePage(), 0);
    EXPECT_TRUE(raidcfg_test::FileExists(dir.File("result.html")));
}

TEST(BasicElementPage, FullPageMatchesGolden) {
    const raidcfg_test::TempDir dir;
    BasicElementPage page(dir.File("result.html"), "");
    page.SetPageTitle("RAID configuration");
    page.AddMessage("Controller 0 was read successfully.");
    page.AddMessage("Two physical disks are unconfigured.");
    ElementTableData disks = MakeTable("Physical disks", 3, {"Slot", "Model", "State"},
                                       {"0", "ST4000NM0035", "Online", "1", "HUS726T4TALA6L4"});
    disks.AppendTableData(
        MakeTable("Logical drives", 2, {"Name", "Level"}, {"vd0", "RAID 1", "vd1", "RAID 5"}));
    page.AddTable(disks);
    raidcfg_test::ExpectGolden(RAIDCFG_TEST_DATA_DIR, "full_page.html", Generate(page, dir));
}

TEST(BasicElementPage, TablesAppendedThroughTheTableBoxShareOneBlock) {
    const raidcfg_test::TempDir dir;
    BasicElementPage page(dir.File("result.html"), "");
    page.AddTable(MakeTable("Family", 1, {"A"}, {"1"}));
    page.GetTableBox().back().AppendTableData(MakeTable("Member", 1, {"B"}, {"2"}));
    page.AddTable(MakeTable("Other", 1, {"C"}, {"3"}));
    const std::string html = Generate(page, dir);
    const auto first = html.find("<section");
    const auto member = html.find("<caption>Member</caption>");
    const auto second = html.find("<section", first + 1);
    ASSERT_NE(member, std::string::npos);
    ASSERT_NE(second, std::string::npos);
    EXPECT_LT(first, member);
    EXPECT_LT(member, second);
    EXPECT_EQ(html.find("<section", second + 1), std::string::npos);
}

TEST(BasicElementPage, MessagesAndTablesKeepTheOrderTheyWereAddedIn) {
    const raidcfg_test::TempDir dir;
    BasicElementPage page(dir.File("result.html"), "");
    page.AddMessage("before");
    page.AddTable(MakeTable("Table", 1, {"A"}, {"1"}));
    page.AddMessage("after");
    const std::string html = Generate(page, dir);
    const auto before = html.find(">before<");
    const auto table = html.find("<table>");
    const auto after = html.find(">after<");
    ASSERT_NE(after, std::string::npos);
    EXPECT_LT(before, table);
    EXPECT_LT(table, after);
}

TEST(BasicElementPage, SecondTextIsShownOnlyWhenGiven) {
    const raidcfg_test::TempDir dir;
    BasicElementPage with(dir.File("result.html"), "Host 10.0.0.5");
    EXPECT_NE(Generate(with, dir).find("<p class=\"subtitle\">Host 10.0.0.5</p>"),
              std::string::npos);
    BasicElementPage without(dir.File("result.html"), "");
    EXPECT_EQ(Generate(without, dir).find("subtitle\">"), std::string::npos);
}

TEST(BasicElementPage, EveryTextIsEscaped) {
    const raidcfg_test::TempDir dir;
    const std::string evil = "<script>alert(\"x\" & 'y')</script>";
    const std::string escaped =
        "&lt;script&gt;alert(&quot;x&quot; &amp; &#39;y&#39;)&lt;/script&gt;";
    BasicElementPage page(dir.File("result.html"), evil);
    page.SetPageTitle(evil);
    page.AddMessage(evil);
    page.AddTable(MakeTable(evil, 2, {evil, "Size"}, {evil, "1 TB"}));
    const std::string html = Generate(page, dir);
    EXPECT_EQ(html.find("<script"), std::string::npos);
    EXPECT_NE(html.find("<title>" + escaped + "</title>"), std::string::npos);
    EXPECT_NE(html.find("<h1>" + escaped + "</h1>"), std::string::npos);
    EXPECT_NE(html.find("<p class=\"subtitle\">" + escaped + "</p>"), std::string::npos);
    EXPECT_NE(html.find("<p class=\"message\">" + escaped + "</p>"), std::string::npos);
    EXPECT_NE(html.find("<caption>" + escaped + "</caption>"), std::string::npos);
    EXPECT_NE(html.find("<th>" + escaped + "</th>"), std::string::npos);
    EXPECT_NE(html.find("<td>" + escaped + "</td>"), std::string::npos);
}

TEST(BasicElementPage, PageIsSelfContainedAndTheSameEveryTime) {
    const raidcfg_test::TempDir dir;
    BasicElementPage page(dir.File("result.html"), "");
    page.AddTable(MakeTable("Disks", 1, {"Slot"}, {"0"}));
    const std::string first = Generate(page, dir);
    const std::string second = Generate(page, dir);
    EXPECT_EQ(first, second);
    EXPECT_EQ(first.rfind("<!DOCTYPE html>\n", 0), 0U);
    EXPECT_NE(first.find("<meta charset=\"utf-8\">"), std::string::npos);
    EXPECT_EQ(first.find("<script"), std::string::npos);
    EXPECT_EQ(first.find("<link"), std::string::npos);
    EXPECT_EQ(first.find("src="), std::string::npos);
    EXPECT_EQ(first.find("url("), std::string::npos);
}

TEST(BasicElementPage, GeneratePageOnAnUnwritablePathFailsWithoutThrowing) {
    const raidcfg_test::TempDir dir;
    BasicElementPage missing_dir(dir.File("no/such/dir/result.html"), "");
    int result = 0;
    EXPECT_NO_THROW(result = missing_dir.GeneratePage());
    EXPECT_NE(result, 0);

    BasicElementPage is_a_directory(dir.path(), "");
    EXPECT_NO_THROW(result = is_a_directory.GeneratePage());
    EXPECT_NE(result, 0);
}

} // namespace
