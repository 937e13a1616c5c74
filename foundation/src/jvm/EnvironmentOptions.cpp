#include "jvm/EnvironmentOptions.h"

#include <algorithm>
#include <cstdlib>

#include "jvm/Failure.h"

namespace storage::jvm::detail {

namespace {

constexpr std::string_view Blanks = " \t\n\v\f\r";

/// Removes the quoted text from the front of `rest` and returns it without its quotes.
std::string_view takeQuoted(std::string_view& rest, const std::string& origin) {
    const std::size_t end = rest.find(rest.front(), 1);
    if (end == std::string_view::npos) {
        fail("Unmatched quote in " + origin);
    }
    const std::string_view quoted = rest.substr(1, end - 1);
    rest.remove_prefix(end + 1);
    return quoted;
}

std::string takeOption(std::string_view& rest, const std::string& origin) {
    std::string option;
    while (!rest.empty() && Blanks.find(rest.front()) == std::string_view::npos) {
        if (rest.front() == '\'' || rest.front() == '"') {
            option += takeQuoted(rest, origin);
        } else {
            option += rest.front();
            rest.remove_prefix(1);
        }
    }
    return option;
}

void skipBlanks(std::string_view& rest) { rest.remove_prefix(std::min(rest.find_first_not_of(Blanks), rest.size())); }

}  // namespace

std::vector<std::string> splitOptions(std::string_view text, const std::string& origin) {
    std::vector<std::string> options;
    for (skipBlanks(text); !text.empty(); skipBlanks(text)) {
        options.push_back(takeOption(text, origin));
    }
    return options;
}

std::vector<std::string> environmentOptions(const char* name) {
    const char* const text = secure_getenv(name);
    return text == nullptr ? std::vector<std::string>() : splitOptions(text, name);
}

}  // namespace storage::jvm::detail
