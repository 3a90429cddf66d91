#include "emulator/render_cache.hpp"

#include <sys/stat.h>

namespace emulator {

bool RenderCache::Stamp::operator==(const Stamp& other) const {
    return device == other.device && inode == other.inode && size == other.size &&
           modified_ns == other.modified_ns;
}

RenderCache::Stamp RenderCache::StampOf(const std::string& path) {
    Stamp stamp;
    struct stat status {};
    if (!path.empty() && ::stat(path.c_str(), &status) == 0) {
        stamp.device = status.st_dev;
        stamp.inode = status.st_ino;
        stamp.size = status.st_size;
        stamp.modified_ns =
            static_cast<long long>(status.st_mtim.tv_sec) * 1000000000LL + status.st_mtim.tv_nsec;
    }
    return stamp;
}

const sim::Machine* RenderCache::Machine(sim::MachineStore& store, std::string& error) {
    const Stamp now = StampOf(store.path());
    if (machine_ && now == stamp_) {
        return &*machine_;
    }
    Clear();
    sim::Machine machine;
    if (!store.Read(machine, error)) {
        return nullptr;
    }
    machine_ = std::move(machine);
    stamp_ = now;
    return &*machine_;
}

const HttpResponse* RenderCache::Find(const std::string& target) const {
    const auto found = answers_.find(target);
    return found == answers_.end() ? nullptr : &found->second;
}

void RenderCache::Keep(const std::string& target, const HttpResponse& response) {
    if (answers_.size() >= kMaxAnswers) {
        answers_.clear();
    }
    answers_[target] = response;
}

void RenderCache::Clear() {
    machine_.reset();
    answers_.clear();
}

} // namespace emulator
