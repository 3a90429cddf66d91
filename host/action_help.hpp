#pragma once

#include <string>
#include <vector>

namespace host {

// The help texts of raidcfg: the program's, and one per action word.
class ActionHelp {
public:
    // The action words in the order the help lists them: the service's, and diff, which the
    // host carries out itself on top of save.
    static const std::vector<std::string>& Words();
    static bool IsAction(const std::string& word);
    // The words separated by blanks, for hints.
    static std::string WordList();

    // "raidcfg --help": usage, the actions with one line each, every option and the rules.
    static std::string ProgramText();
    // "raidcfg WORD --help": what the action does and which options it uses; the program's text
    // for a word that is not an action.
    static std::string ActionText(const std::string& word);
};

} // namespace host
