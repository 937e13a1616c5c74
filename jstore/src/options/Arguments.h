#pragma once

#include <CLI/App.hpp>

#include <string>
#include <vector>

namespace jstore {

/// The program's arguments, last first, as the command-line parser takes them. Arguments that the parser would misread
/// are marked: those that begin with a bracket, empty ones, `%%`, `++`, and everything after `--`.
[[nodiscard]] std::vector<std::string> markedArguments(int argc, const char* const* argv);

/// The argument as the user wrote it, whether markedArguments() has marked it or not.
[[nodiscard]] std::string unmarked(std::string argument);

/// A text from the parser, without the marks of the arguments that it quotes.
[[nodiscard]] std::string withoutMarks(std::string text);

/// Adds a verb's positional arguments, at least `fewest`, read into `target` as the user wrote them.
CLI::Option& addArguments(CLI::App& command, const std::string& name, std::vector<std::string>& target,
                          const std::string& help, int fewest = 1);

/// Adds the flag by which a verb shows sizes for people.
void addHuman(CLI::App& command, bool& human);

}  // namespace jstore
