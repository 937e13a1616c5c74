#pragma once

#include <cstdint>

#include "Location.h"
#include "foundation/storage/provider/IProvider.h"
#include "progress/Progress.h"

namespace jstore {

/// Copies a file's bytes and time of modification, so that the target holds its old content or the whole new one at any
/// time: what is copied has a hidden name beside the target until it is complete. Returns the number of bytes, which
/// are told to the progress as they go.
///
/// Throws Exception as the provider does: NotFound, NotAFile, StorageFull and so on; AlreadyExists if something is at
/// the target and `replace` is false; NotAFile if a folder is there. Throws CommandError "Unavailable" when the number
/// of bytes is not what the back end says, and Interruption when SIGINT arrives. After any of them the target is as it
/// was. Blocks in Java.
std::uint64_t copyOneFile(const foundation::storage::provider::IProvider& provider, const Location& source,
                          const Location& target, bool replace, Progress& progress);

/// Gives a file or folder its time of modification. A back end that can set none leaves it as it is.
void keepTime(const foundation::storage::provider::IProvider& provider,
              const foundation::storage::provider::StorageIRI& location, const boost::posix_time::ptime& time);

}  // namespace jstore
