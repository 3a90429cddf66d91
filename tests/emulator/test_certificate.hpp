#pragma once

#include <string>

namespace emulator_test {

// A self-signed certificate for 127.0.0.1, made at test time with OpenSSL, so that no key is
// kept in the source tree.
class TestCertificate {
public:
    // Writes the certificate and its private key as PEM files; throws when OpenSSL fails.
    static void Write(const std::string& cert_path, const std::string& key_path);
};

} // namespace emulator_test
