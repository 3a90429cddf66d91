#include <cstddef>
#include <cstdint>
#include <filesystem>
#include <string>
#include <system_error>

#include "collaborators/log.hpp"
#include "fuzz/policy_file_fuzz_target.hpp"

// libFuzzer's entry points for the policy file parser.

extern "C" int LLVMFuzzerInitialize(int* /*argc*/, char*** /*argv*/) {
    // The parser traces every step; keep that log out of the directory the fuzzer runs in.
    std::error_code error;
    const std::filesystem::path dir =
        std::filesystem::temp_directory_path(error) / "raidcfg-policy-file-fuzzer";
    std::string reason;
    Quillon::SetLogDir(dir.string(), reason);
    return 0;
}

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    return raidcfg_fuzz::PolicyFileInput(data, size);
}
