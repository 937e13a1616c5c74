#include "storage/provider/listing/MatchingEntries.h"

#include <string_view>
#include <utility>

namespace foundation::storage::provider::detail {

namespace {

std::u16string_view lastName(std::u16string_view path) {
    const std::size_t slash = path.rfind(u'/');
    return slash == std::u16string_view::npos ? path : path.substr(slash + 1);
}

}  // namespace

MatchingEntries::MatchingEntries(std::unique_ptr<IFolderEntryIterator> entries, Wildcards wildcards, Part part)
    : m_entries(std::move(entries)), m_wildcards(std::move(wildcards)), m_part(part) {}

bool MatchingEntries::fits(const std::u16string& name) const {
    return m_wildcards.matches(m_part == Part::LastName ? lastName(name) : name);
}

std::optional<FolderEntry> MatchingEntries::next() {
    while (m_entries->hasMore()) {
        m_entries->advance();
        FolderEntry entry = m_entries->getCurrent();
        if (fits(entry.name())) {
            return entry;
        }
    }
    return std::nullopt;
}

std::unique_ptr<EntrySource> MatchingEntries::clone() const {
    return std::make_unique<MatchingEntries>(std::unique_ptr<IFolderEntryIterator>(m_entries->clone()), m_wildcards,
                                             m_part);
}

}  // namespace foundation::storage::provider::detail
