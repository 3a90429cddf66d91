#pragma once

#include <string>

namespace raidcfg_test {

// A fresh directory under the system's temporary directory, removed with everything in it
// when the object goes.
class TempDir {
public:
    TempDir();
    ~TempDir();
    TempDir(const TempDir&) = delete;
    TempDir& operator=(const TempDir&) = delete;

    // The directory's path, without a trailing separator.
    const std::string& path() const { return path_; }
    // path() + "/" + name.
    std::string File(const std::string& name) const;

private:
    std::string path_;
};

} // namespace raidcfg_test
