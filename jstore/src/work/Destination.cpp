#include "work/Destination.h"

#include <exception>
#include <utility>

#include "base/Problem.h"

namespace jstore {

using foundation::storage::provider::ErrorCode;

namespace {

bool isFolder(Context& context, const Location& location) {
    try {
        return context.provider().folderExists(location.iri());
    } catch (const CommandError&) {
        throw;
    } catch (const std::exception& error) {
        throw CommandError(context.problemOf(error, location));
    }
}

}  // namespace

Destination::Destination(Context& context, Location location, std::size_t sources)
    : m_location(std::move(location)), m_isFolder(isFolder(context, m_location)) {
    if (!m_isFolder && sources > 1) {
        throw refusal(m_location, ErrorCode::NotAFolder, "several sources need a folder as their destination");
    }
}

Location Destination::targetOf(const Location& source, const char* deed) const {
    if (!m_isFolder) {
        return m_location;
    }
    if (source.iri().normalized().isRoot()) {
        throw refusal(source, ErrorCode::AccessDenied, std::string("a root cannot be ") + deed);
    }
    return Location(m_location.iri().getChild(source.iri().getName()));
}

}  // namespace jstore
