#pragma once

#include <string>
#include <utility>

#include "collaborators/log.hpp"

namespace Quillon {

// "Entering  NAME" where an operation starts and "Exiting  NAME" on every way out of it, both at
// level 4. The lines carry the file and line of the operation that RAIDCFG_TRACE stands in, so
// that the log points at what it traces rather than at this helper.
class TraceScope {
public:
    TraceScope(std::string name, const char* file, int line)
        : name_(std::move(name)), file_(file), line_(line) {
        Log(4, file_, line_).Stream() << "Entering  " << name_;
    }
    ~TraceScope() { Log(4, file_, line_).Stream() << "Exiting  " << name_; }
    TraceScope(const TraceScope&) = delete;
    TraceScope& operator=(const TraceScope&) = delete;

private:
    std::string name_;
    const char* file_;
    int line_;
};

} // namespace Quillon

// Traces the enclosing operation: RAIDCFG_TRACE("service::detail::RaidClient::Add");
#define RAIDCFG_TRACE(name)                                                                        \
    const ::Quillon::TraceScope raidcfg_trace_scope((name), __FILE__, __LINE__)
