#pragma once

#include <gmock/gmock.h>

#include <string>

#include "support/Jstore.h"

namespace jstore::test {

/// The run did what it was asked and said nothing.
MATCHER(IsSilentlyDone, "") { return arg.exitCode == 0 && arg.out.empty() && arg.err.empty(); }

/// The run ended with the exit code and exactly one line on standard error, which matches; nothing on standard output.
MATCHER_P2(FailsWith, exitCode, line, "") {
    const auto lines = arg.errLines();
    return arg.exitCode == exitCode && arg.out.empty() && lines.size() == 1 && arg.err.back() == '\n' &&
           ::testing::ExplainMatchResult(line, lines.front(), result_listener);
}

/// The run was done and printed what matches; nothing on standard error.
MATCHER_P(Prints, text, "") {
    return arg.exitCode == 0 && arg.err.empty() && ::testing::ExplainMatchResult(text, arg.out, result_listener);
}

}  // namespace jstore::test
