#pragma once

#include "base/ExitCode.h"
#include "base/Location.h"
#include "work/Context.h"

namespace jstore {

/// Reports the exception that is being handled as the location's failure, with a hint if there is one, and returns its
/// exit code. Call it in a catch block.
///
/// Throws OutputError, Interruption and EndOfCommand again: they are not the failure of a location.
[[nodiscard]] ExitCode reportFailure(Context& context, const Location& location);

/// Reports that a signal has stopped the command, and how much was done before it.
void reportInterruption(Context& context);

}  // namespace jstore
