#include <atomic>
#include <cerrno>
#include <cstdio>
#include <cstring>
#include <filesystem>
#include <memory>
#include <mutex>
#include <string>
#include <system_error>
#include <utility>

#include <spdlog/logger.h>
#include <spdlog/pattern_formatter.h>
#include <spdlog/sinks/rotating_file_sink.h>

#include "collaborators/log.hpp"
#include "log/log_settings.hpp"

namespace Quillon {
namespace {

constexpr const char* kLogFileName = "raidcfg.log";
// raidcfg.log grows to 5 MiB, then moves to raidcfg.1.log; up to three older files are kept.
constexpr std::size_t kDefaultRotateBytes = std::size_t{5} * 1024 * 1024;
constexpr std::size_t kDefaultRotateFiles = 3;

// Where the log goes and the logger writing there. The logger is opened at the first line, so a
// run that logs nothing leaves no file behind.
struct LogState {
    std::mutex mutex;
    std::string dir = "./";
    std::shared_ptr<spdlog::logger> logger;
    bool open_failed = false; // lines are dropped until the directory changes
    std::size_t rotate_bytes = kDefaultRotateBytes;
    std::size_t rotate_files = kDefaultRotateFiles;
};

// Never destroyed: other objects' destructors may still log while the process ends.
LogState& State() {
    static auto* state = new LogState();
    return *state;
}

// The host's stderr must not fill up with one complaint per line: the first problem is told once.
std::atomic<bool> g_warned{false};

void WarnOnce(const std::string& path, const std::string& reason) {
    if (!g_warned.exchange(true)) {
        std::fprintf(stderr, "raidcfg: cannot write the log file %s: %s\n", path.c_str(),
                     reason.c_str());
        std::fflush(stderr);
    }
}

// Opens the rotating file in state.dir; called with the state's mutex held.
void OpenLogger(LogState& state) {
    const std::string path = state.dir + kLogFileName;
    // Probe first: the reason errno gives reads better than the sink's own exception text.
    std::FILE* probe = std::fopen(path.c_str(), "ab");
    if (probe == nullptr) {
        const int error = errno;
        state.open_failed = true;
        WarnOnce(path, std::strerror(error));
        return;
    }
    std::fclose(probe);
    try {
        auto sink = std::make_shared<spdlog::sinks::rotating_file_sink_mt>(path, state.rotate_bytes,
                                                                           state.rotate_files);
        auto logger = std::make_shared<spdlog::logger>("raidcfg", std::move(sink));
        // Time with milliseconds in local time; the level, place and text are already in the body.
        logger->set_formatter(std::make_unique<spdlog::pattern_formatter>(
            "%Y-%m-%d %H:%M:%S.%e %v", spdlog::pattern_time_type::local));
        logger->set_level(spdlog::level::trace);
        logger->flush_on(spdlog::level::trace); // every line reaches the file at once
        logger->set_error_handler([path](const std::string& reason) { WarnOnce(path, reason); });
        state.logger = std::move(logger);
    } catch (const std::exception& error) {
        state.open_failed = true;
        WarnOnce(path, error.what());
    }
}

std::string LevelWord(unsigned int level) {
    switch (level) {
    case 1:
        return "ERROR";
    case 2:
        return "WARN";
    case 3:
        return "INFO";
    case 4:
        return "TRACE";
    default:
        return "L" + std::to_string(level);
    }
}

const char* BaseName(const char* file) {
    if (file == nullptr) {
        return "?";
    }
    const char* slash = std::strrchr(file, '/');
    return slash == nullptr ? file : slash + 1;
}

// One object is one line: trailing line breaks are dropped and inner ones become " | ".
std::string OneLine(const std::string& text) {
    std::size_t end = text.size();
    while (end > 0 && (text[end - 1] == '\n' || text[end - 1] == '\r')) {
        --end;
    }
    std::string line;
    line.reserve(end);
    for (std::size_t i = 0; i < end; ++i) {
        if (text[i] == '\r' || text[i] == '\n') {
            if (text[i] == '\r' && i + 1 < end && text[i + 1] == '\n') {
                ++i;
            }
            line += " | ";
        } else {
            line += text[i];
        }
    }
    return line;
}

void WriteLine(unsigned int level, const char* file, int line, const std::string& text) {
    std::string body = LevelWord(level);
    if (body.size() < 5) {
        body.append(5 - body.size(), ' ');
    }
    body += ' ';
    body += BaseName(file);
    body += ':';
    body += std::to_string(line);
    body += ' ';
    body += OneLine(text);

    std::shared_ptr<spdlog::logger> logger;
    {
        LogState& state = State();
        std::lock_guard<std::mutex> lock(state.mutex);
        if (!state.logger && !state.open_failed) {
            OpenLogger(state);
        }
        logger = state.logger;
    }
    if (logger) {
        logger->log(spdlog::level::info, spdlog::string_view_t(body));
    }
}

} // namespace

Log::Log(unsigned int level, const char* file, int line)
    : level_(level), file_(file), line_(line) {}

Log::~Log() {
    try {
        WriteLine(level_, file_, line_, stream_.str());
    } catch (...) {
        // A log line is never worth ending the program for.
    }
}

int GetLogDir(char* buffer, std::size_t size) {
    std::string dir;
    {
        LogState& state = State();
        std::lock_guard<std::mutex> lock(state.mutex);
        dir = state.dir;
    }
    if (buffer == nullptr || size == 0) {
        return -1;
    }
    const std::size_t copied = dir.size() < size ? dir.size() : size - 1;
    std::memcpy(buffer, dir.data(), copied);
    buffer[copied] = '\0';
    return copied == dir.size() ? 0 : -1;
}

const std::string GetLogFileName() {
    LogState& state = State();
    std::lock_guard<std::mutex> lock(state.mutex);
    return state.dir + kLogFileName;
}

bool SetLogDir(const std::string& dir, std::string& error) {
    std::string target = dir.empty() ? std::string("./") : dir;
    std::error_code code;
    std::filesystem::create_directories(target, code);
    if (code) {
        error = code.message();
        return false;
    }
    if (!std::filesystem::is_directory(target, code)) {
        error = code ? code.message() : std::string("not a directory");
        return false;
    }
    if (target.back() != '/') {
        target += '/';
    }
    LogState& state = State();
    std::lock_guard<std::mutex> lock(state.mutex);
    state.logger.reset(); // closes the file of the old directory once no line is being written
    state.dir = std::move(target);
    state.open_failed = false;
    return true;
}

void SetLogRotation(std::size_t max_bytes, std::size_t max_files) {
    LogState& state = State();
    std::lock_guard<std::mutex> lock(state.mutex);
    state.logger.reset();
    state.rotate_bytes = max_bytes == 0 ? kDefaultRotateBytes : max_bytes;
    state.rotate_files = max_files;
    state.open_failed = false;
}

void ResetLogState() {
    LogState& state = State();
    std::lock_guard<std::mutex> lock(state.mutex);
    state.logger.reset();
    state.dir = "./";
    state.open_failed = false;
    state.rotate_bytes = kDefaultRotateBytes;
    state.rotate_files = kDefaultRotateFiles;
    g_warned = false;
}

} // namespace Quillon
