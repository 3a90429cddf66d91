#include <string>

#include "host/bmc_address.hpp"

#include <gtest/gtest.h>

namespace {

using host::BmcAddress;

BmcAddress Parsed(const std::string& text) {
    BmcAddress address;
    std::string error;
    EXPECT_TRUE(BmcAddress::Parse(text, "--bmc", address, error)) << text << ": " << error;
    EXPECT_TRUE(error.empty());
    return address;
}

std::string Problem(const std::string& text, const std::string& option = "--bmc") {
    BmcAddress address;
    std::string error;
    EXPECT_FALSE(BmcAddress::Parse(text, option, address, error)) << text;
    return error;
}

TEST(BmcAddressTest, HostOnly) {
    const BmcAddress address = Parsed("bmc01.example");
    EXPECT_EQ(address.host(), "bmc01.example");
    EXPECT_EQ(address.port(), 0);
    EXPECT_EQ(address.user(), "");
    EXPECT_EQ(address.password(), "");
    EXPECT_EQ(address.Display(), "bmc01.example");
}

TEST(BmcAddressTest, HostAndPort) {
    const BmcAddress address = Parsed("10.1.2.3:8443");
    EXPECT_EQ(address.host(), "10.1.2.3");
    EXPECT_EQ(address.port(), 8443);
    EXPECT_EQ(address.Display(), "10.1.2.3:8443");
}

TEST(BmcAddressTest, UserPasswordHostPort) {
    const BmcAddress address = Parsed("admin:Pa55word@10.1.2.3:443");
    EXPECT_EQ(address.user(), "admin");
    EXPECT_EQ(address.password(), "Pa55word");
    EXPECT_EQ(address.host(), "10.1.2.3");
    EXPECT_EQ(address.port(), 443);
    EXPECT_EQ(address.Display(), "10.1.2.3:443");
}

TEST(BmcAddressTest, UserWithoutPassword) {
    const BmcAddress address = Parsed("admin@bmc");
    EXPECT_EQ(address.user(), "admin");
    EXPECT_EQ(address.password(), "");
    EXPECT_EQ(address.host(), "bmc");
}

TEST(BmcAddressTest, PasswordSplitAtFirstColonBeforeLastAt) {
    const BmcAddress address = Parsed("admin:p@ss:w@rd@bmc:1");
    EXPECT_EQ(address.user(), "admin");
    EXPECT_EQ(address.password(), "p@ss:w@rd");
    EXPECT_EQ(address.host(), "bmc");
    EXPECT_EQ(address.port(), 1);
}

TEST(BmcAddressTest, EmptyUserAndPasswordCountAsNotGiven) {
    const BmcAddress address = Parsed(":@bmc");
    EXPECT_EQ(address.user(), "");
    EXPECT_EQ(address.password(), "");
    EXPECT_EQ(address.host(), "bmc");
}

TEST(BmcAddressTest, Ipv6InBrackets) {
    const BmcAddress with_port = Parsed("root:pw@[fe80::1]:8443");
    EXPECT_EQ(with_port.host(), "fe80::1");
    EXPECT_EQ(with_port.port(), 8443);
    EXPECT_EQ(with_port.Display(), "[fe80::1]:8443");

    const BmcAddress without_port = Parsed("[::1]");
    EXPECT_EQ(without_port.host(), "::1");
    EXPECT_EQ(without_port.port(), 0);
    EXPECT_EQ(without_port.Display(), "[::1]");

    EXPECT_EQ(Parsed("[fe80::1%eth0]:443").host(), "fe80::1%eth0");
    EXPECT_EQ(Parsed("[::ffff:10.0.0.1]").host(), "::ffff:10.0.0.1");
}

TEST(BmcAddressTest, PortLimits) {
    EXPECT_EQ(Parsed("bmc:1").port(), 1);
    EXPECT_EQ(Parsed("bmc:65535").port(), 65535);
    EXPECT_EQ(Problem("bmc:0"), "--bmc: bad port '0' (1..65535 expected)");
    EXPECT_EQ(Problem("bmc:65536"), "--bmc: bad port '65536' (1..65535 expected)");
    EXPECT_EQ(Problem("bmc:99999999999"), "--bmc: bad port '99999999999' (1..65535 expected)");
    EXPECT_EQ(Problem("bmc:-1"), "--bmc: bad port '-1' (1..65535 expected)");
    EXPECT_EQ(Problem("bmc:44x"), "--bmc: bad port '44x' (1..65535 expected)");
    EXPECT_EQ(Problem("bmc:+443"), "--bmc: bad port '+443' (1..65535 expected)");
    EXPECT_EQ(Problem("bmc:"), "--bmc: missing port after ':'");
    EXPECT_EQ(Problem("[::1]:"), "--bmc: missing port after ':'");
    EXPECT_EQ(Problem("[::1]:0"), "--bmc: bad port '0' (1..65535 expected)");
}

TEST(BmcAddressTest, BadHosts) {
    EXPECT_EQ(Problem(""), "--bmc: no host given");
    EXPECT_EQ(Problem("admin:secret@"), "--bmc: no host given");
    EXPECT_EQ(Problem(":443"), "--bmc: no host given");
    EXPECT_EQ(Problem("[]:443"), "--bmc: no host given");
    EXPECT_EQ(Problem("fe80::1"), "--bmc: write an IPv6 address in brackets, e.g. [fe80::1]:8443");
    EXPECT_EQ(Problem("[fe80::1"), "--bmc: missing ']' after the IPv6 address in '[fe80::1'");
    EXPECT_EQ(Problem("[fe80::1]8443"), "--bmc: unexpected text after ']' in '[fe80::1]8443'");
    EXPECT_EQ(Problem("[bmc]"), "--bmc: 'bmc' is not an IPv6 address");
    EXPECT_EQ(Problem("https://bmc"), "--bmc: bad port '//bmc' (1..65535 expected)");
    EXPECT_EQ(Problem("bm c"), "--bmc: bad host name 'bm c'");
    EXPECT_EQ(Problem("bmc/x"), "--bmc: bad host name 'bmc/x'");
}

TEST(BmcAddressTest, MessagesNameTheOptionAndNeverThePassword) {
    const std::string secret = "Sup3rS3cret";
    for (const std::string& text :
         {"root:" + secret + "@bmc:0", "root:" + secret + "@", "root:" + secret + "@bm c",
          "root:" + secret + "@fe80::1", "root:" + secret + "@[zz]"}) {
        const std::string error = Problem(text, "--local-bmc");
        EXPECT_EQ(error.rfind("--local-bmc: ", 0), 0u) << error;
        EXPECT_EQ(error.find(secret), std::string::npos) << error;
    }
}

TEST(BmcAddressTest, FailedParseLeavesTheAddressAlone) {
    BmcAddress address = Parsed("root:pw@good:443");
    std::string error;
    EXPECT_FALSE(BmcAddress::Parse("bad:0", "--bmc", address, error));
    EXPECT_EQ(address.host(), "good");
    EXPECT_EQ(address.password(), "pw");
}

} // namespace
