// Mounts and locations as arguments name them: one argument, up to a zero byte.
#include <algorithm>
#include <charconv>
#include <string>
#include <string_view>

#include "Input.h"
#include "Require.h"
#include "base/LocalPath.h"
#include "base/Location.h"
#include "base/Problem.h"
#include "base/RawName.h"
#include "base/Text.h"
#include "fl/i18n/text.h"
#include "options/Mount.h"

using foundation::storage::provider::StorageIRI;
using fuzz::require;

namespace {

bool isExpected(const jstore::CommandError& error) {
    const auto code = error.problem().exitCode;
    return code == jstore::ExitCode::Usage || code == jstore::ExitCode::NotFound;
}

bool isNameCharacter(char c) {
    const auto byte = static_cast<unsigned char>(c);
    return byte < 0x80 && (std::isalnum(byte) != 0 || c == '-' || c == '.' || c == '_');
}

bool isVisibleAscii(const std::string& text) {
    return std::all_of(text.begin(), text.end(), [](char c) { return c > ' ' && c < '\x7F'; });
}

/// Whether the text has something that a terminal obeys.
bool hasControls(const std::string& text) {
    const auto units = fl::i18n::to_ustring(text);
    return std::any_of(units.begin(), units.end(), [](char16_t unit) { return jstore::isUnsafe(unit); });
}

/// The text with its percent-encoded bytes as they are.
std::string decoded(std::string_view text) {
    std::string plain;
    for (std::size_t at = 0; at < text.size(); ++at) {
        unsigned byte = 0;
        const auto* const digits = text.data() + at + 1;
        if (text[at] == '%' && at + 2 < text.size() &&
            std::from_chars(digits, digits + 2, byte, 16).ptr == digits + 2) {
            plain += static_cast<char>(byte);
            at += 2;
        } else {
            plain += text[at];
        }
    }
    return plain;
}

std::string pathOf(const std::vector<std::string>& names) {
    std::string path;
    for (const auto& name : names) {
        path += '/' + name;
    }
    return path.empty() ? "/" : path;
}

void checkMount(const std::string& argument) {
    try {
        const jstore::Mount mount = jstore::parseMount(argument);
        require(std::all_of(mount.name.begin(), mount.name.end(), isNameCharacter), "names can stand in a location");
        require(isVisibleAscii(mount.uri), "the URI is ASCII", mount.uri);
        require(!jstore::schemeOf(mount.uri).empty(), "the URI has a scheme", mount.uri);
        require(jstore::parseMount(mount.name + '=' + mount.uri).uri == mount.uri, "the URI means itself", mount.uri);
        const auto target = argument.substr(argument.find('=') + 1);
        const auto local = jstore::localTarget(mount);
        if (jstore::schemeOf(target).empty()) {
            require(local == pathOf(jstore::localPathNames(target)), "a path is its own local target", mount.uri);
        }
    } catch (const jstore::CommandError& error) {
        require(isExpected(error), "a wrong mount is a usage error", jstore::errorLine(error.problem()));
        require(!hasControls(jstore::errorLine(error.problem())), "errors are one line", argument);
    }
}

/// The names along a location from the root, as UTF-8.
std::vector<std::string> namesAlong(StorageIRI location) {
    std::vector<std::string> names;
    for (; !location.isRoot(); location = location.getParent()) {
        names.push_back(fl::i18n::to_string(location.getName()));
    }
    std::reverse(names.begin(), names.end());
    return names;
}

/// What the back end calls names that are these bytes.
std::vector<std::string> textsOf(const std::vector<std::string>& names) {
    std::vector<std::string> texts;
    for (const auto& name : names) {
        texts.push_back(fl::i18n::to_string(jstore::textOfName(name)));
    }
    return texts;
}

void checkLocation(const std::string& argument) {
    try {
        const jstore::Location location = jstore::toLocation(argument);
        require(location.text().starts_with("java://"), "a location is a java:// one", location.text());
        require(location.text().find_first_of("#?") == std::string::npos, "no query, no fragment", location.text());
        if (jstore::schemeOf(argument).empty()) {
            const auto names = jstore::localPathNames(argument);
            require(namesAlong(location.iri()) == textsOf(names), "a path's names are the location's", location.text());
            // A name that stands for others' bytes may itself stand for a third one's.
            require(jstore::standsForBytes(argument) || jstore::toLocation(pathOf(names)).text() == location.text(),
                    "the names lead to the same place", location.text());
        }
    } catch (const jstore::CommandError& error) {
        require(isExpected(error), "a wrong location is an error of the user's", jstore::errorLine(error.problem()));
        require(!hasControls(jstore::errorLine(error.problem())), "errors are one line", argument);
    }
}

void checkTexts(const std::string& bytes) {
    const std::string name = jstore::printable(bytes);
    require(jstore::isUtf8(name) && !hasControls(name), "printable is printable", name);
    require(jstore::printable(name) == name, "printable text stays", name);
    const std::string shown = jstore::printableName(bytes);
    require(jstore::isUtf8(shown) && !hasControls(shown), "a name is printable", shown);
    require(decoded(shown) == fl::i18n::to_string(fl::i18n::to_ustring(bytes)), "a name can be had back", shown);
    const auto raw = fl::i18n::to_string(jstore::textOfName(bytes));
    require(jstore::bytesOfShownName(raw) == bytes, "bytes can be had back", raw);
    const std::string line = jstore::oneLine(bytes);
    require(jstore::isUtf8(line) && !hasControls(line) && jstore::oneLine(line) == line, "a line stays one", line);
}

}  // namespace

int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    const auto bytes = fuzz::bytesOf(data, size);
    const std::string argument(bytes.substr(0, bytes.find('\0')));
    checkMount(argument);
    checkLocation(argument);
    checkTexts(std::string(bytes));
    return 0;
}
