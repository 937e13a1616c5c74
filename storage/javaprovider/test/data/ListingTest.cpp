// What a listing asks of Java, and which children it gives.
#include <gmock/gmock.h>

#include <memory>
#include <string>
#include <utility>
#include <vector>

#include "JavaProvider.h"
#include "data/ListingTest.h"

namespace storage::javaprovider::test {
namespace {

using foundation::storage::provider::EntryType;
using ::testing::ElementsAre;
using ::testing::ElementsAreArray;
using ::testing::IsEmpty;

constexpr auto File = EntryType::File;
constexpr auto Folder = EntryType::Folder;
constexpr const char* EntryClass = "com/corvallen/storage/provider/FolderListEntry";

std::vector<std::string> beginning() {
    return joined({{"PushLocalFrame"},
                   makingOfUri("java://test/a"),
                   {"CallObjectMethod listFolder(Lcom/corvallen/storage/provider/StorageURI;)"
                    "[Lcom/corvallen/storage/provider/FolderListEntry;",
                    "ExceptionCheck", "GetArrayLength"}});
}

const std::vector<std::string> Lookups = {
    "GetMethodID com/corvallen/storage/provider/FolderListEntry getName()Ljava/lang/String;",
    "GetMethodID com/corvallen/storage/provider/FolderListEntry isFolder()Z"};

std::vector<std::string> element(int index) {
    return {"GetObjectArrayElement " + std::to_string(index),
            "IsInstanceOf com/corvallen/storage/provider/FolderListEntry",
            "CallObjectMethod getName()Ljava/lang/String;",
            "CallBooleanMethod isFolder()Z",
            "GetStringChars",
            "ReleaseStringChars",
            "DeleteLocalRef",
            "DeleteLocalRef"};
}

// The array and the location.
const std::vector<std::string> EndOfListing = {"DeleteLocalRef", "DeleteLocalRef", "PopLocalFrame"};

// ---- which children ----

TEST_F(ListingTest, FiltersKeepWhatTheyAreFor) {
    answer("listing", {"a\nB/\nc"});
    EXPECT_THAT(all(), ElementsAre(Child{u"a", File}, Child{u"B", Folder}, Child{u"c", File}));
    EXPECT_THAT(files(), ElementsAre(Child{u"a", File}, Child{u"c", File}));
    EXPECT_THAT(folders(), ElementsAre(Child{u"B", Folder}));
}

TEST_F(ListingTest, EachListingAsksJavaOnceForEverything) {
    static_cast<void>(all());
    static_cast<void>(files());
    static_cast<void>(folders());
    EXPECT_THAT(javaCalls(),
                ElementsAre("listFolder java://test/a", "listFolder java://test/a", "listFolder java://test/a"));
}

TEST_F(ListingTest, EmptyFolderHasNothing) {
    EXPECT_THAT(all(), IsEmpty());
    EXPECT_THAT(files(), IsEmpty());
    EXPECT_THAT(folders(), IsEmpty());
    EXPECT_FALSE(provider->listAll(location)->hasMore());
}

TEST_F(ListingTest, FilterThatFitsNothingGivesNothing) {
    answer("listing", {"a\nb"});
    EXPECT_THAT(folders(), IsEmpty());
    answer("listing", {"a/\nb/"});
    EXPECT_THAT(files(), IsEmpty());
}

TEST_F(ListingTest, OrderOfJavaIsKeptAndRepetitionsToo) {
    answer("listing", {"z\nb/\na\nz\nb\nB/"});
    EXPECT_THAT(all(), ElementsAre(Child{u"z", File}, Child{u"b", Folder}, Child{u"a", File}, Child{u"z", File},
                                   Child{u"b", File}, Child{u"B", Folder}));
}

TEST_F(ListingTest, NullNameIsAnEmptyName) {
    answer("listing", {"(null)\n(null)/\nx"});
    EXPECT_THAT(all(), ElementsAre(Child{u"", File}, Child{u"", Folder}, Child{u"x", File}));
}

TEST_F(ListingTest, NameEndsAtItsFirstNul) {
    answer("listing", {std::string("ab\0cd\n\0x/", 9)});
    EXPECT_THAT(all(), ElementsAre(Child{u"ab", File}, Child{u"", Folder}));
}

TEST_F(ListingTest, NamesBeyondTheBasicPlaneAreUnchanged) {
    answer("listing", {"\u00e4\u20ac\U0001F600"});
    EXPECT_THAT(all(), ElementsAre(Child{u"\u00e4\u20ac\U0001F600", File}));
}

TEST_F(ListingTest, OtherThingsThanEntriesAreSkippedWithoutAWord) {
    useMixedListing();
    LogCapture log(~EnterAndExit & ~2U);
    EXPECT_THAT(all(), ElementsAre(Child{u"a", File}, Child{u"B", Folder}));
    EXPECT_THAT(log.texts(), IsEmpty());
}

TEST_F(ListingTest, HundredThousandEntriesHoldAHandfulOfReferences) {
    answer("longListing", {"100000"});
    recorder.clear();
    recorder.keepCalls(false);
    const auto children = all();
    EXPECT_LE(recorder.peakLocals(), 6);
    EXPECT_EQ(recorder.liveLocals(), 0);
    ASSERT_EQ(children.size(), 100000U);
    EXPECT_EQ(children[0], (Child{u"0", Folder}));
    EXPECT_EQ(children[99998], (Child{u"99998", File}));
    EXPECT_EQ(children[99999], (Child{u"99999", Folder}));
}

TEST_F(ListingTest, DroppedEntriesHoldNoReferencesEither) {
    answer("longListing", {"2000"});
    recorder.clear();
    recorder.keepCalls(false);
    EXPECT_EQ(folders().size(), 667U);
    EXPECT_LE(recorder.peakLocals(), 6);
}

// ---- calls ----

TEST_F(ListingTest, EmptyArrayHasNothingLookedUp) {
    list();
    EXPECT_THAT(recorder.calls(), ElementsAreArray(joined({beginning(), EndOfListing})));
}

TEST_F(ListingTest, MakesExactlyTheseCallsEachTime) {
    answer("listing", {"a\nB/"});
    for (int time = 0; time < 2; ++time) {
        recorder.clear();
        list();
        EXPECT_THAT(recorder.calls(),
                    ElementsAreArray(joined({beginning(), Lookups, element(0), element(1), EndOfListing})));
    }
}

TEST_F(ListingTest, EntriesThatTheFilterDropsAreReadAllTheSame) {
    answer("listing", {"a\nB/"});
    static_cast<void>(provider->listFiles(location));
    const auto calls = recorder.calls();
    EXPECT_THAT(calls, ElementsAreArray(joined({beginning(), Lookups, element(0), element(1), EndOfListing})));
    recorder.clear();
    static_cast<void>(provider->listFolders(location));
    EXPECT_EQ(recorder.calls(), calls);
}

TEST_F(ListingTest, NullNameIsNotAskedForCharacters) {
    answer("listing", {"(null)"});
    list();
    EXPECT_THAT(
        recorder.calls(),
        ElementsAreArray(
            joined({beginning(),
                    Lookups,
                    {"GetObjectArrayElement 0", "IsInstanceOf com/corvallen/storage/provider/FolderListEntry",
                     "CallObjectMethod getName()Ljava/lang/String;", "CallBooleanMethod isFolder()Z", "DeleteLocalRef"},
                    EndOfListing})));
}

TEST_F(ListingTest, OtherThingsThanEntriesAreReleasedUnread) {
    useMixedListing();
    list();
    const std::vector<std::string> skipped = {"IsInstanceOf com/corvallen/storage/provider/FolderListEntry",
                                              "DeleteLocalRef"};
    EXPECT_THAT(recorder.calls(), ElementsAreArray(joined({beginning(),
                                                           Lookups,
                                                           {"GetObjectArrayElement 0"},
                                                           skipped,
                                                           element(1),
                                                           {"GetObjectArrayElement 2"},
                                                           skipped,
                                                           element(3),
                                                           {"GetObjectArrayElement 4"},
                                                           skipped,
                                                           EndOfListing})));
}

TEST_F(ListingTest, GettersAreLookedUpOnTheProvidersOwnClassOfEntries) {
    answer("listing", {"a"});
    recorder.clear();
    provider = std::make_unique<JavaProvider>(handle, newBackEnd());
    const auto held = recorder.records({.only = "NewGlobalRef"});
    ASSERT_EQ(held.size(), 5U) << "the object and four classes";
    recorder.clear();
    list();
    const auto lookups = recorder.records({.only = std::string("GetMethodID ") + EntryClass});
    const auto test = recorder.record("IsInstanceOf");
    ASSERT_EQ(lookups.size(), 2U);
    EXPECT_EQ(recorder.count("GetObjectClass"), 0U);
    EXPECT_EQ(lookups[0].target, held[2].result);
    EXPECT_EQ(lookups[1].target, held[2].result);
    EXPECT_EQ(test.targetReference, recorder.record("GetObjectArrayElement").resultReference);
}

TEST_F(ListingTest, ReleasesNameAndElementEachTimeThenTheArrayThenTheLocation) {
    answer("listing", {"a\nb"});
    list();
    const auto names = resultsOf("CallObjectMethod getName");
    const auto elements = resultsOf("GetObjectArrayElement");
    ASSERT_EQ(names.size(), 2U);
    ASSERT_EQ(elements.size(), 2U);
    EXPECT_THAT(released(), ElementsAre(resultsOf("NewString").at(0), names[0], elements[0], names[1], elements[1],
                                        resultsOf("CallObjectMethod listFolder").at(0), resultsOf("NewObject").at(0)));
}

}  // namespace
}  // namespace storage::javaprovider::test
