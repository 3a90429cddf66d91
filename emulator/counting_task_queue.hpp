#pragma once

#include <atomic>
#include <functional>

#include "emulator/httplib_include.hpp"

namespace emulator {

// The server's worker pool, counting what it is handed: the HTTP server enqueues one job per
// accepted socket, so the count is the number of connections served.
class CountingTaskQueue : public httplib::TaskQueue {
public:
    CountingTaskQueue(std::atomic<unsigned long long>& connections, std::size_t threads)
        : connections_(connections), pool_(threads) {}

    void enqueue(std::function<void()> fn) override {
        ++connections_;
        pool_.enqueue(std::move(fn));
    }
    void shutdown() override { pool_.shutdown(); }

private:
    std::atomic<unsigned long long>& connections_;
    httplib::ThreadPool pool_;
};

} // namespace emulator
