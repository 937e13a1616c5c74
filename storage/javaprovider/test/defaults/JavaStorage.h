#pragma once

#include <memory>
#include <string>

#include "shared/StorageUnderTest.h"
#include "storage/jvm/ThreadAttachment.h"

namespace storage::javaprovider::test {

/// A storage of NioProvider, reached through the library. Keeps its thread attached; goes on the thread that made it.
class JavaStorage final : public foundation::test::StorageUnderTest {
public:
    /// `kind`: as the Java class Storages has it.
    explicit JavaStorage(const std::string& kind);
    ~JavaStorage() override;

    [[nodiscard]] const foundation::storage::provider::IProvider& provider() const override { return *m_provider; }
    [[nodiscard]] foundation::storage::provider::StorageIRI folder() const override { return m_folder; }

private:
    const storage::jvm::ThreadAttachment m_attached;
    const std::string m_root;
    foundation::storage::provider::StorageIRI m_folder;
    std::unique_ptr<foundation::storage::provider::IProvider> m_provider;
};

}  // namespace storage::javaprovider::test
