#pragma once

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <algorithm>
#include <functional>
#include <string>
#include <string_view>
#include <vector>

#include "StorageUnderTest.h"

namespace foundation::test {

/// A test of what the framework makes of a back end's own operations, for every back end: the test programs of the
/// framework and of the Java provider are both made of it.
class SharedTest : public testing::TestWithParam<StorageKind> {
protected:
    using EntryType = storage::provider::EntryType;
    using ErrorCode = storage::provider::ErrorCode;
    using Exception = storage::provider::Exception;
    using FolderEntry = storage::provider::FolderEntry;
    using IProvider = storage::provider::IProvider;
    using Names = std::vector<std::u16string>;
    using Policy = storage::provider::ReplacementPolicy;
    using StorageIRI = storage::provider::StorageIRI;

    void SetUp() override { m_storage = GetParam().make(); }

    [[nodiscard]] const IProvider& provider() const { return m_storage->provider(); }
    [[nodiscard]] StorageIRI folder() const { return m_storage->folder(); }
    [[nodiscard]] StorageIRI at(std::u16string_view name) const { return folder().getChild(name); }

    void write(const StorageIRI& file, std::string_view bytes) const;
    [[nodiscard]] std::string bytesOf(const StorageIRI& file) const;

    /// The names in the folder, sorted.
    [[nodiscard]] Names names() const;

    /// Expects `action` to throw that error about that location.
    static void expectError(ErrorCode code, const StorageIRI& location, const std::function<void()>& action);

    /// The rest of a listing, sorted.
    template <class Iterator>
    static auto sorted(const std::unique_ptr<Iterator>& iterator) {
        auto result = rest(*iterator);
        std::sort(result.begin(), result.end(),
                  [](const auto& left, const auto& right) { return byName(left, right); });
        return result;
    }

    /// The rest of a listing as it comes.
    template <class Iterator>
    static auto rest(Iterator& iterator) {
        std::vector<std::remove_cvref_t<decltype(iterator.getCurrent())>> result;
        while (iterator.hasMore()) {
            iterator.advance();
            result.push_back(iterator.getCurrent());
        }
        return result;
    }

    static FolderEntry file(std::u16string name) { return {std::move(name), EntryType::File}; }
    static FolderEntry folderEntry(std::u16string name) { return {std::move(name), EntryType::Folder}; }

private:
    static bool byName(const FolderEntry& left, const FolderEntry& right) { return left.name() < right.name(); }
    static bool byName(const std::u16string& left, const std::u16string& right) { return left < right; }

    std::unique_ptr<StorageUnderTest> m_storage;
};

/// Has the tests of a fixture run on each kind of storage.
#define SHARED_TESTS(Fixture)                                                      \
    INSTANTIATE_TEST_SUITE_P(Storages, Fixture, testing::ValuesIn(storageKinds()), \
                             [](const auto& kind) { return kind.param.name; })

}  // namespace foundation::test
