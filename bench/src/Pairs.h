#pragma once

#include <vector>

#include "Pair.h"
#include "Sides.h"

namespace bench {

// The comparisons. Pairs refer to the sides, which outlive them.

/// Existence test, creation, removal, move, attributes, extended attributes, storage information.
[[nodiscard]] std::vector<Pair> operationPairs(Sides& sides);
/// Reads, writes, and opening with closing.
[[nodiscard]] std::vector<Pair> streamPairs(Sides& sides);
/// Operations that fail in Java.
[[nodiscard]] std::vector<Pair> errorPairs(Sides& sides);
/// Events from Java.
[[nodiscard]] std::vector<Pair> eventPairs(Sides& sides);
/// The bare existence test beside itself with one thing more of those that the floor and the library do; then with all
/// that the floor does, and beside the library.
[[nodiscard]] std::vector<Pair> piecePairs(Sides& sides);
/// A listing of that many entries. The back end lists as many until the next pair of this kind is made.
[[nodiscard]] Pair listingPair(Sides& sides, int entryCount);

}  // namespace bench
