// Locations: a first line that is one, and a second that is the name of a child.
#include <algorithm>
#include <string>
#include <string_view>

#include "Input.h"
#include "Require.h"
#include "foundation/network/IRI.h"
#include "foundation/storage/provider/Exception.h"
#include "foundation/storage/provider/StorageIRI.h"

using foundation::network::IRI;
using foundation::storage::provider::ErrorCode;
using foundation::storage::provider::Exception;
using foundation::storage::provider::StorageIRI;
using fuzz::require;
using fuzz::utf8Of;

namespace {

int hexValue(char c) {
    if (c >= '0' && c <= '9') {
        return c - '0';
    }
    const char lower = static_cast<char>(c | 0x20);
    return lower >= 'a' && lower <= 'f' ? lower - 'a' + 10 : -1;
}

bool isEscape(std::string_view text, std::size_t at) {
    return text[at] == '%' && text.size() - at > 2 && hexValue(text[at + 1]) >= 0 && hexValue(text[at + 2]) >= 0;
}

/// The bytes that the text stands for when all its escapes are followed.
std::string decoded(std::string_view text) {
    std::string bytes;
    for (std::size_t at = 0; at < text.size(); ++at) {
        if (isEscape(text, at)) {
            bytes.push_back(static_cast<char>(hexValue(text[at + 1]) * 16 + hexValue(text[at + 2])));
            at += 2;
        } else {
            bytes.push_back(text[at]);
        }
    }
    return bytes;
}

bool isUriCharacter(char c) {
    constexpr std::string_view others = "-._~:/?#[]@!$&'()*+,;=%";
    return (c >= '0' && c <= '9') || ((c | 0x20) >= 'a' && (c | 0x20) <= 'z' && static_cast<unsigned char>(c) < 0x80) ||
           others.find(c) != std::string_view::npos;
}

/// Nothing but what RFC 3986 lets a URI hold: its characters, whole escapes, one `#`, one pair of brackets in the host.
void requireUri(const std::string& uri) {
    require(std::all_of(uri.begin(), uri.end(), isUriCharacter), "URI characters only", uri);
    for (std::size_t at = 0; at < uri.size(); ++at) {
        require(uri[at] != '%' || isEscape(uri, at), "whole escapes only", uri);
    }
    require(std::count(uri.begin(), uri.end(), '#') <= 1, "one fragment at most", uri);
    const auto open = std::count(uri.begin(), uri.end(), '[');
    require(open <= 1 && open == std::count(uri.begin(), uri.end(), ']'), "one pair of brackets at most", uri);
    if (open == 1) {
        const auto authority = uri.find("//");
        const auto end = uri.find_first_of("/?#", authority == std::string::npos ? uri.size() : authority + 2);
        require(authority < uri.find('[') && uri.find(']') < end, "brackets in the authority only", uri);
    }
}

void checkAsciiForm(const std::u16string& text) {
    const std::u16string strict = IRI(text).toAsciiString(/*strict=*/true);
    const std::string uri = utf8Of(strict);
    requireUri(uri);
    require(IRI(strict).toAsciiString(true) == strict, "the strict form of a strict form is itself", uri);
    require(decoded(uri) == decoded(utf8Of(text)), "encoding keeps the bytes that a text stands for", uri);

    const std::u16string loose = IRI(text).toAsciiString(/*strict=*/false);
    require(std::all_of(loose.begin(), loose.end(), [](char16_t unit) { return unit < 0x80; }), "ASCII", utf8Of(loose));
    require(IRI(loose).toAsciiString(true) == strict, "the loose form leads to the strict one", uri);
}

void checkParents(const StorageIRI& location) {
    const auto& text = location.text();
    auto levels = std::count(text.begin(), text.end(), u'/') + 2;
    for (StorageIRI at = location; !at.isRoot(); at = at.getParent()) {
        require(!at.getName().empty(), "what is no root has a name", utf8Of(at.text()));
        require(at.getParent() != at, "what is no root has another location for a parent", utf8Of(at.text()));
        require(levels-- > 0, "the way up ends", utf8Of(text));
    }
    if (location.isRoot()) {
        require(location.getParent() == location && location.getName().empty(), "a root is its own parent, nameless",
                utf8Of(text));
    }
}

void checkNormalForm(const StorageIRI& location) {
    const StorageIRI normal = location.normalized();
    const std::string detail = utf8Of(location.text()) + " -> " + utf8Of(normal.text());
    require(normal.normalized() == normal, "the normal form of a normal form is itself", detail);
    require(location.getParent().normalized() == normal.getParent().normalized(), "normal forms have one parent",
            detail);
    const StorageIRI sent(location.toIRI().toAsciiString(/*strict=*/true));
    if (fuzz::isWellFormed(location.text())) {
        require(normal.getName() == location.getName(), "normal forms keep the name", detail);
        // Text that no URI can be made of keeps its spelling, encoded or not.
        require(sent.normalized() == normal || normal == location, "what goes to a back end means the same", detail);
    }
}

void checkChild(const StorageIRI& location, const std::u16string& name) {
    const bool isNoName = name.empty() || name == u"." || name == u"..";
    try {
        const StorageIRI child = location.getChild(name);
        const std::string detail = utf8Of(location.text()) + " + " + utf8Of(name) + " = " + utf8Of(child.text());
        require(!isNoName, "no location has a child of that name", detail);
        require(child.getName() == name, "a child has the name that it was given", detail);
        require(!child.isRoot(), "a child is no root", detail);
        require(child.getParent().getChild(name) == child, "a child is its parent's child", detail);
        require(child.getParent().normalized() == location.getChild(u"x").getParent().normalized(),
                "all children have one parent", detail);
    } catch (const Exception& error) {
        require(isNoName && error.code() == ErrorCode::InvalidLocation, "a name is accepted", utf8Of(name));
    }
}

}  // namespace

int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    const auto lines = fuzz::linesOf(fuzz::bytesOf(data, size), 2);
    const StorageIRI location(fuzz::utf16Of(lines.front()));
    checkAsciiForm(location.text());
    checkParents(location);
    checkNormalForm(location);
    checkChild(location, fuzz::utf16Of(lines.back()));
    return 0;
}
