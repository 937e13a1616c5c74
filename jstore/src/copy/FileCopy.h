#pragma once

#include <cstdint>

#include "base/Location.h"
#include "copy/MadeHere.h"
#include "foundation/storage/provider/IProvider.h"
#include "output/Progress.h"

namespace jstore {

/// Where a copy goes, and what is known of the place.
struct CopyTarget {
    Location location;
    bool replace = false;      ///< whether a file that is there gives way
    bool inNewFolder = false;  ///< the folder was made for the copy, so that nothing need be looked for in it
    bool inOwnFolder = false;  ///< the folder was made for an earlier copy of this command: nothing in it gives way

    /// Whether a file that is there gives way in fact.
    [[nodiscard]] bool mayReplace() const noexcept { return replace && !inNewFolder && !inOwnFolder; }
};

/// Copies a file's bytes and time of modification, so that the target holds its old content or the whole new one at any
/// time: what is copied has a hidden name beside the target until it is complete. Returns the number of bytes, which
/// are told to the progress as they go.
///
/// Throws Exception as the provider does: NotFound, NotAFile, StorageFull and so on; AlreadyExists if something is at
/// the target and is not to be replaced. Throws CommandError: NotAFile if a folder is there, what requireReplaceable()
/// refuses, "Unavailable" when the number of bytes is not what the back end says. Throws Interruption when a signal
/// arrives. After any of them the target is as it was. A file that may have replaced another is noted in `made`. Blocks
/// in Java.
std::uint64_t copyOneFile(const foundation::storage::provider::IProvider& provider, const Location& source,
                          const CopyTarget& target, Progress& progress, MadeHere& made);

/// Gives a file or folder its time of modification. A back end that can set none leaves it as it is.
void keepTime(const foundation::storage::provider::IProvider& provider,
              const foundation::storage::provider::StorageIRI& location, const boost::posix_time::ptime& time);

}  // namespace jstore
