#pragma once

#include <string>

#include "foundation/Export.h"

namespace fl::i18n {

/// Converts text from one representation to another. Immutable after construction, so any number of threads may use one
/// object.
template <class From, class To>
class converter {
public:
    virtual ~converter() = default;

    [[nodiscard]] virtual To convert(const From& text) const = 0;

protected:
    converter() = default;
    converter(const converter&) = default;
    converter& operator=(const converter&) = default;
};

/// Converts UTF-16 to a named narrow encoding, for example "UTF-8" or "ISO-8859-1".
class FOUNDATION_API codecvt_ustring_to_string final : public converter<std::u16string, std::string> {
public:
    /// With `substitute`, convert() replaces what is not well-formed with U+FFFD, then leaves out every character that
    /// the encoding cannot represent. Without it, convert() throws boost::locale::conv::conversion_error for either.
    ///
    /// Throws boost::locale::conv::invalid_charset_error for an encoding that this system does not know, and for an
    /// empty name.
    codecvt_ustring_to_string(const std::string& encoding, bool substitute);

    [[nodiscard]] std::string convert(const std::u16string& text) const override;

private:
    std::string m_encoding;
    bool m_isUtf8;
    bool m_substitute;
};

}  // namespace fl::i18n
