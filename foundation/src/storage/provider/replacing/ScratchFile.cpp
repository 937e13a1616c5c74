#include "storage/provider/replacing/ScratchFile.h"

#include <utility>

#include "storage/provider/replacing/TemporaryName.h"

namespace foundation::storage::provider::detail {

ScratchFile::ScratchFile(const IProvider& provider, const StorageIRI& location, StorageIRI target, StorageIRI name)
    : m_provider(&provider),
      m_target(std::move(target)),
      m_name(std::move(name)),
      m_file(named(location, m_name, [&] { return CreatedFile(provider, location); })) {}

ScratchFile ScratchFile::beside(const IProvider& provider, const StorageIRI& target) {
    return {provider, temporaryBeside(target), target, target};
}

ScratchFile ScratchFile::at(const IProvider& provider, const StorageIRI& scratch, const StorageIRI& target) {
    return {provider, scratch, target, scratch};
}

ClosingStream ScratchFile::open() {
    // Emptied: at a location that others know, one of them may have written since it was created.
    constexpr ByteStreamOpenOptions alone{.content = ByteStreamOpenOptions::Content::Truncate,
                                          .sharing = ByteStreamOpenOptions::Sharing::Exclusive};
    try {
        return ClosingStream(named([&] { return m_provider->openByteStream(location(), alone); }));
    } catch (const Exception& error) {
        if (error.code() == ErrorCode::InUse && isChosen()) {
            m_file.keep();
        }
        throw;
    }
}

void ScratchFile::replaceTarget(ReplacementPolicy policy) {
    named([&] { m_provider->moveFile(location(), m_target, policy); });
    m_file.keep();
}

void ScratchFile::remove() {
    named([this] { m_file.remove(); });
}

}  // namespace foundation::storage::provider::detail
