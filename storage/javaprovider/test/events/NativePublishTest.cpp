// The native method that Java publishes through, called as Java calls it.
#include <gmock/gmock.h>

#include <functional>
#include <optional>
#include <stdexcept>
#include <string>
#include <utility>
#include <vector>

#include "JavaProviderEvents.h"
#include "events/EventTest.h"
#include "provider/ThrownErrors.h"
#include "support/JavaHelpers.h"

namespace storage::javaprovider::test {
namespace {

using ::testing::ElementsAre;
using ::testing::ElementsAreArray;
using ::testing::Pair;

using Text = std::optional<std::u16string>;

/// What one call carries; no text is Java's null.
struct Call {
    Text kind = u"SelfModified";
    Text first = u"java://test/first";
    Text second = u"java://test/second";
    Text type = u"File";
    Text origin = u"origin";
};

class NativePublishTest : public RecordedJvmTest {
protected:
    void publish(const Call& call, jlong handle) {
        const jstring kind = toJava(call.kind);
        const jstring first = toJava(call.first);
        const jstring second = toJava(call.second);
        const jstring type = toJava(call.type);
        const jstring origin = toJava(call.origin);
        nativePublishImpl(env(), nullptr, handle, kind, first, second, type, origin);
    }
    void publish(const Call& call) { publish(call, handleOf(callback)); }

    [[nodiscard]] static jlong handleOf(const ChangeCallback& target) { return reinterpret_cast<jlong>(&target); }
    [[nodiscard]] jstring toJava(const Text& text) const { return text ? javaString(env(), *text) : nullptr; }

    EventLog log;
    ChangeCallback callback = log.callback();
};

std::vector<std::string> conversions(std::size_t count) {
    std::vector<std::string> lines;
    for (std::size_t i = 0; i < count; ++i) {
        lines.insert(lines.end(), {"GetStringChars", "ReleaseStringChars"});
    }
    return lines;
}

// ---- what arrives ----

TEST_F(NativePublishTest, TextsBecomeTheEvent) {
    publish({.kind = u"ChildRemoved", .type = u"Folder", .origin = u"me"});
    const Event event = log.only();
    EXPECT_EQ(event.kind, Kind::ChildRemoved);
    EXPECT_EQ(event.watched, StorageIRI(u"java://test/first"));
    EXPECT_EQ(event.changed, StorageIRI(u"java://test/second"));
    EXPECT_EQ(event.type, EntryType::Folder);
    EXPECT_THAT(event.entries(), ElementsAre(Pair("originId", "me")));
    EXPECT_EQ(event.details.data(), "");
}

TEST_F(NativePublishTest, EachKindHasItsNumber) {
    const std::vector<std::pair<std::u16string, int>> kinds = {
        {u"SelfModified", 0}, {u"SelfRemoved", 1}, {u"ChildAdded", 2}, {u"ChildModified", 3}, {u"ChildRemoved", 4}};
    for (const auto& [word, number] : kinds) {
        publish({.kind = word});
        EXPECT_EQ(static_cast<int>(log.events().back().kind), number);
    }
    EXPECT_EQ(log.size(), kinds.size());
}

TEST_F(NativePublishTest, EachEntryTypeHasItsNumber) {
    publish({.type = u"File"});
    EXPECT_EQ(static_cast<int>(log.events().back().type), 0);
    publish({.type = u"Folder"});
    EXPECT_EQ(static_cast<int>(log.events().back().type), 1);
}

TEST_F(NativePublishTest, OriginBecomesUtf8) {
    publish({.origin = u"\u00e4\u20ac\U0001F600"});
    EXPECT_THAT(log.only().entries(), ElementsAre(Pair("originId", "\u00e4\u20ac\U0001F600")));
}

TEST_F(NativePublishTest, OriginWithADotOrALoneSurrogateIsOneEntryAllTheSame) {
    publish({.origin = u"a.b.c"});
    EXPECT_THAT(log.events().back().entries(), ElementsAre(Pair("originId", "a.b.c")));
    publish({.origin = std::u16string{u'x', char16_t{0xD83D}, u'y'}});
    EXPECT_THAT(log.events().back().entries(), ElementsAre(Pair("originId", "x\uFFFDy")));
}

TEST_F(NativePublishTest, NullOriginIsAnEmptyOne) {
    publish({.origin = std::nullopt});
    EXPECT_THAT(log.only().entries(), ElementsAre(Pair("originId", "")));
}

TEST_F(NativePublishTest, NullLocationsAreEmptyOnes) {
    publish({.first = std::nullopt, .second = std::nullopt});
    EXPECT_TRUE(log.only().watched.empty());
    EXPECT_TRUE(log.only().changed.empty());
}

TEST_F(NativePublishTest, LocationsAreKeptAsTheyAreWritten) {
    publish({.first = u"no location at all %zz", .second = u"java://m/\u00e4?q#f"});
    EXPECT_EQ(log.only().watched.text(), u"no location at all %zz");
    EXPECT_EQ(log.only().changed.text(), u"java://m/\u00e4?q#f");
}

TEST_F(NativePublishTest, TextEndsAtItsFirstNul) {
    publish({.kind = std::u16string(u"SelfModified\0x", 14), .first = std::u16string(u"java://a\0b", 10)});
    EXPECT_EQ(log.only().watched.text(), u"java://a");
}

// ---- calls ----

TEST_F(NativePublishTest, AsksJavaForTheFiveTextsInOrderAndForNothingElse) {
    const std::vector<jstring> texts = {javaString(env(), u"SelfModified"), javaString(env(), u"java://a"),
                                        javaString(env(), u"java://b"), javaString(env(), u"File"),
                                        javaString(env(), u"o")};
    nativePublishImpl(env(), nullptr, handleOf(callback), texts[0], texts[1], texts[2], texts[3], texts[4]);
    EXPECT_THAT(recorder.calls(), ElementsAreArray(conversions(5)));
    const auto asked = recorder.records({.only = "GetStringChars"});
    ASSERT_EQ(asked.size(), texts.size());
    for (std::size_t i = 0; i < texts.size(); ++i) {
        EXPECT_EQ(asked[i].target, texts[i]) << "text " << i;
    }
    EXPECT_EQ(log.size(), 1U);
}

TEST_F(NativePublishTest, HandleOfZeroConvertsTheTextsAndDropsTheEvent) {
    publish({}, 0);
    EXPECT_THAT(recorder.calls(), ElementsAreArray(conversions(5)));
    EXPECT_EQ(log.size(), 0U);
}

TEST_F(NativePublishTest, HandleOfZeroMindsNoBadWord) {
    EXPECT_NO_THROW(publish({.kind = u"bad", .type = u"bad"}, 0));
    EXPECT_NO_THROW(publish({.kind = std::nullopt, .type = std::nullopt}, 0));
}

TEST_F(NativePublishTest, NullTextsAreNotAskedFor) {
    publish({.first = std::nullopt, .second = std::nullopt, .origin = std::nullopt});
    EXPECT_THAT(recorder.calls(), ElementsAreArray(conversions(2)));
}

// ---- bad words ----

TEST_F(NativePublishTest, UnknownKindIsAPlainError) {
    for (const Text& word : {Text(u"childAdded"), Text(u"CHILDADDED"), Text(u"ChildAdded "), Text(u"ChildAdde"),
                             Text(u""), Text(std::nullopt), Text(u"2")}) {
        EXPECT_EQ(textThrownBy<std::runtime_error>([&] { publish({.kind = word}); }), "Java provider: Unknown kind.");
    }
    EXPECT_EQ(log.size(), 0U);
    EXPECT_EQ(env()->ExceptionCheck(), JNI_FALSE) << "no exception goes back to Java";
}

TEST_F(NativePublishTest, UnknownEntryTypeIsAPlainError) {
    for (const Text& word : {Text(u"file"), Text(u"FOLDER"), Text(u"Files"), Text(u"Fil"), Text(u""),
                             Text(std::nullopt), Text(u"Folder/")}) {
        EXPECT_EQ(textThrownBy<std::runtime_error>([&] { publish({.type = word}); }),
                  "Java provider: Unknown entry type.");
    }
    EXPECT_EQ(log.size(), 0U);
    EXPECT_EQ(env()->ExceptionCheck(), JNI_FALSE);
}

TEST_F(NativePublishTest, UnknownEntryTypeIsReportedBeforeAnUnknownKind) {
    EXPECT_EQ(textThrownBy<std::runtime_error>([&] { publish({.kind = u"bad", .type = u"bad"}); }),
              "Java provider: Unknown entry type.");
}

TEST_F(NativePublishTest, BadWordsReleaseTheCharacters) {
    EXPECT_THROW(publish({.kind = u"bad"}), std::runtime_error);
    EXPECT_EQ(recorder.liveChars(), 0);
    EXPECT_EQ(recorder.liveLocals(), 0);
}

// ---- what the callback does ----

TEST_F(NativePublishTest, EmptyCallbackIsABadFunctionCall) {
    const ChangeCallback empty;
    EXPECT_TRUE(throwsExactly<std::bad_function_call>([&] { publish({}, handleOf(empty)); }));
}

TEST_F(NativePublishTest, BadWordIsReportedBeforeAnEmptyCallback) {
    const ChangeCallback empty;
    EXPECT_EQ(textThrownBy<std::runtime_error>([&] { publish({.kind = u"bad"}, handleOf(empty)); }),
              "Java provider: Unknown kind.");
}

TEST_F(NativePublishTest, ExceptionOfTheCallbackLeavesAsItIs) {
    const ChangeCallback throwing = [](auto&&...) { throw std::out_of_range("mine"); };
    EXPECT_EQ(textThrownBy<std::out_of_range>([&] { publish({}, handleOf(throwing)); }), "mine");
    EXPECT_EQ(env()->ExceptionCheck(), JNI_FALSE);
    const ChangeCallback throwingInt = [](auto&&...) { throw 42; };
    EXPECT_THROW(publish({}, handleOf(throwingInt)), int);
}

TEST_F(NativePublishTest, CharactersThatCannotBeHadAreABadAlloc) {
    for (std::size_t occurrence = 1; occurrence <= 5; ++occurrence) {
        recorder.clear();
        recorder.fail({.call = "GetStringChars", .occurrence = occurrence, .failure = JniFailure::outOfMemory()});
        EXPECT_TRUE(throwsExactly<InternalBadAlloc>([&] { publish({}); }));
        EXPECT_EQ(env()->ExceptionCheck(), JNI_FALSE);
    }
    EXPECT_EQ(log.size(), 0U);
}

}  // namespace
}  // namespace storage::javaprovider::test
