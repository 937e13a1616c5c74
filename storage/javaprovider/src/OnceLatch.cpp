#include "OnceLatch.h"

namespace storage::javaprovider {

bool OnceLatch::begin() {
    std::unique_lock lock(m_mutex);
    m_changed.wait(lock, [this] { return m_state != Running; });
    if (m_state == Done) {
        return false;
    }
    m_state = Running;
    return true;
}

void OnceLatch::finish(State outcome) {
    {
        const std::lock_guard lock(m_mutex);
        m_state = outcome;
    }
    m_changed.notify_all();
}

}  // namespace storage::javaprovider
