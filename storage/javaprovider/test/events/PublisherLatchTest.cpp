// Requests that come while another thread makes the publisher.
#include <gmock/gmock.h>

#include <atomic>
#include <functional>
#include <memory>
#include <stdexcept>
#include <thread>
#include <vector>

#include "events/EventTest.h"
#include "provider/ThrownErrors.h"
#include "support/Eventually.h"

namespace storage::javaprovider::test {
namespace {

using ::testing::AllOf;
using ::testing::Each;
using ::testing::IsEmpty;
using ::testing::SizeIs;

/// Holds the copying of a callback, which is a step of the making, until it is let go.
struct CopyGate {
    std::atomic<bool> armed = false;  ///< the next copy is the one to hold
    std::atomic<bool> reached = false;
    std::atomic<bool> open = false;
    bool throws = false;

    void pass() {
        if (!armed.exchange(false)) {
            return;
        }
        reached = true;
        reached.notify_all();
        open.wait(false);
        if (throws) {
            throw std::runtime_error("cannot be copied");
        }
    }
    void letGo() {
        open = true;
        open.notify_all();
    }
};

/// A callback that passes on to another, and through a gate when it is copied.
class HeldCallback {
public:
    HeldCallback(CopyGate& gate, ChangeCallback target) : m_gate(&gate), m_target(std::move(target)) {}
    HeldCallback(const HeldCallback& other) : m_gate(other.m_gate), m_target(other.m_target) { m_gate->pass(); }
    HeldCallback& operator=(const HeldCallback&) = delete;
    ~HeldCallback() = default;

    template <class... Arguments>
    void operator()(const Arguments&... event) const {
        m_target(event...);
    }

private:
    CopyGate* m_gate;
    ChangeCallback m_target;
};

class PublisherLatchTest : public EventTest {
protected:
    static constexpr std::size_t Waiting = 4;

    /// One thread makes the publisher and is held while others ask for it; then all go on.
    void askWhileHeld(bool throws) {
        CopyGate gate;
        gate.throws = throws;
        const ChangeCallback held = HeldCallback(gate, log.callback());
        gate.armed = true;
        std::vector<std::jthread> threads;
        threads.emplace_back([&] { firstError = errorOf(held); });
        if (!eventually([&] { return gate.reached.load(); })) {
            gate.letGo();
            FAIL() << "the callback was not copied: " << firstError;
        }
        for (std::size_t i = 0; i < Waiting; ++i) {
            threads.emplace_back([&] {
                EXPECT_EQ(errorOf(later.callback()), "");
                ++done;
            });
        }
        // When their locations are made, nothing but the publisher lies between them and Java.
        EXPECT_TRUE(eventually([&] { return locationsMade() == Waiting + 1; }));
        EXPECT_EQ(done, 0U);
        EXPECT_THAT(publishers(), IsEmpty());
        gate.letGo();
        threads.clear();
    }

    [[nodiscard]] std::string errorOf(const ChangeCallback& callback) const {
        try {
            start(callback);
        } catch (const std::exception& error) {
            return error.what();
        }
        return "";
    }
    [[nodiscard]] std::size_t locationsMade() const {
        return recorder.countOnAllThreads("NewObject com/corvallen/storage/provider/StorageURI");
    }

    EventLog later;
    std::string firstError;
    std::atomic<std::size_t> done = 0;
};

TEST_F(PublisherLatchTest, RequestsWaitForTheOneThatMakesThePublisher) {
    askWhileHeld(/*throws=*/false);
    EXPECT_EQ(firstError, "");
    EXPECT_EQ(done, Waiting);
    EXPECT_EQ(recorder.countOnAllThreads("RegisterNatives"), 1U);
    EXPECT_THAT(publishers(), AllOf(SizeIs(Waiting + 1), Each("0")));
    publish();
    EXPECT_EQ(log.size(), 1U);
    EXPECT_EQ(later.size(), 0U);
}

TEST_F(PublisherLatchTest, RequestsThatWaitAreWokenWhenTheMakingFailsAndOneTriesAgain) {
    mayLeave(fixture::MakingOfUri);
    askWhileHeld(/*throws=*/true);
    EXPECT_EQ(firstError, "cannot be copied");
    EXPECT_EQ(done, Waiting);
    EXPECT_EQ(recorder.countOnAllThreads("RegisterNatives"), 2U);
    EXPECT_THAT(publishers(), AllOf(SizeIs(Waiting), Each("0")));
    publish();
    EXPECT_EQ(log.size(), 0U);
    EXPECT_EQ(later.size(), 1U);
}

TEST_F(PublisherLatchTest, ErrorOfTheCopyLeavesAsItIs) {
    mayLeave(fixture::MakingOfUri);
    CopyGate gate;
    gate.throws = true;
    gate.letGo();
    const ChangeCallback callback = HeldCallback(gate, log.callback());
    gate.armed = true;
    EXPECT_EQ(textThrownBy<std::runtime_error>([&] { start(callback); }), "cannot be copied");
    EXPECT_EQ(recorder.count("NewObject com/corvallen/storage/provider/NativePublisher"), 0U);
    EXPECT_NO_THROW(start(callback));
}

}  // namespace
}  // namespace storage::javaprovider::test
