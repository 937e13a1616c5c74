#include "storage/provider/replacing/TemporaryName.h"

#include <unistd.h>

#include <algorithm>
#include <array>
#include <atomic>
#include <charconv>
#include <cstdint>
#include <random>
#include <string>

#include "fl/i18n/text.h"
#include "i18n/utf.h"

namespace foundation::storage::provider::detail {

namespace {

namespace utf = fl::i18n::detail;

/// File systems limit names to 255 bytes, some that encrypt them to 143.
constexpr int MaxStemBytes = 64;

/// As many whole characters of the beginning of a name as fit the limit.
std::u16string stemOf(const std::u16string& name) {
    const char16_t* const end = name.data() + name.size();
    const char16_t* cut = name.data();
    int bytes = 0;
    for (const char16_t* position = cut; position != end;) {
        bytes += utf::Traits<char>::width(utf::takeCodePoint(position, end).value_or(utf::Replacement));
        if (bytes > MaxStemBytes) {
            break;
        }
        cut = position;
    }
    return {name.data(), cut};
}

/// The number in hexadecimal digits, with zeros before it up to `width`.
std::string hexadecimal(std::uint32_t number, std::size_t width) {
    std::array<char, 8> digits{};
    const char* const end = std::to_chars(digits.data(), digits.data() + digits.size(), number, 16).ptr;
    const std::string text(static_cast<const char*>(digits.data()), end);
    return std::string(width - std::min(width, text.size()), '0') + text;
}

/// The process number differs between the processes of one machine, even after fork(), the counter between the calls of
/// one process, and the random number between the machines that share a storage.
std::string uniquePart() {
    static std::atomic<std::uint32_t> calls{0};
    thread_local std::random_device random;  // On virtual processors making one costs tens of microseconds.
    return hexadecimal(static_cast<std::uint32_t>(::getpid()), 1) + '-' + hexadecimal(random(), 8) +
           hexadecimal(calls.fetch_add(1), 8);
}

}  // namespace

StorageIRI temporaryBeside(const StorageIRI& target) {
    const std::u16string name = u'.' + stemOf(target.getName()) + u'.' + fl::i18n::to_ustring(uniquePart()) + u".tmp";
    return target.getParent().getChild(name);
}

}  // namespace foundation::storage::provider::detail
