#pragma once

#include <vector>

#include "Effort.h"
#include "Row.h"

namespace bench {

// The parts of the measurement that need a virtual machine. Each starts the one of its process, so a process measures
// one part.

[[nodiscard]] std::vector<Row> measureOperations(const Effort& effort);
[[nodiscard]] std::vector<Row> measureListings(const Effort& effort);
[[nodiscard]] std::vector<Row> measureStreams(const Effort& effort);
[[nodiscard]] std::vector<Row> measureErrors(const Effort& effort);
[[nodiscard]] std::vector<Row> measureEvents(const Effort& effort);
/// What the parts of the way cost that an operation has in common with the others.
[[nodiscard]] std::vector<Row> measurePieces(const Effort& effort);
/// Instructions of each operation, which are the same in every run. Throws NoInstructionCounter where none are counted.
[[nodiscard]] std::vector<Row> measureCounts(const Effort& effort);
/// A thread that is attached for every call against one that stays attached.
[[nodiscard]] std::vector<Row> measureAttachment(const Effort& effort);
/// Two threads against one: nanoseconds from one operation to the next, whichever thread makes it.
[[nodiscard]] std::vector<Row> measureThreads(const Effort& effort);
/// Each level of the log, with a sink that drops every record, against a log that is off.
[[nodiscard]] std::vector<Row> measureLogLevels(const Effort& effort);
/// The largest listing: by how much the resident memory rises at most, against the bytes of the result.
[[nodiscard]] std::vector<Row> measureMemory(const Effort& effort);

}  // namespace bench
