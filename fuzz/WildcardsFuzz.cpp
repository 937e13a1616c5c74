// Patterns: a first line that is one, and a second that is a name.
#include <string>
#include <vector>

#include "Input.h"
#include "Require.h"
#include "foundation/storage/provider/Wildcards.h"

using foundation::storage::provider::Wildcards;

namespace {

/// The definition, row by row: whether the pattern's first `row` characters fit the name's first `column`.
bool fits(const std::u32string& pattern, const std::u32string& name) {
    std::vector<char> row(name.size() + 1, 0);
    row[0] = 1;
    for (const char32_t character : pattern) {
        std::vector<char> next(row.size(), 0);
        next[0] = character == U'*' ? row[0] : 0;
        for (std::size_t column = 1; column < row.size(); ++column) {
            const bool same = character == U'?' || character == name[column - 1];
            const bool star = character == U'*' && (row[column] != 0 || next[column - 1] != 0);
            next[column] = star || (character != U'*' && same && row[column - 1] != 0) ? 1 : 0;
        }
        row = std::move(next);
    }
    return row.back() != 0;
}

}  // namespace

int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    const auto lines = fuzz::linesOf(fuzz::bytesOf(data, size), 2);
    const std::u16string pattern = fuzz::utf16Of(lines.front());
    const std::u16string name = fuzz::utf16Of(lines.back());
    const bool expected = fits(fuzz::codePointsOf(pattern), fuzz::codePointsOf(name));
    fuzz::require(Wildcards(pattern).matches(name) == expected, "the match is what the definition says",
                  fuzz::utf8Of(pattern) + " on " + fuzz::utf8Of(name) + (expected ? ": fits" : ": does not fit"));
    fuzz::require(Wildcards(pattern + u"*").matches(pattern), "a pattern with a star after it fits its own text",
                  fuzz::utf8Of(pattern));
    return 0;
}
