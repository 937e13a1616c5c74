#pragma once

#include <map>
#include <string>
#include <vector>

namespace jstore {

/// The values that options or arguments take, by their names; any other value is a wrong command line.
using Words = std::map<std::string, std::vector<std::string>>;

/// What a user needs to know about a verb besides its options: for --help, the manual page and completions.
struct VerbHelp {
    std::string summary;                ///< a line for the list of verbs, without a full stop
    std::string text;                   ///< further lines; may be empty
    std::vector<std::string> examples;  ///< command lines that run as they are, in a folder that has such files
    Words words = {};                   ///< of the verb's own options and arguments
};

/// What --help shows below a verb's options.
[[nodiscard]] std::string footerOf(const VerbHelp& help);

}  // namespace jstore
