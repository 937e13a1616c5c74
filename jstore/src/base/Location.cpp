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
        throw invalid(argument, "a location begins with java:// (for a local file of that name put ./ before it)");
    }
    const auto mark = afterScheme.find_first_of("#?");
    if (mark != std::string_view::npos) {
        throw invalid(argument, afterScheme[mark] == '#' ? "write %23 for # in a name" : "write %3F for ? in a name");
    }
    return Location(StorageIRI(u"java:" + fl::i18n::to_ustring(afterScheme)));
}

Location fromLocalPath(std::string_view argument) {
    StorageIRI location(u"java:///");
    for (const auto& name : localPathNames(argument)) {
        location = location.getChild(textOfName(name));
    }
    return Location(std::move(location));
}

}  // namespace

std::string Location::text() const { return fl::i18n::to_string(m_iri.text()); }

Location toLocation(std::string_view argument) {
    if (argument.empty()) {
        throw usageError("a location is empty");
    }
    const auto scheme = lowerCase(schemeOf(argument));
    if (scheme == "java") {
        if (!isUtf8(argument)) {
            throw invalid(argument, "it is not UTF-8; a local path may be any bytes");
        }
        return fromIri(argument, argument.substr(scheme.size() + 1));
    }
    if (!scheme.empty() && argument.substr(scheme.size() + 1, 2) == "//") {
        throw invalid(argument, "a location is java://… or a local path");
    }
    return fromLocalPath(argument);
}

std::vector<Location> toLocations(const std::vector<std::string>& arguments) {
    std::vector<Location> locations;
    for (const auto& argument : arguments) {
        locations.push_back(toLocation(argument));
    }
    return locations;
}

}  // namespace jstore
