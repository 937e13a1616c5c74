#pragma once

#include <cstdint>
#include <map>
#include <memory>
#include <random>
#include <string>

#include "foundation/storage/provider/ByteStream.h"
#include "soak/ProviderSlot.h"

namespace storage::javaprovider::test {

/// One thread's part of a soak: operations of all kinds, drawn at random, on the provider that all share. Belongs to
/// one thread; its counts are read when that thread rests.
class Worker {
public:
    Worker(ProviderSlot& slot, std::uint64_t seed) : m_slot(slot), m_random(seed) {}

    /// Does so many operations; what they fail with is counted. Keeps no stream when it returns.
    void work(long operations);

    [[nodiscard]] long operations() const noexcept { return m_operations; }
    [[nodiscard]] long providerErrors() const noexcept { return m_providerErrors; }
    [[nodiscard]] long otherErrors() const noexcept { return m_otherErrors; }
    /// How often each operation was done without an error, by name.
    [[nodiscard]] const std::map<std::string, long>& successes() const noexcept { return m_successes; }

private:
    using IProvider = foundation::storage::provider::IProvider;
    using StorageIRI = foundation::storage::provider::StorageIRI;
    using ByteStreamPtr = std::unique_ptr<foundation::storage::provider::ByteStream>;

    struct Operation {
        const char* name;
        void (Worker::*perform)(IProvider&);
    };
    static const Operation Operations[];

    void createEntry(IProvider& provider);
    void askWhetherThere(IProvider& provider);
    void removeEntry(IProvider& provider);
    void moveEntry(IProvider& provider);
    void copy(IProvider& provider);
    void copyAtomically(IProvider& provider);
    void readAttributes(IProvider& provider);
    void setLastModified(IProvider& provider);
    void truncate(IProvider& provider);
    void openAndKeep(IProvider& provider);
    void useKeptStream(IProvider& provider);
    void readAndClose(IProvider& provider);
    void replaceInTransaction(IProvider& provider);
    void listFolder(IProvider& provider);
    void listMatching(IProvider& provider);
    void listRecursively(IProvider& provider);
    void readExtended(IProvider& provider);
    void askFeature(IProvider& provider);
    void configure(IProvider& provider);
    void watch(IProvider& provider);
    void stopWatching(IProvider& provider);

    void perform(const Operation& operation);
    [[nodiscard]] unsigned below(unsigned bound);
    [[nodiscard]] StorageIRI anyFolder();
    [[nodiscard]] StorageIRI anyFile();

    ProviderSlot& m_slot;
    std::mt19937_64 m_random;
    ByteStreamPtr m_stream;
    long m_operations = 0;
    long m_providerErrors = 0;
    long m_otherErrors = 0;
    std::map<std::string, long> m_successes;
};

}  // namespace storage::javaprovider::test
