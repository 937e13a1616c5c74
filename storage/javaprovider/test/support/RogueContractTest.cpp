#include <gmock/gmock.h>

#include <stdexcept>
#include <string>

#include "support/FixtureNames.h"
#include "support/JavaHelpers.h"
#include "support/JvmTest.h"

namespace storage::javaprovider::test {

namespace {

using ::testing::HasSubstr;

constexpr const char* ExceptionClass = "com/corvallen/storage/provider/ProviderException";

/// The contract that breaks its rules, which stands before the real one on this program's class path.
class RogueContractTest : public JvmTest {};

TEST_F(RogueContractTest, TheExceptionCarriesAnyNumber) {
    const jclass type = findClass(env(), ExceptionClass);
    const jmethodID number = env()->GetMethodID(type, "getErrorCodeNumber", "()I");
    for (const int wanted : {12, -1, 7}) {
        const jobject exception =
            callStaticObject(env(), ExceptionClass, "withNumber", {std::to_string(wanted), "java://a"});
        EXPECT_EQ(env()->CallIntMethod(exception, number), wanted);
    }
}

TEST_F(RogueContractTest, TheGettersThrow) {
    const jclass type = findClass(env(), ExceptionClass);
    const jobject exception = callStaticObject(env(), ExceptionClass, "withThrowingGetters");
    (void)env()->CallIntMethod(exception, env()->GetMethodID(type, "getErrorCodeNumber", "()I"));
    EXPECT_THAT(takePendingException(env()), HasSubstr("thrown by a getter"));
}

TEST_F(RogueContractTest, TheConstructorOfALocationThrows) {
    const jclass type = findClass(env(), "com/corvallen/storage/provider/StorageURI");
    const jmethodID constructor = env()->GetMethodID(type, "<init>", "(Ljava/lang/String;)V");
    EXPECT_EQ(env()->NewObject(type, constructor, javaString(env(), u"java://refused")), nullptr);
    EXPECT_THAT(takePendingException(env()), HasSubstr("refused by the constructor"));
    EXPECT_NE(env()->NewObject(type, constructor, nullptr), nullptr);
}

TEST_F(RogueContractTest, TheScriptedProviderWorksWithIt) {
    const jobject provider = newObject(env(), fixture::ScriptedProvider);
    callStaticVoid(env(), fixture::Script, "failNext", {"dispose", "NOT_FOUND", "java://a"});
    env()->CallVoidMethod(provider, env()->GetMethodID(env()->GetObjectClass(provider), "dispose", "()V"));
    EXPECT_THAT(takePendingException(env()), HasSubstr("ProviderException"));
}

}  // namespace

}  // namespace storage::javaprovider::test
