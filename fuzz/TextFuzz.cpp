// Text conversion: any bytes, taken for UTF-8 and, in pairs, for UTF-16.
#include <boost/locale/encoding_errors.hpp>

#include <algorithm>
#include <memory>
#include <string>
#include <string_view>

#include "Input.h"
#include "JNIUtilsText.h"
#include "Require.h"
#include "StringMachine.h"
#include "fl/i18n/converter.h"
#include "fl/i18n/text.h"

using fuzz::require;

namespace {

/// The shortest form of each length, the longest, and what lies between that is no character.
struct SecondByte {
    unsigned least = 0x80;
    unsigned most = 0xBF;
};

SecondByte secondByteAfter(unsigned lead) {
    switch (lead) {
        case 0xE0:
            return {0xA0, 0xBF};
        case 0xED:
            return {0x80, 0x9F};
        case 0xF0:
            return {0x90, 0xBF};
        case 0xF4:
            return {0x80, 0x8F};
        default:
            return {};
    }
}

std::size_t lengthBehind(unsigned lead) {
    if (lead < 0xC2 || lead > 0xF4) {
        return 1;
    }
    return lead < 0xE0 ? 2 : lead < 0xF0 ? 3 : 4;
}

/// Takes one character off the text, or one part that begins none, as U+FFFD.
char32_t takeCharacter(std::string_view& text) {
    const auto byte = [&text](std::size_t at) -> unsigned { return static_cast<unsigned char>(text[at]); };
    const unsigned lead = byte(0);
    const std::size_t length = lengthBehind(lead);
    char32_t point = length == 1 ? lead : lead & (0xFFU >> (length + 1));
    SecondByte range = secondByteAfter(lead);
    std::size_t taken = 1;
    for (; taken < length && taken < text.size() && byte(taken) >= range.least && byte(taken) <= range.most; ++taken) {
        point = (point << 6) | (byte(taken) & 0x3F);
        range = {};
    }
    text.remove_prefix(taken);
    return taken < length || (length == 1 && lead >= 0x80) ? U'\xFFFD' : point;
}

std::u32string charactersOf(std::string_view utf8) {
    std::u32string points;
    while (!utf8.empty()) {
        points.push_back(takeCharacter(utf8));
    }
    return points;
}

void checkUtf8(std::string_view bytes) {
    const std::u16string text = fl::i18n::to_ustring(bytes);
    const std::string repaired = fl::i18n::to_string(text);
    require(fuzz::isWellFormed(text), "surrogates come in pairs", repaired);
    require(fuzz::codePointsOf(text) == charactersOf(bytes), "each ill-formed part is one U+FFFD", repaired);
    require(fl::i18n::to_ustring(repaired) == text, "repaired text goes there and back", repaired);
}

void checkUtf16(const std::u16string& text) {
    const std::string utf8 = fl::i18n::to_string(text);
    require(utf8 == fuzz::utf8Of(text), "UTF-16 becomes UTF-8", utf8);
    require(!fuzz::isWellFormed(text) || fl::i18n::to_ustring(utf8) == text, "text goes there and back", utf8);
}

/// Whether the conversion succeeds; what it gives.
bool converts(const fl::i18n::codecvt_ustring_to_string& converter, const std::u16string& text, std::string& result) {
    try {
        result = converter.convert(text);
        return true;
    } catch (const boost::locale::conv::conversion_error&) {
        return false;
    }
}

void checkNamedEncodings(const std::u16string& text) {
    static const fl::i18n::codecvt_ustring_to_string utf8("UTF-8", false);
    static const fl::i18n::codecvt_ustring_to_string lenientUtf8("utf8", true);
    static const fl::i18n::codecvt_ustring_to_string latin("ISO-8859-1", false);
    static const fl::i18n::codecvt_ustring_to_string lenientLatin("ISO-8859-1", true);
    std::string result;
    require(converts(utf8, text, result) == fuzz::isWellFormed(text), "only ill-formed text is refused");
    require(lenientUtf8.convert(text) == fl::i18n::to_string(text), "substituting is what to_string does");

    std::string expected;
    for (const char16_t unit : text) {
        if (unit < 0x100) {
            expected.push_back(static_cast<char>(unit));
        }
    }
    require(converts(latin, text, result) == (expected.size() == text.size()), "only what Latin-1 lacks is refused");
    require(lenientLatin.convert(text) == expected, "what Latin-1 lacks is left out", fl::i18n::to_string(text));
}

/// The way to Java and back, which ends at a zero unit and knows no empty string.
void checkJavaStrings(const std::u16string& text) {
    static const std::shared_ptr<jvm_interface::JVM> jvm = std::make_shared<fuzz::StringMachine>();
    const storage::javaprovider::JNIEnvPtr env(jvm);
    const jstring javaText = storage::javaprovider::ustringToJString(env, text);
    require((javaText == nullptr) == text.empty(), "empty text is no Java string");
    require(storage::javaprovider::jstringToUString(env, javaText) == text.substr(0, text.find(u'\0')),
            "text comes back from Java up to its first zero");
    require(fuzz::StringMachine::charactersHeld() == 0, "characters are released");
}

}  // namespace

int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    const auto bytes = fuzz::bytesOf(data, size);
    checkUtf8(bytes);
    std::u16string text(size / 2, u'\0');
    for (std::size_t i = 0; i < text.size(); ++i) {
        text[i] = static_cast<char16_t>(data[2 * i] << 8U | data[2 * i + 1]);
    }
    for (const auto& each : {text, fuzz::utf16Of(bytes)}) {
        checkUtf16(each);
        checkNamedEncodings(each);
        checkJavaStrings(each);
    }
    return 0;
}
