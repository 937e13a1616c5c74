#include "verbs/Base64.h"

#include <cstdint>

namespace jstore {

namespace {

constexpr std::string_view Digits = "ABCDEFGHIJKLMNOPQRSTUVWXYZabcdefghijklmnopqrstuvwxyz0123456789+/";

/// Up to three bytes as four characters.
void append(std::string& text, std::string_view bytes) {
    std::uint32_t bits = 0;
    for (std::size_t i = 0; i < 3; ++i) {
        bits = bits << 8U | (i < bytes.size() ? static_cast<unsigned char>(bytes[i]) : 0U);
    }
    for (std::size_t i = 0; i < 4; ++i) {
        text += i <= bytes.size() ? Digits[bits >> (18 - 6 * i) & 0x3FU] : '=';
    }
}

}  // namespace

std::string base64(std::string_view bytes) {
    std::string text;
    text.reserve((bytes.size() + 2) / 3 * 4);
    for (std::size_t i = 0; i < bytes.size(); i += 3) {
        append(text, bytes.substr(i, 3));
    }
    return text;
}

}  // namespace jstore
