#pragma once

#include <limits>
#include <memory>

#include "FaultPlan.h"
#include "foundation/storage/provider/ByteStream.h"

namespace foundation::test {

/// How the streams of a FaultyProvider move bytes.
struct StreamHabits {
    std::streamsize mostAtOnce = std::numeric_limits<std::streamsize>::max();
    int idleCalls = 0;          ///< so many reads or writes return 0 before each one that moves something
    std::streamsize boast = 0;  ///< added to the counts that write() returns
    int open = 0;               ///< how many streams are not closed
};

/// A stream that fails by plan and moves bytes by habit. The provider that made it outlives it.
class FaultyStream final : public storage::provider::ByteStream {
public:
    FaultyStream(std::unique_ptr<storage::provider::ByteStream> stream, storage::provider::StorageIRI location,
                 FaultPlan& plan, StreamHabits& habits);

    std::streamsize read(char* destination, std::streamsize count) override;
    std::streamsize write(const char* source, std::streamsize count) override;
    std::streampos seek(std::streamoff offset, std::ios_base::seekdir way) override;
    /// Closes the stream, also when it then fails.
    void close() override;

private:
    bool idles();

    std::unique_ptr<storage::provider::ByteStream> m_stream;
    storage::provider::StorageIRI m_location;
    FaultPlan& m_plan;
    StreamHabits& m_habits;
    int m_idled = 0;
};

}  // namespace foundation::test
