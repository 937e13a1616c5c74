#include "base/LocalPath.h"

#include <fmt/format.h>

#include <algorithm>
#include <filesystem>
#include <system_error>

#include "base/Problem.h"
#include "base/RawName.h"
#include "base/Text.h"
#include "fl/i18n/text.h"
#include "foundation/storage/provider/StorageIRI.h"

namespace jstore {

using foundation::storage::provider::StorageIRI;

namespace {

bool isLetter(char c) { return (c >= 'a' && c <= 'z') || (c >= 'A' && c <= 'Z'); }

bool isSchemeCharacter(char c) { return isLetter(c) || (c >= '0' && c <= '9') || c == '+' || c == '-' || c == '.'; }

std::filesystem::path absolutePath(std::string_view path) {
    if (path.starts_with('/')) {
        return path;
    }
    std::error_code error;
    const std::filesystem::path workingFolder = std::filesystem::current_path(error);
    if (error) {
        throw CommandError(
            {"NotFound", std::string(path), "cannot find the working folder: " + error.message(), ExitCode::NotFound});
    }
    return workingFolder / path;
}

/// The path with everything up to its last `..` resolved as the system itself resolves it.
std::filesystem::path withoutDotDot(const std::filesystem::path& path, std::string_view asGiven) {
    std::filesystem::path resolved;
    std::filesystem::path rest;
    for (const std::filesystem::path& name : path) {
        rest /= name;
        if (name == "..") {
            std::error_code error;
            resolved = std::filesystem::canonical(resolved / rest, error);
            if (error) {
                const std::string hint = "cannot follow the part before ..: " + error.message();
                throw CommandError({"NotFound", std::string(asGiven), hint, ExitCode::NotFound});
            }
            rest.clear();
        }
    }
    return resolved / rest;
}

/// The bytes of a name in the folder, which may be given as they are or as lists show them.
std::string nameIn(const std::filesystem::path& folder, const std::string& given) {
    if (!standsForBytes(given)) {
        return given;
    }
    std::error_code error;
    const bool isThere = std::filesystem::exists(std::filesystem::symlink_status(folder / given, error));
    return isThere ? given : bytesOfShownName(given);
}

/// Bytes as a part of a URI.
std::string encodedBytes(std::string_view name) {
    constexpr std::string_view others = "-._~";
    std::string text;
    for (const char byte : name) {
        const bool plain =
            isLetter(byte) || (byte >= '0' && byte <= '9') || others.find(byte) != std::string_view::npos;
        text += plain ? std::string(1, byte) : fmt::format("%{:02X}", static_cast<unsigned char>(byte));
    }
    return text;
}

}  // namespace

std::string_view schemeOf(std::string_view text) noexcept {
    const std::size_t colon = text.find(':');
    if (colon == std::string_view::npos || colon == 0 || !isLetter(text.front())) {
        return {};
    }
    const std::string_view scheme = text.substr(0, colon);
    return std::all_of(scheme.begin(), scheme.end(), isSchemeCharacter) ? scheme : std::string_view();
}

std::vector<std::string> localPathNames(std::string_view path) {
    std::vector<std::string> names;
    std::filesystem::path folder = "/";
    for (const std::filesystem::path& part : withoutDotDot(absolutePath(path), path).relative_path()) {
        if (!part.empty() && part != ".") {
            names.push_back(nameIn(folder, part.string()));
            folder /= names.back();
        }
    }
    return names;
}

std::string fileUri(std::string_view path) {
    std::string uri = "file:///";
    for (const std::string& name : localPathNames(path)) {
        const StorageIRI child = StorageIRI(u"file:///").getChild(fl::i18n::to_ustring(name));
        const std::string plain = fl::i18n::to_string(child.toIRI().toAsciiString(/*strict=*/true)).substr(8);
        uri += (uri.ends_with('/') ? "" : "/") + (isUtf8(name) ? plain : encodedBytes(name));
    }
    return uri;
}

}  // namespace jstore
