#pragma once

#include <functional>
#include <string>
#include <vector>

#include "sweep/SweepStage.h"

namespace storage::javaprovider::test {

/// One thing that a host does with the library, whose JNI calls the sweep lets fail one by one.
struct SweepOperation {
    /// What of the stage run() works on, whoever made it.
    enum class Uses { Nothing, Provider, Stream };

    std::string name;
    std::function<void(SweepStage&)> prepare;     ///< before the calls that count
    std::function<std::string(SweepStage&)> run;  ///< the calls that count; the result as text
    Uses uses = Uses::Nothing;
    bool repeatable = true;  ///< run() once more on the same stage gives the same result
};

/// Everything that the library does for a host, and each way in which it ends: overridden operations of the provider,
/// streams, construction through each entry point, destruction, events, and operations that fail in Java.
[[nodiscard]] std::vector<SweepOperation> sweepOperations();

// The parts of it.
[[nodiscard]] std::vector<SweepOperation> sweptFileOperations();
[[nodiscard]] std::vector<SweepOperation> sweptQueries();
[[nodiscard]] std::vector<SweepOperation> sweptStreamOperations();
[[nodiscard]] std::vector<SweepOperation> sweptEventOperations();
[[nodiscard]] std::vector<SweepOperation> sweptMakings();
[[nodiscard]] std::vector<SweepOperation> sweptDestructions();
[[nodiscard]] std::vector<SweepOperation> sweptFailures();

}  // namespace storage::javaprovider::test
