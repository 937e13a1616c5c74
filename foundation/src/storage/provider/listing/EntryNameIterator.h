#pragma once

#include <memory>
#include <string>

#include "foundation/storage/provider/IFolderEntryIterator.h"

namespace foundation::storage::provider::detail {

/// Walks a listing and returns only the names.
class EntryNameIterator final : public IFolderNameIterator {
public:
    explicit EntryNameIterator(std::unique_ptr<IFolderEntryIterator> entries);
    EntryNameIterator(const EntryNameIterator& other);

    [[nodiscard]] std::u16string getCurrent() const override { return m_entries->getCurrent().name(); }
    [[nodiscard]] bool hasMore() const override { return m_entries->hasMore(); }
    void advance() override { m_entries->advance(); }
    [[nodiscard]] IFolderNameIterator* clone() const override;

private:
    std::unique_ptr<IFolderEntryIterator> m_entries;
};

}  // namespace foundation::storage::provider::detail
