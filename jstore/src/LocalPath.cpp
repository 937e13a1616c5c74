#include "LocalPath.h"

#include <algorithm>
#include <filesystem>
#include <system_error>

#include "Problem.h"
#include "fl/i18n/text.h"
#include "foundation/storage/provider/StorageIRI.h"

namespace jstore {

namespace {

bool isLetter(char c) { return (c >= 'a' && c <= 'z') || (c >= 'A' && c <= 'Z'); }

bool isSchemeCharacter(char c) { return isLetter(c) || (c >= '0' && c <= '9') || c == '+' || c == '-' || c == '.'; }

std::filesystem::path absolutePath(std::string_view path) {
    if (path.starts_with('/')) {
        return path;
    }
    std::error_code error;
    const auto workingFolder = std::filesystem::current_path(error);
    if (error) {
        throw CommandError(
            {"NotFound", std::string(path), "no working folder: " + error.message(), ExitCode::NotFound});
    }
    return workingFolder / path;
}

/// The path with everything up to its last `..` resolved as the system itself resolves it.
std::filesystem::path withoutDotDot(const std::filesystem::path& path, std::string_view asGiven) {
    std::filesystem::path resolved;
    std::filesystem::path rest;
    for (const auto& name : path) {
        rest /= name;
        if (name == "..") {
            std::error_code error;
            resolved = std::filesystem::canonical(resolved / rest, error);
            if (error) {
                const auto hint = "the part before .. cannot be followed: " + error.message();
                throw CommandError({"NotFound", std::string(asGiven), hint, ExitCode::NotFound});
            }
            rest.clear();
        }
    }
    return resolved / rest;
}

}  // namespace

std::string_view schemeOf(std::string_view text) noexcept {
    const auto colon = text.find(':');
    if (colon == std::string_view::npos || colon == 0 || !isLetter(text.front())) {
        return {};
    }
    const auto scheme = text.substr(0, colon);
    return std::all_of(scheme.begin(), scheme.end(), isSchemeCharacter) ? scheme : std::string_view();
}

std::vector<std::string> localPathNames(std::string_view path) {
    std::vector<std::string> names;
    for (const auto& name : withoutDotDot(absolutePath(path), path).relative_path()) {
        if (!name.empty() && name != ".") {
            names.push_back(name.string());
        }
    }
    return names;
}

std::string fileUri(std::string_view path) {
    foundation::storage::provider::StorageIRI uri(u"file:///");
    for (const auto& name : localPathNames(path)) {
        uri = uri.getChild(fl::i18n::to_ustring(name));
    }
    return fl::i18n::to_string(uri.toIRI().toAsciiString(/*strict=*/true));
}

}  // namespace jstore
