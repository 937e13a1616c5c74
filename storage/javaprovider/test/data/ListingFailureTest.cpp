// Listings that fail, entries that break the contract, and what is recorded of a listing.
#include <gmock/gmock.h>

#include <memory>
#include <string>
#include <utility>

#include "data/ListingTest.h"
#include "provider/ThrownErrors.h"
#include "support/JavaHelpers.h"

namespace storage::javaprovider::test {
namespace {

using foundation::log::Severity;
using foundation::storage::provider::EntryType;
using ::testing::AllOf;
using ::testing::ElementsAre;
using ::testing::EndsWith;
using ::testing::HasSubstr;
using ::testing::IsEmpty;

constexpr const char* EntryClass = "com/corvallen/storage/provider/FolderListEntry";

// ---- entries without getters ----

class MissingEntryGetterTest : public ListingTest,
                               public ::testing::WithParamInterface<std::pair<const char*, const char*>> {
protected:
    /// The entry class has no such getter.
    void removeGetter() {
        recorder.clear();
        recorder.fail({.call = std::string("GetMethodID ") + EntryClass + " " + GetParam().first,
                       .failure = JniFailure::exception("java/lang/NoSuchMethodError")});
    }
};

TEST_P(MissingEntryGetterTest, IsReportedAndNothingIsLeft) {
    answer("listing", {"a\nb"});
    removeGetter();
    EXPECT_EQ(internalErrorOf([&] { list(); }), std::string("Method ") + GetParam().first + " with signature " +
                                                    GetParam().second +
                                                    " not found.\njava.lang.NoSuchMethodError: made to fail by a test");
    EXPECT_EQ(recorder.count("GetObjectArrayElement"), 0U);
    const auto order = released();
    ASSERT_GE(order.size(), 2U);
    EXPECT_EQ(order[order.size() - 2], resultsOf("CallObjectMethod listFolder").at(0));
    EXPECT_EQ(order.back(), resultsOf("NewObject").at(0));
    EXPECT_EQ(recorder.liveLocals(), 0);
}

TEST_P(MissingEntryGetterTest, IsTracedAsAThrow) {
    answer("listing", {"a"});
    removeGetter();
    const auto places = traced([&] { list(); });
    EXPECT_EQ(places.back().text, places.front().text + " [throw]");
}

TEST_P(MissingEntryGetterTest, DoesNotMatterToAnEmptyFolder) {
    removeGetter();
    EXPECT_THAT(all(), IsEmpty());
    EXPECT_EQ(recorder.faultsLeft(), 1U) << "no call took it";
    recorder.clear();
}

INSTANTIATE_TEST_SUITE_P(Getters, MissingEntryGetterTest,
                         ::testing::Values(std::pair{"getName", "()Ljava/lang/String;"}, std::pair{"isFolder", "()Z"}),
                         [](const auto& tested) { return std::string(tested.param.first); });

// ---- getters that throw, which those of the contract never do ----

TEST_F(ListingTest, ExceptionOfAGetterIsNotLookedForAndStaysPending) {
    answer("listing", {"a\nb\nc"});
    for (const char* getter : {"CallObjectMethod getName", "CallBooleanMethod isFolder"}) {
        recorder.clear();
        recorder.fail(
            {.call = getter, .occurrence = 3, .failure = JniFailure::exception("java/lang/IllegalStateException")});
        EXPECT_EQ(all().size(), 3U) << getter;
        EXPECT_EQ(recorder.count("ExceptionCheck"), 1U) << "only after the provider's method";
        EXPECT_EQ(takePendingException(env()), "java.lang.IllegalStateException: made to fail by a test");
    }
}

TEST_F(ListingTest, CharactersThatCannotBeHadAreABadAlloc) {
    answer("listing", {"a\nb"});
    recorder.clear();
    recorder.fail({.call = "GetStringChars", .occurrence = 2, .failure = JniFailure::outOfMemory()});
    EXPECT_TRUE(throwsExactly<InternalBadAlloc>([&] { list(); }));
    EXPECT_EQ(recorder.liveLocals(), 0);
}

// ---- nulls that are not tested for ----

TEST_F(ListingTest, NullElementThatPassesTheInstanceTestIsAnEntryLikeOthers) {
    answer("listing", {"a"});
    recorder.clear();
    for (const char* call : {"GetObjectArrayElement", "CallObjectMethod getName", "CallBooleanMethod isFolder"}) {
        recorder.fail({.call = call, .failure = JniFailure::silent()});
    }
    EXPECT_THAT(all(), ElementsAre(Child{u"", EntryType::File}));
    EXPECT_EQ(recorder.faultsLeft(), 0U);
    EXPECT_EQ(recorder.record("IsInstanceOf").pendingBefore, false);
}

TEST_F(ListingTest, NullListingIsAskedForItsLengthAllTheSame) {
    answer("listing", {"a"});
    recorder.clear();
    // The machine does not survive the length of null, so the second call is kept from it.
    recorder.fail({.call = "CallObjectMethod listFolder", .failure = JniFailure::silent()});
    recorder.fail({.call = "GetArrayLength", .failure = JniFailure::silent()});
    EXPECT_THAT(all(), IsEmpty());
    EXPECT_EQ(recorder.count("GetArrayLength"), 1U);
    EXPECT_EQ(recorder.record("GetArrayLength").target, nullptr);
}

// ---- records ----

TEST_F(ListingTest, LocationIsLoggedBetweenEntryAndTheFirstCall) {
    LogCapture log(EnterAndExit | 2U);
    static_cast<void>(provider->listFolders(location));
    const auto records = log.records();
    ASSERT_GE(records.size(), 3U);
    EXPECT_THAT(records[0].text, AllOf(HasSubstr("storage::javaprovider::JavaProvider::listFolderContents("),
                                       HasSubstr("StorageIRI"), HasSubstr("tribool"), EndsWith(") const")));
    EXPECT_EQ(records[1], (LogRecord{Severity::Arguments, " the_iri=java://test/a", 1}));
    EXPECT_THAT(records[2].text, HasSubstr("createStorageUri("));
}

TEST_F(ListingTest, LocationIsLoggedEvenWhenTheMachineIsGone) {
    LogCapture log(2);
    handle->remove();
    EXPECT_EQ(internalErrorOf([&] { list(); }), "JVM remvoed");
    EXPECT_THAT(log.texts(), ElementsAre(" the_iri=java://test/a"));
    handle->restore();
}

TEST_F(ListingTest, NothingIsLoggedWhileTheSeverityIsOff) {
    LogCapture log(~2U);
    list();
    EXPECT_THAT(log.texts(Severity::Arguments), IsEmpty());
}

TEST_F(ListingTest, AllThreeAreTracedAtTheSamePlace) {
    using Lister =
        std::unique_ptr<foundation::storage::provider::IFolderEntryIterator> (IProvider::*)(const StorageIRI&) const;
    for (const auto lister : {static_cast<Lister>(&IProvider::listAll), static_cast<Lister>(&IProvider::listFiles),
                              static_cast<Lister>(&IProvider::listFolders)}) {
        const auto places = traced([&] { static_cast<void>((*provider.*lister)(location)); });
        ASSERT_FALSE(places.empty());
        EXPECT_EQ(places.front().severity, 32U);
        EXPECT_EQ(places.front().file, "storage/javaprovider/src/JavaProvider");
        EXPECT_EQ(places.front().line, 808U);
        EXPECT_EQ(places.back(), (TracedPlace{64, places.front().text, places.front().file, 808}));
    }
}

}  // namespace
}  // namespace storage::javaprovider::test
