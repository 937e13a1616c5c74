#pragma once

#include "FaultPlan.h"
#include "FaultyStream.h"
#include "InMemoryProvider.h"

namespace foundation::test {

/// A back end in memory whose operations, and those of its streams, fail by plan. A hook that a test sets takes the
/// place of the plan for all but the streams.
class FaultyProvider final : public InMemoryProvider {
public:
    FaultyProvider();

    [[nodiscard]] FaultPlan& plan() noexcept { return m_plan; }
    [[nodiscard]] StreamHabits& habits() noexcept { return m_habits; }

protected:
    void doMoveFile(const StorageIRI& source, const StorageIRI& destination,
                    const storage::provider::ReplacementPolicy& policy) const override;
    std::unique_ptr<storage::provider::ByteStream> doOpenByteStream(
        const StorageIRI& location, const storage::provider::ByteStreamOpenOptions& options) const override;
    std::unique_ptr<storage::provider::ByteStream> doOpenReadOnlyByteStream(const StorageIRI& location) const override;

private:
    mutable FaultPlan m_plan;
    mutable StreamHabits m_habits;
    mutable bool m_failsAfterwards = false;
};

}  // namespace foundation::test
