#pragma once

#include "Effort.h"
#include "Pair.h"
#include "Row.h"

namespace bench {

/// Measures the pair with Google Benchmark: samples of floor and bridge in turn, so that whatever else the computer
/// does meets both. A figure is the median of the processor time of the calling thread, in nanoseconds per unit.
///
/// Throws what the operations throw during the warm-up, and std::runtime_error when a sample fails. Blocks in Java.
[[nodiscard]] Row measure(const Pair& pair, const Effort& effort);

}  // namespace bench
