#pragma once

#include <exception>
#include <optional>
#include <string>
#include <string_view>

namespace jstore {

/// The word of errors for want of memory.
inline constexpr const char* MemoryCode = "OutOfMemory";

/// What to do, in a sentence, where the text is Java's about its OutOfMemoryError; empty for another text. Names the
/// option for the heap unless it is memory of another kind that Java is short of.
[[nodiscard]] std::optional<std::string> memoryHint(std::string_view javaText);

/// The same for an error, which may be the library's own word for it, std::bad_alloc.
[[nodiscard]] std::optional<std::string> memoryHint(const std::exception& error);

}  // namespace jstore
