#include "OnceLatch.h"

#include <gtest/gtest.h>
#include <sys/syscall.h>
#include <unistd.h>

#include <algorithm>
#include <array>
#include <atomic>
#include <fstream>
#include <functional>
#include <iterator>
#include <latch>
#include <memory>
#include <stdexcept>
#include <string>
#include <thread>
#include <utility>
#include <vector>

#include "support/Eventually.h"

namespace storage::javaprovider::test {
namespace {

/// The kernel's letter for what a thread of this process is doing: 'S' while it waits.
char stateOf(pid_t thread) {
    std::ifstream file("/proc/self/task/" + std::to_string(thread) + "/stat");
    const std::string text(std::istreambuf_iterator<char>(file), {});
    const auto name = text.rfind(')');
    return name == std::string::npos ? '?' : text.at(name + 2);
}

/// Threads that ask one latch to run the same action. What they share outlives a test that gives up on a stuck one.
class Askers {
public:
    static constexpr std::size_t Count = 8;

    explicit Askers(std::function<void()> action) {
        for (std::size_t i = 0; i < Count; ++i) {
            std::thread([shared = m_shared, i, action] { shared->ask(i, action); }).detach();
        }
    }

    /// Whether all of them come to wait: one in its action, the others in the latch.
    [[nodiscard]] bool allWait() const {
        return eventually([this] {
            return std::ranges::all_of(m_shared->threads,
                                       [](pid_t thread) { return thread != 0 && stateOf(thread) == 'S'; });
        });
    }
    [[nodiscard]] bool allReturn() const {
        return eventually([this] { return m_shared->returned == Count; });
    }
    [[nodiscard]] std::size_t returned() const { return m_shared->returned; }
    /// How many of them met an exception.
    [[nodiscard]] std::size_t failed() const { return m_shared->failed; }

private:
    struct Shared {
        OnceLatch latch;
        std::array<std::atomic<pid_t>, Count> threads{};
        std::atomic<std::size_t> failed = 0;
        std::atomic<std::size_t> returned = 0;

        void ask(std::size_t asker, const std::function<void()>& action) {
            threads.at(asker) = static_cast<pid_t>(::syscall(SYS_gettid));
            try {
                latch.run(action);
            } catch (const std::runtime_error&) {
                ++failed;
            }
            ++returned;
        }
    };

    std::shared_ptr<Shared> m_shared = std::make_shared<Shared>();
};

/// What the askers' action counts, and the gate at which its first run waits.
struct Gate {
    std::atomic<int> runs = 0;
    std::atomic<bool> open = false;

    void release() {
        open = true;
        open.notify_all();
    }
};

TEST(OnceLatchTest, FirstCallRunsTheAction) {
    OnceLatch latch;
    int runs = 0;
    latch.run([&] { ++runs; });
    EXPECT_EQ(runs, 1);
}

TEST(OnceLatchTest, LaterCallsReturnAtOnceWithoutRunning) {
    OnceLatch latch;
    int runs = 0;
    latch.run([&] { ++runs; });
    latch.run([&] { ++runs; });
    latch.run([&] { ++runs; });
    EXPECT_EQ(runs, 1);
}

TEST(OnceLatchTest, EachLatchRunsItsOwnAction) {
    OnceLatch first;
    OnceLatch second;
    int runs = 0;
    first.run([&] { ++runs; });
    second.run([&] { ++runs; });
    EXPECT_EQ(runs, 2);
}

TEST(OnceLatchTest, ExceptionReachesTheCallerThatRan) {
    OnceLatch latch;
    try {
        latch.run([] { throw std::out_of_range("no native method"); });
        FAIL() << "nothing was thrown";
    } catch (const std::out_of_range& error) {
        EXPECT_STREQ(error.what(), "no native method");
    }
}

TEST(OnceLatchTest, FailureLeavesTheLatchOpenForTheNextCall) {
    OnceLatch latch;
    int runs = 0;
    EXPECT_THROW(latch.run([] { throw std::runtime_error("first"); }), std::runtime_error);
    EXPECT_THROW(latch.run([] { throw std::runtime_error("second"); }), std::runtime_error);
    latch.run([&] { ++runs; });
    latch.run([&] { ++runs; });
    EXPECT_EQ(runs, 1);
}

TEST(OnceLatchTest, OthersWaitInTheLatchWhileTheActionRuns) {
    const auto gate = std::make_shared<Gate>();
    const Askers askers([gate] {
        ++gate->runs;
        gate->open.wait(false);
    });
    ASSERT_TRUE(askers.allWait());
    EXPECT_EQ(gate->runs, 1);
    EXPECT_EQ(askers.returned(), 0U);
    gate->release();
    EXPECT_TRUE(askers.allReturn());
    EXPECT_EQ(gate->runs, 1);
}

TEST(OnceLatchTest, FailureWakesTheWaitersAndOneOfThemRunsAgain) {
    const auto gate = std::make_shared<Gate>();
    const Askers askers([gate] {
        if (++gate->runs == 1) {
            gate->open.wait(false);
            throw std::runtime_error("the first run fails");
        }
    });
    ASSERT_TRUE(askers.allWait());
    gate->release();
    EXPECT_TRUE(askers.allReturn());
    EXPECT_EQ(gate->runs, 2);
    EXPECT_EQ(askers.failed(), 1U);
}

TEST(OnceLatchTest, EachWaiterWhoseOwnRunFailsGetsItsException) {
    const auto gate = std::make_shared<Gate>();
    const Askers askers([gate] {
        if (++gate->runs == 1) {
            gate->open.wait(false);
        }
        throw std::runtime_error("every run fails");
    });
    ASSERT_TRUE(askers.allWait());
    gate->release();
    EXPECT_TRUE(askers.allReturn());
    EXPECT_EQ(gate->runs, static_cast<int>(Askers::Count));
    EXPECT_EQ(askers.failed(), Askers::Count);
}

TEST(OnceLatchTest, SixtyFourThreadsAtOnceRunItOnce) {
    for (int round = 0; round < 50; ++round) {
        OnceLatch latch;
        std::atomic<int> runs = 0;
        std::atomic<int> returnedEarly = 0;
        std::atomic<bool> ended = false;
        std::latch start(64);
        std::vector<std::jthread> threads;
        for (int i = 0; i < 64; ++i) {
            threads.emplace_back([&] {
                start.arrive_and_wait();
                latch.run([&] {
                    ++runs;
                    std::this_thread::yield();
                    ended = true;
                });
                returnedEarly += ended ? 0 : 1;
            });
        }
        threads.clear();
        ASSERT_EQ(runs, 1);
        ASSERT_EQ(returnedEarly, 0);
    }
}

}  // namespace
}  // namespace storage::javaprovider::test
