#pragma once

#include <functional>
#include <string>
#include <vector>

#include "base/ExitCode.h"
#include "base/Location.h"
#include "work/Context.h"

namespace jstore {

/// The arguments as locations. Reads all of them, then starts the back end. Throws CommandError for an argument that is
/// no location, and as Context::provider() does.
[[nodiscard]] std::vector<Location> startWith(Context& context, const std::vector<std::string>& arguments);

/// Runs `operation` for each location, in order, and combines their exit codes.
///
/// The operation reports its own success; what it throws is reported here as the location's failure, and the next
/// location follows. Throws Interruption before the next one when a signal has arrived.
[[nodiscard]] ExitCode forEachLocation(Context& context, const std::vector<Location>& locations,
                                       const std::function<ExitCode(const Location&)>& operation);

/// The same after startWith(), for an operation that prints nothing.
[[nodiscard]] ExitCode forEachArgument(
    Context& context, const std::vector<std::string>& arguments,
    const std::function<void(const foundation::storage::provider::IProvider&, const Location&)>& operation);

}  // namespace jstore
