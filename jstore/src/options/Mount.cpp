#include "options/Mount.h"

#include <fmt/format.h>

#include <algorithm>
#include <charconv>

#include "base/LocalPath.h"
#include "base/Problem.h"
#include "base/Text.h"
#include "fl/i18n/text.h"
#include "foundation/network/IRI.h"

namespace jstore {

namespace {

bool isNameCharacter(char c) {
    constexpr std::string_view others = "-._";
    return (c >= 'a' && c <= 'z') || (c >= 'A' && c <= 'Z') || (c >= '0' && c <= '9') ||
           others.find(c) != std::string_view::npos;
}

bool isName(std::string_view text) { return !text.empty() && std::all_of(text.begin(), text.end(), isNameCharacter); }

std::string asciiUri(std::string_view uri) {
    const foundation::network::IRI iri(fl::i18n::to_ustring(uri));
    return fl::i18n::to_string(iri.toAsciiString(/*strict=*/true));
}

std::string decoded(std::string_view text) {
    std::string plain;
    for (std::size_t at = 0; at < text.size(); ++at) {
        unsigned value = 0;
        const char* const digits = text.data() + at + 1;
        if (text[at] == '%' && at + 2 < text.size() &&
            std::from_chars(digits, digits + 2, value, 16).ptr == digits + 2) {
            plain += static_cast<char>(value);
            at += 2;
        } else {
            plain += text[at];
        }
    }
    return plain;
}

}  // namespace

Mount parseMount(std::string_view argument) {
    const std::size_t equals = argument.find('=');
    const std::string_view name = argument.substr(0, equals);
    if (equals == std::string_view::npos || !isName(name)) {
        const char* const rule = "expected NAME=URI; NAME may hold letters, digits, '-', '.' and '_'";
        throw usageError(fmt::format("--mount {}: {}", argument, rule));
    }
    const std::string_view target = argument.substr(equals + 1);
    if (target.empty()) {
        throw usageError(fmt::format("--mount {}: expected a folder or a URI after the '='", argument));
    }
    if (schemeOf(target).empty()) {
        return {std::string(name), fileUri(target)};
    }
    if (!isUtf8(target)) {
        throw usageError(fmt::format("--mount {}: not UTF-8", printable(argument)));
    }
    return {std::string(name), asciiUri(target)};
}

std::optional<std::filesystem::path> localTarget(const Mount& mount) {
    std::string_view uri = mount.uri;
    if (uri.starts_with("jar:")) {
        uri.remove_prefix(4);
        uri = uri.substr(0, uri.find("!/"));
    }
    if (!uri.starts_with("file:")) {
        return std::nullopt;
    }
    uri.remove_prefix(5);
    if (uri.starts_with("//")) {
        uri.remove_prefix(std::min(uri.find('/', 2), uri.size()));
    }
    return decoded(uri);
}

}  // namespace jstore
