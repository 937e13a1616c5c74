#include "options/VerbHelp.h"

namespace jstore {

std::string footerOf(const VerbHelp& help) {
    std::string footer = help.text + (help.text.empty() ? "" : "\n\n") + "Examples:\n";
    for (const std::string& example : help.examples) {
        footer += "  " + example + '\n';
    }
    return footer + "\njstore --help lists the common options.";
}

}  // namespace jstore
