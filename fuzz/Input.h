#pragma once

#include <cstddef>
#include <cstdint>
#include <string>
#include <string_view>
#include <vector>

namespace fuzz {

/// What a fuzz target is given, and how it is read: text files that one can write by hand.
using Bytes = std::string_view;

[[nodiscard]] inline Bytes bytesOf(const std::uint8_t* data, std::size_t size) {
    return {reinterpret_cast<const char*>(data), size};
}

/// The lines, at most `most` of them: the last one holds all the rest. A final newline, as editors write it, starts no
/// line.
[[nodiscard]] std::vector<Bytes> linesOf(Bytes input, std::size_t most);

/// UTF-16 text out of UTF-8. The two bytes after a byte FF are one unit as it stands (high byte first), so that single
/// surrogates occur as well.
[[nodiscard]] std::u16string utf16Of(Bytes input);

/// Whether all surrogates stand in pairs.
[[nodiscard]] bool isWellFormed(std::u16string_view text);

/// The code points; a lone surrogate as it is.
[[nodiscard]] std::u32string codePointsOf(std::u16string_view text);

/// The text as UTF-8, a lone surrogate as U+FFFD, by a conversion that shares nothing with the one under test.
[[nodiscard]] std::string utf8Of(std::u16string_view text);

}  // namespace fuzz

/// What libFuzzer calls for each input, and the replay for each file of a corpus.
extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size);
