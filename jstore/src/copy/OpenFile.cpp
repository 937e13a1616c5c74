#include "copy/OpenFile.h"

#include <exception>
#include <utility>

#include "foundation/storage/provider/Exception.h"
#include "process/Interrupt.h"

namespace jstore {

using foundation::storage::provider::ByteStream;
using foundation::storage::provider::ErrorCode;
using foundation::storage::provider::Exception;
using foundation::storage::provider::StorageIRI;

namespace {

constexpr std::size_t PortionBytes = std::size_t{128} * 1024;

/// How many operations in a row may move nothing before a stream is given up.
constexpr int Patience = 100;

/// Calls `move` until it moves something; a count beyond what was asked for is an error of the back end.
template <class Move>
std::streamsize moveSome(const StorageIRI& location, std::streamsize asked, const Move& move) {
    for (int attempt = 0; attempt < Patience; ++attempt) {
        const std::streamsize moved = move();
        if (moved > asked) {
            throw Exception(ErrorCode::Unknown, location);
        }
        if (moved != 0) {
            return moved;
        }
    }
    throw Exception(ErrorCode::Unavailable, location);
}

}  // namespace

OpenFile::OpenFile(std::unique_ptr<ByteStream> stream, StorageIRI location)
    : m_stream(std::move(stream)), m_location(std::move(location)) {}

OpenFile::~OpenFile() {
    try {
        close();
    } catch (const std::exception&) {
        // Only a scope that is left early gets here with an open file that matters, and its reason is the one to tell.
    }
}

std::uint64_t OpenFile::readAll(const std::function<void(std::string_view)>& take) {
    // Not cleared: of a small file only the first page is ever touched.
    const auto buffer = std::make_unique_for_overwrite<char[]>(PortionBytes);
    constexpr auto size = static_cast<std::streamsize>(PortionBytes);
    std::uint64_t total = 0;
    while (true) {
        stopIfInterrupted();
        const auto count = moveSome(m_location, size, [&] { return m_stream->read(buffer.get(), size); });
        if (count < 0) {
            return total;
        }
        take({buffer.get(), static_cast<std::size_t>(count)});
        total += static_cast<std::uint64_t>(count);
    }
}

void OpenFile::write(std::string_view bytes) {
    while (!bytes.empty()) {
        const auto size = static_cast<std::streamsize>(bytes.size());
        const auto count = moveSome(m_location, size, [&] { return m_stream->write(bytes.data(), size); });
        if (count < 0) {
            throw Exception(ErrorCode::Unknown, m_location);
        }
        bytes.remove_prefix(static_cast<std::size_t>(count));
    }
}

void OpenFile::moveTo(std::uint64_t position) {
    m_stream->seek(static_cast<std::streamoff>(position), std::ios_base::beg);
}

void OpenFile::close() {
    if (const auto stream = std::exchange(m_stream, nullptr)) {
        stream->close();
    }
}

}  // namespace jstore
