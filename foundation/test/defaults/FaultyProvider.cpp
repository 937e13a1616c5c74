#include "FaultyProvider.h"

#include <utility>

namespace foundation::test {

using namespace storage::provider;

FaultyProvider::FaultyProvider() {
    setHook([this](std::string_view operation, const StorageIRI& location) {
        m_failsAfterwards = m_plan.begin(operation, location);
    });
}

void FaultyProvider::doMoveFile(const StorageIRI& source, const StorageIRI& destination,
                                const ReplacementPolicy& policy) const {
    InMemoryProvider::doMoveFile(source, destination, policy);
    if (std::exchange(m_failsAfterwards, false)) {
        m_plan.fail(source);
    }
}

std::unique_ptr<ByteStream> FaultyProvider::doOpenByteStream(const StorageIRI& location,
                                                             const ByteStreamOpenOptions& options) const {
    return std::make_unique<FaultyStream>(InMemoryProvider::doOpenByteStream(location, options), location, m_plan,
                                          m_habits);
}

std::unique_ptr<ByteStream> FaultyProvider::doOpenReadOnlyByteStream(const StorageIRI& location) const {
    return std::make_unique<FaultyStream>(InMemoryProvider::doOpenReadOnlyByteStream(location), location, m_plan,
                                          m_habits);
}

}  // namespace foundation::test
