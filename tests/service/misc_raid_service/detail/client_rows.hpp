#pragma once

// The rows a client left, in a form tests compare in one expectation and print readably.
#include <ostream>
#include <string>
#include <vector>

#include "service/misc_raid_service/detail/raid_client.hpp"

namespace client_test {

struct Row {
    std::string device;
    std::string text;
    int code = 0;
    bool operator==(const Row& other) const {
        return device == other.device && text == other.text && code == other.code;
    }
};

inline std::ostream& operator<<(std::ostream& out, const Row& row) {
    return out << "{" << row.device << ", \"" << row.text << "\", " << row.code << "}";
}

inline std::vector<Row> Rows(const service::detail::RaidClient& client) {
    std::vector<Row> rows;
    for (const auto& row : client.rows()) {
        rows.push_back(Row{row.device, row.result, static_cast<int>(row.code)});
    }
    return rows;
}

} // namespace client_test
