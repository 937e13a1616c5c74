#include "storage/provider/polling/DueQueue.h"

#include <gtest/gtest.h>

#include <bit>
#include <cstdint>
#include <random>
#include <string>
#include <vector>

namespace foundation::storage::provider::detail {
namespace {

using Names = DueQueue<int, std::string>;

TEST(DueQueueTest, FirstIsWhatIsDueFirst) {
    Names queue;
    EXPECT_EQ(queue.first(), nullptr);
    queue.add(3, "c");
    queue.add(1, "a");
    queue.add(2, "b");
    EXPECT_EQ(queue.first()->second, "a");
    EXPECT_EQ(queue.first()->first, 1);
    queue.clear();
    EXPECT_EQ(queue.first(), nullptr);
}

TEST(DueQueueTest, OfWhatIsDueAtOnceTheFirstThatCameIsFirst) {
    Names queue;
    const auto a = queue.add(1, "a");
    queue.add(1, "b");
    EXPECT_EQ(queue.first()->second, "a");
    const auto moved = queue.move(a, 1);
    EXPECT_EQ(queue.first()->second, "b") << "what has had its turn waits for the others";
    queue.remove(moved);
    EXPECT_EQ(queue.first()->second, "b");
}

TEST(DueQueueTest, WhatIsRemovedIsNeverFirst) {
    Names queue;
    const auto a = queue.add(1, "a");
    const auto b = queue.add(2, "b");
    queue.remove(a);
    EXPECT_EQ(queue.first()->second, "b");
    queue.remove(queue.move(b, 0));
    EXPECT_EQ(queue.first(), nullptr);
}

/// A time that counts how often it is compared.
struct CountedTime {
    static inline std::uint64_t comparisons = 0;
    std::uint64_t value;
    bool operator<(const CountedTime& other) const {
        ++comparisons;
        return value < other.value;
    }
};

TEST(DueQueueTest, EachOperationTakesTheLogarithmOfTheNumber) {
    constexpr std::uint64_t Items = 100'000;
    std::minstd_rand random(1);
    DueQueue<CountedTime, std::uint64_t> queue;
    std::vector<DueQueue<CountedTime, std::uint64_t>::Place> places;
    for (std::uint64_t item = 0; item < Items; ++item) {
        places.push_back(queue.add({random()}, item));
    }
    CountedTime::comparisons = 0;
    constexpr std::uint64_t Turns = 1000;
    for (std::uint64_t turn = 0; turn < Turns; ++turn) {
        const std::uint64_t item = queue.first()->second;
        places[item] = queue.move(places[item], {random()});
    }
    EXPECT_LE(CountedTime::comparisons, Turns * 2 * static_cast<std::uint64_t>(std::bit_width(Items)));
}

}  // namespace
}  // namespace foundation::storage::provider::detail
