#include "InstructionCounter.h"

#include <linux/perf_event.h>
#include <sys/syscall.h>
#include <unistd.h>

#include <cerrno>
#include <cstring>
#include <string>

namespace bench {

namespace {

int openCounter() {
    perf_event_attr attributes{};
    attributes.size = sizeof(attributes);
    attributes.type = PERF_TYPE_HARDWARE;
    attributes.config = PERF_COUNT_HW_INSTRUCTIONS;
    attributes.exclude_kernel = 1;
    attributes.exclude_hv = 1;
    constexpr int ThisThread = 0;
    constexpr int AnyProcessor = -1;
    constexpr int NoGroup = -1;
    const auto descriptor = static_cast<int>(
        syscall(SYS_perf_event_open, &attributes, ThisThread, AnyProcessor, NoGroup, PERF_FLAG_FD_CLOEXEC));
    if (descriptor < 0) {
        throw NoInstructionCounter(std::string("instructions cannot be counted here: ") + std::strerror(errno));
    }
    return descriptor;
}

}  // namespace

InstructionCounter::InstructionCounter() : m_descriptor(openCounter()) {}

InstructionCounter::~InstructionCounter() { close(m_descriptor); }

std::uint64_t InstructionCounter::count() const {
    std::uint64_t result = 0;
    if (read(m_descriptor, &result, sizeof(result)) != sizeof(result)) {
        throw NoInstructionCounter("the instruction counter gives no count");
    }
    return result;
}

}  // namespace bench
