#pragma once

#include <cstdint>
#include <string_view>

#include "foundation/storage/provider/StreamCopy.h"

namespace jstore {

/// Writes a new file from its beginning and skips portions that are all zeros. A storage that supports holes leaves
/// them out, so a sparse file stays sparse. Uses the stream, which must outlive it.
class HoleWriter {
public:
    explicit HoleWriter(foundation::storage::provider::StreamEnd to) : m_to(to) {}

    /// Writes a portion, or notes that it is a hole. Throws as writeAll() does.
    void write(std::string_view bytes);
    /// Gives the file its length if it ends in a hole. Throws as write() does. Call it last.
    void finish();

private:
    void append(std::string_view bytes);
    void endHole(std::uint64_t end);

    foundation::storage::provider::StreamEnd m_to;
    std::uint64_t m_written = 0;  ///< how far the file is written
    std::uint64_t m_end = 0;      ///< how far it goes; a hole lies between
};

}  // namespace jstore
