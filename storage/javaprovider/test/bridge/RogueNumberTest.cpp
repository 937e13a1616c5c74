#include <gmock/gmock.h>

#include <atomic>
#include <chrono>
#include <condition_variable>
#include <limits>
#include <mutex>
#include <optional>
#include <thread>
#include <typeinfo>

#include "BridgeTest.h"
#include "JNIUtilsException.h"
#include "foundation/core/except/IException.h"
#include "foundation/storage/provider/Exception.h"
#include "support/JavaHelpers.h"

namespace storage::javaprovider::test {

namespace {

using ProviderError = foundation::storage::provider::Exception;

constexpr const char* Rogue = "com/corvallen/storage/provider/ProviderException";

/// A ProviderException of a contract that keeps none of its promises.
jthrowable withNumber(JNIEnv* env, int number, const std::string& location = "java://a") {
    return static_cast<jthrowable>(callStaticObject(env, Rogue, "withNumber", {std::to_string(number), location}));
}

/// Holds threads back until a number of them has arrived.
class StartingLine {
public:
    explicit StartingLine(int runners) : m_missing(runners) {}

    void arriveAndWait() {
        std::unique_lock lock(m_mutex);
        --m_missing;
        m_arrived.notify_all();
        EXPECT_TRUE(m_arrived.wait_for(lock, std::chrono::seconds(60), [this] { return m_missing <= 0; }));
    }

private:
    std::mutex m_mutex;
    std::condition_variable m_arrived;
    int m_missing;
};

/// What several threads did that translated the first errors of the process all at once.
struct FirstTranslations {
    int translated = 0;
    std::size_t lookupsOfLocation = 0;
    std::size_t lookupsOfNumber = 0;
};

constexpr int Runners = 8;

/// A test of checkJavaException() with errors that no back end of the real contract can throw.
class RogueNumberTest : public BridgeTest {
protected:
    void SetUp() override {
        BridgeTest::SetUp();
        static_cast<void>(firstTranslations());
        recorder.clear();
    }

    /// The outcome of the race, which is run by the first test of the program.
    const FirstTranslations& firstTranslations() {
        static const FirstTranslations outcome = race();
        return outcome;
    }

    std::string errorFor(int number) {
        raise(withNumber(env(), number));
        const std::string text =
            messageOf<std::runtime_error>([this] { static_cast<void>(checkJavaException(guard())); });
        EXPECT_TRUE(isAnyPending());
        return text;
    }

    /// The provider error that the pending exception becomes, or nothing when it becomes anything else.
    std::optional<ProviderError> translated() {
        const std::exception_ptr error = checkJavaException(guard());
        if (error == nullptr) {
            return std::nullopt;
        }
        try {
            std::rethrow_exception(error);
        } catch (const ProviderError& e) {
            return e;
        } catch (const std::exception& e) {
            ADD_FAILURE() << "another exception: " << e.what();
            return std::nullopt;
        }
    }

private:
    FirstTranslations race() {
        FirstTranslations outcome;
        std::atomic<int> translated = 0;
        StartingLine line(Runners);
        std::vector<std::thread> runners;
        for (int i = 0; i < Runners; ++i) {
            runners.emplace_back([&] { translated += translateOnce(line) ? 1 : 0; });
        }
        for (std::thread& runner : runners) {
            runner.join();
        }
        outcome.translated = translated;
        outcome.lookupsOfLocation =
            recorder.countOnAllThreads(std::string("GetMethodID ") + Rogue + " getLocationString");
        outcome.lookupsOfNumber =
            recorder.countOnAllThreads(std::string("GetMethodID ") + Rogue + " getErrorCodeNumber");
        return outcome;
    }

    static bool translateOnce(StartingLine& line) {
        const JNIEnvPtr env(jvm());
        {
            const JniRecorder::Unrecorded unrecorded;
            env->Throw(withNumber(env.get(), 1));
        }
        line.arriveAndWait();
        return checkJavaException(env) != nullptr;
    }
};

TEST_F(RogueNumberTest, MethodsAreLookedUpOnceByAllThreadsTogether) {
    EXPECT_EQ(firstTranslations().translated, Runners);
    EXPECT_EQ(firstTranslations().lookupsOfLocation, 1U);
    EXPECT_EQ(firstTranslations().lookupsOfNumber, 1U);
}

TEST_F(RogueNumberTest, NumbersOfTheTableAreTranslated) {
    const std::vector<int> codes = {0, 1, 2, 3, 4, 5, 6, 8, 9, 10, 11, 12};
    for (int number = 0; number < static_cast<int>(codes.size()); ++number) {
        raise(withNumber(env(), number));
        const auto error = translated();
        ASSERT_TRUE(error.has_value()) << number;
        EXPECT_EQ(static_cast<int>(error->code()), codes[static_cast<std::size_t>(number)]) << number;
        EXPECT_EQ(error->location().text(), u"java://a") << number;
    }
}

TEST_F(RogueNumberTest, NumberAfterTheLastIsUnexpected) {
    EXPECT_EQ(errorFor(12), "Unexpected error number: 12");
    static_cast<void>(takePending());
}

TEST_F(RogueNumberTest, NumberBeforeTheFirstIsUnexpected) {
    EXPECT_EQ(errorFor(-1), "Unexpected error number: -1");
    static_cast<void>(takePending());
}

TEST_F(RogueNumberTest, LargestAndSmallestNumbersAreUnexpected) {
    EXPECT_EQ(errorFor(std::numeric_limits<int>::max()), "Unexpected error number: 2147483647");
    static_cast<void>(takePending());
    EXPECT_EQ(errorFor(std::numeric_limits<int>::min()), "Unexpected error number: -2147483648");
    static_cast<void>(takePending());
}

TEST_F(RogueNumberTest, UnexpectedNumberIsAPlainRuntimeError) {
    raise(withNumber(env(), 12));
    try {
        static_cast<void>(checkJavaException(guard()));
        ADD_FAILURE() << "nothing was thrown";
    } catch (const std::runtime_error& error) {
        EXPECT_EQ(typeid(error), typeid(std::runtime_error));
        EXPECT_EQ(dynamic_cast<const foundation::core::except::IException*>(&error), nullptr);
    }
    static_cast<void>(takePending());
}

TEST_F(RogueNumberTest, UnexpectedNumberLeavesTheExceptionPending) {
    const jthrowable exception = withNumber(env(), 12);
    raise(exception);
    // Loaders that do not know the class without throwing; a throwing one would put its own exception in the place.
    recorder.fail({.call = "CallObjectMethod loadClass", .occurrence = 1, .failure = JniFailure::silent()});
    recorder.fail({.call = "CallObjectMethod loadClass", .occurrence = 2, .failure = JniFailure::silent()});
    EXPECT_THROW(static_cast<void>(checkJavaException(guard())), std::runtime_error);
    EXPECT_EQ(recorder.count("ExceptionClear"), 0U);
    EXPECT_TRUE(isPending(exception));
    static_cast<void>(takePending());
}

TEST_F(RogueNumberTest, UnexpectedNumberReleasesTheLocationAndTheException) {
    static_cast<void>(errorFor(12));
    const auto released = releases();
    ASSERT_GE(released.size(), 2U);
    EXPECT_EQ(released[released.size() - 2], "CallObjectMethod getLocationString()Ljava/lang/String;");
    EXPECT_EQ(released.back(), "ExceptionOccurred");
    static_cast<void>(takePending());
}

TEST_F(RogueNumberTest, GettersThatThrowGiveNoLocationAndTheNumberZero) {
    raise(static_cast<jthrowable>(callStaticObject(env(), Rogue, "withThrowingGetters")));
    const auto error = translated();
    ASSERT_TRUE(error.has_value());
    EXPECT_EQ(static_cast<int>(error->code()), 0);
    EXPECT_TRUE(error->location().empty());
    EXPECT_FALSE(isAnyPending());
}

}  // namespace

}  // namespace storage::javaprovider::test
