#include "watch/EventQueue.h"

#include <gtest/gtest.h>
#include <poll.h>

#include <thread>

namespace jstore {

using foundation::storage::events::Kind;
using foundation::storage::provider::StorageIRI;

namespace {

Event eventOf(const std::u16string& name) {
    Event event;
    event.kind = Kind::ChildAdded;
    event.changed = StorageIRI(u"java:///" + name);
    return event;
}

bool isReadable(const EventQueue& queue) {
    pollfd source{queue.descriptor(), POLLIN, 0};
    return ::poll(&source, 1, 0) == 1;
}

TEST(EventQueueTest, EventsComeOutInOrderOnce) {
    EventQueue queue;
    queue.push(eventOf(u"a"));
    queue.push(eventOf(u"b"));
    const auto batch = queue.take();
    ASSERT_EQ(2U, batch.events.size());
    EXPECT_EQ(u"java:///a", batch.events[0].changed.text());
    EXPECT_EQ(u"java:///b", batch.events[1].changed.text());
    EXPECT_EQ(0U, batch.lost);
    EXPECT_TRUE(queue.take().events.empty());
}

TEST(EventQueueTest, DescriptorIsReadableWhileThereIsSomething) {
    EventQueue queue;
    EXPECT_FALSE(isReadable(queue));
    queue.push(eventOf(u"a"));
    EXPECT_TRUE(isReadable(queue));
    EXPECT_TRUE(isReadable(queue));
    EXPECT_EQ(1U, queue.take().events.size());
    EXPECT_FALSE(isReadable(queue));
}

TEST(EventQueueTest, WhatDoesNotFitIsCountedBehindWhatDoes) {
    EventQueue queue(/*capacity=*/2);
    for (const auto* const name : {u"a", u"b", u"c", u"d"}) {
        queue.push(eventOf(name));
    }
    const auto batch = queue.take();
    EXPECT_EQ(2U, batch.events.size());
    EXPECT_EQ(2U, batch.lost);
    queue.push(eventOf(u"e"));
    EXPECT_EQ(1U, queue.take().events.size());
}

TEST(EventQueueTest, NothingFollowsALossBeforeItIsTaken) {
    EventQueue queue;
    queue.push(eventOf(u"a"));
    queue.lose();
    EXPECT_TRUE(isReadable(queue));
    queue.push(eventOf(u"b"));
    const auto batch = queue.take();
    EXPECT_EQ(1U, batch.events.size());
    EXPECT_EQ(2U, batch.lost);
}

TEST(EventQueueTest, ClosedQueueTakesNothing) {
    EventQueue queue;
    queue.close();
    queue.push(eventOf(u"a"));
    queue.lose();
    EXPECT_FALSE(isReadable(queue));
    const auto batch = queue.take();
    EXPECT_TRUE(batch.events.empty());
    EXPECT_EQ(0U, batch.lost);
}

TEST(EventQueueTest, ManyThreadsLoseNothing) {
    constexpr int threads = 8;
    constexpr int each = 2000;
    EventQueue queue;
    std::vector<std::thread> pushing;
    for (int i = 0; i < threads; ++i) {
        pushing.emplace_back([&queue] {
            for (int n = 0; n < each; ++n) {
                queue.push(eventOf(u"x"));
            }
        });
    }
    std::size_t taken = 0;
    while (taken < threads * each) {
        pollfd source{queue.descriptor(), POLLIN, 0};
        ASSERT_EQ(1, ::poll(&source, 1, 10'000));
        taken += queue.take().events.size();
    }
    for (auto& thread : pushing) {
        thread.join();
    }
    EXPECT_EQ(static_cast<std::size_t>(threads * each), taken);
}

}  // namespace

}  // namespace jstore
