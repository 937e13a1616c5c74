#include "soak/Soak.h"

#include <utility>

#include "storage/jvm/ThreadAttachment.h"

namespace storage::javaprovider::test {

Soak::Soak(std::shared_ptr<jvm_interface::JVM> jvm, std::uint64_t seed) : m_jvm(std::move(jvm)), m_slot(m_jvm) {
    for (std::size_t i = 0; i < Threads; ++i) {
        m_workers.emplace_back(m_slot, seed + i);
    }
    for (std::size_t i = 0; i < Threads; ++i) {
        m_threads.emplace_back([this, i] { live(i); });
    }
}

Soak::~Soak() {
    m_operationsEach = 0;
    m_barrier.arrive_and_wait();
    for (auto& thread : m_threads) {
        thread.join();
    }
}

void Soak::run(long operations) {
    m_operationsEach = operations / Threads;
    m_barrier.arrive_and_wait();
    m_barrier.arrive_and_wait();
}

void Soak::live(std::size_t index) {
    if (index % 2 == 0) {
        const storage::jvm::ThreadAttachment attachment(m_jvm);
        workUntilEnd(m_workers[index]);
    } else {
        workUntilEnd(m_workers[index]);
    }
}

void Soak::workUntilEnd(Worker& worker) {
    for (;;) {
        m_barrier.arrive_and_wait();
        if (m_operationsEach == 0) {
            return;
        }
        worker.work(m_operationsEach);
        m_barrier.arrive_and_wait();
    }
}

}  // namespace storage::javaprovider::test
