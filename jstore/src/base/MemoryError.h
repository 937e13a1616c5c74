#pragma once

#include <exception>
#include <optional>
#include <string>
#include <string_view>

namespace jstore {

/// The code of errors that report a lack of memory.
inline constexpr const char* MemoryCode = "OutOfMemory";

/// What to do, in a sentence, if the text reports Java's OutOfMemoryError; empty for other text. Names the option for
/// the heap unless Java lacks memory of another kind.
[[nodiscard]] std::optional<std::string> memoryHint(std::string_view javaText);

/// The same for an error; the library's own is std::bad_alloc.
[[nodiscard]] std::optional<std::string> memoryHint(const std::exception& error);

}  // namespace jstore
