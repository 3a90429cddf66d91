#pragma once

#include <cstddef>
#include <sstream>
#include <string>

#include "result/raidcfg_export.hpp"

namespace Quillon {

// One line of the log file: built with a level (1 error, 2 warning, 3 information, 4 trace), the
// source path and line; whatever is written into Stream() is written out when it is destroyed.
class RAIDCFG_EXPORT Log {
public:
    Log(unsigned int level, const char* file, int line);
    virtual ~Log();
    Log(const Log&) = delete;
    Log& operator=(const Log&) = delete;

    std::ostringstream& Stream() { return stream_; }

private:
    unsigned int level_;
    const char* file_;
    int line_;
    std::ostringstream stream_;
};

// Writes the log directory, ending in "/", into buffer (always NUL-terminated when size > 0).
// Returns 0, or -1 when the buffer is too small for the whole directory.
RAIDCFG_EXPORT int GetLogDir(char* buffer, std::size_t size);

// The full path of the log file: the log directory followed by "raidcfg.log".
RAIDCFG_EXPORT const std::string GetLogFileName();

// Host setup: puts the log into dir (created if missing). Until it is called the log lies in
// the current directory. Returns false with a reason in error when the directory cannot be made.
RAIDCFG_EXPORT bool SetLogDir(const std::string& dir, std::string& error);

} // namespace Quillon

// Convenience for one log line: RAIDCFG_LOG(3) << "text";
#define RAIDCFG_LOG(level) ::Quillon::Log((level), __FILE__, __LINE__).Stream()
