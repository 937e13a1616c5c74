#include "storage/provider/replacing/CreatedFile.h"

#include <utility>

namespace foundation::storage::provider::detail {

CreatedFile::CreatedFile(const IProvider& provider, const StorageIRI& location)
    : m_provider(&provider), m_location(location) {
    provider.createFile(location);
}

CreatedFile::CreatedFile(CreatedFile&& other) noexcept
    : m_provider(other.m_provider),
      m_location(std::move(other.m_location)),
      m_mine(std::exchange(other.m_mine, false)) {}

CreatedFile::~CreatedFile() {
    try {
        remove();
    } catch (...) {
        // The file is left over because something failed; that error is on its way and tells more than this one.
    }
}

void CreatedFile::remove() {
    if (std::exchange(m_mine, false)) {
        m_provider->removeFile(m_location);
    }
}

}  // namespace foundation::storage::provider::detail
