#include <memory>
#include <sstream>
#include <string>
#include <vector>

#include "collaborators/table_serializer.hpp"
#include "collaborators/table_stream.hpp"

#include <gtest/gtest.h>

namespace {

TEST(TableStream, EveryInsertionIsOneCell) {
    auto cells = std::make_shared<std::vector<std::string>>();
    TableStream stream(cells);
    stream << "text" << std::string("string") << 7 << "";
    EXPECT_EQ(*cells, (std::vector<std::string>{"text", "string", "7", ""}));
}

TEST(TableStream, NullTextIsAnEmptyCell) {
    auto cells = std::make_shared<std::vector<std::string>>();
    TableStream stream(cells);
    const char* missing = nullptr;
    stream << missing;
    EXPECT_EQ(*cells, (std::vector<std::string>{""}));
}

TEST(TableStream, CopyWritesIntoTheSameTable) {
    TableSerializer table(2, "Shared", 4);
    table.sstream() << "Key"
                    << "Value";
    TableStream copy = table.sstream();
    copy << "from copy" << 1;
    table.sstream() << "from original" << 2;
    copy << "copy again" << 3;

    std::ostringstream out;
    table.PrintTable(out);
    EXPECT_EQ(out.str(), "Shared\n"
                         "Key              Value\n"
                         "-------------    -----\n"
                         "from copy        1\n"
                         "from original    2\n"
                         "copy again       3\n"
                         "\n");
}

TEST(TableStream, CopyOutlivingItsSerializerStaysUsable) {
    auto table = std::make_unique<TableSerializer>(1, "Gone", 4);
    TableStream kept = table->sstream();
    table.reset();
    kept << "still fine";
    SUCCEED();
}

TEST(TableStream, DefaultStreamHasATableOfItsOwn) {
    TableStream stream;
    stream << "a" << 1;
    SUCCEED();
}

} // namespace
