#include "TranslationTest.h"

#include <gtest/gtest.h>

#include <algorithm>

#include "JNIUtilsException.h"
#include "support/JavaHelpers.h"

namespace storage::javaprovider::test {

namespace {

std::vector<std::string> recordedFirst;

}  // namespace

void TranslationTest::SetUp() {
    BridgeTest::SetUp();
    if (recordedFirst.empty()) {
        raise("NOT_FOUND", u"java://first");
        EXPECT_NE(checkJavaException(guard()), nullptr);
        recordedFirst = recorder.calls();
        EXPECT_EQ(recorder.liveLocals(), LeftToTheFrame + 2) << "the two references to its class stay as well";
        recorder.clear();
    }
}

std::vector<std::string> TranslationTest::firstLookups() {
    // They stand between the test of the class and the first use of one of the two methods.
    const auto end =
        std::find(recordedFirst.begin(), recordedFirst.end(), "CallObjectMethod getLocationString()Ljava/lang/String;");
    auto begin = std::find_if(recordedFirst.begin(), end,
                              [](const std::string& call) { return call.starts_with("IsInstanceOf"); });
    return {begin, end};
}

std::exception_ptr TranslationTest::translate() {
    std::exception_ptr translated = checkJavaException(guard());
    EXPECT_NE(translated, nullptr);
    return translated;
}

std::exception_ptr TranslationTest::translate(jthrowable exception) {
    raise(exception);
    return translate();
}

std::exception_ptr TranslationTest::translate(const std::string& kind, const std::u16string& text) {
    return translate(failure(kind, text));
}

jthrowable TranslationTest::foreign(const std::string& method, const std::string& text) {
    return static_cast<jthrowable>(callStaticObject(env(), "com/corvallen/storage/test/ForeignErrors", method, {text}));
}

void TranslationTest::expectExaminedWhilePending() const {
    const auto calls = recorder.records();
    ASSERT_GT(calls.size(), 2U);
    for (std::size_t i = 0; i + 1 < calls.size(); ++i) {
        EXPECT_TRUE(calls[i].pendingBefore) << calls[i].toString();
    }
    EXPECT_EQ(calls[calls.size() - 2].name(), "ExceptionClear");
    EXPECT_FALSE(calls.back().pendingBefore);
}

std::vector<std::string> TranslationTest::callsThatFindProviderException() {
    const std::string askLoader = "CallObjectMethod loadClass(Ljava/lang/String;)Ljava/lang/Class;";
    const std::string askForParent = "CallObjectMethod getParent()Ljava/lang/ClassLoader;";
    return {"GetObjectClass",
            "FindClass java/lang/Class",
            "GetMethodID java/lang/Class getClassLoader()Ljava/lang/ClassLoader;",
            "CallObjectMethod getClassLoader()Ljava/lang/ClassLoader;",
            "FindClass java/lang/ClassLoader",
            "GetMethodID java/lang/ClassLoader loadClass(Ljava/lang/String;)Ljava/lang/Class;",
            "FindClass java/lang/ClassLoader",
            "GetMethodID java/lang/ClassLoader getParent()Ljava/lang/ClassLoader;",
            "NewStringUTF com/corvallen/storage/provider/ProviderException",
            askLoader,
            askForParent,
            askLoader,
            askForParent,
            "FindClass com/corvallen/storage/provider/ProviderException",
            "DeleteLocalRef",
            "DeleteLocalRef",
            "IsInstanceOf com/corvallen/storage/provider/ProviderException",
            "DeleteLocalRef"};
}

std::vector<std::string> concat(const std::vector<std::vector<std::string>>& lists) {
    std::vector<std::string> all;
    for (const auto& list : lists) {
        all.insert(all.end(), list.begin(), list.end());
    }
    return all;
}

}  // namespace storage::javaprovider::test
