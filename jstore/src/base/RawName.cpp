#include "base/RawName.h"

#include "base/Text.h"
#include "fl/i18n/text.h"

namespace jstore {

namespace {

constexpr char16_t BytesFrom = 0xEF00;

/// How long a character is that begins with this byte; 1 for a byte that begins none.
std::size_t lengthAfter(char lead) {
    const auto byte = static_cast<unsigned char>(lead);
    if (byte < 0xC2 || byte > 0xF4) {
        return 1;
    }
    return byte < 0xE0 ? 2 : byte < 0xF0 ? 3 : 4;
}

/// U+EF80 to U+EFFF.
bool isReserved(std::string_view character) {
    return character.size() == 3 && character[0] == '\xEE' && (character[1] == '\xBE' || character[1] == '\xBF');
}

/// The byte that a reserved character stands for: the last seven bits of both are the same.
char byteOf(std::string_view reserved) {
    const auto high = static_cast<unsigned>(static_cast<unsigned char>(reserved[1]) & 1U) << 6U;
    return static_cast<char>(0x80U | high | (static_cast<unsigned char>(reserved[2]) & 0x3FU));
}

/// Takes off one character, or one byte that is no part of any.
std::string_view takeCharacter(std::string_view& bytes) {
    std::string_view taken = bytes.substr(0, lengthAfter(bytes.front()));
    if (!isUtf8(taken)) {
        taken = bytes.substr(0, 1);
    }
    bytes.remove_prefix(taken.size());
    return taken;
}

}  // namespace

std::u16string textOfName(std::string_view bytes) {
    std::u16string text;
    while (!bytes.empty()) {
        const std::string_view character = takeCharacter(bytes);
        if (isUtf8(character) && !isReserved(character)) {
            text += fl::i18n::to_ustring(character);
            continue;
        }
        for (const char byte : character) {
            text += static_cast<char16_t>(BytesFrom + static_cast<unsigned char>(byte));
        }
    }
    return text;
}

bool standsForBytes(std::string_view name) {
    while (!name.empty()) {
        if (isReserved(takeCharacter(name))) {
            return true;
        }
    }
    return false;
}

std::string bytesOfShownName(std::string_view name) {
    std::string bytes;
    while (!name.empty()) {
        const std::string_view character = takeCharacter(name);
        if (isReserved(character)) {
            bytes += byteOf(character);
        } else {
            bytes += character;
        }
    }
    return bytes;
}

}  // namespace jstore
