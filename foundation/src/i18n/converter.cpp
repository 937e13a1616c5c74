#include "fl/i18n/converter.h"

#include <boost/locale/encoding.hpp>

#include "fl/i18n/text.h"

namespace fl::i18n {

namespace {

namespace conv = boost::locale::conv;

/// Encoding names are compared as the conversion libraries do it: letters and digits count, and case does not.
bool namesUtf8(const std::string& encoding) {
    std::string plain;
    for (const char c : encoding) {
        if (c >= 'A' && c <= 'Z') {
            plain.push_back(static_cast<char>(c - 'A' + 'a'));
        } else if ((c >= 'a' && c <= 'z') || (c >= '0' && c <= '9')) {
            plain.push_back(c);
        }
    }
    return plain == "utf8";
}

void requireKnown(const std::string& encoding) {
    // An empty name would mean the process's locale, which is not a named encoding.
    if (encoding.empty()) {
        throw conv::invalid_charset_error(encoding);
    }
    (void)conv::from_utf<char>(std::string(), encoding);
}

}  // namespace

codecvt_ustring_to_string::codecvt_ustring_to_string(const std::string& encoding, bool substitute)
    : m_encoding(encoding), m_isUtf8(namesUtf8(encoding)), m_substitute(substitute) {
    if (!m_isUtf8) {
        requireKnown(encoding);
    }
}

std::string codecvt_ustring_to_string::convert(const std::u16string& text) const {
    // Boost.Locale's own UTF-16 reader leaves ill-formed text out where it should put U+FFFD.
    std::string utf8 = m_substitute ? to_string(text) : conv::utf_to_utf<char>(text, conv::stop);
    if (m_isUtf8) {
        return utf8;
    }
    return conv::from_utf<char>(utf8, m_encoding, m_substitute ? conv::skip : conv::stop);
}

}  // namespace fl::i18n
