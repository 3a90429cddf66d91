#pragma once

#include <cstddef>
#include <utility>
#include <vector>

namespace HtmlPrint {

// The cells of an HTML table, gathered in reading order before they are handed to a table.
template <typename T> class HtmlStream {
public:
    using value_type = T;
    using iterator = typename std::vector<T>::iterator;
    using const_iterator = typename std::vector<T>::const_iterator;

    void push_back(const T& item) { items_.push_back(item); }
    void push_back(T&& item) { items_.push_back(std::move(item)); }

    std::size_t size() const { return items_.size(); }
    bool empty() const { return items_.empty(); }
    void clear() { items_.clear(); }

    const T& operator[](std::size_t index) const { return items_[index]; }
    T& operator[](std::size_t index) { return items_[index]; }

    iterator begin() { return items_.begin(); }
    iterator end() { return items_.end(); }
    const_iterator begin() const { return items_.begin(); }
    const_iterator end() const { return items_.end(); }

    // Hands the cells over, leaving the stream empty for the next table.
    std::vector<T> Take() {
        std::vector<T> taken = std::move(items_);
        items_.clear();
        return taken;
    }

private:
    std::vector<T> items_;
};

} // namespace HtmlPrint
