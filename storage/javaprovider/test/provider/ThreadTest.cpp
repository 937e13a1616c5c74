// Providers on threads that Java knows, does not know, and comes to know; and on many at once.
#include <gmock/gmock.h>

#include <atomic>
#include <latch>
#include <memory>
#include <string>
#include <thread>
#include <vector>

#include "JavaProvider.h"
#include "provider/ProviderTest.h"
#include "provider/ThrownErrors.h"
#include "storage/jvm/ThreadAttachment.h"
#include "support/JavaHelpers.h"
#include "support/NumberFromEnvironment.h"

namespace storage::javaprovider::test {
namespace {

using foundation::storage::provider::ErrorCode;
using ::testing::ElementsAre;
using ::testing::IsEmpty;

const StorageIRI A(u"java://test/a");
const StorageIRI B(u"java://test/b");

class ThreadTest : public ProviderTest {
protected:
    void SetUp() override {
        ProviderTest::SetUp();
        const JniRecorder::Unrecorded unrecorded;
        backEnd = env()->NewGlobalRef(newBackEnd());
    }

    void TearDown() override {
        {
            const JniRecorder::Unrecorded unrecorded;
            env()->DeleteGlobalRef(backEnd);
        }
        EXPECT_EQ(handle->attachments(), handle->detachments());
        ProviderTest::TearDown();
    }

    /// Makes a provider, uses it and destroys it; notes after each step whether the thread is attached.
    [[nodiscard]] std::vector<bool> attachedAfterEachStep() {
        std::vector<bool> attached;
        auto provider = std::make_unique<JavaProvider>(handle, backEnd);
        const IProvider& used = *provider;
        attached.push_back(isAttached(vm()));
        used.createFile(A);
        attached.push_back(isAttached(vm()));
        EXPECT_FALSE(used.fileExists(A));
        attached.push_back(isAttached(vm()));
        provider.reset();
        attached.push_back(isAttached(vm()));
        return attached;
    }

    void expectWholeLife() const {
        EXPECT_THAT(javaCalls(), ElementsAre("createFile java://test/a", "fileExists java://test/a", "dispose"));
        EXPECT_EQ(recorder.liveGlobals(), 1) << "only the kept class";
    }

    jobject backEnd = nullptr;
};

TEST_F(ThreadTest, UnknownThreadIsAttachedForEachStepAlone) {
    onFreshThread([&] { EXPECT_THAT(attachedAfterEachStep(), ElementsAre(false, false, false, false)); });
    expectWholeLife();
    EXPECT_EQ(handle->attachments(), 4U);
}

TEST_F(ThreadTest, ThreadThatTheHostAttachedStaysAttached) {
    onFreshThread([&] {
        JNIEnv* own = nullptr;
        ASSERT_EQ(vm()->AttachCurrentThread(reinterpret_cast<void**>(&own), nullptr), JNI_OK);
        EXPECT_THAT(attachedAfterEachStep(), ElementsAre(true, true, true, true));
        EXPECT_EQ(recorder.liveLocals(), 0);
        vm()->DetachCurrentThread();
    });
    expectWholeLife();
    EXPECT_EQ(handle->attachments(), 0U);
}

TEST_F(ThreadTest, ThreadWithAnAttachmentOfItsOwnStaysAttached) {
    onFreshThread([&] {
        const storage::jvm::ThreadAttachment attachment(handle);
        EXPECT_THAT(attachedAfterEachStep(), ElementsAre(true, true, true, true));
        EXPECT_EQ(recorder.liveLocals(), 0);
    });
    expectWholeLife();
    EXPECT_EQ(handle->attachments(), 1U) << "the attachment's own";
}

TEST_F(ThreadTest, FailuresDetachTheThreadToo) {
    const auto provider = makeProvider();
    script::failAlways(env(), "createFile", "ACCESS_DENIED", "java://test/a");
    script::failAlways(env(), "removeFile", "runtime", "a bug");
    const auto before = handle->attachments();
    onFreshThread([&] {
        EXPECT_TRUE(throwsExactly<ProviderError>([&] { provider->createFile(A); }));
        EXPECT_FALSE(isAttached(vm()));
        EXPECT_TRUE(throwsExactly<InternalError>([&] { provider->removeFile(A); }));
        EXPECT_FALSE(isAttached(vm()));
    });
    EXPECT_EQ(handle->attachments(), before + 2);
}

TEST_F(ThreadTest, ErrorsAreGoodOnAnotherThread) {
    const auto provider = makeProvider();
    script::failNext(env(), "createFile", "IN_USE", "java://test/a");
    std::exception_ptr thrown;
    onFreshThread([&] {
        try {
            provider->createFile(A);
        } catch (...) {
            thrown = std::current_exception();
        }
    });
    const auto error = thrownBy<ProviderError>([&] { std::rethrow_exception(thrown); });
    ASSERT_TRUE(error);
    EXPECT_EQ(error->code(), ErrorCode::InUse);
    EXPECT_EQ(error->location(), A);
}

TEST_F(ThreadTest, ProviderMadeOnOneThreadServesAndDiesOnOthers) {
    std::unique_ptr<IProvider> provider;
    onFreshThread([&] { provider = std::make_unique<JavaProvider>(handle, backEnd); });
    onFreshThread([&] { provider->createFile(A); });
    EXPECT_FALSE(provider->fileExists(A));
    onFreshThread([&] { provider.reset(); });
    expectWholeLife();
}

TEST_F(ThreadTest, OperationsRunSideBySide) {
    const auto provider = makeProvider();
    const char* gate = "com/corvallen/storage/test/Gate";
    callStaticVoid(env(), gate, "close", {"createFile"});
    std::jthread blocked([&] { provider->createFile(A); });
    std::jthread blockedToo([&] { provider->createFile(B); });
    EXPECT_NO_THROW(callStaticVoid(env(), gate, "awaitWaiting", {"createFile", "2", "60000"}));
    EXPECT_FALSE(provider->fileExists(A)) << "a third is not held up either";
    callStaticVoid(env(), gate, "open", {"createFile"});
}

// ---- the machine goes away ----

TEST_F(ThreadTest, MachineMayGoAndComeBackBetweenOperations) {
    const auto provider = makeProvider();
    for (int round = 0; round < 3; ++round) {
        EXPECT_NO_THROW(provider->createFile(A));
        handle->remove();
        EXPECT_EQ(internalErrorOf([&] { provider->createFile(A); }), "JVM remvoed");
        EXPECT_EQ(internalErrorOf([&] { static_cast<void>(provider->folderExists(A)); }), "JVM remvoed");
        handle->restore();
    }
    EXPECT_EQ(javaCalls().size(), 3U);
}

TEST_F(ThreadTest, MachineMayGoWhileManyThreadsWork) {
    const auto provider = makeProvider();
    constexpr int Threads = 8;
    std::atomic<int> refused = 0;
    std::atomic<int> done = 0;
    handle->removeAfter(2 * 500);
    std::vector<std::jthread> threads;
    for (int i = 0; i < Threads; ++i) {
        threads.emplace_back([&] {
            for (int n = 0; n < 200; ++n) {
                try {
                    static_cast<void>(provider->fileExists(A));
                    ++done;
                } catch (const InternalError&) {
                    ++refused;
                }
            }
        });
    }
    threads.clear();
    EXPECT_EQ(done + refused, Threads * 200);
    EXPECT_GT(refused, 0);
    EXPECT_LE(done, 500);
    EXPECT_EQ(static_cast<int>(javaCalls().size()), done);
    handle->restore();
}

TEST_F(ThreadTest, MachineThatGoesBetweenTheTwoLooksIsAnInternalError) {
    const auto provider = makeProvider();
    handle->removeAfter(1);
    EXPECT_TRUE(throwsExactly<InternalError>([&] { provider->createFile(A); }));
    EXPECT_THAT(javaCalls(), IsEmpty());
    handle->restore();
}

// ---- many threads ----

/// One of a thread's operations: what is done, and whether it ended as it should.
class MixedOperations {
public:
    MixedOperations(const IProvider& provider, int thread) : m_provider(provider), m_thread(thread) {}

    /// How many of so many operations went wrong.
    [[nodiscard]] int run(int count) const {
        int wrong = 0;
        for (int n = 0; n < count; ++n) {
            wrong += isRight(n) ? 0 : 1;
        }
        return wrong;
    }

private:
    [[nodiscard]] bool isRight(int n) const {
        const StorageIRI own = A.getChild(std::u16string(static_cast<std::size_t>(1 + m_thread), u'x'));
        switch (n % 6) {
            case 0:
                return m_provider.fileExists(own);
            case 1:
                return !m_provider.folderExists(own);
            case 2:
                m_provider.createFile(own);
                return true;
            case 3:
                m_provider.moveFile(own, A, ReplacementPolicy::ReplaceExisting);
                return true;
            case 4:
                return failsWithAccessDenied(own);
            default:
                return failsInternally(own);
        }
    }
    [[nodiscard]] bool failsWithAccessDenied(const StorageIRI& location) const {
        try {
            m_provider.removeFile(location);
        } catch (const ProviderError& error) {
            return error.code() == ErrorCode::AccessDenied && error.location() == StorageIRI(u"java://test/denied");
        }
        return false;
    }
    [[nodiscard]] bool failsInternally(const StorageIRI& location) const {
        try {
            m_provider.removeFolder(location);
        } catch (const InternalError& error) {
            return std::string(error.what()).ends_with("IllegalStateException. The message was: a bug");
        }
        return false;
    }

    const IProvider& m_provider;
    int m_thread;
};

TEST_F(ThreadTest, SixtyFourThreadsOfMixedOperationsAllGetTheirOwnResults) {
    constexpr int Threads = 64;
    const int each = static_cast<int>(numberFromEnvironment("THREAD_OPERATIONS", 64'000)) / Threads;
    ASSERT_GT(each, 0);
    auto provider = makeProvider();
    script::answer(env(), "fileExists", true);
    script::failAlways(env(), "removeFile", "ACCESS_DENIED", "java://test/denied");
    script::failAlways(env(), "removeFolder", "runtime", "a bug");
    recorder.clear();
    recorder.keepCalls(false);
    std::atomic<int> wrong = 0;
    std::atomic<int> stillAttached = 0;
    std::latch start(Threads);
    std::vector<std::jthread> threads;
    for (int i = 0; i < Threads; ++i) {
        threads.emplace_back([&, i] {
            start.arrive_and_wait();
            wrong += MixedOperations(*provider, i).run(each);
            stillAttached += isAttached(vm()) ? 1 : 0;
        });
    }
    threads.clear();
    EXPECT_EQ(wrong, 0);
    EXPECT_EQ(stillAttached, 0);
    EXPECT_EQ(javaCalls().size(), static_cast<std::size_t>(Threads * each));
    EXPECT_EQ(recorder.liveGlobals(), 0);
    EXPECT_THAT(recorder.leaks(), IsEmpty());
    EXPECT_EQ(handle.use_count(), 2);
    provider.reset();
    EXPECT_EQ(handle.use_count(), 1);
}

}  // namespace
}  // namespace storage::javaprovider::test
