#include "foundation/storage/provider/ScratchFile.h"

#include <utility>

#include "storage/provider/replacing/TemporaryName.h"

namespace foundation::storage::provider {

ScratchFile::ScratchFile(const IProvider& provider, StorageIRI location, StorageIRI target, StorageIRI name)
    : m_provider(&provider), m_location(std::move(location)), m_target(std::move(target)), m_name(std::move(name)) {
    named([this] { m_provider->createFile(m_location); });
    m_mine = true;
}

ScratchFile::ScratchFile(ScratchFile&& other) noexcept
    : m_provider(other.m_provider),
      m_location(std::move(other.m_location)),
      m_target(std::move(other.m_target)),
      m_name(std::move(other.m_name)),
      m_mine(std::exchange(other.m_mine, false)) {}

ScratchFile::~ScratchFile() {
    try {
        remove();
    } catch (...) {
        // The file is left over because something failed; that error is on its way and matters more than this one.
    }
}

ScratchFile ScratchFile::beside(const IProvider& provider, const StorageIRI& target) {
    return {provider, detail::temporaryBeside(target), target, target};
}

ScratchFile ScratchFile::at(const IProvider& provider, const StorageIRI& scratch, const StorageIRI& target) {
    return {provider, scratch, target, scratch};
}

ClosingStream ScratchFile::open() {
    // Emptied: others who know the location may have written to it since it was created.
    constexpr ByteStreamOpenOptions alone{.content = ByteStreamOpenOptions::Content::Truncate,
                                          .sharing = ByteStreamOpenOptions::Sharing::Exclusive};
    try {
        return ClosingStream(named([&] { return m_provider->openByteStream(m_location, alone); }));
    } catch (const Exception& error) {
        if (error.code() == ErrorCode::InUse && isChosen()) {
            m_mine = false;
        }
        throw;
    }
}

void ScratchFile::replaceTarget(ReplacementPolicy policy) {
    named([&] { m_provider->moveFile(m_location, m_target, policy); });
    m_mine = false;
}

void ScratchFile::remove() {
    if (std::exchange(m_mine, false)) {
        named([this] { m_provider->removeFile(m_location); });
    }
}

}  // namespace foundation::storage::provider
