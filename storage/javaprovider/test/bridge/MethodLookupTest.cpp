#include <gmock/gmock.h>

#include <boost/exception/exception.hpp>

#include <stdexcept>

#include "BridgeTest.h"
#include "JNIUtilsClass.h"
#include "foundation/core/except/AnonymousInternalException.h"
#include "support/JavaHelpers.h"

namespace storage::javaprovider::test {

namespace {

namespace except = foundation::core::except;
using ::testing::AnyOf;
using ::testing::ElementsAre;
using ::testing::HasSubstr;
using ::testing::StartsWith;
using Internal = except::detail::AnonymousInternalException<std::runtime_error>;

class MethodLookupTest : public BridgeTest {
protected:
    jclass stringClass() { return classNamed("java/lang/String"); }

    auto lookUp(jclass cls, const std::string& name, const std::string& signature) {
        return [=, this] { static_cast<void>(getMethodID(guard(), cls, name, signature)); };
    }
};

TEST_F(MethodLookupTest, FindsAMethodWithOneCall) {
    const jclass cls = stringClass();
    jmethodID found = getMethodID(guard(), cls, "length", "()I");
    EXPECT_NE(found, nullptr);
    ASSERT_THAT(recorder.calls(), ElementsAre("GetMethodID java/lang/String length()I"));
    EXPECT_EQ(recorder.records()[0].result, static_cast<const void*>(found));
    EXPECT_EQ(recorder.records()[0].target, cls);
}

TEST_F(MethodLookupTest, FindsAConstructor) {
    EXPECT_NE(getMethodID(guard(), stringClass(), "<init>", "()V"), nullptr);
    EXPECT_THAT(recorder.calls(), ElementsAre("GetMethodID java/lang/String <init>()V"));
}

TEST_F(MethodLookupTest, FindsAnInheritedMethod) {
    EXPECT_NE(getMethodID(guard(), classNamed("java/util/ArrayList"), "containsAll", "(Ljava/util/Collection;)Z"),
              nullptr);
}

TEST_F(MethodLookupTest, AsksJavaAfreshEachTime) {
    const jclass cls = stringClass();
    jmethodID first = getMethodID(guard(), cls, "length", "()I");
    EXPECT_EQ(getMethodID(guard(), cls, "length", "()I"), first);
    EXPECT_EQ(recorder.count("GetMethodID java/lang/String length()I"), 2U);
}

TEST_F(MethodLookupTest, TellsWhatIsMissingAndWhatJavaSaidOfIt) {
    const std::string text = messageOf<Internal>(lookUp(stringClass(), "absent", "(I)V"));
    EXPECT_THAT(text, StartsWith("Method absent with signature (I)V not found.\njava.lang.NoSuchMethodError: "));
    EXPECT_THAT(text.substr(text.find('\n')), HasSubstr("absent"));
    EXPECT_FALSE(isAnyPending());
}

TEST_F(MethodLookupTest, MissingMethodIsDescribedWithTheseCalls) {
    EXPECT_THROW(lookUp(stringClass(), "absent", "()V")(), Internal);
    EXPECT_THAT(
        recorder.calls(),
        ElementsAre("GetMethodID java/lang/String absent()V", "ExceptionCheck", "ExceptionOccurred", "ExceptionClear",
                    "GetObjectClass", "GetMethodID java/lang/NoSuchMethodError toString()Ljava/lang/String;",
                    "CallObjectMethod toString()Ljava/lang/String;", "GetStringChars", "ReleaseStringChars"));
}

TEST_F(MethodLookupTest, MissingMethodIsCaughtInEveryForm) {
    const auto fail = lookUp(stringClass(), "absent", "()V");
    EXPECT_TRUE((throwsAs<except::Exception<except::IInternalException, std::runtime_error, void>>(fail)));
    EXPECT_TRUE(throwsAs<except::IInternalException>(fail));
    EXPECT_TRUE(throwsAs<except::IException>(fail));
    EXPECT_TRUE(throwsAs<std::runtime_error>(fail));
    EXPECT_TRUE(throwsAs<boost::exception>(fail));
}

TEST_F(MethodLookupTest, OtherSignatureIsAnotherMethod) {
    EXPECT_THAT(messageOf<Internal>(lookUp(stringClass(), "length", "()J")),
                StartsWith("Method length with signature ()J not found.\njava.lang.NoSuchMethodError"));
}

TEST_F(MethodLookupTest, StaticMethodIsNotAnInstanceMethod) {
    EXPECT_THAT(messageOf<Internal>(lookUp(stringClass(), "valueOf", "(I)Ljava/lang/String;")),
                StartsWith("Method valueOf with signature (I)Ljava/lang/String; not found.\n"));
}

TEST_F(MethodLookupTest, ClassThatCannotBeInitialisedIsToldLikeAMissingMethod) {
    const auto cls =
        static_cast<jclass>(callStaticObject(env(), "com/corvallen/storage/test/ScriptedLoader", "uninitialised",
                                             {"com.corvallen.storage.test.FailingInitializer"}));
    const std::string start = "Method toString with signature ()Ljava/lang/String; not found.\n";
    // The machine says the second only when the class was tried before.
    EXPECT_THAT(
        messageOf<Internal>(lookUp(cls, "toString", "()Ljava/lang/String;")),
        AnyOf(start + "java.lang.ExceptionInInitializerError", StartsWith(start + "java.lang.NoClassDefFoundError")));
    EXPECT_FALSE(isAnyPending());
}

TEST_F(MethodLookupTest, FailureWithoutAReasonIsNull) {
    recorder.fail({.call = "GetMethodID", .failure = JniFailure::silent()});
    EXPECT_EQ(getMethodID(guard(), stringClass(), "length", "()I"), nullptr);
    EXPECT_THAT(recorder.calls(), ElementsAre("GetMethodID java/lang/String length()I", "ExceptionCheck"));
}

TEST_F(MethodLookupTest, SuccessAsksForNoException) {
    const jclass cls = stringClass();
    raise("runtime", u"pending all along");
    EXPECT_NE(getMethodID(guard(), cls, "length", "()I"), nullptr);
    EXPECT_EQ(recorder.count("ExceptionCheck"), 0U);
    EXPECT_EQ(takePending(), "java.lang.IllegalStateException: pending all along");
}

class ClassLoaderTest : public BridgeTest {};

TEST_F(ClassLoaderTest, IsAskedOfTheClassWithTheseCalls) {
    const jclass cls = classNamed("com/corvallen/storage/test/Failures");
    jobject loader = getClassLoader(guard(), cls);
    EXPECT_NE(loader, nullptr);
    EXPECT_THAT(recorder.calls(), ElementsAre("FindClass java/lang/Class",
                                              "GetMethodID java/lang/Class getClassLoader()Ljava/lang/ClassLoader;",
                                              "CallObjectMethod getClassLoader()Ljava/lang/ClassLoader;"));
    EXPECT_EQ(recorder.record("CallObjectMethod").target, cls);
    EXPECT_EQ(recorder.liveLocals(), 2) << "the loader, and java.lang.Class, which is left to the frame";
}

TEST_F(ClassLoaderTest, IsTheSystemLoaderForTheClassPath) {
    jobject loader = getClassLoader(guard(), classNamed("com/corvallen/storage/test/Failures"));
    EXPECT_TRUE(same(loader, callStaticObject(env(), "com/corvallen/storage/test/ScriptedLoader", "system")));
}

TEST_F(ClassLoaderTest, IsNullForTheBootstrapLoader) {
    EXPECT_EQ(getClassLoader(guard(), classNamed("java/lang/String")), nullptr);
    EXPECT_FALSE(isAnyPending());
}

TEST_F(ClassLoaderTest, IsGivenAlsoWhileAJavaExceptionIsPending) {
    const jclass cls = classNamed("com/corvallen/storage/test/Failures");
    raise("runtime", u"stays");
    EXPECT_NE(getClassLoader(guard(), cls), nullptr);
    EXPECT_EQ(takePending(), "java.lang.IllegalStateException: stays");
}

TEST_F(ClassLoaderTest, FailedQuestionIsNullAndItsReasonStaysPending) {
    const jclass cls = classNamed("com/corvallen/storage/test/Failures");
    recorder.fail({.call = "CallObjectMethod"});
    EXPECT_EQ(getClassLoader(guard(), cls), nullptr);
    EXPECT_EQ(recorder.count("ExceptionCheck"), 0U);
    EXPECT_THAT(takePending(), StartsWith("java.lang.OutOfMemoryError"));
}

}  // namespace

}  // namespace storage::javaprovider::test
