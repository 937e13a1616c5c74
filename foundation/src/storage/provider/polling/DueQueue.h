#pragma once

#include <map>
#include <utility>

namespace foundation::storage::provider::detail {

/// Items in the order in which they are due; those due at the same time in the order in which they came.
///
/// Every operation takes the logarithm of the number of items. The items are values that are cheap to move, and unique.
template <class Time, class Item>
class DueQueue {
    using Entries = std::multimap<Time, Item>;

public:
    /// Where an item stands; it stays valid until the item is removed.
    using Place = typename Entries::iterator;

    Place add(Time due, Item item) { return m_entries.emplace(std::move(due), std::move(item)); }

    void remove(Place place) { m_entries.erase(place); }

    /// Changes the item's time, and so its place.
    [[nodiscard]] Place move(Place place, Time due) {
        auto node = m_entries.extract(place);
        node.key() = std::move(due);
        return m_entries.insert(std::move(node));
    }

    /// The item that is due first, with its time; null when there is none.
    [[nodiscard]] const std::pair<const Time, Item>* first() const {
        return m_entries.empty() ? nullptr : &*m_entries.begin();
    }

    void clear() { m_entries.clear(); }

private:
    Entries m_entries;
};

}  // namespace foundation::storage::provider::detail
