#pragma once

#include <cstdint>
#include <string_view>

#include "copy/OpenFile.h"

namespace jstore {

/// Writes a new file from its beginning, and passes over portions of nothing but zeros, so that a storage that knows
/// holes leaves them out and a sparse file stays one. Uses the file, which must outlive it.
class HoleWriter {
public:
    explicit HoleWriter(OpenFile& file) : m_file(file) {}

    /// Writes a portion, or notes that it is a hole. Fails as OpenFile::write() does.
    void write(std::string_view bytes);
    /// Gives the file its length if it ends in a hole. Fails as write() does; to be called last.
    void finish();

private:
    void endHole(std::uint64_t end);

    OpenFile& m_file;
    std::uint64_t m_written = 0;  ///< how far the file is written
    std::uint64_t m_end = 0;      ///< how far it goes; a hole lies between
};

}  // namespace jstore
