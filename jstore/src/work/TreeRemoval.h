#pragma once

#include "base/ExitCode.h"
#include "base/Location.h"
#include "work/Context.h"

namespace jstore {

/// Removes a folder with all it holds, one by one and children first.
///
/// Symbolic links to folders are removed and not entered: a folder is listed only when the back end says that it is not
/// empty, and its contents are removed only if it is no link after that. Every 32 entries it is checked that the place
/// still leads to the same folder; if not, that is a failure with InUse, and what was to be removed from it stays. What
/// cannot be removed is reported as its own failure, and the folders above it stay; the rest goes. What others remove
/// meanwhile is fine. The depth of the tree is limited only by memory: at a time the listings along one path are held.
///
/// The back end removes a folder at once where that is not possible: one that it cannot list, since it holds more than
/// Java has memory for, and one with contents whose locations are too long for the storage.
///
/// Returns Done, or SomeFailed when something stays. Throws what removing the folder itself fails with, and
/// Interruption when a signal arrives. Blocks in Java.
[[nodiscard]] ExitCode removeOneByOne(Context& context, const Location& folder);

}  // namespace jstore
