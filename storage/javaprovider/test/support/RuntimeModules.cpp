#include "support/RuntimeModules.h"

#include <dlfcn.h>

#include <algorithm>
#include <mutex>

namespace storage::javaprovider::test {

namespace {

/// The file that the code at the address comes from; empty for generated code.
std::filesystem::path fileOf(const void* address) {
    Dl_info info{};
    if (dladdr(address, &info) == 0 || info.dli_fname == nullptr) {
        return {};
    }
    std::error_code ignored;  // a file that cannot be resolved keeps the name it was loaded by
    const auto resolved = std::filesystem::canonical(info.dli_fname, ignored);
    return resolved.empty() ? std::filesystem::path(info.dli_fname) : resolved;
}

}  // namespace

RuntimeModules::RuntimeModules(const void* insideLibjvm)
    // <home>/lib/server/libjvm.so
    : m_home(fileOf(insideLibjvm).parent_path().parent_path().parent_path()) {}

bool RuntimeModules::contain(const void* address) const {
    {
        const std::shared_lock lock(m_mutex);
        if (const auto found = m_known.find(address); found != m_known.end()) {
            return found->second;
        }
    }
    const bool contained = lookUp(address);
    const std::unique_lock lock(m_mutex);
    m_known.emplace(address, contained);
    return contained;
}

bool RuntimeModules::lookUp(const void* address) const {
    const std::filesystem::path file = fileOf(address);
    if (file.empty()) {
        return true;
    }
    return std::mismatch(m_home.begin(), m_home.end(), file.begin(), file.end()).first == m_home.end();
}

}  // namespace storage::javaprovider::test
