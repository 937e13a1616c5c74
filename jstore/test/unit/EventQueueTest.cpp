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
    ASSERT_EQ(batch.events.size(), 2U);
    EXPECT_EQ(batch.events[0].changed.text(), u"java:///a");
    EXPECT_EQ(batch.events[1].changed.text(), u"java:///b");
    EXPECT_EQ(batch.lost, 0U);
    EXPECT_TRUE(queue.take().events.empty());
}

TEST(EventQueueTest, DescriptorIsReadableWhileThereIsSomething) {
    EventQueue queue;
    EXPECT_FALSE(isReadable(queue));
    queue.push(eventOf(u"a"));
    EXPECT_TRUE(isReadable(queue));
    EXPECT_TRUE(isReadable(queue));
    EXPECT_EQ(queue.take().events.size(), 1U);
    EXPECT_FALSE(isReadable(queue));
}

TEST(EventQueueTest, WhatDoesNotFitIsCountedBehindWhatDoes) {
    EventQueue queue(/*capacity=*/2);
    for (const auto* const name : {u"a", u"b", u"c", u"d"}) {
        queue.push(eventOf(name));
    }
    const auto batch = queue.take();
    EXPECT_EQ(batch.events.size(), 2U);
    EXPECT_EQ(batch.lost, 2U);
    queue.push(eventOf(u"e"));
    EXPECT_EQ(queue.take().events.size(), 1U);
}

TEST(EventQueueTest, NothingFollowsALossBeforeItIsTaken) {
    EventQueue queue;
    queue.push(eventOf(u"a"));
    queue.lose();
    EXPECT_TRUE(isReadable(queue));
    queue.push(eventOf(u"b"));
    const auto batch = queue.take();
    EXPECT_EQ(batch.events.size(), 1U);
    EXPECT_EQ(batch.lost, 2U);
}

TEST(EventQueueTest, ClosedQueueTakesNothing) {
    EventQueue queue;
    queue.close();
    queue.push(eventOf(u"a"));
    queue.lose();
    EXPECT_FALSE(isReadable(queue));
    const auto batch = queue.take();
    EXPECT_TRUE(batch.events.empty());
    EXPECT_EQ(batch.lost, 0U);
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
        ASSERT_EQ(::poll(&source, 1, 10'000), 1);
        taken += queue.take().events.size();
    }
    for (auto& thread : pushing) {
        thread.join();
    }
    EXPECT_EQ(taken, static_cast<std::size_t>(threads * each));
}

}  // namespace

}  // namespace jstore
