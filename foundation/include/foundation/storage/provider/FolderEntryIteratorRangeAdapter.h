#pragma once

#include <boost/function.hpp>

#include <optional>
#include <utility>

#include "foundation/storage/provider/IFolderEntryIterator.h"

namespace foundation::storage::provider {

/// Iterates over a range of entries that it owns and passes each one through a transform.
///
/// With an empty transform advance() throws boost::bad_function_call.
template <class Range>
class FolderEntryIteratorRangeAdapter : public IFolderEntryIterator {
public:
    using Transform = boost::function<FolderEntry(FolderEntry)>;

    FolderEntryIteratorRangeAdapter(Range entries, Transform transform)
        : m_entries(std::move(entries)),
          m_transform(std::move(transform)),
          m_position(m_entries.begin()),
          m_end(m_entries.end()) {}

    /// The copy is at the same index of its own range.
    FolderEntryIteratorRangeAdapter(const FolderEntryIteratorRangeAdapter& other)
        : IFolderEntryIterator(other),
          m_entries(other.m_entries),
          m_transform(other.m_transform),
          m_position(m_entries.begin() + (other.m_position - other.m_entries.begin())),
          m_end(m_entries.end()),
          m_current(other.m_current) {}

    ~FolderEntryIteratorRangeAdapter() override = default;

    [[nodiscard]] FolderEntry getCurrent() const override { return *m_current; }
    [[nodiscard]] bool hasMore() const override { return m_position != m_end; }
    void advance() override {
        m_current = m_transform(FolderEntry(*m_position));
        ++m_position;
    }

private:
    Range m_entries;
    Transform m_transform;
    typename Range::const_iterator m_position;
    typename Range::const_iterator m_end;
    std::optional<FolderEntry> m_current;
};

/// Gives an iterator class its clone().
template <class Iterator>
class IClonableFolderEntryIterator final : public Iterator {
public:
    using Iterator::Iterator;

    [[nodiscard]] IFolderEntryIterator* clone() const override { return new IClonableFolderEntryIterator(*this); }
};

}  // namespace foundation::storage::provider
