#include "foundation/storage/provider/StorageIRI.h"

#include <boost/url/grammar/lut_chars.hpp>
#include <boost/url/parse.hpp>
#include <boost/url/rfc/pchars.hpp>
#include <boost/url/rfc/unreserved_chars.hpp>
#include <boost/url/url_view.hpp>

#include <algorithm>
#include <iterator>
#include <ostream>
#include <utility>
#include <vector>

#include "fl/i18n/text.h"
#include "foundation/storage/provider/Exception.h"
#include "i18n/utf.h"
#include "storage/provider/PathNames.h"

namespace foundation::storage::provider {

namespace {

namespace urls = boost::urls;
namespace percent = network::detail;
namespace utf = fl::i18n::detail;
using CharSet = urls::grammar::lut_chars;

/// Takes the run of escapes at `at` off the text: the bytes that they stand for.
std::string takeEscapes(std::u16string_view text, std::size_t& at) {
    std::string bytes;
    for (; at < text.size() && percent::startsEscape(text, at); at += 3) {
        bytes.push_back(percent::escapedByte(text, at));
    }
    return bytes;
}

std::u16string decodeName(std::u16string_view segment) {
    std::u16string name;
    for (std::size_t at = 0; at < segment.size();) {
        // What is no escape is copied unit by unit, so that a name keeps even lone surrogates.
        if (percent::startsEscape(segment, at)) {
            name.append(fl::i18n::to_ustring(takeEscapes(segment, at)));
        } else {
            name.push_back(segment[at++]);
        }
    }
    return name;
}

std::u16string encodeName(std::u16string_view name, const CharSet& plain) {
    std::u16string segment;
    segment.reserve(name.size());
    for (const char16_t unit : name) {
        if (unit >= 0x80 || plain(static_cast<unsigned char>(unit))) {
            segment.push_back(unit);
        } else {
            percent::appendEscape(segment, static_cast<char>(unit));
        }
    }
    return segment;
}

/// Appends bytes that were escaped: well-formed text outside ASCII and the characters of `plain` as they are, the rest
/// as escapes in upper case.
void appendUnescaped(std::u16string& out, const std::string& bytes, const CharSet& plain) {
    const char* position = bytes.data();
    const char* const end = position + bytes.size();
    while (position != end) {
        const char* const start = position;
        const auto point = utf::takeCodePoint(position, end);
        if (point && (*point >= 0x80 || plain(static_cast<unsigned char>(*start)))) {
            utf::Traits<char16_t>::encode(*point, std::back_inserter(out));
        } else {
            std::for_each(start, position, [&out](char byte) { percent::appendEscape(out, byte); });
        }
    }
}

/// ASCII text with no more escapes than needed.
std::u16string unescape(std::u16string_view ascii, const CharSet& plain) {
    std::u16string out;
    for (std::size_t at = 0; at < ascii.size();) {
        if (percent::startsEscape(ascii, at)) {
            appendUnescaped(out, takeEscapes(ascii, at), plain);
        } else {
            out.push_back(ascii[at++]);
        }
    }
    return out;
}

/// The same for the parts in which an escaped delimiter means something else than a plain one. Boost.URL's own
/// normalisation ignores the difference.
std::u16string unescape(urls::string_view ascii) {
    return unescape(std::u16string(ascii.begin(), ascii.end()), urls::unreserved_chars);
}

void lowerCase(std::u16string& text) {
    for (char16_t& unit : text) {
        if (unit >= u'A' && unit <= u'Z') {
            unit = static_cast<char16_t>(unit - u'A' + u'a');
        }
    }
}

std::u16string normalAuthority(const urls::url_view& url) {
    std::u16string authority;
    if (url.has_userinfo()) {
        authority.append(unescape(url.encoded_userinfo())).append(u"@");
    }
    // The authority names a mount of the back end, and mounts may differ only in letter case.
    authority.append(unescape(url.encoded_host()));
    if (!url.port().empty()) {
        authority.append(u":").append(url.port().begin(), url.port().end());
    }
    return authority;
}

std::u16string normalPath(std::u16string_view ascii) {
    detail::PathNames path = detail::splitPath(ascii);
    path.prefix = {};
    std::vector<std::u16string> names;
    names.reserve(path.names.size());
    for (std::u16string_view& name : path.names) {
        name = names.emplace_back(unescape(name, urls::pchars));
    }
    return detail::join(path);
}

std::u16string normalText(const urls::url_view& url, std::u16string_view ascii) {
    std::u16string text(url.scheme().begin(), url.scheme().end());
    lowerCase(text);
    text.push_back(u':');
    const std::u16string path = normalPath(ascii);
    // A path from the top needs no authority to be one: java:/a is java:///a.
    if (path.starts_with(u'/')) {
        text.append(u"//").append(normalAuthority(url));
    }
    text.append(path);
    if (url.has_query()) {
        text.append(u"?").append(unescape(url.encoded_query()));
    }
    if (url.has_fragment()) {
        text.append(u"#").append(unescape(url.encoded_fragment()));
    }
    return text;
}

}  // namespace

StorageIRI StorageIRI::getParent() const {
    detail::PathNames path = detail::splitPath(m_text);
    if (path.names.empty()) {
        return *this;
    }
    path.names.pop_back();
    return StorageIRI(detail::join(path));
}

bool StorageIRI::isRoot() const { return detail::splitPath(m_text).names.empty(); }

std::u16string StorageIRI::getName() const {
    const detail::PathNames path = detail::splitPath(m_text);
    return path.names.empty() ? std::u16string() : decodeName(path.names.back());
}

StorageIRI StorageIRI::getChild(std::u16string_view name) const {
    if (name.empty() || name == u"." || name == u"..") {
        throw Exception(ErrorCode::InvalidLocation, *this);
    }
    detail::PathNames path = detail::splitPath(m_text);
    // A colon in the first name of a text would make that name a scheme.
    const bool leads = path.prefix.empty() && !path.absolute && path.names.empty();
    const std::u16string segment = encodeName(name, leads ? urls::pchars - CharSet(':') : CharSet(urls::pchars));
    path.names.push_back(segment);
    return StorageIRI(detail::join(path));
}

StorageIRI StorageIRI::normalized() const {
    const std::u16string ascii = toIRI().toAsciiString(/*strict=*/true);
    const std::string narrow = fl::i18n::to_string(ascii);
    const auto parsed = urls::parse_uri(narrow);
    // The parser ends an authority early if it cannot read it, and takes the rest for the path.
    if (!parsed ||
        fl::i18n::to_ustring(std::string_view(parsed->encoded_authority())) != percent::splitIri(ascii).authority) {
        return *this;
    }
    return StorageIRI(normalText(*parsed, ascii));
}

std::ostream& operator<<(std::ostream& out, const StorageIRI& location) {
    return out << fl::i18n::to_string(location.text());
}

}  // namespace foundation::storage::provider
