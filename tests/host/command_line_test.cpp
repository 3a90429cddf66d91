#include <filesystem>
#include <map>
#include <optional>
#include <string>
#include <vector>

#include "host/command_line.hpp"
#include "tests/support/file_text.hpp"
#include "tests/support/temp_dir.hpp"

#include <gtest/gtest.h>

namespace {

const char* const kWords[] = {"show",          "add",  "save",   "clear", "makegood",
                              "makejbod",      "init", "addhsp", "rmhsp", "changemode",
                              "fwdeviceorder", "ekm",  "envol"};

class CommandLineTest : public ::testing::Test {
protected:
    bool Parse(const std::vector<std::string>& args) {
        std::vector<const char*> argv{"raidcfg"};
        for (const std::string& arg : args) {
            argv.push_back(arg.c_str());
        }
        argv.push_back(nullptr);
        return line_.Parse(static_cast<int>(argv.size() - 1), argv.data());
    }

    // Expects args to be refused with exactly this problem, exit status 5 and nothing on stdout.
    void ExpectProblem(const std::vector<std::string>& args, const std::string& problem) {
        std::string shown;
        for (const std::string& arg : args) {
            shown += " [" + arg + "]";
        }
        EXPECT_FALSE(Parse(args)) << shown;
        EXPECT_EQ(line_.exit_code(), 5) << shown;
        EXPECT_EQ(line_.error(), "raidcfg: " + problem + "\n") << shown;
        EXPECT_EQ(line_.output(), "") << shown;
    }

    const RaidConfig::RaidConfigOption& option() const { return line_.settings().option; }
    const TesselConnect::ConnectOption& connect() const { return option().connect_option; }

    std::map<std::string, std::string> env_;
    host::CommandLine line_{[this](const std::string& name) -> std::optional<std::string> {
        const auto found = env_.find(name);
        if (found == env_.end()) {
            return std::nullopt;
        }
        return found->second;
    }};
    raidcfg_test::TempDir temp_;
};

TEST_F(CommandLineTest, Defaults) {
    ASSERT_TRUE(Parse({"show"})) << line_.error();
    EXPECT_EQ(line_.exit_code(), 0);
    EXPECT_EQ(line_.error(), "");
    EXPECT_EQ(option().command, "show");
    EXPECT_EQ(option().output_dir, "./");
    EXPECT_EQ(line_.settings().log_dir, "./");
    EXPECT_EQ(line_.settings().machine, "");
    EXPECT_TRUE(option().console_output);
    EXPECT_EQ(option().policy_file, "");
    EXPECT_EQ(option().ctrl_index, "");
    EXPECT_EQ(option().target, "");
    EXPECT_EQ(option().volume_ids, "");
    EXPECT_EQ(option().disk_ids, "");
    EXPECT_EQ(option().disk_group_ids, "");
    EXPECT_EQ(option().connector_ids, "");
    EXPECT_EQ(option().mode_value, "");
    EXPECT_FALSE(option().assume_yes);
    EXPECT_FALSE(option().save_to_output_dir);
    EXPECT_FALSE(option().cfc);
    EXPECT_EQ(connect().kind, TesselConnect::kConnectLocal);
    EXPECT_EQ(connect().target, "");
    EXPECT_EQ(connect().user, "");
    EXPECT_EQ(connect().password, "");
    EXPECT_EQ(connect().host, "");
    EXPECT_EQ(connect().port, 0);
    EXPECT_EQ(connect().scheme, "https");
    EXPECT_TRUE(connect().verify_tls);
    EXPECT_EQ(connect().ca_file, "");
    EXPECT_EQ(connect().timeout_seconds, 30);
}

TEST_F(CommandLineTest, EveryOptionReachesItsField) {
    const std::string ca = temp_.File("ca.pem");
    raidcfg_test::WriteFile(ca, "-----BEGIN CERTIFICATE-----\n");
    ASSERT_TRUE(Parse({"add",
                       "--output",
                       "out",
                       "--file",
                       "policy.ini",
                       "--ctrl",
                       "2",
                       "--target",
                       "t1,t2",
                       "--vol",
                       "0,1",
                       "--disk",
                       "3,4",
                       "--dg",
                       "5",
                       "--connector",
                       "0,1",
                       "--mode",
                       "raid",
                       "-y",
                       "--save-to-output",
                       "--cfc",
                       "-q",
                       "--bmc",
                       "root:pw@bmc:8443",
                       "--http",
                       "--cacert",
                       ca,
                       "--timeout",
                       "7",
                       "--machine",
                       "demo",
                       "--log-dir",
                       "logs"}))
        << line_.error();
    EXPECT_EQ(option().command, "add");
    EXPECT_EQ(option().output_dir, "out/");
    EXPECT_EQ(option().policy_file, "policy.ini");
    EXPECT_EQ(option().ctrl_index, "2");
    EXPECT_EQ(option().target, "t1,t2");
    EXPECT_EQ(option().volume_ids, "0,1");
    EXPECT_EQ(option().disk_ids, "3,4");
    EXPECT_EQ(option().disk_group_ids, "5");
    EXPECT_EQ(option().connector_ids, "0,1");
    EXPECT_EQ(option().mode_value, "raid");
    EXPECT_TRUE(option().assume_yes);
    EXPECT_TRUE(option().save_to_output_dir);
    EXPECT_TRUE(option().cfc);
    EXPECT_FALSE(option().console_output);
    EXPECT_EQ(connect().kind, TesselConnect::kConnectOutOfBand);
    EXPECT_EQ(connect().target, "root:pw@bmc:8443");
    EXPECT_EQ(connect().user, "root");
    EXPECT_EQ(connect().password, "pw");
    EXPECT_EQ(connect().host, "bmc");
    EXPECT_EQ(connect().port, 8443);
    EXPECT_EQ(connect().scheme, "http");
    EXPECT_TRUE(connect().verify_tls);
    EXPECT_EQ(connect().ca_file, ca);
    EXPECT_EQ(connect().timeout_seconds, 7);
    EXPECT_EQ(line_.settings().machine, "demo");
    EXPECT_EQ(line_.settings().log_dir, "logs/");
}

TEST_F(CommandLineTest, LongFlagsAndEqualsForm) {
    ASSERT_TRUE(
        Parse({"--yes", "--quiet", "--insecure", "--ctrl=3", "--vol=-1", "clear", "--mode=--odd"}))
        << line_.error();
    EXPECT_EQ(option().command, "clear");
    EXPECT_TRUE(option().assume_yes);
    EXPECT_FALSE(option().console_output);
    EXPECT_FALSE(connect().verify_tls);
    EXPECT_EQ(option().ctrl_index, "3");
    EXPECT_EQ(option().volume_ids, "-1");
    EXPECT_EQ(option().mode_value, "--odd");
}

TEST_F(CommandLineTest, ShortFlagsTogether) {
    ASSERT_TRUE(Parse({"-yq", "makegood"})) << line_.error();
    EXPECT_TRUE(option().assume_yes);
    EXPECT_FALSE(option().console_output);
}

TEST_F(CommandLineTest, ValuesAreTakenAsGiven) {
    ASSERT_TRUE(Parse({"show", "--ctrl", "-1", "--target", ""})) << line_.error();
    EXPECT_EQ(option().ctrl_index, "-1");
    EXPECT_EQ(option().target, "");
    ASSERT_TRUE(Parse({"show", "--ctrl", "abc"})) << line_.error();
    EXPECT_EQ(option().ctrl_index, "abc");
}

TEST_F(CommandLineTest, CommandIsCopiedVerbatim) {
    ASSERT_TRUE(Parse({"frobnicate"})) << line_.error();
    EXPECT_EQ(option().command, "frobnicate");
    ASSERT_TRUE(Parse({"SHOW"})) << line_.error();
    EXPECT_EQ(option().command, "SHOW");
    ASSERT_TRUE(Parse({"--", "-odd"})) << line_.error();
    EXPECT_EQ(option().command, "-odd");
}

TEST_F(CommandLineTest, OutputGetsATrailingSlashAndIsTheDefaultLogDir) {
    ASSERT_TRUE(Parse({"show", "--output", "results"})) << line_.error();
    EXPECT_EQ(option().output_dir, "results/");
    EXPECT_EQ(line_.settings().log_dir, "results/");
    ASSERT_TRUE(Parse({"show", "--output", "runs/r1/"})) << line_.error();
    EXPECT_EQ(option().output_dir, "runs/r1/");
    ASSERT_TRUE(Parse({"show", "--output", "r", "--log-dir", "l/"})) << line_.error();
    EXPECT_EQ(option().output_dir, "r/");
    EXPECT_EQ(line_.settings().log_dir, "l/");
}

TEST_F(CommandLineTest, ParseDoesNotTouchTheDisk) {
    const std::string out = temp_.File("out");
    const std::string logs = temp_.File("logs");
    ASSERT_TRUE(Parse({"show", "--output", out, "--log-dir", logs})) << line_.error();
    EXPECT_FALSE(std::filesystem::exists(out));
    EXPECT_FALSE(std::filesystem::exists(logs));
}

TEST_F(CommandLineTest, LocalBmc) {
    ASSERT_TRUE(Parse({"ekm", "--local-bmc", "admin@[fe80::2]:443"})) << line_.error();
    EXPECT_EQ(connect().kind, TesselConnect::kConnectLocalBmc);
    EXPECT_EQ(connect().target, "admin@[fe80::2]:443");
    EXPECT_EQ(connect().user, "admin");
    EXPECT_EQ(connect().password, "");
    EXPECT_EQ(connect().host, "fe80::2");
    EXPECT_EQ(connect().port, 443);
}

TEST_F(CommandLineTest, PasswordAndUserOverrideOrder) {
    env_["RAIDCFG_BMC_PASSWORD"] = "from-env";

    ASSERT_TRUE(Parse({"show", "--bmc", "bmc"})) << line_.error();
    EXPECT_EQ(connect().user, "");
    EXPECT_EQ(connect().password, "from-env");

    ASSERT_TRUE(Parse({"show", "--bmc", "root:from-arg@bmc"})) << line_.error();
    EXPECT_EQ(connect().user, "root");
    EXPECT_EQ(connect().password, "from-arg");

    ASSERT_TRUE(
        Parse({"show", "--bmc", "root:from-arg@bmc", "--user", "admin", "--password", "from-flag"}))
        << line_.error();
    EXPECT_EQ(connect().user, "admin");
    EXPECT_EQ(connect().password, "from-flag");
    EXPECT_EQ(connect().target, "root:from-arg@bmc");

    ASSERT_TRUE(Parse({"show", "--local-bmc", "root@bmc", "--password", "from-flag"}))
        << line_.error();
    EXPECT_EQ(connect().password, "from-flag");

    ASSERT_TRUE(Parse({"show", "--local-bmc", "root:@bmc"})) << line_.error();
    EXPECT_EQ(connect().password, "from-env");
}

TEST_F(CommandLineTest, DiffNeedsAPolicyFileAndOnlyDiffTakesJson) {
    EXPECT_FALSE(Parse({"diff"}));
    EXPECT_EQ(line_.error(),
              "raidcfg: diff needs --file POLICY, the policy file to compare with\n");
    EXPECT_FALSE(Parse({"show", "--json"}));
    EXPECT_EQ(line_.error(), "raidcfg: --json is only for diff\n");
    ASSERT_TRUE(Parse({"diff", "--file", "p.ini", "--json"})) << line_.error();
    EXPECT_EQ(line_.settings().option.command, "diff");
    EXPECT_EQ(line_.settings().option.policy_file, "p.ini");
    EXPECT_TRUE(line_.settings().json);
}

TEST_F(CommandLineTest, EnvironmentPasswordOnlyWithABmcOrAUserName) {
    env_["RAIDCFG_BMC_PASSWORD"] = "from-env";
    ASSERT_TRUE(Parse({"show"})) << line_.error();
    EXPECT_EQ(connect().password, "");
    ASSERT_TRUE(Parse({"ekm", "--user", "admin"})) << line_.error();
    EXPECT_EQ(connect().user, "admin");
    EXPECT_EQ(connect().password, "from-env");
}

TEST_F(CommandLineTest, MachineFromFlagOrEnvironment) {
    const std::string file = temp_.File("machine.json");
    raidcfg_test::WriteFile(file, R"({"controllers": []})");
    ASSERT_TRUE(Parse({"show", "--machine", file})) << line_.error();
    EXPECT_EQ(line_.settings().machine, file);

    env_["RAIDCFG_MACHINE"] = "demo";
    ASSERT_TRUE(Parse({"show"})) << line_.error();
    EXPECT_EQ(line_.settings().machine, "demo");
    ASSERT_TRUE(Parse({"show", "--machine", file})) << line_.error();
    EXPECT_EQ(line_.settings().machine, file);

    env_["RAIDCFG_MACHINE"] = "";
    ASSERT_TRUE(Parse({"show"})) << line_.error();
    EXPECT_EQ(line_.settings().machine, "");
}

TEST_F(CommandLineTest, HelpAndVersion) {
    for (const std::vector<std::string>& args :
         std::vector<std::vector<std::string>>{{"--help"}, {"-h"}, {"frobnicate", "--help"}}) {
        EXPECT_FALSE(Parse(args));
        EXPECT_EQ(line_.exit_code(), 0);
        EXPECT_EQ(line_.error(), "");
        EXPECT_EQ(line_.output().rfind("Usage: raidcfg COMMAND [OPTIONS]\n", 0), 0u);
        for (const char* word : kWords) {
            EXPECT_NE(line_.output().find("\n  " + std::string(word) + " "), std::string::npos)
                << word;
        }
        for (const char* flag :
             {"--output",         "--file",     "--ctrl",      "--target",   "--vol",
              "--disk",           "--dg",       "--connector", "--mode",     "--yes",
              "--save-to-output", "--cfc",      "--quiet",     "--bmc",      "--local-bmc",
              "--user",           "--password", "--http",      "--insecure", "--cacert",
              "--timeout",        "--machine",  "--log-dir",   "--help",     "--version"}) {
            EXPECT_NE(line_.output().find(flag), std::string::npos) << flag;
        }
    }

    for (const char* word : kWords) {
        EXPECT_FALSE(Parse({word, "--help"}));
        EXPECT_EQ(line_.exit_code(), 0);
        EXPECT_EQ(line_.output().rfind("Usage: raidcfg " + std::string(word) + " [OPTIONS]\n", 0),
                  0u)
            << word;
    }

    EXPECT_FALSE(Parse({"--version"}));
    EXPECT_EQ(line_.exit_code(), 0);
    EXPECT_EQ(line_.output(), "raidcfg " RAIDCFG_VERSION "\n");
    EXPECT_EQ(line_.error(), "");
}

TEST_F(CommandLineTest, HelpWinsOverMistakes) {
    EXPECT_FALSE(Parse({"show", "--bogus", "--ctrl", "--help"}));
    EXPECT_EQ(line_.exit_code(), 0);
    EXPECT_EQ(line_.output().rfind("Usage: raidcfg show [OPTIONS]\n", 0), 0u);
    EXPECT_FALSE(Parse({"clear", "-yh"}));
    EXPECT_EQ(line_.exit_code(), 0);
    EXPECT_EQ(line_.output().rfind("Usage: raidcfg clear [OPTIONS]\n", 0), 0u);
}

TEST_F(CommandLineTest, WordsAndUnknownOptions) {
    const std::string words =
        "show add save diff clear makegood makejbod init addhsp rmhsp changemode "
        "fwdeviceorder ekm envol";
    ExpectProblem({}, "missing COMMAND; one of: " + words);
    ExpectProblem({"--yes", "--ctrl", "1"}, "missing COMMAND; one of: " + words);
    ExpectProblem({"show", "extra"}, "unexpected argument 'extra' after COMMAND 'show'");
    ExpectProblem({"show", "--", "--ctrl"}, "unexpected argument '--ctrl' after COMMAND 'show'");
    ExpectProblem({"show", "--bogus"}, "unknown option '--bogus'");
    ExpectProblem({"show", "--bogus=secret"}, "unknown option '--bogus'");
    ExpectProblem({"show", "-x"}, "unknown option '-x'");
    ExpectProblem({"show", "-yx"}, "unknown option '-x'");
    ExpectProblem({"show", "-1"}, "unknown option '-1'");
    ExpectProblem({"show", "--yes=1"}, "option --yes takes no value");
    ExpectProblem({"show", "--bogus", "--nope"}, "unknown option '--bogus'");
}

TEST_F(CommandLineTest, MissingAndRepeatedValues) {
    for (const char* name : {"--output", "--file", "--ctrl", "--target", "--vol", "--disk", "--dg",
                             "--connector", "--mode", "--bmc", "--local-bmc", "--user",
                             "--password", "--cacert", "--timeout", "--machine", "--log-dir"}) {
        const std::string flag = name;
        ExpectProblem({"show", flag}, "option " + flag + " needs a value");
        ExpectProblem({"show", flag, "--yes"}, "option " + flag + " needs a value");
        ExpectProblem({"show", flag, "-q"}, "option " + flag + " needs a value");
        ExpectProblem({"show", flag + "="}, "option " + flag + " needs a value");
        ExpectProblem({"show", flag, "--"}, "option " + flag + " needs a value");
        ExpectProblem({"show", flag + "=a", flag, "b"},
                      "option " + flag + " is given more than once");
    }
    for (const char* name :
         {"--output", "--log-dir", "--machine", "--cacert", "--user", "--password", "--timeout"}) {
        ExpectProblem({"show", name, ""}, "option " + std::string(name) + " needs a value");
    }
}

TEST_F(CommandLineTest, ConflictingOptions) {
    ExpectProblem({"show", "--bmc", "a", "--local-bmc", "b"},
                  "--bmc and --local-bmc cannot be used together");
    const std::string ca = temp_.File("ca.pem");
    raidcfg_test::WriteFile(ca, "x");
    ExpectProblem({"show", "--bmc", "a", "--insecure", "--cacert", ca},
                  "--insecure and --cacert cannot be used together");
}

TEST_F(CommandLineTest, BadBmcAddresses) {
    ExpectProblem({"show", "--bmc", "root:pw@bmc:0"}, "--bmc: bad port '0' (1..65535 expected)");
    ExpectProblem({"show", "--bmc", "bmc:65536"}, "--bmc: bad port '65536' (1..65535 expected)");
    ExpectProblem({"show", "--bmc", "bmc:x"}, "--bmc: bad port 'x' (1..65535 expected)");
    ExpectProblem({"show", "--bmc", "bmc:"}, "--bmc: missing port after ':'");
    ExpectProblem({"show", "--bmc", "root:pw@"}, "--bmc: no host given");
    ExpectProblem({"show", "--bmc", ""}, "--bmc: no host given");
    ExpectProblem({"show", "--local-bmc", ":443"}, "--local-bmc: no host given");
    ExpectProblem({"show", "--bmc", "::1"},
                  "--bmc: write an IPv6 address in brackets, e.g. [fe80::1]:8443");
    ExpectProblem({"show", "--bmc", "[::1"}, "--bmc: missing ']' after the IPv6 address in '[::1'");
    ExpectProblem({"show", "--bmc", "b c"}, "--bmc: bad host name 'b c'");
}

TEST_F(CommandLineTest, BadTimeouts) {
    for (const char* text : {"0", "-1", "-5", "abc", "1.5", "5s", " 5", "+5", "99999999999"}) {
        ExpectProblem({"show", "--timeout", text},
                      "--timeout: '" + std::string(text) +
                          "' is not a positive whole number of seconds");
    }
    ASSERT_TRUE(Parse({"show", "--timeout", "1"})) << line_.error();
    EXPECT_EQ(connect().timeout_seconds, 1);
}

TEST_F(CommandLineTest, UnreadableCaFile) {
    const std::string missing = temp_.File("missing.pem");
    ExpectProblem({"show", "--cacert", missing},
                  "--cacert: cannot read '" + missing + "': No such file or directory");
    ExpectProblem({"show", "--cacert", temp_.path()},
                  "--cacert: cannot read '" + temp_.path() + "': Is a directory");
}

TEST_F(CommandLineTest, UnusableMachineFiles) {
    const std::string missing = temp_.File("missing.json");
    ExpectProblem({"show", "--machine", missing},
                  "--machine: cannot read '" + missing + "': No such file or directory");
    ExpectProblem({"show", "--machine", temp_.path()},
                  "--machine: cannot read '" + temp_.path() + "': Is a directory");
    ExpectProblem({"show", "--machine", "Demo"},
                  "--machine: cannot read 'Demo': No such file or directory");

    env_["RAIDCFG_MACHINE"] = missing;
    ExpectProblem({"show"},
                  "RAIDCFG_MACHINE: cannot read '" + missing + "': No such file or directory");
}

TEST_F(CommandLineTest, ProblemsComeInArgumentOrderBeforeTheRest) {
    ExpectProblem({"show", "--bogus", "--ctrl"}, "unknown option '--bogus'");
    ExpectProblem({"show", "extra", "--timeout", "0"},
                  "unexpected argument 'extra' after COMMAND 'show'");
    ExpectProblem({"show", "--timeout", "0", "--bmc", "bmc:0"},
                  "--bmc: bad port '0' (1..65535 expected)");
}

TEST_F(CommandLineTest, PasswordNeverInAnyMessage) {
    const std::string secret = "Zq9-secret-Word";
    env_["RAIDCFG_BMC_PASSWORD"] = secret;
    const std::vector<std::vector<std::string>> lines = {
        {"show", "--bmc", "root:" + secret + "@bmc:0"},
        {"show", "--bmc", "root:" + secret + "@"},
        {"show", "--bmc", "root:" + secret + "@b c"},
        {"show", "--bmc", "root:" + secret + "@::1"},
        {"show", "--bmc", "bmc", "--password", secret, "--timeout", "0"},
        {"show", "--bmc", "bmc", "--password=" + secret, "--password", "x"},
        {"show", "--bogus=" + secret},
        {"show", "--bmc=root:" + secret + "@bmc", "--local-bmc", "x"},
        {"show", "--bmc", "bmc", "--insecure", "--cacert", secret},
    };
    for (const std::vector<std::string>& args : lines) {
        EXPECT_FALSE(Parse(args));
        EXPECT_EQ(line_.exit_code(), 5);
        EXPECT_EQ(line_.error().find(secret), std::string::npos) << line_.error();
    }
}

} // namespace
