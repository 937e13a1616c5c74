#pragma once

#include "options/Options.h"

namespace jstore {

/// Sends the provider bridge's log records of the level to standard error, indented by call depth. LogLevel::Off sends
/// nothing and adds no sink. What goes wrong with a record never reaches the operation that it is about. Called once,
/// before the virtual machine starts.
void startLog(LogLevel level);

}  // namespace jstore
