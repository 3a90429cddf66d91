#pragma once

#include <cstddef>
#include <cstdint>

namespace raidcfg_fuzz {

// Feeds arbitrary bytes to the policy file parser as a file's content and runs every operation
// that reads the tree, whether the read succeeded or not. Returns 0, as libFuzzer expects; any
// crash, abort or leak on the way is what the fuzzer looks for.
int PolicyFileInput(const std::uint8_t* data, std::size_t size);

} // namespace raidcfg_fuzz
