#include "FaultPlan.h"

#include <stdexcept>

#include "foundation/storage/provider/Exception.h"

namespace foundation::test {

using namespace storage::provider;

void FaultPlan::failAt(int n, Mode mode) {
    m_operations.clear();
    m_failAt = n;
    m_mode = mode;
}

bool FaultPlan::begin(std::string_view operation, const StorageIRI& location) {
    m_operations.emplace_back(operation);
    const int number = static_cast<int>(m_operations.size());
    const bool fails = m_failAt != 0 && (m_mode == Mode::Lasting ? number >= m_failAt : number == m_failAt);
    if (!fails) {
        return false;
    }
    if (m_mode == Mode::AfterEffect && (operation == "moveFile" || operation == "close")) {
        return true;
    }
    fail(location);
}

void FaultPlan::fail(const StorageIRI& location) const {
    if (m_mode == Mode::Foreign) {
        throw std::runtime_error("foreign");
    }
    throw Exception(ErrorCode::Unavailable, location);
}

}  // namespace foundation::test
