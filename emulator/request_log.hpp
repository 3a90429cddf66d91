#pragma once

#include <fstream>
#include <mutex>
#include <string>

namespace emulator {

// The --log-requests file: one line per request, "METHOD TARGET STATUS", appended and flushed
// at once, so that a test or a person can follow what a client asked for while it runs.
class RequestLog {
public:
    RequestLog() = default;
    RequestLog(const RequestLog&) = delete;
    RequestLog& operator=(const RequestLog&) = delete;

    // Opens path for appending. False with a one-line reason when it cannot be written.
    bool Open(const std::string& path, std::string& error);
    // Appends one line; whole lines only, whichever worker thread calls it.
    void Write(const std::string& method, const std::string& target, int status);

private:
    std::mutex mutex_;
    std::ofstream out_;
};

} // namespace emulator
