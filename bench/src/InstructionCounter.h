#pragma once

#include <cstdint>
#include <stdexcept>

namespace bench {

/// The computer, or whoever runs it, lets nobody count instructions.
class NoInstructionCounter : public std::runtime_error {
public:
    using std::runtime_error::runtime_error;
};

/// Counts the instructions of the thread that made it, those of the kernel left out.
class InstructionCounter {
public:
    /// Throws NoInstructionCounter.
    InstructionCounter();
    ~InstructionCounter();

    InstructionCounter(const InstructionCounter&) = delete;
    InstructionCounter& operator=(const InstructionCounter&) = delete;

    [[nodiscard]] std::uint64_t count() const;

private:
    int m_descriptor;
};

}  // namespace bench
