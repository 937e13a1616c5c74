// Extended attributes: named texts.
#include <gmock/gmock.h>

#include <boost/any.hpp>

#include <algorithm>
#include <map>
#include <string>
#include <vector>

#include "data/DataTest.h"
#include "provider/ThrownErrors.h"
#include "support/JavaHelpers.h"

namespace storage::javaprovider::test {
namespace {

using ::testing::Contains;
using ::testing::ElementsAre;
using ::testing::ElementsAreArray;
using ::testing::IsEmpty;
using ::testing::Not;
using ::testing::Pair;
using ::testing::StartsWith;

constexpr const char* Signature =
    "class foundation::storage::provider::ExtendedAttributes __cdecl "
    "storage::javaprovider::JavaProvider::doGetExtendedAttributes(const class "
    "foundation::storage::provider::StorageIRI &) const";
constexpr const char* AttributeClass = "com/corvallen/storage/provider/ExtendedAttribute";

class ExtendedAttributesTest : public DataTest {
protected:
    void run() const { static_cast<void>(provider->getExtendedAttributes(location)); }

    /// What the framework gets; every value must be a text.
    [[nodiscard]] std::map<std::string, std::string> fetched() const {
        std::map<std::string, std::string> texts;
        const auto attributes = provider->getExtendedAttributes(location);
        for (const auto& [name, value] : attributes.all()) {
            texts[name] = boost::any_cast<std::string>(value);
        }
        return texts;
    }

    [[nodiscard]] ReferenceNumber resultOf(const std::string& call) const {
        return recorder.record(call).resultReference;
    }
};

/// The calls up to the array's length, whatever it holds.
std::vector<std::string> beginning() {
    return joined(
        {{"PushLocalFrame"},
         makingOfUri("java://test/a"),
         {"CallObjectMethod getExtendedAttributes(Lcom/corvallen/storage/provider/StorageURI;)"
          "Lcom/corvallen/storage/provider/ExtendedAttributes;",
          "ExceptionCheck", "GetObjectClass",
          "GetMethodID com/corvallen/storage/provider/ExtendedAttributes "
          "getAllAttributes()[Lcom/corvallen/storage/provider/ExtendedAttribute;",
          "FindClass com/corvallen/storage/provider/ExtendedAttribute",
          "GetMethodID com/corvallen/storage/provider/ExtendedAttribute getName()Ljava/lang/String;",
          "GetMethodID com/corvallen/storage/provider/ExtendedAttribute getValue()Ljava/lang/String;",
          "CallObjectMethod getAllAttributes()[Lcom/corvallen/storage/provider/ExtendedAttribute;", "GetArrayLength"}});
}

std::vector<std::string> element(int index) {
    return {"GetObjectArrayElement " + std::to_string(index),
            "CallObjectMethod getName()Ljava/lang/String;",
            "CallObjectMethod getValue()Ljava/lang/String;",
            "GetStringChars",
            "ReleaseStringChars",
            "GetStringChars",
            "ReleaseStringChars",
            "DeleteLocalRef",
            "DeleteLocalRef",
            "ExceptionCheck",
            "DeleteLocalRef"};
}

// The array, the class of the Java object, the object, the location.
const std::vector<std::string> EndOfAttributes = {"DeleteLocalRef", "DeleteLocalRef", "DeleteLocalRef",
                                                  "DeleteLocalRef", "PopLocalFrame"};

// ---- what arrives ----

TEST_F(ExtendedAttributesTest, NamesAndValuesArriveAsTexts) {
    answer("extendedAttributes", {"colour=red\nsize=7"});
    EXPECT_THAT(fetched(), ElementsAre(Pair("colour", "red"), Pair("size", "7")));
    EXPECT_THAT(javaCalls(), ElementsAre("getExtendedAttributes java://test/a"));
}

TEST_F(ExtendedAttributesTest, NoAttributesAreAnEmptyMap) { EXPECT_THAT(fetched(), IsEmpty()); }

TEST_F(ExtendedAttributesTest, FirstAttributeOfANameWins) {
    answer("extendedAttributes", {"a=1\nb=x\na=2\na=3"});
    EXPECT_THAT(fetched(), ElementsAre(Pair("a", "1"), Pair("b", "x")));
}

TEST_F(ExtendedAttributesTest, NullValueIsAnEmptyText) {
    answer("extendedAttributes", {"a=(null)"});
    EXPECT_THAT(fetched(), ElementsAre(Pair("a", "")));
}

TEST_F(ExtendedAttributesTest, NullNameIsAnEmptyName) {
    answer("extendedAttributes", {"(null)=x\n=y"});
    EXPECT_THAT(fetched(), ElementsAre(Pair("", "x"))) << "null and the empty name are one";
}

TEST_F(ExtendedAttributesTest, TextBeyondAsciiArrivesAsUtf8) {
    answer("extendedAttributes", {"Größe=\u20ac 5 \U0001F600"});
    EXPECT_THAT(fetched(), ElementsAre(Pair("Größe", "\u20ac 5 \U0001F600")));
}

TEST_F(ExtendedAttributesTest, TextEndsAtItsFirstNul) {
    answer("extendedAttributes", {std::string("na\0me=va\0lue", 12)});
    EXPECT_THAT(fetched(), ElementsAre(Pair("na", "va")));
}

TEST_F(ExtendedAttributesTest, NamesThatDifferInCaseAreTwo) {
    answer("extendedAttributes", {"a=1\nA=2"});
    EXPECT_THAT(fetched(), ElementsAre(Pair("A", "2"), Pair("a", "1")));
}

TEST_F(ExtendedAttributesTest, ManyAttributesHoldFewReferencesAtATime) {
    std::string lines;
    for (int i = 0; i < 1000; ++i) {
        lines += (i == 0 ? "" : "\n") + std::to_string(i) + "=v" + std::to_string(i);
    }
    answer("extendedAttributes", {lines});
    recorder.clear();
    recorder.keepCalls(false);
    const auto all = fetched();
    EXPECT_EQ(all.size(), 1000U);
    EXPECT_EQ(all.at("999"), "v999");
    EXPECT_LE(recorder.peakLocals(), 10);
}

// ---- calls ----

TEST_F(ExtendedAttributesTest, EmptyArrayHasClassAndMethodsLookedUpAllTheSame) {
    run();
    EXPECT_THAT(recorder.calls(), ElementsAreArray(joined({beginning(), EndOfAttributes})));
}

TEST_F(ExtendedAttributesTest, MakesExactlyTheseCallsEachTime) {
    answer("extendedAttributes", {"a=1\nb=2"});
    for (int time = 0; time < 2; ++time) {
        recorder.clear();
        run();
        EXPECT_THAT(recorder.calls(), ElementsAreArray(joined({beginning(), element(0), element(1), EndOfAttributes})));
    }
}

TEST_F(ExtendedAttributesTest, NullTextsAreNotAskedForCharacters) {
    answer("extendedAttributes", {"(null)=(null)"});
    run();
    EXPECT_THAT(
        recorder.calls(),
        ElementsAreArray(joined({beginning(),
                                 {"GetObjectArrayElement 0", "CallObjectMethod getName()Ljava/lang/String;",
                                  "CallObjectMethod getValue()Ljava/lang/String;", "ExceptionCheck", "DeleteLocalRef"},
                                 EndOfAttributes})));
}

TEST_F(ExtendedAttributesTest, NameIsReadBeforeTheValueAndReleasedAfterIt) {
    answer("extendedAttributes", {"a=1"});
    run();
    const auto name = resultOf("CallObjectMethod getName");
    const auto value = resultOf("CallObjectMethod getValue");
    const auto chars = recorder.records({.only = "GetStringChars"});
    ASSERT_EQ(chars.size(), 2U);
    EXPECT_EQ(chars[0].targetReference, name);
    EXPECT_EQ(chars[1].targetReference, value);
    EXPECT_THAT(released(), ElementsAre(resultOf("NewString"), value, name, resultOf("GetObjectArrayElement"),
                                        resultOf("CallObjectMethod getAllAttributes"), resultOf("GetObjectClass"),
                                        resultOf("CallObjectMethod getExtendedAttributes"), resultOf("NewObject")));
}

TEST_F(ExtendedAttributesTest, ClassFoundByNameIsTheOneReferenceLeftToTheFrame) {
    answer("extendedAttributes", {"a=1"});
    run();
    const auto found = resultOf("FindClass");
    ASSERT_NE(found, 0U);
    EXPECT_THAT(released(), Not(Contains(found)));
    EXPECT_EQ(recorder.count("FindClass"), 1U);
}

// ---- objects of any class ----

TEST_F(ExtendedAttributesTest, AnyClassThatGivesTheArrayServes) {
    useOddValue("Extended");
    EXPECT_THAT(fetched(), ElementsAre(Pair("odd", "yes")));
    EXPECT_THAT(javaCalls(), ElementsAre("getAllAttributes"));
    EXPECT_EQ(recorder.count("GetMethodID com/corvallen/storage/test/data/OddValues$Extended getAllAttributes"), 1U);
}

TEST_F(ExtendedAttributesTest, ObjectWithoutTheArrayIsReportedAndNothingIsLeft) {
    useOddValue("Nothing");
    EXPECT_THAT(internalErrorOf([&] { run(); }), StartsWith("Method getAllAttributes with signature "
                                                            "()[Lcom/corvallen/storage/provider/ExtendedAttribute; not "
                                                            "found.\njava.lang.NoSuchMethodError"));
    EXPECT_EQ(recorder.count("FindClass com/corvallen/storage/provider/ExtendedAttribute"), 0U);
    EXPECT_THAT(released(),
                ElementsAre(resultOf("NewString"), recorder.records({.only = "GetObjectClass"}).at(0).resultReference,
                            resultOf("CallObjectMethod getExtendedAttributes"),
                            resultOf("NewObject com/corvallen/storage/provider/StorageURI")));
}

TEST_F(ExtendedAttributesTest, AttributeWithoutAGetterIsReportedAndNothingIsLeft) {
    for (const char* getter : {"getName", "getValue"}) {
        recorder.clear();
        recorder.fail({.call = std::string("GetMethodID ") + AttributeClass + " " + getter,
                       .failure = JniFailure::exception("java/lang/NoSuchMethodError")});
        EXPECT_EQ(internalErrorOf([&] { run(); }),
                  std::string("Method ") + getter +
                      " with signature ()Ljava/lang/String; not found.\njava.lang.NoSuchMethodError: made to fail by "
                      "a test");
        EXPECT_EQ(recorder.count("CallObjectMethod getAllAttributes"), 0U);
        EXPECT_EQ(recorder.liveLocals(), 0);
    }
}

// ---- getters that throw, which those of the contract never do ----

class ThrowingAttributeTest : public ExtendedAttributesTest, public ::testing::WithParamInterface<const char*> {
protected:
    /// Makes the getter of the second of three attributes throw.
    void failSecond() {
        answer("extendedAttributes", {"a=1\nb=2\nc=3"});
        recorder.clear();
        recorder.fail({.call = std::string("CallObjectMethod ") + GetParam(),
                       .occurrence = 2,
                       .failure = JniFailure::exception("java/lang/IllegalStateException")});
    }
};

TEST_P(ThrowingAttributeTest, FailsTheWholeOperation) {
    failSecond();
    EXPECT_EQ(internalErrorOf([&] { run(); }),
              "ProviderCallback threw an unexpected java.lang.IllegalStateException. The message was: made to fail by "
              "a test");
    EXPECT_EQ(recorder.count("GetObjectArrayElement"), 2U) << "the third is not read";
    EXPECT_EQ(env()->ExceptionCheck(), JNI_FALSE);
}

TEST_P(ThrowingAttributeTest, ValueIsAskedForEvenAfterANameThatThrew) {
    failSecond();
    EXPECT_TRUE(throwsExactly<InternalError>([&] { run(); }));
    const auto calls = recorder.calls();
    const auto second = std::find(calls.begin(), calls.end(), "GetObjectArrayElement 1");
    ASSERT_GE(calls.end() - second, 3);
    EXPECT_EQ(second[1], "CallObjectMethod getName()Ljava/lang/String;");
    EXPECT_EQ(second[2], "CallObjectMethod getValue()Ljava/lang/String;");
}

TEST_P(ThrowingAttributeTest, ReleasesElementArrayClassObjectAndLocationInThisOrder) {
    failSecond();
    EXPECT_TRUE(throwsExactly<InternalError>([&] { run(); }));
    const auto order = released();
    ASSERT_GE(order.size(), 5U);
    const std::vector<ReferenceNumber> last(order.end() - 5, order.end());
    EXPECT_THAT(last, ElementsAre(recorder.records({.only = "GetObjectArrayElement"}).at(1).resultReference,
                                  resultOf("CallObjectMethod getAllAttributes"),
                                  recorder.records({.only = "GetObjectClass"}).at(0).resultReference,
                                  resultOf("CallObjectMethod getExtendedAttributes"), resultOf("NewObject")));
    EXPECT_EQ(recorder.liveLocals(), 0);
}

TEST_P(ThrowingAttributeTest, IsTracedAsAThrow) {
    failSecond();
    EXPECT_EQ(traced([&] { run(); }).back().text, std::string(Signature) + " [throw]");
}

INSTANTIATE_TEST_SUITE_P(Getters, ThrowingAttributeTest, ::testing::Values("getName", "getValue"),
                         [](const auto& tested) { return std::string(tested.param); });

TEST_F(ExtendedAttributesTest, CharactersThatCannotBeHadAreABadAlloc) {
    for (std::size_t occurrence : {1U, 2U}) {
        answer("extendedAttributes", {"a=1"});
        recorder.clear();
        recorder.fail({.call = "GetStringChars", .occurrence = occurrence, .failure = JniFailure::outOfMemory()});
        EXPECT_TRUE(throwsExactly<InternalBadAlloc>([&] { run(); }));
        EXPECT_EQ(recorder.liveLocals(), 0);
        EXPECT_EQ(recorder.liveChars(), 0);
    }
}

// ---- traces ----

TEST_F(ExtendedAttributesTest, IsTracedByItsOwnTextAndLine) {
    const auto places = traced([&] { run(); });
    ASSERT_FALSE(places.empty());
    EXPECT_EQ(places.front(), (TracedPlace{32, Signature, "storage/javaprovider/src/JavaProvider", 655}));
    EXPECT_EQ(places.back(), (TracedPlace{64, Signature, "storage/javaprovider/src/JavaProvider", 655}));
}

}  // namespace
}  // namespace storage::javaprovider::test
