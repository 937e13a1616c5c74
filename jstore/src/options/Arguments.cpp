#include "options/Arguments.h"

#include <algorithm>
#include <string_view>

namespace jstore {

namespace {

// The parser splits "[a,b]" into two values, reads an empty value and "%%" as separators and "++" as the end of a verb,
// and forgets "--" when it returns from a verb to the program's options. A leading mark hides all that from it.
constexpr char Mark = '\x01';

bool misread(std::string_view argument) {
    return argument.empty() || argument == "%%" || argument == "++" || argument.front() == '[' ||
           argument.front() == Mark;
}

}  // namespace

std::vector<std::string> markedArguments(int argc, const char* const* argv) {
    std::vector<std::string> arguments;
    bool plain = false;
    for (int i = 1; i < argc; ++i) {
        const std::string_view argument = argv[i];
        if (!plain && argument == "--") {
            plain = true;
            continue;
        }
        arguments.push_back(plain || misread(argument) ? Mark + std::string(argument) : std::string(argument));
    }
    std::reverse(arguments.begin(), arguments.end());
    return arguments;
}

std::string unmarked(std::string argument) {
    if (argument.starts_with(Mark)) {
        argument.erase(0, 1);
    }
    return argument;
}

std::string withoutMarks(std::string text) {
    text.erase(std::remove(text.begin(), text.end(), Mark), text.end());
    return text;
}

CLI::Option& addArguments(CLI::App& command, const std::string& name, std::vector<std::string>& target,
                          const std::string& help, int fewest) {
    const auto take = [&target](const std::vector<std::string>& values) {
        std::transform(values.begin(), values.end(), std::back_inserter(target), unmarked);
    };
    CLI::Option* const option = command.add_option_function<std::vector<std::string>>(name, take, help);
    return *option->required()->expected(fewest, CLI::detail::expected_max_vector_size)->type_name("");
}

void addHuman(CLI::App& command, bool& human) {
    command.add_flag("-H,--human", human, "Show sizes as 1.5K, 20.0M and so on");
}

}  // namespace jstore
