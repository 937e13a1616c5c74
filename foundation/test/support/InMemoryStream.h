#pragma once

#include <boost/date_time/posix_time/posix_time_types.hpp>

#include <memory>
#include <mutex>
#include <string>

#include "foundation/storage/provider/ByteStream.h"
#include "foundation/storage/provider/ByteStreamOpenOptions.h"
#include "foundation/storage/provider/StorageIRI.h"

namespace foundation::test {

/// What a file or folder in memory holds. Streams share it, so it outlives the file's removal. `mutex` guards the
/// members but `writable`, which is the provider's and changes under the provider's lock.
struct InMemoryContent {
    std::mutex mutex;
    std::string bytes;
    boost::posix_time::ptime lastModified;
    bool writable = true;
    int openStreams = 0;
    bool openExclusively = false;
};

/// A stream over the bytes of a file in memory. Every operation but close() throws Exception with Unavailable once the
/// stream is closed.
class InMemoryStream final : public storage::provider::ByteStream {
public:
    using Sharing = storage::provider::ByteStreamOpenOptions::Sharing;

    /// Throws Exception with InUse if the file cannot be shared.
    InMemoryStream(storage::provider::StorageIRI location, std::shared_ptr<InMemoryContent> content, Sharing sharing,
                   bool writable);

    std::streamsize read(char* destination, std::streamsize count) override;
    /// AccessDenied on a stream for reading.
    std::streamsize write(const char* source, std::streamsize count) override;
    /// InvalidLocation for a place before the beginning.
    std::streampos seek(std::streamoff offset, std::ios_base::seekdir way) override;
    /// Closing twice is harmless.
    void close() override;

private:
    void requireOpen() const;

    storage::provider::StorageIRI m_location;
    std::shared_ptr<InMemoryContent> m_content;
    std::streamoff m_position = 0;
    bool m_exclusive;
    bool m_writable;
    bool m_open = false;
};

}  // namespace foundation::test
