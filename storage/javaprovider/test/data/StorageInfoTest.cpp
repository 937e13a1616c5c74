// Capacity and occupied space of the storage that holds a location.
#include <gmock/gmock.h>

#include <cstdint>
#include <limits>
#include <string>
#include <vector>

#include "data/DataTest.h"
#include "provider/ThrownErrors.h"
#include "support/JavaHelpers.h"

namespace storage::javaprovider::test {
namespace {

using ::testing::ElementsAre;
using ::testing::ElementsAreArray;
using ::testing::IsEmpty;
using ::testing::IsSupersetOf;
using ::testing::StartsWith;

constexpr const char* OperationSignature =
    "class foundation::storage::provider::ProviderStorageInfo __cdecl "
    "storage::javaprovider::JavaProvider::doGetProviderStorageInfo(const class "
    "foundation::storage::provider::StorageIRI &) const";
constexpr const char* BuilderSignature =
    "class foundation::storage::provider::ProviderStorageInfo __cdecl "
    "storage::javaprovider::buildProviderStorageInfo(const class storage::javaprovider::JNIEnvPtr &,class _jobject "
    "*const )";
constexpr const char* Source = "storage/javaprovider/src/JavaProvider";

class StorageInfoTest : public DataTest {
protected:
    [[nodiscard]] auto fetch() const { return provider->getProviderStorageInfo(location); }
    void run() const { static_cast<void>(fetch()); }
};

TEST_F(StorageInfoTest, HasWhatJavaTells) {
    answer("storageInfo", {"1000000000000", "123"});
    const auto info = fetch();
    EXPECT_EQ(info.storageCapacity(), 1000000000000U);
    EXPECT_EQ(info.spaceOccupied(), 123U);
    EXPECT_THAT(javaCalls(), ElementsAre("getProviderStorageInfo java://test/a"));
}

TEST_F(StorageInfoTest, NegativeNumbersAreHugeOnesAndNoneIsMissing) {
    answer("storageInfo", {"-1", "-2"});
    EXPECT_EQ(fetch().storageCapacity(), std::numeric_limits<std::uint64_t>::max());
    EXPECT_EQ(fetch().spaceOccupied(), std::numeric_limits<std::uint64_t>::max() - 1);
    answer("storageInfo", {"-9223372036854775808", "0"});
    EXPECT_EQ(fetch().storageCapacity(), std::uint64_t{1} << 63U);
    EXPECT_EQ(fetch().spaceOccupied(), 0U);
}

TEST_F(StorageInfoTest, MoreMayBeOccupiedThanThereIs) {
    answer("storageInfo", {"1", "2"});
    EXPECT_EQ(fetch().storageCapacity(), 1U);
    EXPECT_EQ(fetch().spaceOccupied(), 2U);
}

TEST_F(StorageInfoTest, MakesExactlyTheseCallsEachTime) {
    const auto expected =
        joined({{"PushLocalFrame"},
                makingOfUri("java://test/a"),
                {"CallObjectMethod getProviderStorageInfo(Lcom/corvallen/storage/provider/StorageURI;)"
                 "Lcom/corvallen/storage/provider/ProviderStorageInfo;",
                 "ExceptionCheck", "GetObjectClass",
                 "GetMethodID com/corvallen/storage/provider/ProviderStorageInfo getStorageCapacity()J",
                 "GetMethodID com/corvallen/storage/provider/ProviderStorageInfo getSpaceOccupied()J",
                 "CallLongMethod getStorageCapacity()J", "CallLongMethod getSpaceOccupied()J", "DeleteLocalRef",
                 "DeleteLocalRef", "DeleteLocalRef", "PopLocalFrame"}});
    for (int time = 0; time < 2; ++time) {
        recorder.clear();
        run();
        EXPECT_THAT(recorder.calls(), ElementsAreArray(expected));
    }
}

TEST_F(StorageInfoTest, ReleasesTheClassThenTheObjectThenTheLocation) {
    run();
    EXPECT_THAT(released(), ElementsAre(recorder.record("NewString").resultReference,
                                        recorder.record("GetObjectClass").resultReference,
                                        recorder.record("CallObjectMethod getProviderStorageInfo").resultReference,
                                        recorder.record("NewObject").resultReference));
}

TEST_F(StorageInfoTest, AnyClassWithTheGettersServes) {
    useOddValue("Space");
    const auto info = fetch();
    EXPECT_EQ(info.storageCapacity(), 1000U);
    EXPECT_EQ(info.spaceOccupied(), 10U);
    EXPECT_THAT(javaCalls(), ElementsAre("getStorageCapacity", "getSpaceOccupied"));
}

TEST_F(StorageInfoTest, MissingGettersAreReportedBeforeAnyIsCalled) {
    useOddValue("WithoutOccupied");
    EXPECT_THAT(internalErrorOf([&] { run(); }),
                StartsWith("Method getSpaceOccupied with signature ()J not found.\njava.lang.NoSuchMethodError"));
    EXPECT_EQ(recorder.liveLocals(), 0);
    EXPECT_THAT(javaCalls(), IsEmpty());
    useOddValue("WithoutCapacity");
    EXPECT_THAT(internalErrorOf([&] { run(); }),
                StartsWith("Method getStorageCapacity with signature ()J not found.\njava.lang.NoSuchMethodError"));
    EXPECT_EQ(recorder.liveLocals(), 0);
    EXPECT_THAT(javaCalls(), IsEmpty());
}

TEST_F(StorageInfoTest, ExceptionOfAGetterStaysPending) {
    useOddValue("FailingOccupied");
    EXPECT_NO_THROW(run());
    EXPECT_EQ(recorder.count("ExceptionCheck"), 1U) << "only after the provider's method";
    EXPECT_EQ(takePendingException(env()), "java.lang.IllegalStateException: no idea");
}

TEST_F(StorageInfoTest, OperationAndBuilderAreTracedByTheirOwnTextsAndLines) {
    const auto places = traced([&] { run(); });
    ASSERT_GE(places.size(), 4U);
    EXPECT_EQ(places.front(), (TracedPlace{32, OperationSignature, Source, 696}));
    EXPECT_THAT(places, IsSupersetOf({TracedPlace{32, BuilderSignature, Source, 679},
                                      TracedPlace{64, BuilderSignature, Source, 679}}));
    EXPECT_EQ(places[places.size() - 2], (TracedPlace{64, BuilderSignature, Source, 679}));
    EXPECT_EQ(places.back(), (TracedPlace{64, OperationSignature, Source, 696}));
}

TEST_F(StorageInfoTest, MissingGetterLeavesBothByAThrow) {
    useOddValue("Nothing");
    const auto places = traced([&] { run(); });
    ASSERT_GE(places.size(), 2U);
    EXPECT_EQ(places[places.size() - 2].text, std::string(BuilderSignature) + " [throw]");
    EXPECT_EQ(places.back().text, std::string(OperationSignature) + " [throw]");
}

}  // namespace
}  // namespace storage::javaprovider::test
