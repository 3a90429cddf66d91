#include "emulator/request_log.hpp"

namespace emulator {

bool RequestLog::Open(const std::string& path, std::string& error) {
    out_.open(path, std::ios::out | std::ios::app);
    if (!out_) {
        error = "cannot write '" + path + "'";
        return false;
    }
    return true;
}

void RequestLog::Write(const std::string& method, const std::string& target, int status) {
    const std::string line = method + ' ' + target + ' ' + std::to_string(status) + '\n';
    const std::lock_guard<std::mutex> lock(mutex_);
    out_ << line << std::flush;
}

} // namespace emulator
