#include <gmock/gmock.h>

#include <functional>
#include <new>

#include "AllocationFault.h"
#include "BridgeTest.h"
#include "JNIUtilsText.h"
#include "foundation/core/except/AnonymousInternalException.h"
#include "support/JavaHelpers.h"

namespace storage::javaprovider::test {

namespace {

using ::testing::ElementsAre;
using ::testing::IsEmpty;
using OutOfMemory = foundation::core::except::detail::AnonymousInternalException<std::bad_alloc>;

/// The text with the U+0000 that stand in it.
template <std::size_t Size>
std::u16string units(const char16_t (&literal)[Size]) {
    return {literal, Size - 1};
}

/// One of the two ways to convert a Java string.
struct FromJava {
    const char* name;
    std::u16string (*convert)(const JNIEnvPtr& env, jstring text);
};

void PrintTo(const FromJava& way, std::ostream* out) { *out << way.name; }

class FromJavaStringTest : public BridgeTest, public ::testing::WithParamInterface<FromJava> {
protected:
    std::u16string convert(jstring text) { return GetParam().convert(guard(), text); }
    std::u16string convert(const std::u16string& text) { return convert(javaString(env(), text)); }
};

TEST_P(FromJavaStringTest, NullIsEmptyTextWithoutAJniCall) {
    EXPECT_EQ(convert(jstring{nullptr}), u"");
    EXPECT_THAT(recorder.calls(), IsEmpty());
}

TEST_P(FromJavaStringTest, EmptyStringIsEmptyText) {
    EXPECT_EQ(convert(std::u16string()), u"");
    EXPECT_THAT(recorder.calls(), ElementsAre("GetStringChars", "ReleaseStringChars"));
}

TEST_P(FromJavaStringTest, CharactersAreFetchedAndReleasedWithoutAskingForTheLength) {
    EXPECT_EQ(convert(u"some text"), u"some text");
    ASSERT_THAT(recorder.calls(), ElementsAre("GetStringChars", "ReleaseStringChars"));
    const auto calls = recorder.records();
    EXPECT_EQ(calls[1].released, calls[0].result);
    EXPECT_EQ(calls[1].target, calls[0].target);
}

TEST_P(FromJavaStringTest, TextEndsBeforeTheFirstZero) { EXPECT_EQ(convert(units(u"ab\0cd")), u"ab"); }

TEST_P(FromJavaStringTest, ZeroAtTheFrontLeavesNothing) { EXPECT_EQ(convert(units(u"\0cd")), u""); }

TEST_P(FromJavaStringTest, ZeroAtTheEndIsNoPartOfTheText) { EXPECT_EQ(convert(units(u"ab\0")), u"ab"); }

TEST_P(FromJavaStringTest, SurrogatePairsStayAsTheyAre) {
    EXPECT_EQ(convert(u"a\U0001F600b\U0010FFFF"), u"a\U0001F600b\U0010FFFF");
}

TEST_P(FromJavaStringTest, LoneSurrogatesStayAsTheyAre) {
    const std::u16string text{u'a', char16_t{0xD83D}, u'b', char16_t{0xDE00}, char16_t{0xD83D}};
    EXPECT_EQ(convert(text), text);
}

TEST_P(FromJavaStringTest, EveryOtherUnitOfThePlaneStaysAsItIs) {
    std::u16string text;
    for (char32_t unit = 1; unit <= 0xFFFF; ++unit) {
        text.push_back(static_cast<char16_t>(unit));
    }
    EXPECT_TRUE(convert(text) == text);
}

TEST_P(FromJavaStringTest, MissingMemoryIsBadAllocWithNothingLeftPending) {
    const jstring text = javaString(env(), u"text");
    recorder.fail({.call = "GetStringChars"});
    EXPECT_THROW(convert(text), OutOfMemory);
    EXPECT_FALSE(isAnyPending());
    EXPECT_THAT(recorder.calls(), ElementsAre("GetStringChars", "ExceptionCheck", "ExceptionClear"));
}

TEST_P(FromJavaStringTest, AnyExceptionThatDeniesTheCharactersIsBadAlloc) {
    const jstring text = javaString(env(), u"text");
    recorder.fail({.call = "GetStringChars", .failure = JniFailure::exception("java/lang/IllegalStateException")});
    EXPECT_THROW(convert(text), OutOfMemory);
    EXPECT_FALSE(isAnyPending());
}

TEST_P(FromJavaStringTest, CharactersDeniedWithoutAReasonAreEmptyText) {
    const jstring text = javaString(env(), u"text");
    recorder.fail({.call = "GetStringChars", .failure = JniFailure::silent()});
    EXPECT_EQ(convert(text), u"");
    EXPECT_THAT(recorder.calls(), ElementsAre("GetStringChars", "ExceptionCheck"));
}

TEST_P(FromJavaStringTest, CharactersAreReleasedWhenTheCopyFails) {
    if (!AllocationFault::Possible) {
        GTEST_SKIP() << "no allocation can be made to fail here";
    }
    const std::u16string text(100'000, u'x');
    const jstring java = javaString(env(), text);
    const AllocationFault fault(text.size() * sizeof(char16_t));
    EXPECT_THROW(convert(java), std::bad_alloc);
    EXPECT_TRUE(fault.happened());
    EXPECT_THAT(recorder.calls(), ElementsAre("GetStringChars", "ReleaseStringChars"));
}

INSTANTIATE_TEST_SUITE_P(
    Bridge, FromJavaStringTest,
    ::testing::Values(FromJava{"ThroughTheGuard",
                               [](const JNIEnvPtr& env, jstring text) { return jstringToUString(env, text); }},
                      FromJava{"ThroughTheRawEnvironment",
                               [](const JNIEnvPtr& env, jstring text) { return jstringToUString(env.get(), text); }}),
    NameOfCase);

class ToJavaStringTest : public BridgeTest {};

TEST_F(ToJavaStringTest, EmptyTextIsNullWithoutAJniCall) {
    EXPECT_EQ(ustringToJString(guard(), u""), nullptr);
    EXPECT_THAT(recorder.calls(), IsEmpty());
}

TEST_F(ToJavaStringTest, TextIsANewStringThatTheCallerOwns) {
    const jstring made = ustringToJString(guard(), u"some text");
    EXPECT_EQ(utf16(env(), made), u"some text");
    EXPECT_THAT(recorder.calls(), ElementsAre("NewString some text"));
    EXPECT_THAT(recorder.leaks(), ElementsAre(::testing::HasSubstr("NewString some text")));
}

TEST_F(ToJavaStringTest, ZeroesArePartOfTheString) {
    EXPECT_EQ(utf16(env(), ustringToJString(guard(), units(u"ab\0cd"))), units(u"ab\0cd"));
    EXPECT_EQ(utf16(env(), ustringToJString(guard(), units(u"\0"))), units(u"\0"));
}

TEST_F(ToJavaStringTest, SurrogatePairsStayAsTheyAre) {
    const std::u16string text = u"a\U0001F600b\U0010FFFF";
    EXPECT_EQ(utf16(env(), ustringToJString(guard(), text)), text);
}

TEST_F(ToJavaStringTest, LoneSurrogatesStayAsTheyAre) {
    const std::u16string text{char16_t{0xDE00}, u'a', char16_t{0xD83D}};
    EXPECT_EQ(utf16(env(), ustringToJString(guard(), text)), text);
}

TEST_F(ToJavaStringTest, WhatGoesToJavaComesBack) {
    const std::u16string text = u"k\u00E4se \u65E5\u672C \U0001F600";
    EXPECT_EQ(jstringToUString(guard(), ustringToJString(guard(), text)), text);
}

TEST_F(ToJavaStringTest, MissingMemoryIsBadAllocWithNothingLeftPending) {
    recorder.fail({.call = "NewString"});
    EXPECT_THROW(static_cast<void>(ustringToJString(guard(), u"text")), OutOfMemory);
    EXPECT_FALSE(isAnyPending());
    EXPECT_THAT(recorder.calls(), ElementsAre("NewString text", "ExceptionCheck", "ExceptionClear"));
}

TEST_F(ToJavaStringTest, StringDeniedWithoutAReasonIsNull) {
    recorder.fail({.call = "NewString", .failure = JniFailure::silent()});
    EXPECT_EQ(ustringToJString(guard(), u"text"), nullptr);
    EXPECT_THAT(recorder.calls(), ElementsAre("NewString text", "ExceptionCheck"));
}

TEST_F(ToJavaStringTest, SuccessAsksForNoException) {
    raise("runtime", u"pending all along");
    EXPECT_NE(ustringToJString(guard(), u"text"), nullptr);
    EXPECT_THAT(recorder.calls(), ElementsAre("NewString text"));
    EXPECT_EQ(takePending(), "java.lang.IllegalStateException: pending all along");
}

}  // namespace

}  // namespace storage::javaprovider::test
