#pragma once

#include <memory>
#include <string>
#include <vector>

// The writing end of a console table: every << adds ONE cell, and cells fill the table row by
// row. Copies share the same cells, so a caller may keep a TableStream by value and still write
// into the table it came from.
class TableStream {
public:
    // A stream with a table of its own.
    TableStream();
    // A stream writing into cells, shared with whoever else holds them.
    explicit TableStream(std::shared_ptr<std::vector<std::string>> cells);

    // A null pointer or an empty text is an empty cell.
    TableStream& operator<<(const char* text);
    TableStream& operator<<(const std::string& text);
    TableStream& operator<<(int value);

private:
    std::shared_ptr<std::vector<std::string>> cells_;
};
