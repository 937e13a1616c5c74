#pragma once

#include <cstdint>

namespace foundation::storage::provider {

/// How IProvider::openByteStream() opens a file. The defaults open an existing file, keep its content and share it.
///
/// Other libraries rely on the order and width of the fields.
struct ByteStreamOpenOptions {
    enum class Creation : std::int32_t { CreateIfMissing = 0, OpenExisting = 1 };
    enum class Content : std::int32_t { Truncate = 0, Preserve = 1 };
    enum class Sharing : std::int32_t { Exclusive = 0, Shared = 1 };

    std::int32_t bufferSize = 0;                 ///< a hint in bytes; 0 for none
    Creation creation = Creation::OpenExisting;  ///< whether a missing file is created
    Content content = Content::Preserve;         ///< whether an existing file is emptied
    Sharing sharing = Sharing::Shared;           ///< Exclusive: no other stream may be open on the file
};

}  // namespace foundation::storage::provider
