#include "storage/provider/ScratchFile.h"

#include <utility>

#include "storage/provider/TemporaryName.h"

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

ClosingStream ScratchFile::open() const {
    const ByteStreamOpenOptions alone{.sharing = ByteStreamOpenOptions::Sharing::Exclusive};
    return ClosingStream(named([&] { return m_provider->openByteStream(location(), alone); }));
}

void ScratchFile::replaceTarget(ReplacementPolicy policy) {
    named([&] { m_provider->moveFile(location(), m_target, policy); });
    m_file.keep();
}

void ScratchFile::remove() {
    named([this] { m_file.remove(); });
}

}  // namespace foundation::storage::provider::detail
