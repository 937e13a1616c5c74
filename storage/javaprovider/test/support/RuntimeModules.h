#pragma once

#include <filesystem>
#include <shared_mutex>
#include <unordered_map>

namespace storage::javaprovider::test {

/// Tells the code of the Java runtime from all other code of the process. Safe to use from any thread.
class RuntimeModules {
public:
    /// `insideLibjvm`: the address of any function of the virtual machine.
    explicit RuntimeModules(const void* insideLibjvm);

    /// Whether the address lies in a library of the runtime, or in code that the machine has generated.
    [[nodiscard]] bool contain(const void* address) const;

private:
    [[nodiscard]] bool lookUp(const void* address) const;

    std::filesystem::path m_home;
    mutable std::shared_mutex m_mutex;
    mutable std::unordered_map<const void*, bool> m_known;
};

}  // namespace storage::javaprovider::test
