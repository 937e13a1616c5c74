#include "jvm/ForkWatch.h"

#include <pthread.h>

#include "jvm/Failure.h"

namespace storage::jvm::detail {

std::atomic<bool> forkedFromMachine{false};

void watchForks() {
    static const int registered = pthread_atfork(nullptr, nullptr, [] { forkedFromMachine = true; });
    if (registered != 0) {
        failOutOfMemory();
    }
}

}  // namespace storage::jvm::detail
