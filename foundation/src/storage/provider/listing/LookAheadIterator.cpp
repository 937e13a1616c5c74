#include "storage/provider/listing/LookAheadIterator.h"

#include <utility>

namespace foundation::storage::provider::detail {

LookAheadIterator::LookAheadIterator(std::unique_ptr<EntrySource> source) : m_source(std::move(source)) {}

LookAheadIterator::LookAheadIterator(const LookAheadIterator& other)
    : IFolderEntryIterator(other),
      m_source(other.m_source->clone()),
      m_ahead(other.m_ahead),
      m_current(other.m_current) {}

const LookAheadIterator::Turn& LookAheadIterator::lookAhead() const {
    if (!m_ahead) {
        Turn turn;
        try {
            turn.entry = m_source->next();
        } catch (...) {
            turn.error = std::current_exception();
        }
        m_ahead = std::move(turn);
    }
    return *m_ahead;
}

bool LookAheadIterator::hasMore() const {
    const Turn& turn = lookAhead();
    return turn.entry || turn.error;
}

void LookAheadIterator::advance() {
    if (!hasMore()) {
        return;
    }
    Turn turn = *std::exchange(m_ahead, std::nullopt);
    if (turn.error) {
        std::rethrow_exception(turn.error);
    }
    m_current = std::move(turn.entry);
}

IFolderEntryIterator* LookAheadIterator::clone() const { return new LookAheadIterator(*this); }

}  // namespace foundation::storage::provider::detail
