#include "tests/emulator/test_certificate.hpp"

#include <cstdio>
#include <memory>
#include <stdexcept>

#include <openssl/evp.h>
#include <openssl/pem.h>
#include <openssl/rsa.h>
#include <openssl/x509.h>
#include <openssl/x509v3.h>

namespace emulator_test {

namespace {

constexpr unsigned int kKeyBits = 2048;
constexpr long kValidSeconds = 24L * 60 * 60;

void Check(bool ok, const char* what) {
    if (!ok) {
        throw std::runtime_error(std::string("OpenSSL: ") + what);
    }
}

void AddExtension(X509* cert, int nid, const char* value) {
    X509V3_CTX context;
    X509V3_set_ctx_nodb(&context);
    X509V3_set_ctx(&context, cert, cert, nullptr, nullptr, 0);
    X509_EXTENSION* extension = X509V3_EXT_conf_nid(nullptr, &context, nid, value);
    Check(extension != nullptr, "extension");
    X509_add_ext(cert, extension, -1);
    X509_EXTENSION_free(extension);
}

} // namespace

void TestCertificate::Write(const std::string& cert_path, const std::string& key_path) {
    std::unique_ptr<EVP_PKEY, decltype(&EVP_PKEY_free)> key(EVP_RSA_gen(kKeyBits), EVP_PKEY_free);
    Check(key != nullptr, "key");
    std::unique_ptr<X509, decltype(&X509_free)> cert(X509_new(), X509_free);
    Check(cert != nullptr, "certificate");
    X509_set_version(cert.get(), 2);
    ASN1_INTEGER_set(X509_get_serialNumber(cert.get()), 1);
    X509_gmtime_adj(X509_getm_notBefore(cert.get()), -60);
    X509_gmtime_adj(X509_getm_notAfter(cert.get()), kValidSeconds);
    X509_set_pubkey(cert.get(), key.get());
    X509_NAME* name = X509_get_subject_name(cert.get());
    X509_NAME_add_entry_by_txt(name, "CN", MBSTRING_ASC,
                               reinterpret_cast<const unsigned char*>("127.0.0.1"), -1, -1, 0);
    X509_set_issuer_name(cert.get(), name);
    AddExtension(cert.get(), NID_subject_alt_name, "IP:127.0.0.1");
    AddExtension(cert.get(), NID_basic_constraints, "critical,CA:TRUE");
    Check(X509_sign(cert.get(), key.get(), EVP_sha256()) > 0, "sign");

    std::unique_ptr<FILE, decltype(&std::fclose)> cert_file(std::fopen(cert_path.c_str(), "w"),
                                                            std::fclose);
    Check(cert_file != nullptr, "open certificate file");
    Check(PEM_write_X509(cert_file.get(), cert.get()) == 1, "write certificate");
    std::unique_ptr<FILE, decltype(&std::fclose)> key_file(std::fopen(key_path.c_str(), "w"),
                                                           std::fclose);
    Check(key_file != nullptr, "open key file");
    Check(PEM_write_PrivateKey(key_file.get(), key.get(), nullptr, nullptr, 0, nullptr, nullptr) ==
              1,
          "write key");
}

} // namespace emulator_test
