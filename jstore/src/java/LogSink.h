#pragma once

#include "options/Options.h"

namespace jstore {

/// Sends the provider bridge's log records, up to that level of detail, to standard error, indented by call depth.
/// LogLevel::Off sends nothing and adds no sink. An error in writing a record never reaches the operation that logs it.
/// Call it once, before the virtual machine starts.
void startLog(LogLevel level);

}  // namespace jstore
