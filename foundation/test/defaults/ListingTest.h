#pragma once

#include <string>
#include <vector>

#include "DefaultsTest.h"

namespace foundation::test {

/// Walks listings to their end.
class ListingTest : public DefaultsTest {
protected:
    using EntryType = storage::provider::EntryType;
    using FolderEntry = storage::provider::FolderEntry;
    using Names = std::vector<std::u16string>;

    static std::vector<FolderEntry> rest(storage::provider::IFolderEntryIterator& entries) {
        std::vector<FolderEntry> result;
        while (entries.hasMore()) {
            entries.advance();
            result.push_back(entries.getCurrent());
        }
        return result;
    }

    static Names rest(storage::provider::IFolderNameIterator& names) {
        Names result;
        while (names.hasMore()) {
            names.advance();
            result.push_back(names.getCurrent());
        }
        return result;
    }

    template <class Iterator>
    static auto all(const std::unique_ptr<Iterator>& iterator) {
        return rest(*iterator);
    }

    static FolderEntry file(std::u16string name) { return {std::move(name), EntryType::File}; }
    static FolderEntry folder(std::u16string name) { return {std::move(name), EntryType::Folder}; }
};

}  // namespace foundation::test
