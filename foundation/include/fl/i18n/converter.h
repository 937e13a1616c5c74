#pragma once

#include <string>

#include "foundation/Export.h"

namespace fl::i18n {

/// A conversion of text from one representation into another. Immutable after construction, so one object may serve
/// any number of threads.
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

/// UTF-16 text into a named narrow encoding, for instance "UTF-8" or "ISO-8859-1".
class FOUNDATION_API codecvt_ustring_to_string final : public converter<std::u16string, std::string> {
public:
    /// `substitute` true: what is not well-formed becomes U+FFFD, and what the encoding cannot hold is left out;
    /// false: either makes convert() throw boost::locale::conv::conversion_error.
    /// Throws boost::locale::conv::invalid_charset_error for an encoding that this system does not know, and for the
    /// empty name.
    codecvt_ustring_to_string(const std::string& encoding, bool substitute);

    [[nodiscard]] std::string convert(const std::u16string& text) const override;

private:
    std::string m_encoding;
    bool m_isUtf8;
    bool m_substitute;
};

}  // namespace fl::i18n
