#include <gmock/gmock.h>

#include "ClassSearch.h"
#include "JNIUtilsClass.h"

namespace storage::javaprovider::test {

namespace {

using ::testing::ElementsAre;
using ::testing::StartsWith;

constexpr const char* LoadClassMethod = "loadClass(Ljava/lang/String;)Ljava/lang/Class;";
constexpr const char* GetParentMethod = "getParent()Ljava/lang/ClassLoader;";

/// The calls of a search: those that each search begins with, for the name, and then the others.
std::vector<std::string> searchCalls(const std::string& name, const std::vector<std::string>& others) {
    std::vector<std::string> calls = {
        "FindClass java/lang/ClassLoader", std::string("GetMethodID java/lang/ClassLoader ") + LoadClassMethod,
        "FindClass java/lang/ClassLoader", std::string("GetMethodID java/lang/ClassLoader ") + GetParentMethod,
        "NewStringUTF " + name};
    calls.insert(calls.end(), others.begin(), others.end());
    return calls;
}

const std::string AskLoader = std::string("CallObjectMethod ") + LoadClassMethod;
const std::string AskForParent = std::string("CallObjectMethod ") + GetParentMethod;

class LoadClassTest : public ClassSearchTest {};

TEST_F(LoadClassTest, WithoutALoaderOnlyTheSystemIsAsked) {
    const jclass found = loadClass(guard(), nullptr, "java.util.HashMap");
    EXPECT_TRUE(same(found, classNamed("java/util/HashMap")));
    EXPECT_EQ(recorder.calls(), searchCalls("java.util.HashMap", {"FindClass java/util/HashMap"}));
}

TEST_F(LoadClassTest, SlashedNameReachesTheSystemUnchanged) {
    const jclass found = loadClass(guard(), nullptr, "java/util/HashMap");
    EXPECT_TRUE(same(found, classNamed("java/util/HashMap")));
    EXPECT_EQ(recorder.calls(), searchCalls("java/util/HashMap", {"FindClass java/util/HashMap"}));
}

TEST_F(LoadClassTest, NameWithoutAnyPackageReachesTheSystemUnchanged) {
    EXPECT_EQ(loadClass(guard(), nullptr, "Absent"), nullptr);
    EXPECT_EQ(recorder.calls(), searchCalls("Absent", {"FindClass Absent"}));
    EXPECT_EQ(takePending(), "java.lang.NoClassDefFoundError: Absent");
}

TEST_F(LoadClassTest, SystemKnowsNestedClassesByTheirBinaryName) {
    const jclass found = loadClass(guard(), nullptr, "java.util.Map$Entry");
    EXPECT_TRUE(same(found, classNamed("java/util/Map$Entry")));
}

TEST_F(LoadClassTest, LoaderThatKnowsTheClassIsAskedOnceAndNobodyElse) {
    const jobject loader = loaders("known known");
    const jclass found = loadClass(guard(), loader, "com.example.Wanted");
    EXPECT_TRUE(same(found, answer()));
    EXPECT_THAT(questions(), ElementsAre("loader1 com.example.Wanted"));
    EXPECT_EQ(recorder.calls(), searchCalls("com.example.Wanted", {AskLoader}));
    EXPECT_EQ(recorder.record(AskLoader).target, loader);
}

TEST_F(LoadClassTest, LoaderIsGivenTheNameString) {
    EXPECT_NE(loadClass(guard(), loaders("known"), "com.example.Wanted"), nullptr);
    EXPECT_EQ(recorder.record(AskLoader).referenceArgument(0), recorder.record("NewStringUTF").resultReference);
}

TEST_F(LoadClassTest, LoadersAreAskedForTheNameAsItStands) {
    EXPECT_NE(loadClass(guard(), loaders("null known"), "com/example/Wanted"), nullptr);
    EXPECT_THAT(questions(), ElementsAre("loader1 com/example/Wanted", "loader2 com/example/Wanted"));
}

TEST_F(LoadClassTest, ParentIsAskedAfterALoaderThatAnswersNull) {
    const jclass found = loadClass(guard(), loaders("null known"), "com.example.Wanted");
    EXPECT_TRUE(same(found, answer()));
    EXPECT_THAT(questions(), ElementsAre("loader1 com.example.Wanted", "loader2 com.example.Wanted"));
    EXPECT_EQ(recorder.calls(), searchCalls("com.example.Wanted", {AskLoader, AskForParent, AskLoader}));
    EXPECT_FALSE(isAnyPending());
}

TEST_F(LoadClassTest, SystemIsAskedWhenNoLoaderOfTheChainKnows) {
    const jclass found = loadClass(guard(), loaders("null null null"), "java.util.HashMap");
    EXPECT_TRUE(same(found, classNamed("java/util/HashMap")));
    EXPECT_THAT(questions(),
                ElementsAre("loader1 java.util.HashMap", "loader2 java.util.HashMap", "loader3 java.util.HashMap"));
    EXPECT_EQ(recorder.calls(),
              searchCalls("java.util.HashMap", {AskLoader, AskForParent, AskLoader, AskForParent, AskLoader,
                                                AskForParent, "FindClass java/util/HashMap"}));
}

TEST_F(LoadClassTest, ExceptionOfALoaderStaysPendingWhenItsParentKnows) {
    const jclass found = loadClass(guard(), loaders("missing known"), "com.example.Wanted");
    EXPECT_EQ(takePending(), "java.lang.ClassNotFoundException: loader1 does not know com.example.Wanted");
    EXPECT_TRUE(same(found, answer()));
}

TEST_F(LoadClassTest, ExceptionOfALoaderStaysPendingWhenTheSystemKnows) {
    const jclass found = loadClass(guard(), loaders("missing"), "java.util.HashMap");
    EXPECT_EQ(takePending(), "java.lang.ClassNotFoundException: loader1 does not know java.util.HashMap");
    EXPECT_TRUE(same(found, classNamed("java/util/HashMap")));
}

TEST_F(LoadClassTest, SearchGoesOnWhileAnExceptionIsPending) {
    const jobject loader = loaders("missing missing");
    raise("runtime", u"pending before");
    EXPECT_NE(loadClass(guard(), loader, "java.util.HashMap"), nullptr);
    EXPECT_EQ(takePending(), "java.lang.ClassNotFoundException: loader2 does not know java.util.HashMap");
    EXPECT_THAT(questions(), ElementsAre("loader1 java.util.HashMap", "loader2 java.util.HashMap"));
}

TEST_F(LoadClassTest, ClassThatNobodyKnowsIsNullWithTheReasonPending) {
    EXPECT_EQ(loadClass(guard(), loaders("null"), "com.example.Absent"), nullptr);
    EXPECT_EQ(recorder.calls(),
              searchCalls("com.example.Absent", {AskLoader, AskForParent, "FindClass com/example/Absent"}));
    EXPECT_EQ(takePending(), "java.lang.NoClassDefFoundError: com/example/Absent");
}

TEST_F(LoadClassTest, ExceptionsAreNeitherAskedForNorCleared) {
    EXPECT_EQ(loadClass(guard(), loaders("missing missing"), "com.example.Absent"), nullptr);
    for (const char* function : {"ExceptionCheck", "ExceptionOccurred", "ExceptionClear"}) {
        EXPECT_EQ(recorder.count(function), 0U) << function;
    }
    EXPECT_THAT(takePending(), StartsWith("java.lang.NoClassDefFoundError"));
}

TEST_F(LoadClassTest, NothingIsReleasedBeforeTheFrameIs) {
    EXPECT_NE(loadClass(guard(), loaders("null null"), "java.util.HashMap"), nullptr);
    EXPECT_EQ(recorder.count("DeleteLocalRef"), 0U);
    EXPECT_EQ(recorder.liveLocals(), 5) << "twice ClassLoader, the name, one parent, the result: "
                                        << ::testing::PrintToString(recorder.leaks());
}

TEST_F(LoadClassTest, RealLoaderKnowsTheClassByItsDottedName) {
    const jobject system = callStaticObject(env(), Fixture, "system");
    const jclass found = loadClass(guard(), system, "com.corvallen.storage.provider.StorageURI");
    EXPECT_TRUE(same(found, classNamed("com/corvallen/storage/provider/StorageURI")));
    EXPECT_EQ(recorder.calls(), searchCalls("com.corvallen.storage.provider.StorageURI", {AskLoader}));
}

TEST_F(LoadClassTest, RealLoaderThatDoesNotKnowIsFollowedByItsParentsAndTheSystem) {
    const jobject system = callStaticObject(env(), Fixture, "system");
    EXPECT_EQ(loadClass(guard(), system, "com.example.Absent"), nullptr);
    // The loader of the class path has one parent, that of the platform.
    EXPECT_EQ(recorder.calls(), searchCalls("com.example.Absent", {AskLoader, AskForParent, AskLoader, AskForParent,
                                                                   "FindClass com/example/Absent"}));
    EXPECT_FALSE(takePending().empty());
}

TEST_F(LoadClassTest, NameThatCannotBeMadeIsLeftPendingAndTheSystemStillAsked) {
    recorder.fail({.call = "NewStringUTF"});
    EXPECT_NE(loadClass(guard(), nullptr, "java.util.HashMap"), nullptr);
    EXPECT_THAT(takePending(), StartsWith("java.lang.OutOfMemoryError"));
}

TEST_F(LoadClassTest, MissingMethodOfTheLoaderEndsTheSearch) {
    recorder.fail({.call = "GetMethodID java/lang/ClassLoader getParent",
                   .failure = JniFailure::exception("java/lang/NoSuchMethodError")});
    const auto search = [&] { static_cast<void>(loadClass(guard(), nullptr, "java.util.HashMap")); };
    EXPECT_THAT(messageOf<std::runtime_error>(search),
                StartsWith("Method getParent with signature ()Ljava/lang/ClassLoader; not found.\n"));
    EXPECT_EQ(recorder.count("NewStringUTF"), 0U);
    EXPECT_FALSE(isAnyPending());
}

}  // namespace

}  // namespace storage::javaprovider::test
