#pragma once

#include <cstddef>
#include <memory>
#include <ostream>
#include <string>
#include <vector>

#include "collaborators/table_stream.hpp"

// A console table: cells are written through sstream(); the first `columns` cells are the heads,
// the rest are the rows. PrintTable writes, with `spacing` 4:
//
//   Physical disks
//   Slot    Model           Size
//   ----    ------------    -------
//   0       ST4000NM0035    3.6 TiB
//   1       HUS726T4TALA    3.6 TiB
//   <empty line>
//
// The title line (left out when the title is empty); the heads; a rule of '-' under every head,
// as wide as its column; one line per row. Columns are left-aligned, as wide as their widest
// cell (counted in terminal columns: wide East Asian characters take 2, combining marks 0, a
// byte that is not valid UTF-8 takes 1), and `spacing` blanks apart. No line ends in a blank.
// A short last row is padded with empty cells. Tabs, line breaks and other control characters
// in a cell show as blanks so they cannot break the layout. With 0 columns only the title is
// printed. An empty line always follows, so successive tables stand apart.
class TableSerializer {
public:
    TableSerializer(std::size_t columns, const std::string& title, std::size_t spacing);
    ~TableSerializer();
    TableSerializer(const TableSerializer&) = delete;
    TableSerializer& operator=(const TableSerializer&) = delete;

    TableStream& sstream();
    void PrintTable(std::ostream& out);

private:
    std::size_t columns_;
    std::string title_;
    std::size_t spacing_;
    std::shared_ptr<std::vector<std::string>> cells_;
    TableStream stream_;
};
