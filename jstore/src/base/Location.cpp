#include "base/Location.h"

#include <algorithm>
#include <cctype>
#include <filesystem>
#include <system_error>

#include "base/LocalPath.h"
#include "base/Problem.h"
#include "base/RawName.h"
#include "base/Text.h"
#include "fl/i18n/text.h"

namespace jstore {

using foundation::storage::provider::StorageIRI;

namespace {

CommandError invalid(std::string_view argument, std::string hint) {
    return CommandError({"InvalidLocation", std::string(argument), std::move(hint), ExitCode::Usage});
}

std::string lowerCase(std::string_view text) {
    std::string lower(text);
    std::transform(lower.begin(), lower.end(), lower.begin(),
                   [](char c) { return static_cast<char>(std::tolower(static_cast<unsigned char>(c))); });
    return lower;
}

Location fromIri(std::string_view argument, std::string_view afterScheme) {
    if (afterScheme.substr(0, 2) != "//") {
        throw invalid(argument, "a location begins with java://; for a local file of this name, write ./ before it");
    }
    const std::size_t mark = afterScheme.find_first_of("#?");
    if (mark != std::string_view::npos) {
        throw invalid(argument, afterScheme[mark] == '#' ? "write # in a name as %23" : "write ? in a name as %3F");
    }
    return Location(StorageIRI(u"java:" + fl::i18n::to_ustring(afterScheme)));
}

Location fromLocalPath(std::string_view argument) {
    StorageIRI location(u"java:///");
    for (const std::string& name : localPathNames(argument)) {
        location = location.getChild(textOfName(name));
    }
    return Location(std::move(location));
}

}  // namespace

std::string Location::text() const { return fl::i18n::to_string(m_iri.text()); }

Location toLocation(std::string_view argument) {
    if (argument.empty()) {
        throw usageError("a location must not be empty");
    }
    const std::string scheme = lowerCase(schemeOf(argument));
    if (scheme == "java") {
        if (!isUtf8(argument)) {
            throw invalid(argument, "not UTF-8; only a local path may hold other bytes");
        }
        return fromIri(argument, argument.substr(scheme.size() + 1));
    }
    if (!scheme.empty() && argument.substr(scheme.size() + 1, 2) == "//") {
        throw invalid(argument, "expected java://… or a local path");
    }
    return fromLocalPath(argument);
}

std::vector<Location> toLocations(const std::vector<std::string>& arguments) {
    std::vector<Location> locations;
    locations.reserve(arguments.size());
    for (const std::string& argument : arguments) {
        locations.push_back(toLocation(argument));
    }
    return locations;
}

}  // namespace jstore
