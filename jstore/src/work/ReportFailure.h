#pragma once

#include "base/ExitCode.h"
#include "base/Location.h"
#include "work/Context.h"

namespace jstore {

/// Reports the exception that is being handled as the location's failure, with a hint where there is one, and returns
/// its exit code. To be called in a catch block.
///
/// OutputError, Interruption and EndOfCommand are nobody's failure and are thrown again.
[[nodiscard]] ExitCode reportFailure(Context& context, const Location& location);

/// Reports that a signal has stopped the command, and how much was done until then.
void reportInterruption(Context& context);

}  // namespace jstore
