#include "host/action_help.hpp"

#include <algorithm>
#include <array>

namespace host {
namespace {

struct Action {
    const char* word;
    const char* summary;
    const char* details;
};

// The connection options every action accepts; listed once at the end of each action's text.
constexpr const char* kCommonOptions =
    "Common options:\n"
    "  --output DIR           where raid_result.xml and other files go (default: ./)\n"
    "  --log-dir DIR          where raidcfg.log goes (default: the output directory)\n"
    "  -q, --quiet            no progress output; the result line is still printed\n"
    "  --bmc, --local-bmc, --user, --password, --http, --insecure, --cacert, --timeout,\n"
    "  --system, --machine    see raidcfg --help\n";

const std::array<Action, 14> kActions = {{
    {"show", "show controllers, volumes and disks",
     "Shows the RAID controllers with their volumes, disk groups, hot spares and physical\n"
     "disks, with states and sizes. Changes nothing.\n"
     "\n"
     "Options:\n"
     "  --ctrl N               only this controller (default: all)\n"
     "  --target LIST          in-band: only these controllers (see raidcfg --help)\n"
     "  --cfc                  the server is a CFC system (not together with --target)\n"},
    {"add", "create volumes and hot spares from a policy file",
     "Creates the volumes and hot spares that a policy file describes (RAID level, member\n"
     "disks, size, cache settings, hot spares). Disks must be unconfigured-good; see makegood.\n"
     "Write a starting policy with \"raidcfg save\".\n"
     "\n"
     "Options:\n"
     "  --file PATH            the policy file to apply (required)\n"
     "  --ctrl N               apply it to this controller only\n"
     "  -y, --yes              do not ask for confirmation\n"},
    {"save", "write the current configuration as a policy file",
     "Writes the current RAID configuration (volumes, levels, member disks, hot spares) as a\n"
     "policy file that \"raidcfg add\" can apply again, on this or an identical server.\n"
     "\n"
     "Options:\n"
     "  --file PATH            the policy file to write\n"
     "  --ctrl N               only this controller (default: all)\n"
     "  --save-to-output       write the policy file under the output directory\n"},
    {"diff", "compare the server with a policy file",
     "Reads the current configuration as save does (into a temporary file that is removed)\n"
     "and compares it with a policy file, controller by controller, for the controllers the\n"
     "policy names: volumes to create, volumes that exist and differ (level, name, size,\n"
     "strip size, the policies the file states, dedicated hot spares), volumes the policy\n"
     "does not name, and global hot spares. A volume is matched by its disks (on M.2 by its\n"
     "controller). Changes nothing. Exits 0 when the server matches, 3 when it differs, and\n"
     "with the code of the read when reading failed.\n"
     "\n"
     "Options:\n"
     "  --file PATH            the policy file to compare with (required)\n"
     "  --ctrl N, --target LIST, --cfc   what to read, as for save\n"
     "  --json                 the difference as one JSON document\n"},
    {"clear", "remove volumes or the whole configuration",
     "Deletes volumes. With --vol only the listed volumes go; without it the whole RAID\n"
     "configuration of the selected controllers is cleared. DATA ON THOSE VOLUMES IS LOST.\n"
     "\n"
     "Options:\n"
     "  --ctrl N               only this controller (default: all)\n"
     "  --vol LIST             only these volumes, e.g. 0,2\n"
     "  -y, --yes              do not ask for confirmation\n"},
    {"makegood", "make disks unconfigured-good",
     "Turns JBOD or unconfigured-bad disks into unconfigured-good disks, ready to be used in\n"
     "new volumes or as hot spares. Data on a JBOD disk is no longer reachable afterwards.\n"
     "\n"
     "Options:\n"
     "  --ctrl N               the controller of the disks\n"
     "  --disk LIST            the disks to change (default: all that qualify)\n"
     "  -y, --yes              do not ask for confirmation\n"},
    {"makejbod", "make disks JBOD (pass-through)",
     "Turns unconfigured-good disks into JBOD disks that the operating system sees directly,\n"
     "without a volume. Disks that are members of a volume or hot spares are not touched.\n"
     "\n"
     "Options:\n"
     "  --ctrl N               the controller of the disks\n"
     "  --disk LIST            the disks to change (default: all that qualify)\n"
     "  -y, --yes              do not ask for confirmation\n"},
    {"init", "fast initialisation of volumes (out-of-band only)",
     "Starts a fast initialisation of volumes, which wipes the start of each volume so that\n"
     "old partition tables and file systems disappear. DATA ON THOSE VOLUMES IS LOST.\n"
     "Runs out-of-band only: give --bmc.\n"
     "\n"
     "Options:\n"
     "  --ctrl N               the controller of the volumes\n"
     "  --vol LIST             the volumes to initialise\n"
     "  -y, --yes              do not ask for confirmation\n"},
    {"addhsp", "add hot spares (global, or dedicated with --dg)",
     "Makes unconfigured-good disks hot spares. Without --dg they are global hot spares that\n"
     "stand in for any failed disk of the controller; with --dg they are dedicated to the\n"
     "listed disk groups.\n"
     "\n"
     "Options:\n"
     "  --ctrl N               the controller of the disks\n"
     "  --disk LIST            the disks to make hot spares\n"
     "  --dg LIST              dedicate them to these disk groups\n"
     "  -y, --yes              do not ask for confirmation\n"},
    {"rmhsp", "remove hot spares",
     "Turns hot spares back into unconfigured-good disks; global and dedicated hot spares\n"
     "alike.\n"
     "\n"
     "Options:\n"
     "  --ctrl N               the controller of the disks\n"
     "  --disk LIST            the hot spares to remove\n"
     "  -y, --yes              do not ask for confirmation\n"},
    {"changemode", "change connector mode",
     "Changes the mode of controller connectors (ports), e.g. between RAID and HBA use.\n"
     "\n"
     "Options:\n"
     "  --ctrl N               the controller\n"
     "  --connector LIST       the connectors to change\n"
     "  --mode VALUE           the mode to set\n"
     "  -y, --yes              do not ask for confirmation\n"},
    {"fwdeviceorder", "show or change firmware device order",
     "Shows the firmware device order mode of the LSI controllers, or turns it to the mode\n"
     "given. A change takes effect at the next boot.\n"
     "\n"
     "Options:\n"
     "  --mode VALUE           the mode to turn to; without it the mode is shown\n"},
    {"ekm", "show or change external key management",
     "Shows whether the controller takes its encryption keys from an external key\n"
     "management server, or switches that mode.\n"
     "\n"
     "Options:\n"
     "  --ctrl N               the controller\n"
     "  --mode VALUE           the mode to set; without it the current mode is shown\n"
     "  -y, --yes              do not ask for confirmation\n"},
    {"envol", "show or enable volume encryption",
     "Shows which volumes are encrypted, or enables encryption on volumes whose disks support\n"
     "it.\n"
     "\n"
     "Options:\n"
     "  --ctrl N               the controller\n"
     "  --mode enable          enable encryption (in any letter case; the only change offered);\n"
     "                         without it the state is shown. Encryption cannot be undone.\n"
     "  --vol LIST             the volumes to encrypt\n"
     "  -y, --yes              do not ask for confirmation\n"},
}};

const Action* Find(const std::string& word) {
    const auto found = std::find_if(kActions.begin(), kActions.end(),
                                    [&word](const Action& action) { return word == action.word; });
    return found == kActions.end() ? nullptr : &*found;
}

} // namespace

const std::vector<std::string>& ActionHelp::Words() {
    static const std::vector<std::string> words = [] {
        std::vector<std::string> list;
        list.reserve(kActions.size());
        for (const Action& action : kActions) {
            list.emplace_back(action.word);
        }
        return list;
    }();
    return words;
}

bool ActionHelp::IsAction(const std::string& word) {
    return Find(word) != nullptr;
}

std::string ActionHelp::WordList() {
    std::string list;
    for (const Action& action : kActions) {
        if (!list.empty()) {
            list += ' ';
        }
        list += action.word;
    }
    return list;
}

std::string ActionHelp::ProgramText() {
    std::string text =
        "Usage: raidcfg COMMAND [OPTIONS]\n"
        "       raidcfg COMMAND --help      explain one action\n"
        "       raidcfg --version\n"
        "\n"
        "Configures RAID controllers (volumes, hot spares, disk states, controller settings) on\n"
        "this machine, or out-of-band through the server's BMC. Every run ends with one line on\n"
        "standard output, \"CODE MESSAGE\", leaves raid_result.xml in the output directory and\n"
        "exits with CODE (1 when CODE is above 255).\n"
        "\n"
        "Actions:\n";
    for (const Action& action : kActions) {
        std::string word = action.word;
        word.resize(16, ' ');
        text += "  " + word + action.summary + "\n";
    }
    text +=
        "\n"
        "What to act on:\n"
        "  --ctrl N               controller number (default: all controllers)\n"
        "  --target LIST          in-band controllers by family, a comma-separated list of:\n"
        "                         all, hw, sw, m2, a number, m2-N, vrocN, mdN\n"
        "  --vol LIST             volume ids, e.g. 0,1\n"
        "  --disk LIST            disk ids\n"
        "  --dg LIST              disk group ids\n"
        "  --connector LIST       connector ids\n"
        "  --mode VALUE           the value for changemode, fwdeviceorder, ekm and envol\n"
        "  --file PATH            policy file to apply (add) or write (save)\n"
        "  --cfc                  the server is a CFC system: one BMC interface serves its LSI,\n"
        "                         Microchip and M.2 controllers (not together with --target)\n"
        "  -y, --yes              do not ask before changing or erasing anything\n"
        "\n"
        "Output:\n"
        "  --output DIR           directory of raid_result.xml and other files (default: ./);\n"
        "                         created if missing\n"
        "  --save-to-output       save: write the policy file under the output directory\n"
        "  --log-dir DIR          directory of raidcfg.log (default: the output directory);\n"
        "                         created if missing\n"
        "  -q, --quiet            no progress output; the result line is still printed\n"
        "\n"
        "Connection:\n"
        "  --bmc [USER[:PASSWORD]@]HOST[:PORT]\n"
        "                         work out-of-band through this BMC\n"
        "  --local-bmc [USER[:PASSWORD]@]HOST[:PORT]\n"
        "                         work on this machine; actions that only the BMC's REST\n"
        "                         interface serves go to this machine's own BMC there\n"
        "  --user USER            BMC user name (overrides the one in --bmc)\n"
        "  --password PASS        BMC password (overrides the one in --bmc); without a password\n"
        "                         anywhere, the environment variable RAIDCFG_BMC_PASSWORD is used\n"
        "  --http                 plain HTTP instead of HTTPS\n"
        "  --insecure             do not verify the BMC's TLS certificate\n"
        "  --cacert FILE          trust the certificates of this PEM file for the BMC\n"
        "  --timeout SECONDS      limit for each BMC request, a whole number (default: 30)\n"
        "  --system ID            on a BMC that manages several computer systems: only the\n"
        "                         storage of the system whose Redfish Id is ID (default: every\n"
        "                         system's storage, in the BMC's order)\n"
        "  --machine FILE|demo    serve everything from a simulated machine: the built-in demo\n"
        "                         or a JSON file; RAIDCFG_MACHINE is used when it is not given\n"
        "\n"
        "  -h, --help             this text; raidcfg COMMAND --help explains one action\n"
        "  --version              the program's version\n"
        "\n"
        "Rules:\n"
        "  In --bmc and --local-bmc, the user part is the text before the LAST '@', split into\n"
        "  user and password at its FIRST ':': a password may hold '@' and ':', a user name may\n"
        "  not hold ':'. Write an IPv6 address in brackets: [fe80::1]:8443. PORT is 1..65535;\n"
        "  without it the default port of the scheme is used (443, or 80 with --http).\n"
        "  Passwords on a command line can be seen by other users of the machine: prefer\n"
        "  RAIDCFG_BMC_PASSWORD. The password is never logged or printed.\n"
        "  --bmc and --local-bmc cannot be used together, nor --insecure and --cacert. The\n"
        "  connection options have no effect without --bmc or --local-bmc.\n"
        "  Each option may be given once. A value that starts with '-' and a letter, or with\n"
        "  \"--\", is written as --option=VALUE.\n"
        "\n"
        "Exit status:\n"
        "  0 success; 5 a bad command line or machine file (one \"raidcfg: ...\" line on\n"
        "  standard error, no file written); otherwise the result code (1 when above 255).\n";
    return text;
}

std::string ActionHelp::ActionText(const std::string& word) {
    const Action* action = Find(word);
    if (action == nullptr) {
        return ProgramText();
    }
    return std::string("Usage: raidcfg ") + action->word + " [OPTIONS]\n\n" + action->details +
           "\n" + kCommonOptions;
}

} // namespace host
