#include <gmock/gmock.h>

#include <stdexcept>
#include <string>
#include <thread>
#include <vector>

#include "support/AttachedScope.h"
#include "support/ContractMethods.h"
#include "support/FixtureNames.h"
#include "support/JavaHelpers.h"
#include "support/JvmTest.h"

namespace storage::javaprovider::test {

namespace {

using ::testing::ElementsAre;
using ::testing::HasSubstr;
using ::testing::StartsWith;

constexpr const char* OneUri = "(Lcom/corvallen/storage/provider/StorageURI;)";

/// The Java objects that the tests of the library stand on.
class FixtureTest : public JvmTest {
protected:
    void SetUp() override {
        JvmTest::SetUp();
        callStaticVoid(env(), fixture::Script, "reset");
    }

    void TearDown() override {
        callStaticVoid(env(), fixture::Script, "reset");
        JvmTest::TearDown();
    }

    jobject uri(const std::u16string& text) {
        const jclass type = findClass(env(), UriClass);
        const jobject made = env()->NewObject(type, env()->GetMethodID(type, "<init>", "(Ljava/lang/String;)V"),
                                              javaString(env(), text));
        EXPECT_EQ(takePendingException(env()), "");
        return made;
    }

    /// Calls the method and gives the description of what it threw.
    template <class... Arguments>
    std::string call(jobject object, const std::string& method, const std::string& signature, Arguments... arguments) {
        const jclass type = env()->GetObjectClass(object);
        const jmethodID id = env()->GetMethodID(type, method.c_str(), signature.c_str());
        env()->CallVoidMethod(object, id, arguments...);
        return takePendingException(env());
    }

    template <class... Arguments>
    jobject callForObject(jobject object, const std::string& method, const std::string& signature,
                          Arguments... arguments) {
        const jclass type = env()->GetObjectClass(object);
        const jmethodID id = env()->GetMethodID(type, method.c_str(), signature.c_str());
        const jobject result = env()->CallObjectMethod(object, id, arguments...);
        EXPECT_EQ(takePendingException(env()), "");
        return result;
    }

    std::string callWithUri(jobject provider, const std::string& method, const std::u16string& text) {
        return call(provider, method, std::string(OneUri) + "V", uri(text));
    }

    std::vector<std::string> log() { return callStaticStrings(env(), fixture::Script, "calls"); }

    bool has(jobject object, const std::string& method, const std::string& signature) {
        const jclass type = env()->GetObjectClass(object);
        const bool found = env()->GetMethodID(type, method.c_str(), signature.c_str()) != nullptr;
        env()->ExceptionClear();
        return found;
    }

    static constexpr const char* UriClass = "com/corvallen/storage/provider/StorageURI";
};

TEST_F(FixtureTest, TheScriptedProviderNotesItsCalls) {
    const jobject provider = newObject(env(), fixture::ScriptedProvider);
    EXPECT_EQ(callWithUri(provider, "createFile", u"java://a/b"), "");
    EXPECT_EQ(call(provider, "moveFile",
                   "(Lcom/corvallen/storage/provider/StorageURI;Lcom/corvallen/storage/provider/StorageURI;Z)V",
                   uri(u"java://a"), nullptr, JNI_TRUE),
              "");
    EXPECT_EQ(call(provider, "configure", "(Ljava/util/HashMap;)V", newObject(env(), "java/util/HashMap")), "");
    EXPECT_EQ(call(provider, "dispose", "()V"), "");
    EXPECT_THAT(log(), ElementsAre("createFile java://a/b", "moveFile java://a null true", "configure {}", "dispose"));
}

TEST_F(FixtureTest, TheScriptedProviderThrowsOnceAlwaysAndAnswers) {
    const jobject provider = newObject(env(), fixture::ScriptedProvider);
    callStaticVoid(env(), fixture::Script, "failAlways", {"createFile", "NOT_FOUND", "java://always"});
    callStaticVoid(env(), fixture::Script, "failNext", {"createFile", "own:IN_USE", "java://once"});
    EXPECT_THAT(callWithUri(provider, "createFile", u"java://a"), HasSubstr("OwnProviderException"));
    for (int i = 0; i < 2; ++i) {
        EXPECT_THAT(callWithUri(provider, "createFile", u"java://a"),
                    StartsWith("com.corvallen.storage.provider.ProviderException"));
    }
    callStaticVoid(env(), fixture::Script, "answerBoolean", {"fileExists", "true"});
    const jmethodID exists =
        env()->GetMethodID(env()->GetObjectClass(provider), "fileExists", (std::string(OneUri) + "Z").c_str());
    EXPECT_EQ(env()->CallBooleanMethod(provider, exists, uri(u"java://a")), JNI_TRUE);
    EXPECT_EQ(env()->ExceptionCheck(), JNI_FALSE);
}

TEST_F(FixtureTest, EveryKindOfFailureCanBeMade) {
    for (const char* kind :
         {"runtime", "checked", "error", "outOfMemory", "nullPointer", "nullMessage", "nulInMessage", "nonBmpMessage",
          "loneSurrogateMessage", "nullToString", "emptyToString", "throwingToString", "throwingGetMessage",
          "throwingBoth", "UNAVAILABLE", "own:NOT_FOUND", "nowhere:NOT_FOUND"}) {
        callStaticVoid(env(), fixture::Script, "failNext", {"dispose", kind, "text"});
        EXPECT_NE(call(newObject(env(), fixture::ScriptedProvider), "dispose", "()V"), "") << kind;
    }
    EXPECT_THROW(callStaticVoid(env(), fixture::Script, "failNext", {"dispose", "NO_SUCH_CODE", ""}),
                 std::runtime_error);
}

TEST_F(FixtureTest, ProvidersThatCannotBeMade) {
    EXPECT_THROW((void)newObject(env(), fixture::ThrowingConstructorProvider), std::runtime_error);
    EXPECT_THROW((void)newObject(env(), fixture::NoDefaultConstructorProvider), std::runtime_error);
    EXPECT_THROW((void)newObject(env(), fixture::AbstractProvider), std::runtime_error);
    EXPECT_THROW((void)newObject(env(), fixture::StaticInitFailsProvider), std::runtime_error);
    EXPECT_NE(newObject(env(), fixture::PrivateConstructorProvider), nullptr);
}

/// The loader that takes one method away.
class LackingProviderTest : public FixtureTest, public ::testing::WithParamInterface<ContractMethod> {};

TEST_P(LackingProviderTest, TheMethodIsMissingAndNothingElse) {
    const jobject whole = newObject(env(), fixture::ScriptedProvider);
    const jobject renamed = callStaticObject(env(), fixture::LackingProviderLoader, "withoutMethod", {GetParam().name});
    const jobject other =
        callStaticObject(env(), fixture::LackingProviderLoader, "withOtherSignature", {GetParam().name});
    EXPECT_TRUE(has(whole, GetParam().name, GetParam().signature));
    EXPECT_FALSE(has(renamed, GetParam().name, GetParam().signature));
    EXPECT_TRUE(has(renamed, std::string(GetParam().name) + "Renamed", GetParam().signature));
    EXPECT_FALSE(has(other, GetParam().name, GetParam().signature));
    const std::string neighbour = std::string("fileExists") == GetParam().name ? "folderExists" : "fileExists";
    EXPECT_TRUE(has(renamed, neighbour, std::string(OneUri) + "Z"));
    EXPECT_TRUE(has(other, neighbour, std::string(OneUri) + "Z"));
}

INSTANTIATE_TEST_SUITE_P(EachMethod, LackingProviderTest, ::testing::ValuesIn(ContractMethods),
                         [](const auto& method) { return std::string(method.param.name); });

TEST_F(FixtureTest, TheIsolatedBackendIsOnNoClassPath) {
    EXPECT_THROW((void)findClass(env(), "com/corvallen/storage/test/isolated/IsolatedBackend"), std::runtime_error);
}

TEST_F(FixtureTest, TheIsolatedBackendSharesTheContractOrBringsItsOwn) {
    const jclass system = findClass(env(), "com/corvallen/storage/provider/StorageProvider");
    const jobject shared = callStaticObject(env(), fixture::IsolatedLoader, "parentFirst",
                                            {fixture::IsolatedBackend, TEST_ISOLATED_BACKEND_JAR});
    const jobject own = callStaticObject(env(), fixture::IsolatedLoader, "childFirst",
                                         {fixture::IsolatedBackend, TEST_ISOLATED_BACKEND_JAR ":" TEST_CONTRACT_JAR});
    EXPECT_EQ(env()->IsInstanceOf(shared, system), JNI_TRUE);
    EXPECT_EQ(env()->IsInstanceOf(own, system), JNI_FALSE);
    EXPECT_EQ(callStaticInt(env(), fixture::Script, "instances"), 2);
    EXPECT_THAT(callWithUri(shared, "createFile", u"java://a/missing"), HasSubstr("ProviderException"));
    EXPECT_THAT(log(), ElementsAre("createFile java://a/missing"));
}

TEST_F(FixtureTest, AGateHoldsACallUntilItOpens) {
    const jobject provider = env()->NewGlobalRef(newObject(env(), fixture::ScriptedProvider));
    callStaticVoid(env(), fixture::Gate, "close", {"createFile"});
    EXPECT_THROW(callStaticVoid(env(), fixture::Gate, "awaitWaiting", {"createFile", "1", "1"}), std::runtime_error);
    std::thread caller([&] {
        const AttachedScope attached(vm());
        const jclass type = attached.env()->GetObjectClass(provider);
        attached.env()->CallVoidMethod(
            provider, attached.env()->GetMethodID(type, "createFile", (std::string(OneUri) + "V").c_str()), nullptr);
    });
    callStaticVoid(env(), fixture::Gate, "awaitWaiting", {"createFile", "1", "10000"});
    callStaticVoid(env(), fixture::Gate, "open", {"createFile"});
    caller.join();
    EXPECT_THAT(log(), ElementsAre("createFile null"));
    env()->DeleteGlobalRef(provider);
}

TEST_F(FixtureTest, TheLocationWithoutAConstructorHasNone) {
    const jobject own = callStaticObject(env(), fixture::IsolatedLoader, "childFirst",
                                         {fixture::IsolatedBackend, TEST_URI_WITHOUT_CONSTRUCTOR_JAR
                                          ":" TEST_ISOLATED_BACKEND_JAR ":" TEST_CONTRACT_JAR});
    EXPECT_NE(own, nullptr);
    const auto uriType = static_cast<jclass>(callForObject(
        callForObject(env()->GetObjectClass(own), "getClassLoader", "()Ljava/lang/ClassLoader;"), "loadClass",
        "(Ljava/lang/String;)Ljava/lang/Class;", javaString(env(), u"com.corvallen.storage.provider.StorageURI")));
    ASSERT_NE(uriType, nullptr);
    EXPECT_EQ(env()->GetMethodID(uriType, "<init>", "(Ljava/lang/String;)V"), nullptr);
    EXPECT_THAT(takePendingException(env()), HasSubstr("NoSuchMethodError"));
}

TEST_F(FixtureTest, TheNullLoaderAnswersNull) {
    const jobject loader = callStaticObject(env(), fixture::NullLoader, "make");
    EXPECT_EQ(callForObject(loader, "loadClass", "(Ljava/lang/String;)Ljava/lang/Class;",
                            javaString(env(), u"java.lang.String")),
              nullptr);
}

}  // namespace

}  // namespace storage::javaprovider::test
