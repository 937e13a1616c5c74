// What cannot be read does not count as removed, and what cannot be polled is refused.
#include <boost/date_time/gregorian/gregorian_types.hpp>

#include <stdexcept>

#include "PollingTest.h"

namespace foundation::test {
namespace {

class PollingFailureTest : public PollingTest {
protected:
    void SetUp() override {
        PollingTest::SetUp();
        m_provider.createFile(child(u"a"));
        m_provider.createFile(child(u"b"));
    }

    /// While the operation fails, nothing is reported; afterwards the change is.
    void expectPatience(const InMemoryProvider::Hook& failure) {
        start();
        disturb(failure);
        awaitLook();
        m_provider.removeFile(child(u"a"));
        expectSilence();
        disturb({});
        EXPECT_EQ(m_trail.next(1), Lines{"ChildRemoved File a"});
        expectSilence();
    }

    [[nodiscard]] static InMemoryProvider::Hook failing(std::string_view operation, ErrorCode code) {
        return [=](std::string_view met, const StorageIRI& at) {
            if (met == operation) {
                throw Exception(code, at);
            }
        };
    }
};

TEST_F(PollingFailureTest, ListingThatIsRefusedKeepsWhatIsKnown) {
    expectPatience(failing("listAll", ErrorCode::AccessDenied));
}

TEST_F(PollingFailureTest, BackEndThatIsAwayKeepsWhatIsKnown) {
    expectPatience([](std::string_view, const StorageIRI& at) { throw Exception(ErrorCode::Unavailable, at); });
}

TEST_F(PollingFailureTest, AttributesOfTheFolderThatAreRefusedKeepWhatIsKnown) {
    expectPatience(failing("getFolderAttributes", ErrorCode::AccessDenied));
}

TEST_F(PollingFailureTest, FolderThatGoesWhileItIsLookedAtIsLookedAtAgain) {
    expectPatience(failing("listAll", ErrorCode::NotFound));
}

TEST_F(PollingFailureTest, ErrorOfAnyKindKeepsWhatIsKnown) {
    expectPatience([](std::string_view, const StorageIRI&) { throw std::runtime_error("foreign"); });
    EXPECT_NO_THROW(stop(m_folder));
}

TEST_F(PollingFailureTest, ThrownThingThatIsNoExceptionKeepsWhatIsKnown) {
    expectPatience([](std::string_view, const StorageIRI&) { throw 1; });
}

TEST_F(PollingFailureTest, ChildThatMayNotBeReadStaysAndItsChangeIsToldWhenItMay) {
    start();
    fail("getFileAttributes", child(u"a"), ErrorCode::AccessDenied);
    awaitLook();
    write(child(u"a"), "bytes");
    m_provider.createFile(child(u"c"));
    EXPECT_EQ(m_trail.next(1), Lines{"ChildAdded File c"});
    expectSilence();
    disturb({});
    EXPECT_EQ(m_trail.next(1), Lines{"ChildModified File a"});
}

TEST_F(PollingFailureTest, NewChildThatMayNotBeReadIsAddedAllTheSame) {
    start();
    fail("getFileAttributes", child(u"c"), ErrorCode::AccessDenied);
    awaitLook();
    m_provider.createFile(child(u"c"));
    EXPECT_EQ(m_trail.next(1), Lines{"ChildAdded File c"});
    disturb({});
    expectSilence();
    write(child(u"c"), "bytes");
    EXPECT_EQ(m_trail.next(1), Lines{"ChildModified File c"});
}

TEST_F(PollingFailureTest, ChildWhoseAttributesSayThatItIsGoneIsRemoved) {
    start();
    fail("getFileAttributes", child(u"a"), ErrorCode::NotFound);
    EXPECT_EQ(m_trail.next(1), Lines{"ChildRemoved File a"});
    disturb({});
    EXPECT_EQ(m_trail.next(1), Lines{"ChildAdded File a"});
}

TEST_F(PollingFailureTest, CallbackThatThrowsHasHadItsEventAndTheOthersFollow) {
    std::atomic<int> calls = 0;
    start(m_folder, [&](auto&&... event) {
        m_trail.callback()(event...);
        if (++calls == 1) {
            throw std::runtime_error("not allowed");
        }
        throw 2;
    });
    atOnce([&] {
        m_provider.removeFile(child(u"a"));
        m_provider.removeFile(child(u"b"));
    });
    EXPECT_EQ(m_trail.next(2), (Lines{"ChildRemoved File a", "ChildRemoved File b"}));
    m_provider.createFile(child(u"c"));
    EXPECT_EQ(m_trail.next(1), Lines{"ChildAdded File c"});
    stop(m_folder);
    EXPECT_EQ(calls, 3);
}

TEST_F(PollingFailureTest, MissingLocationIsNotPolled) {
    expectError(ErrorCode::NotFound, m_file, [&] { start(m_file, m_trail.callback()); });
    m_provider.createFile(m_file);
    start();
    expectSilence();
}

TEST_F(PollingFailureTest, IntervalThatIsNotPositiveIsRefused) {
    for (const auto interval :
         {std::chrono::milliseconds(0), std::chrono::milliseconds(-1), std::chrono::milliseconds::min()}) {
        expectError(ErrorCode::NotSupported, m_folder, [&] { start(m_folder, m_trail.callback(), interval); });
    }
}

TEST_F(PollingFailureTest, EmptyCallbackIsRefused) {
    expectError(ErrorCode::NotSupported, m_folder, [&] { start(m_folder, {}); });
}

TEST_F(PollingFailureTest, ErrorOfTheFirstLookIsReportedAndNothingIsPolled) {
    disturb(failing("listAll", ErrorCode::AccessDenied));
    const auto token = std::make_shared<int>();
    std::thread([&] {
        expectError(ErrorCode::AccessDenied, m_folder, [&] { start(m_folder, [token](auto&&...) {}); });
    }).join();
    EXPECT_EQ(token.use_count(), 1);
}

TEST_F(PollingFailureTest, RefusedStartLeavesTheOneBeforeAlone) {
    start();
    expectError(ErrorCode::NotSupported, m_folder, [&] { start(m_folder, {}); });
    m_provider.removeFile(child(u"a"));
    EXPECT_EQ(m_trail.next(1), Lines{"ChildRemoved File a"});
}

}  // namespace
}  // namespace foundation::test
