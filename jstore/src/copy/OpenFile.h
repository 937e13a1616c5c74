#pragma once

#include <cstdint>
#include <functional>
#include <memory>
#include <string_view>

#include "foundation/storage/provider/ByteStream.h"
#include "foundation/storage/provider/StorageIRI.h"

namespace jstore {

/// An open file that is closed at the end of the scope, whatever happens in it. Used by one thread.
class OpenFile {
public:
    /// Takes the stream; errors of reading and writing that the stream itself does not tell name the location.
    OpenFile(std::unique_ptr<foundation::storage::provider::ByteStream> stream,
             foundation::storage::provider::StorageIRI location);
    /// Closes the file if it is open, and tells no error.
    ~OpenFile();

    OpenFile(const OpenFile&) = delete;
    OpenFile& operator=(const OpenFile&) = delete;

    /// Hands the bytes from the present position to the end to `take`, portion by portion; the number of bytes.
    ///
    /// Throws Exception with Unavailable for a stream that gives nothing for ever, and Interruption between two
    /// portions when SIGINT has arrived. Blocks in Java.
    std::uint64_t readAll(const std::function<void(std::string_view)>& take);

    /// Writes all the bytes. Throws Exception with Unavailable for a stream that takes nothing for ever.
    void write(std::string_view bytes);

    /// Goes to a place, `position` bytes from the beginning, which may lie behind the end.
    void moveTo(std::uint64_t position);

    /// Closes the file and tells what could not be written.
    void close();

private:
    std::unique_ptr<foundation::storage::provider::ByteStream> m_stream;
    foundation::storage::provider::StorageIRI m_location;
};

}  // namespace jstore
