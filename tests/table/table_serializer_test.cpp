#include <sstream>
#include <string>

#include "collaborators/table_serializer.hpp"
#include "tests/support/file_text.hpp"

#include <gtest/gtest.h>

namespace {

std::string Print(TableSerializer& table) {
    std::ostringstream out;
    table.PrintTable(out);
    return out.str();
}

bool AnyLineEndsInABlank(const std::string& text) {
    std::istringstream lines(text);
    std::string line;
    while (std::getline(lines, line)) {
        if (!line.empty() && line.back() == ' ') {
            return true;
        }
    }
    return false;
}

TEST(TableSerializer, PrintsTitleHeadsRuleAndRows) {
    TableSerializer table(4, "Physical disks", 4);
    table.sstream() << "Slot"
                    << "Model"
                    << "Size"
                    << "State";
    table.sstream() << 0 << "ST4000NM0035"
                    << "3.6 TiB"
                    << "Online";
    table.sstream() << 1 << "HUS726T4TALA6L4"
                    << "3.6 TiB"
                    << "Online";
    table.sstream() << 12 << "MZ7LH480"
                    << "447 GiB"
                    << "Hot spare";
    const std::string printed = Print(table);
    raidcfg_test::ExpectGolden(RAIDCFG_TEST_DATA_DIR, "heads_and_rows.txt", printed);
    EXPECT_FALSE(AnyLineEndsInABlank(printed));
}

TEST(TableSerializer, HeadsWithoutRowsPrintTitleHeadsAndRule) {
    TableSerializer table(3, "Logical drives", 4);
    table.sstream() << "Name"
                    << "Level"
                    << "Capacity";
    raidcfg_test::ExpectGolden(RAIDCFG_TEST_DATA_DIR, "heads_no_rows.txt", Print(table));
}

TEST(TableSerializer, ColumnsFollowTheWidestCellInDisplayColumns) {
    TableSerializer table(3, "Controllers", 4);
    table.sstream() << "Id"
                    << "Name"
                    << "Note";
    table.sstream() << 0 << "Contrôleur"
                    << "plain"; // é: two bytes, one column
    table.sstream() << 1 << "磁盘阵列"
                    << "wide"; // four wide characters
    table.sstream() << 2 << "ＲＡＩＤ"
                    << "fullwidth"; // fullwidth Latin
    table.sstream() << 3 << "Cafe\xCC\x81"
                    << "combining mark"; // e + combining acute
    table.sstream() << 4 << "SAS"
                    << "ascii";
    const std::string printed = Print(table);
    raidcfg_test::ExpectGolden(RAIDCFG_TEST_DATA_DIR, "utf8_widths.txt", printed);
    // "Contrôleur" (11 bytes) is 10 columns wide; "磁盘阵列" (12 bytes) is 8 and gets 2 blanks.
    EXPECT_NE(printed.find("Id    Name          Note\n"), std::string::npos);
    EXPECT_NE(printed.find("--    ----------    --------------\n"), std::string::npos);
    EXPECT_NE(printed.find("1     磁盘阵列      wide\n"), std::string::npos);
    EXPECT_NE(printed.find("3     Cafe\xCC\x81          combining mark\n"), std::string::npos);
}

TEST(TableSerializer, InvalidUtf8CountsOneColumnPerByteAndDoesNotCrash) {
    TableSerializer table(2, "Bytes", 4);
    // A stray continuation byte, a cut-off three-byte sequence, an overlong form, a lone lead.
    table.sstream() << "Raw"
                    << "After"
                    << "\x80\xE4\xB8"
                    << "x"
                    << "\xC0\xAF"
                    << "y"
                    << "\xF0"
                    << "z";
    EXPECT_EQ(Print(table), "Bytes\n"
                            "Raw    After\n"
                            "---    -----\n"
                            "\x80\xE4\xB8    x\n"
                            "\xC0\xAF     y\n"
                            "\xF0      z\n"
                            "\n");
}

TEST(TableSerializer, SpacingSetsTheGapBetweenColumns) {
    TableSerializer narrow(2, "T", 2);
    narrow.sstream() << "A"
                     << "B"
                     << "one"
                     << "two";
    EXPECT_EQ(Print(narrow), "T\n"
                             "A    B\n"
                             "---  ---\n"
                             "one  two\n"
                             "\n");

    TableSerializer wide(2, "T", 4);
    wide.sstream() << "A"
                   << "B"
                   << "one"
                   << "two";
    EXPECT_EQ(Print(wide), "T\n"
                           "A      B\n"
                           "---    ---\n"
                           "one    two\n"
                           "\n");
}

TEST(TableSerializer, IntCellsPrintAsDecimalNumbers) {
    TableSerializer table(3, "Numbers", 4);
    table.sstream() << "Zero"
                    << "Negative"
                    << "Large" << 0 << -7 << 2147483647;
    EXPECT_EQ(Print(table), "Numbers\n"
                            "Zero    Negative    Large\n"
                            "----    --------    ----------\n"
                            "0       -7          2147483647\n"
                            "\n");
}

TEST(TableSerializer, EmptyTextIsAnEmptyCell) {
    TableSerializer table(3, "Gaps", 4);
    const char* missing = nullptr;
    table.sstream() << "A"
                    << "B"
                    << "C";
    table.sstream() << "" << std::string() << "c1";
    table.sstream() << missing << "b2"
                    << "";
    EXPECT_EQ(Print(table), "Gaps\n"
                            "A    B     C\n"
                            "-    --    --\n"
                            "           c1\n"
                            "     b2\n"
                            "\n");
}

TEST(TableSerializer, IncompleteLastRowIsPaddedWithEmptyCells) {
    TableSerializer table(3, "Partial", 4);
    table.sstream() << "A"
                    << "B"
                    << "C"
                    << "a1"
                    << "b1"
                    << "c1"
                    << "a2";
    const std::string printed = Print(table);
    EXPECT_EQ(printed, "Partial\n"
                       "A     B     C\n"
                       "--    --    --\n"
                       "a1    b1    c1\n"
                       "a2\n"
                       "\n");
    EXPECT_FALSE(AnyLineEndsInABlank(printed));
}

TEST(TableSerializer, FewerCellsThanHeadsStillPrintsAFullHeadRow) {
    TableSerializer table(3, "Short", 4);
    table.sstream() << "A";
    EXPECT_EQ(Print(table), "Short\n"
                            "A\n"
                            "-\n"
                            "\n");
}

TEST(TableSerializer, ZeroColumnsPrintsOnlyTheTitle) {
    TableSerializer table(0, "Nothing", 4);
    table.sstream() << "ignored" << 3;
    EXPECT_EQ(Print(table), "Nothing\n\n");
}

TEST(TableSerializer, EmptyTitleLeavesOutTheTitleLine) {
    TableSerializer table(1, "", 4);
    table.sstream() << "Head"
                    << "row";
    EXPECT_EQ(Print(table), "Head\n----\nrow\n\n");
}

TEST(TableSerializer, ControlCharactersShowAsBlanks) {
    TableSerializer table(2, "Line\nbreak", 4);
    table.sstream() << "A"
                    << "B"
                    << "x\ty"
                    << "two\nlines";
    EXPECT_EQ(Print(table), "Line break\n"
                            "A      B\n"
                            "---    ---------\n"
                            "x y    two lines\n"
                            "\n");
}

TEST(TableSerializer, SuccessiveTablesAreSeparatedByAnEmptyLine) {
    std::ostringstream out;
    TableSerializer first(1, "First", 4);
    first.sstream() << "A"
                    << "1";
    first.PrintTable(out);
    TableSerializer second(1, "Second", 4);
    second.sstream() << "B"
                     << "2";
    second.PrintTable(out);
    EXPECT_EQ(out.str(), "First\nA\n-\n1\n\nSecond\nB\n-\n2\n\n");
}

} // namespace
