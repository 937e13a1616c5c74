#pragma once

#include <exception>

#include "base/ExitCode.h"

namespace jstore {

/// Thrown to end a command in the middle of its work, because nothing after it could succeed. The reason has been
/// reported.
class EndOfCommand final : public std::exception {
public:
    explicit EndOfCommand(ExitCode code) : m_code(code) {}

    [[nodiscard]] const char* what() const noexcept override { return "the command has ended"; }
    [[nodiscard]] ExitCode code() const noexcept { return m_code; }

private:
    ExitCode m_code;
};

}  // namespace jstore
