#pragma once

#include <functional>
#include <string>
#include <vector>

#include "sweep/SweepStage.h"

namespace storage::javaprovider::test {

/// One thing that a host does with the library, whose JNI calls the sweep lets fail one by one.
struct SweepOperation {
    std::string name;
    std::function<void(SweepStage&)> prepare;     ///< before the calls that count
    std::function<std::string(SweepStage&)> run;  ///< the calls that count; the result as text
    bool repeatable = true;                       ///< run() once more on the same stage gives the same result
};

/// Everything that the library does for a host, and each way in which it ends: overridden operations of the provider,
/// streams, construction through each entry point, destruction, events, and operations that fail in Java.
[[nodiscard]] std::vector<SweepOperation> sweepOperations();

}  // namespace storage::javaprovider::test
