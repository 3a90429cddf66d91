#pragma once

#include <optional>
#include <string>
#include <vector>

namespace emulator {

// The text parts of a request that the services decode alike: the request target, its query
// options and Basic credentials.
class RequestText {
public:
    // Splits "path?query" into its path and its query (empty when there is none).
    static void SplitTarget(const std::string& target, std::string& path, std::string& query);
    // Decodes %XX escapes; in a query ("+" stands for a space) or in a path ("+" is itself).
    static std::string DecodeQuery(const std::string& text);
    static std::string DecodePath(const std::string& text);
    // Escapes what may not stand in a URI path ("My Volume" -> "My%20Volume"); "/" stays.
    static std::string EncodePath(const std::string& text);
    // The value of one query option ("$expand"), decoded; nothing when absent.
    static std::optional<std::string> QueryValue(const std::string& query, const std::string& name);
    // The names of the query options, decoded, in order ("$expand", "$top", ...).
    static std::vector<std::string> QueryNames(const std::string& query);
    // The "user:password" of a Basic Authorization header value; nothing when it is not one.
    static std::optional<std::string> BasicCredentials(const std::string& authorization);
};

} // namespace emulator
