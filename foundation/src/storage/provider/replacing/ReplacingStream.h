#pragma once

#include "foundation/storage/provider/ClosingStream.h"
#include "foundation/storage/provider/ScratchFile.h"
#include "foundation/storage/provider/TransactionalStream.h"

namespace foundation::storage::provider::detail {

/// A transactional stream that writes to a scratch file and moves that over its target on commit.
class ReplacingStream final : public TransactionalStream {
public:
    /// `stream` is open on the scratch file, at the position where the user begins.
    ReplacingStream(ScratchFile scratch, ClosingStream stream);

    std::streamsize read(char* destination, std::streamsize count) override;
    std::streamsize write(const char* source, std::streamsize count) override;
    std::streampos seek(std::streamoff offset, std::ios_base::seekdir way) override;
    void close() override;
    void commit() override;
    void rollback() override;

private:
    enum class Outcome { Open, Committed, GivenUp };

    [[nodiscard]] ByteStream& stream() const;
    [[noreturn]] void refuse() const;

    ScratchFile m_scratch;
    ClosingStream m_stream;  // after the file, so that it is closed before the file is removed
    Outcome m_outcome = Outcome::Open;
};

}  // namespace foundation::storage::provider::detail
