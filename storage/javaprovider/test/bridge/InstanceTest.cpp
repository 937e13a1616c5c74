#include <gmock/gmock.h>

#include <stdexcept>

#include "BridgeTest.h"
#include "JNIUtilsClass.h"
#include "foundation/core/except/AnonymousInternalException.h"
#include "support/JavaHelpers.h"

namespace storage::javaprovider::test {

namespace {

using ::testing::ElementsAre;
using ::testing::StartsWith;
using Internal = foundation::core::except::detail::AnonymousInternalException<std::runtime_error>;

const std::string Fixtures = "com/corvallen/storage/test/";

class InstanceTest : public BridgeTest {
protected:
    /// The text of the error of a failed attempt, whose Java exception must be gone then.
    std::string errorOf(const std::string& className, const InstanceErrors& errors = {}) {
        const auto attempt = [&] { static_cast<void>(newInstance(guard(), className, errors)); };
        const std::string text = messageOf<Internal>(attempt);
        EXPECT_FALSE(isAnyPending());
        return text;
    }
};

TEST_F(InstanceTest, IsMadeWithTheseCalls) {
    const jobject made = newInstance(guard(), "java/util/HashMap", {});
    ASSERT_NE(made, nullptr);
    EXPECT_THAT(recorder.calls(), ElementsAre("FindClass java/util/HashMap", "GetMethodID java/util/HashMap <init>()V",
                                              "NewObject java/util/HashMap <init>()V"));
    EXPECT_EQ(recorder.liveLocals(), 2) << "the object, and its class, which is left to the frame";
    const JniRecorder::Unrecorded unrecorded;
    EXPECT_TRUE(same(env()->GetObjectClass(made), classNamed("java/util/HashMap")));
}

TEST_F(InstanceTest, PrivateConstructorWillDo) {
    EXPECT_NE(newInstance(guard(), Fixtures + "PrivateConstructorProvider", {}), nullptr);
}

TEST_F(InstanceTest, AbsentClassIsDescribedByJava) {
    EXPECT_EQ(errorOf("com/example/Absent"), "java.lang.NoClassDefFoundError: com/example/Absent");
}

TEST_F(InstanceTest, AbsentClassIsDescribedAfterThePrefixForIt) {
    EXPECT_EQ(errorOf("com/example/Absent", {"No such class:", "Not made:"}),
              "No such class: java.lang.NoClassDefFoundError: com/example/Absent");
}

TEST_F(InstanceTest, DottedNameIsNoClass) {
    EXPECT_THAT(errorOf("java.util.HashMap"), StartsWith("java.lang.NoClassDefFoundError"));
    EXPECT_EQ(recorder.count("FindClass java.util.HashMap"), 1U);
}

TEST_F(InstanceTest, ClassDeniedWithoutAReasonIsNull) {
    recorder.fail({.call = "FindClass", .failure = JniFailure::silent()});
    EXPECT_EQ(newInstance(guard(), "java/util/HashMap", {}), nullptr);
    EXPECT_THAT(recorder.calls(), ElementsAre("FindClass java/util/HashMap", "ExceptionCheck"));
}

TEST_F(InstanceTest, MissingConstructorIsAMissingMethod) {
    EXPECT_THAT(errorOf(Fixtures + "NoDefaultConstructorProvider", {"No such class:", "Not made:"}),
                StartsWith("Method <init> with signature ()V not found.\njava.lang.NoSuchMethodError: "));
    EXPECT_EQ(recorder.count("NewObject"), 0U);
}

TEST_F(InstanceTest, ConstructorThatThrowsIsDescribedByJava) {
    EXPECT_EQ(errorOf(Fixtures + "ThrowingConstructorProvider"),
              "java.lang.IllegalStateException: thrown by the constructor");
}

TEST_F(InstanceTest, ConstructorThatThrowsIsDescribedAfterThePrefixForIt) {
    EXPECT_EQ(errorOf(Fixtures + "ThrowingConstructorProvider", {"No such class:", "Not made:"}),
              "Not made: java.lang.IllegalStateException: thrown by the constructor");
}

TEST_F(InstanceTest, AbstractClassIsDescribedByJava) {
    EXPECT_THAT(errorOf(Fixtures + "AbstractProvider"), StartsWith("java.lang.InstantiationException"));
}

TEST_F(InstanceTest, ConstructorDeniedWithoutAReasonIsNull) {
    recorder.fail({.call = "GetMethodID", .failure = JniFailure::silent()});
    EXPECT_EQ(newInstance(guard(), "java/util/HashMap", {}), nullptr);
    EXPECT_EQ(recorder.count("NewObject"), 0U);
}

TEST_F(InstanceTest, ObjectDeniedWithoutAReasonIsNull) {
    recorder.fail({.call = "NewObject", .failure = JniFailure::silent()});
    EXPECT_EQ(newInstance(guard(), "java/util/HashMap", {}), nullptr);
    EXPECT_EQ(recorder.count("ExceptionCheck"), 1U);
}

TEST_F(InstanceTest, MissingMemoryIsDescribedByJava) {
    recorder.fail({.call = "NewObject"});
    EXPECT_THAT(errorOf("java/util/HashMap"), StartsWith("java.lang.OutOfMemoryError"));
}

}  // namespace

}  // namespace storage::javaprovider::test
