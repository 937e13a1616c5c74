#pragma once

#include "base/ExitCode.h"
#include "base/Location.h"
#include "work/Context.h"

namespace jstore {

/// Removes a folder with all it holds, entry by entry, children first.
///
/// Symbolic links to folders are removed and not entered: a folder is listed only when the back end says that it is not
/// empty, and its contents are removed only if it is no link after that. After every 32 entries, the location of the
/// folder is checked again. If it no longer leads to the same folder, that is a failure with InUse, and what is there
/// now stays. Each entry that cannot be removed is reported as a failure of its own, and the folders above it stay; the
/// rest is removed. Entries that others remove at the same time are no failure. Only memory limits the depth of the
/// tree: the listings along one path are held at a time.
///
/// The back end removes some folders in one call: those that it cannot list, for example because they hold more than
/// Java has memory for; those for which it does not support IProvider::removeFolder(); and those with entries that have
/// no valid location, for example because it is too long for the storage.
///
/// Returns Done, or SomeFailed if something stays. Throws if the folder itself cannot be removed, and Interruption when
/// a signal arrives. Blocks in Java.
[[nodiscard]] ExitCode removeOneByOne(Context& context, const Location& folder);

}  // namespace jstore
