#include "jvm/ForkWatch.h"

#include <pthread.h>

#include "jvm/Failure.h"

namespace storage::jvm::detail {

std::atomic<bool> forkedFromMachine{false};

namespace {

std::atomic<unsigned> startsUnderWay{0};
std::atomic<bool> machineExists{false};

void markChild() { forkedFromMachine = forkedFromMachine || machineExists || startsUnderWay != 0; }

}  // namespace

ForkWatch::ForkWatch() {
    static const int registered = pthread_atfork(nullptr, nullptr, markChild);
    if (registered != 0) {
        failOutOfMemory();
    }
    ++startsUnderWay;
}

ForkWatch::~ForkWatch() { --startsUnderWay; }

void ForkWatch::keep() noexcept { machineExists = true; }

}  // namespace storage::jvm::detail
