// The storage in memory, for the tests that every back end passes.
#include "../shared/StorageUnderTest.h"
#include "InMemoryProvider.h"

namespace foundation::test {

namespace {

class MemoryStorage final : public StorageUnderTest {
public:
    MemoryStorage() { m_provider.createFolder(m_folder); }

    [[nodiscard]] const storage::provider::IProvider& provider() const override { return m_provider; }
    [[nodiscard]] storage::provider::StorageIRI folder() const override { return m_folder; }

private:
    const storage::provider::StorageIRI m_folder{u"java://mount/folder"};
    InMemoryProvider m_provider;
};

}  // namespace

std::vector<StorageKind> storageKinds() {
    return {{"Memory", [] { return std::make_unique<MemoryStorage>(); }}};
}

}  // namespace foundation::test
