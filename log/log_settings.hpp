#pragma once

#include <cstddef>

// Internal knobs of the log, for the log's own tests; not part of the exported interface.
namespace Quillon {

// Size at which raidcfg.log is rotated and how many older files (raidcfg.1.log ...) are kept.
// Closes the file opened so far; the next line opens it again with the new limits.
void SetLogRotation(std::size_t max_bytes, std::size_t max_files);

// Back to the state at process start: log in "./", default rotation, nothing opened and the
// "cannot write" warning not given yet.
void ResetLogState();

} // namespace Quillon
