#include "GeneratedTree.h"

#include <algorithm>
#include <utility>

#include "foundation/storage/provider/FolderEntryIteratorRangeAdapter.h"

namespace foundation::test {

using namespace storage::provider;

namespace {

/// The entries of one listing, counted while they live.
class CountedEntries {
public:
    using const_iterator = std::vector<FolderEntry>::const_iterator;

    CountedEntries(std::vector<FolderEntry> entries, std::shared_ptr<GeneratedTree::Count> count)
        : m_entries(std::move(entries)), m_count(std::move(count)) {
        enter();
    }
    CountedEntries(const CountedEntries& other) : m_entries(other.m_entries), m_count(other.m_count) { enter(); }
    // What has been moved from is empty, so nothing is counted twice.
    CountedEntries(CountedEntries&& other) noexcept : m_entries(std::move(other.m_entries)), m_count(other.m_count) {}
    CountedEntries& operator=(const CountedEntries&) = delete;
    ~CountedEntries() { m_count->now -= m_entries.size(); }

    [[nodiscard]] const_iterator begin() const { return m_entries.begin(); }
    [[nodiscard]] const_iterator end() const { return m_entries.end(); }

private:
    void enter() {
        m_count->now += m_entries.size();
        m_count->most = std::max(m_count->most, m_count->now);
    }

    std::vector<FolderEntry> m_entries;
    std::shared_ptr<GeneratedTree::Count> m_count;
};

}  // namespace

std::unique_ptr<IFolderEntryIterator> GeneratedTree::doListAll(const StorageIRI& folder) const {
    const std::u16string& text = folder.text();
    const auto slashes = static_cast<std::size_t>(std::count(text.begin(), text.end(), u'/'));
    using Adapter = FolderEntryIteratorRangeAdapter<CountedEntries>;
    return std::make_unique<IClonableFolderEntryIterator<Adapter>>(CountedEntries(m_generator(slashes - 2), m_held),
                                                                   [](FolderEntry entry) { return entry; });
}

}  // namespace foundation::test
