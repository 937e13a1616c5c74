#include <gmock/gmock.h>

#include "BridgeTest.h"
#include "JNIUtilsException.h"
#include "support/JavaHelpers.h"

namespace storage::javaprovider::test {

namespace {

using ::testing::ElementsAre;

class IsInstanceOfTest : public BridgeTest {
protected:
    /// A holder's reference to an exception; made under the recorder, since the holder releases it under the recorder.
    jthrowable recorded(jthrowable exception) { return static_cast<jthrowable>(env()->NewLocalRef(exception)); }

    bool isInstance(jthrowable exception, const std::string& className) {
        LocalRef<jthrowable> holder(guard(), recorded(exception));
        return isInstanceOfClass(holder, className);
    }
    bool isProvider(jthrowable exception) {
        LocalRef<jthrowable> holder(guard(), recorded(exception));
        return isProviderException(holder);
    }
};

TEST_F(IsInstanceOfTest, ObjectIsAnInstanceOfItsClassAndItsSuperclasses) {
    const jthrowable exception = failure("own:NOT_FOUND", u"java://a");
    EXPECT_TRUE(isInstance(exception, "com.corvallen.storage.test.Failures$OwnProviderException"));
    EXPECT_TRUE(isInstance(exception, "com.corvallen.storage.provider.ProviderException"));
    EXPECT_TRUE(isInstance(exception, "java.lang.Throwable"));
    EXPECT_FALSE(isAnyPending());
}

TEST_F(IsInstanceOfTest, ObjectIsNoInstanceOfOtherClasses) {
    const jthrowable exception = failure("runtime");
    EXPECT_FALSE(isInstance(exception, "java.io.IOException"));
    EXPECT_FALSE(isInstance(exception, "java.lang.String"));
    EXPECT_FALSE(isAnyPending());
}

TEST_F(IsInstanceOfTest, ClassOfALoaderIsSoughtThroughThatLoader) {
    const jobject made =
        callStaticObject(env(), "com/corvallen/storage/test/ForeignErrors", "backEndError", {"java://a"});
    // The class path knows a class of that name as well, of which the exception is no instance.
    EXPECT_TRUE(isInstance(static_cast<jthrowable>(made), "com.corvallen.storage.test.ForeignErrors$BackEndError"));
    EXPECT_EQ(recorder.count("FindClass com/corvallen/storage/test/ForeignErrors$BackEndError"), 0U);
}

TEST_F(IsInstanceOfTest, ClassThatNobodyKnowsIsNoAnswerWithTheReasonPending) {
    EXPECT_FALSE(isInstance(failure("runtime"), "com.example.Absent"));
    EXPECT_EQ(recorder.count("IsInstanceOf"), 0U);
    EXPECT_EQ(takePending(), "java.lang.NoClassDefFoundError: com/example/Absent");
}

TEST_F(IsInstanceOfTest, LoaderIsReleasedBeforeTheClassOfTheObject) {
    EXPECT_FALSE(isInstance(failure("nullToString"), "java.lang.String"));
    EXPECT_THAT(releases(),
                ElementsAre("CallObjectMethod getClassLoader()Ljava/lang/ClassLoader;", "GetObjectClass",
                            "CallObjectMethod loadClass(Ljava/lang/String;)Ljava/lang/Class;", "NewLocalRef"));
}

TEST_F(IsInstanceOfTest, LoadersAreReleasedBeforeTheObjectIsTested) {
    EXPECT_FALSE(isInstance(failure("nullToString"), "java.lang.String"));
    EXPECT_THAT(
        recorder.calls(),
        ElementsAre(
            "NewLocalRef", "GetObjectClass", "FindClass java/lang/Class",
            "GetMethodID java/lang/Class getClassLoader()Ljava/lang/ClassLoader;",
            "CallObjectMethod getClassLoader()Ljava/lang/ClassLoader;", "FindClass java/lang/ClassLoader",
            "GetMethodID java/lang/ClassLoader loadClass(Ljava/lang/String;)Ljava/lang/Class;",
            "FindClass java/lang/ClassLoader", "GetMethodID java/lang/ClassLoader getParent()Ljava/lang/ClassLoader;",
            "NewStringUTF java.lang.String", "CallObjectMethod loadClass(Ljava/lang/String;)Ljava/lang/Class;",
            "DeleteLocalRef", "DeleteLocalRef", "IsInstanceOf java/lang/String", "DeleteLocalRef", "DeleteLocalRef"));
}

TEST_F(IsInstanceOfTest, MissingLoaderIsNotReleased) {
    EXPECT_FALSE(isInstance(failure("runtime"), "java.lang.String"));
    EXPECT_THAT(releases(), ElementsAre("GetObjectClass", "FindClass java/lang/String", "NewLocalRef"));
}

TEST_F(IsInstanceOfTest, MissingClassIsNotReleased) {
    EXPECT_FALSE(isInstance(failure("runtime"), "com.example.Absent"));
    EXPECT_THAT(releases(), ElementsAre("GetObjectClass", "NewLocalRef"));
    static_cast<void>(takePending());
}

TEST_F(IsInstanceOfTest, FailedSearchReleasesTheLoaderAndTheClass) {
    recorder.fail({.call = "GetMethodID java/lang/ClassLoader loadClass",
                   .failure = JniFailure::exception("java/lang/NoSuchMethodError")});
    EXPECT_THROW(isInstance(failure("nullToString"), "java.lang.String"), std::runtime_error);
    EXPECT_THAT(releases(), ElementsAre("CallObjectMethod getClassLoader()Ljava/lang/ClassLoader;", "GetObjectClass",
                                        "NewLocalRef"));
}

TEST_F(IsInstanceOfTest, ProviderExceptionAndItsSubclassesAreKnown) {
    for (const char* kind : {"NOT_FOUND", "own:NOT_FOUND"}) {
        EXPECT_TRUE(isProvider(failure(kind, u"java://a"))) << kind;
        // The loader of the class path, asked for a name with slashes, has thrown.
        EXPECT_FALSE(takePending().empty()) << kind;
    }
}

TEST_F(IsInstanceOfTest, OtherExceptionsAreNoProviderExceptions) {
    EXPECT_FALSE(isProvider(failure("runtime")));
    EXPECT_FALSE(isProvider(failure("checked")));
}

TEST_F(IsInstanceOfTest, ProviderExceptionIsSoughtByItsSlashedName) {
    EXPECT_FALSE(isProvider(failure("runtime")));
    EXPECT_EQ(recorder.count("NewStringUTF com/corvallen/storage/provider/ProviderException"), 1U);
}

}  // namespace

}  // namespace storage::javaprovider::test
