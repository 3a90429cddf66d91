#include "collaborators/table_stream.hpp"

#include <utility>

TableStream::TableStream() : cells_(std::make_shared<std::vector<std::string>>()) {}

TableStream::TableStream(std::shared_ptr<std::vector<std::string>> cells)
    : cells_(cells ? std::move(cells) : std::make_shared<std::vector<std::string>>()) {}

TableStream& TableStream::operator<<(const char* text) {
    cells_->emplace_back(text != nullptr ? text : "");
    return *this;
}

TableStream& TableStream::operator<<(const std::string& text) {
    cells_->push_back(text);
    return *this;
}

TableStream& TableStream::operator<<(int value) {
    cells_->push_back(std::to_string(value));
    return *this;
}
