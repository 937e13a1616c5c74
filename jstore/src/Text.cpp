#include "Text.h"

#include <fmt/format.h>

#include "fl/i18n/text.h"

namespace jstore {

namespace {

bool isControl(char c) { return static_cast<unsigned char>(c) < 0x20 || c == 0x7F; }

std::string repaired(std::string_view bytes) { return fl::i18n::to_string(fl::i18n::to_ustring(bytes)); }

}  // namespace

bool isUtf8(std::string_view bytes) {
    // Whatever is not well-formed comes back as U+FFFD, so only well-formed text survives the round trip.
    return repaired(bytes) == bytes;
}

std::string oneLine(std::string_view text) {
    std::string line;
    bool gap = false;
    for (const char c : repaired(text)) {
        if (c == ' ' || isControl(c)) {
            gap = !line.empty();
            continue;
        }
        if (gap) {
            line += ' ';
        }
        gap = false;
        line += c;
    }
    return line;
}

std::string printable(std::string_view name) {
    std::string line;
    for (const char c : repaired(name)) {
        if (isControl(c)) {
            line += fmt::format("%{:02X}", static_cast<unsigned char>(c));
        } else {
            line += c;
        }
    }
    return line;
}

}  // namespace jstore
