// What a stop waits for, and what callbacks may stop and start.
#include <memory>

#include "PollingTest.h"

namespace foundation::test {
namespace {

class PollingStopTest : public PollingTest {
protected:
    /// A point where the polling thread waits until the test is about to stop it, and a little longer.
    struct Gate {
        std::atomic<bool> reached = false;
        std::atomic<bool> leaving = false;
        std::atomic<bool> passed = false;

        void pass() {
            reached = true;
            leaving.wait(false);
            const auto enough = std::chrono::steady_clock::now() + std::chrono::milliseconds(20);
            while (std::chrono::steady_clock::now() < enough) {
                std::this_thread::yield();
            }
            passed = true;
        }
        void awaitReached() const {
            EXPECT_TRUE(eventually([&] { return reached.load(); }));
        }
        void leave() {
            leaving = true;
            leaving.notify_all();
        }
    };
};

TEST_F(PollingStopTest, NothingIsToldAfterTheStop) {
    start();
    stop(m_folder);
    expectUnreported([&] { m_provider.createFile(child(u"a")); });
}

TEST_F(PollingStopTest, StopOfWhatIsNotPolledIsNoError) {
    EXPECT_NO_THROW(stop(m_folder));
    start();
    EXPECT_NO_THROW(stop(m_file));
    EXPECT_NO_THROW(stop(StorageIRI(u"java://mount/folder/")));
    EXPECT_NO_THROW(stop(m_folder));
}

TEST_F(PollingStopTest, StopMeansTheLocationInAnySpelling) {
    start();
    stop(StorageIRI(u"JAVA://mount//x/../%66older/"));
    expectUnreported([&] { m_provider.createFile(child(u"a")); });
}

TEST_F(PollingStopTest, StopWaitsForTheCallback) {
    Gate gate;
    start(m_folder, [&](auto&&...) { gate.pass(); });
    m_provider.createFile(child(u"a"));
    gate.awaitReached();
    gate.leave();
    stop(m_folder);
    EXPECT_TRUE(gate.passed);
}

TEST_F(PollingStopTest, StopWaitsForTheLook) {
    Gate gate;
    start();
    disturb([&](std::string_view operation, const StorageIRI&) {
        if (operation == "listAll") {
            gate.pass();
        }
    });
    gate.awaitReached();
    gate.leave();
    stop(m_folder);
    EXPECT_TRUE(gate.passed);
}

TEST_F(PollingStopTest, CallbackIsGoneAfterTheStop) {
    const auto token = std::make_shared<int>();
    start(m_folder, [token](auto&&...) {});
    awaitLook();
    EXPECT_GT(token.use_count(), 1);
    stop(m_folder);
    EXPECT_EQ(token.use_count(), 1);
}

TEST_F(PollingStopTest, CallbackMayStopItselfAndIsThenTheLast) {
    start(m_folder, [&](auto&&... event) {
        stop(m_folder);
        m_trail.callback()(event...);
    });
    atOnce([&] {
        m_provider.createFile(child(u"a"));
        m_provider.createFile(child(u"b"));
    });
    EXPECT_EQ(m_trail.next(1), Lines{"ChildAdded File a"});
    expectUnreported([] {});
}

TEST_F(PollingStopTest, CallbackMayStartAndStopOtherLocations) {
    m_provider.createFile(m_file);
    std::atomic<bool> started = false;
    start(m_folder, [&](auto&&...) {
        start(m_file, m_trail.callback());
        stop(m_folder);
        started = true;
    });
    m_provider.createFile(child(u"a"));
    EXPECT_TRUE(eventually([&] { return started.load(); }));
    write(m_file, "bytes");
    EXPECT_EQ(m_trail.next(1), Lines{"SelfModified File file"});
}

TEST_F(PollingStopTest, CallbackMayReplaceItself) {
    start(m_folder, [&](auto&&...) { start(); });
    atOnce([&] {
        m_provider.createFile(child(u"a"));
        m_provider.createFile(child(u"b"));
    });
    EXPECT_EQ(m_trail.next(1), Lines{"ChildAdded File b"});
}

TEST_F(PollingStopTest, SecondStartWaitsForTheReplacedCallback) {
    Gate gate;
    start(m_folder, [&](auto&&...) { gate.pass(); });
    m_provider.createFile(child(u"a"));
    gate.awaitReached();
    gate.leave();
    start();
    EXPECT_TRUE(gate.passed);
}

TEST_F(PollingStopTest, LongestIntervalCanBeStopped) {
    start(m_folder, m_trail.callback(), std::chrono::milliseconds::max());
    EXPECT_NO_THROW(stop(m_folder));
}

}  // namespace
}  // namespace foundation::test
