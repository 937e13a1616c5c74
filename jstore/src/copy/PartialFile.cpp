#include "copy/PartialFile.h"

#include <fmt/format.h>
#include <unistd.h>

#include <exception>
#include <random>
#include <utility>

#include "fl/i18n/text.h"

namespace jstore {

using foundation::storage::provider::IProvider;
using foundation::storage::provider::ReplacementPolicy;
using foundation::storage::provider::StorageIRI;

namespace {

/// The process tells apart those of one machine, the random numbers those of machines that share a storage. Whatever
/// is cut from the target's name, the whole stays within what file systems allow.
StorageIRI hiddenBeside(const StorageIRI& target) {
    constexpr std::size_t longestStem = 20;
    std::u16string stem = target.getName().substr(0, longestStem);
    if (!stem.empty() && (stem.back() & 0xFC00) == 0xD800) {
        stem.pop_back();  // Half of a surrogate pair is no name.
    }
    static std::random_device random;  // One for all: on virtual processors making one costs tens of microseconds.
    const auto unique = fmt::format(".{:x}-{:08x}{:08x}.tmp", ::getpid(), random(), random());
    return target.getParent().getChild(u'.' + stem + fl::i18n::to_ustring(unique));
}

}  // namespace

PartialFile::PartialFile(const IProvider& provider, StorageIRI target)
    : m_provider(provider), m_target(std::move(target)), m_location(hiddenBeside(m_target)) {
    use([this](const StorageIRI& hidden) { m_provider.createFile(hidden); });
}

PartialFile::~PartialFile() {
    if (m_inPlace) {
        return;
    }
    try {
        m_provider.removeFile(m_location);
    } catch (const std::exception&) {
        // The scope is left because of an error already, and that is the one to tell.
    }
}

void PartialFile::takePlace(ReplacementPolicy policy) {
    use([&](const StorageIRI& hidden) { m_provider.moveFile(hidden, m_target, policy); });
    m_inPlace = true;
}

}  // namespace jstore
