#pragma once

#include <cstdint>

namespace foundation::storage::provider {

/// How IProvider::openByteStream() opens a file. A default-made object destroys nothing.
///
/// The order and width of the fields cross library borders.
struct ByteStreamOpenOptions {
    enum class Creation : std::int32_t { CreateIfMissing = 0, OpenExisting = 1 };
    enum class Content : std::int32_t { Truncate = 0, Preserve = 1 };
    enum class Sharing : std::int32_t { Exclusive = 0, Shared = 1 };

    std::int32_t bufferSize = 0;  ///< bytes; a hint for the framework, 0 leaves it the choice
    Creation creation = Creation::OpenExisting;
    Content content = Content::Preserve;
    Sharing sharing = Sharing::Shared;
};

}  // namespace foundation::storage::provider
