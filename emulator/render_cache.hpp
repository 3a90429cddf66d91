#pragma once

#include <cstddef>
#include <optional>
#include <string>
#include <unordered_map>

#include <sys/types.h>

#include "emulator/http_response.hpp"
#include "sim/machine.hpp"
#include "sim/machine_store.hpp"

namespace emulator {

// What the machine service read and rendered, kept until the machine file changes: a run of
// raidcfg reads the same large tree dozens of times, and parsing the file and rendering an
// expanded Storage for each request was most of the time a show took. The file is looked at
// (stat) on every request, so a change by another process is seen at once; the service clears
// the cache after every request that may change anything (every method but GET and HEAD).
class RenderCache {
public:
    // The machine as the file holds it now: read again only when the file changed or the cache
    // was cleared. nullptr with a reason when the file cannot be read.
    const sim::Machine* Machine(sim::MachineStore& store, std::string& error);

    // A rendered answer for this target ("path?query"), when one is kept.
    const HttpResponse* Find(const std::string& target) const;
    void Keep(const std::string& target, const HttpResponse& response);

    void Clear();

private:
    // What tells a changed file: a rewrite renames a new file over it (new inode), an edit in
    // place changes the time or the size.
    struct Stamp {
        dev_t device = 0;
        ino_t inode = 0;
        off_t size = -1;
        long long modified_ns = 0;
        bool operator==(const Stamp& other) const;
    };
    static Stamp StampOf(const std::string& path);

    // Enough for every resource of a large machine, each with its expanded forms.
    static constexpr std::size_t kMaxAnswers = 8192;

    std::optional<sim::Machine> machine_;
    Stamp stamp_;
    std::unordered_map<std::string, HttpResponse> answers_;
};

} // namespace emulator
