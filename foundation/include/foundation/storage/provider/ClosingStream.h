#pragma once

#include <memory>
#include <utility>

#include "foundation/storage/provider/ByteStream.h"

namespace foundation::storage::provider {

/// Owns a stream and closes it at the end of its scope. Destroying a stream does not close it.
///
/// Used like the stream: by one thread at a time.
class ClosingStream final {
public:
    explicit ClosingStream(std::unique_ptr<ByteStream> stream) noexcept : m_stream(std::move(stream)) {}
    ClosingStream(ClosingStream&&) noexcept = default;
    ClosingStream& operator=(ClosingStream&&) = delete;
    ~ClosingStream() { closeSilently(); }

    /// False once the stream has been closed.
    [[nodiscard]] bool isOpen() const noexcept { return m_stream != nullptr; }

    [[nodiscard]] ByteStream& operator*() const noexcept { return *m_stream; }
    [[nodiscard]] ByteStream* operator->() const noexcept { return m_stream.get(); }

    /// Closes the stream and throws what ByteStream::close() throws. The stream counts as closed either way. A second
    /// call does nothing.
    void close() {
        if (const auto stream = std::move(m_stream)) {
            stream->close();
        }
    }

    /// Closes a stream whose bytes do not matter: it was only read, or what was written is discarded.
    void closeSilently() noexcept {
        try {
            close();
        } catch (...) {
            // Nobody needs the bytes any more, and another error may be on its way already.
        }
    }

private:
    std::unique_ptr<ByteStream> m_stream;
};

}  // namespace foundation::storage::provider
