#pragma once

#include <barrier>
#include <cstdint>
#include <memory>
#include <thread>
#include <vector>

#include "jvm_interface/JVM.h"
#include "soak/ProviderSlot.h"
#include "soak/Worker.h"

namespace storage::javaprovider::test {

/// Eight threads at work on one provider: every other one stays attached to the virtual machine, the rest attach for
/// each operation. They live as long as this object, and rest between two calls of run().
class Soak {
public:
    static constexpr int Threads = 8;

    Soak(std::shared_ptr<jvm_interface::JVM> jvm, std::uint64_t seed);
    ~Soak();

    Soak(const Soak&) = delete;
    Soak& operator=(const Soak&) = delete;

    /// Does so many operations, and returns when all threads rest.
    void run(long operations);

    [[nodiscard]] ProviderSlot& slot() noexcept { return m_slot; }
    /// To be read while the threads rest.
    [[nodiscard]] const std::vector<Worker>& workers() const noexcept { return m_workers; }

private:
    void live(std::size_t index);
    void workUntilEnd(Worker& worker);

    std::shared_ptr<jvm_interface::JVM> m_jvm;
    ProviderSlot m_slot;
    std::vector<Worker> m_workers;
    std::barrier<> m_barrier{Threads + 1};
    long m_operationsEach = 0;  ///< read between two arrivals at the barrier; zero ends the threads
    std::vector<std::thread> m_threads;
};

}  // namespace storage::javaprovider::test
