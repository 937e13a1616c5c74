#pragma once

#include <CLI/App.hpp>

#include <string>
#include <vector>

namespace jstore {

/// The program's arguments, last first, as the command-line parser takes them, with those marked that it would
/// misread: names in brackets, empty ones, and everything after `--`.
[[nodiscard]] std::vector<std::string> markedArguments(int argc, const char* const* argv);

/// An argument that markedArguments() may have marked, as the user wrote it.
[[nodiscard]] std::string unmarked(std::string argument);

/// Text of the parser's that may quote marked arguments, without the marks.
[[nodiscard]] std::string withoutMarks(std::string text);

/// Adds a verb's positional arguments, at least `fewest`, read into `target` as the user wrote them.
CLI::Option& addArguments(CLI::App& verb, const std::string& name, std::vector<std::string>& target,
                          const std::string& help, int fewest = 1);

}  // namespace jstore
