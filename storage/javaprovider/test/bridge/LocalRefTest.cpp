#include <gmock/gmock.h>

#include <optional>
#include <stdexcept>
#include <type_traits>

#include "BridgeTest.h"
#include "JNIUtilsRef.h"
#include "support/JavaHelpers.h"

namespace storage::javaprovider::test {

namespace {

using ::testing::ElementsAre;
using ::testing::IsEmpty;

static_assert(!std::is_copy_constructible_v<LocalRef<jobject>> && !std::is_copy_assignable_v<LocalRef<jobject>>);
static_assert(std::is_nothrow_destructible_v<LocalRef<jobject>>);

template <class Reference>
class LocalRefTest : public BridgeTest {
protected:
    /// A new local reference of the type, whose making is recorded.
    Reference make() { return static_cast<Reference>(env()->NewLocalRef(object())); }

private:
    jobject object() {
        if constexpr (std::is_same_v<Reference, jclass>) {
            return classNamed("java/lang/String");
        } else if constexpr (std::is_same_v<Reference, jthrowable>) {
            return failure("runtime");
        } else {
            return javaString(env(), u"an object");
        }
    }
};

using ReferenceTypes = ::testing::Types<jobject, jclass, jstring, jthrowable>;
TYPED_TEST_SUITE(LocalRefTest, ReferenceTypes);

TYPED_TEST(LocalRefTest, ReleasesItsReferenceOnce) {
    { const LocalRef<TypeParam> holder(this->guard(), this->make()); }
    ASSERT_THAT(this->recorder.calls(), ElementsAre("NewLocalRef", "DeleteLocalRef"));
    const auto calls = this->recorder.records();
    EXPECT_EQ(calls[1].released, calls[0].result);
    EXPECT_EQ(this->recorder.liveLocals(), 0);
}

TYPED_TEST(LocalRefTest, HoldsItUntilItGoes) {
    const LocalRef<TypeParam> holder(this->guard(), this->make());
    EXPECT_EQ(this->recorder.count("DeleteLocalRef"), 0U);
    EXPECT_EQ(this->recorder.liveLocals(), 1);
}

TYPED_TEST(LocalRefTest, GivesItsReferenceAndItsGuard) {
    const TypeParam reference = this->make();
    const LocalRef<TypeParam> holder(this->guard(), reference);
    EXPECT_EQ(holder.get(), reference);
    EXPECT_EQ(&holder.env(), &this->guard());
    EXPECT_TRUE(static_cast<bool>(holder));
}

TYPED_TEST(LocalRefTest, LeavesNullAlone) {
    {
        const LocalRef<TypeParam> holder(this->guard(), nullptr);
        EXPECT_EQ(holder.get(), nullptr);
        EXPECT_FALSE(static_cast<bool>(holder));
    }
    EXPECT_THAT(this->recorder.calls(), IsEmpty());
}

TYPED_TEST(LocalRefTest, ReleasesOnceWhileAnExceptionUnwinds) {
    const auto failing = [&] {
        const LocalRef<TypeParam> holder(this->guard(), this->make());
        throw std::logic_error("from inside");
    };
    EXPECT_THROW(failing(), std::logic_error);
    EXPECT_THAT(this->recorder.calls(), ElementsAre("NewLocalRef", "DeleteLocalRef"));
    EXPECT_EQ(this->recorder.liveLocals(), 0);
}

TYPED_TEST(LocalRefTest, ReleasesWhileAJavaExceptionIsPendingAndLeavesIt) {
    std::optional<LocalRef<TypeParam>> holder;
    holder.emplace(this->guard(), this->make());
    this->raise("runtime", u"stays");
    holder.reset();
    EXPECT_THAT(this->recorder.calls(), ElementsAre("NewLocalRef", "DeleteLocalRef"));
    EXPECT_EQ(this->takePending(), "java.lang.IllegalStateException: stays");
}

TYPED_TEST(LocalRefTest, HoldersOfOneScopeReleaseTheLastFirst) {
    {
        const LocalRef<TypeParam> first(this->guard(), this->make());
        const LocalRef<TypeParam> second(this->guard(), this->make());
    }
    const auto made = this->recorder.records({.only = "NewLocalRef"});
    const auto released = this->recorder.records({.only = "DeleteLocalRef"});
    ASSERT_EQ(made.size(), 2U);
    ASSERT_EQ(released.size(), 2U);
    EXPECT_EQ(released[0].targetReference, made[1].resultReference);
    EXPECT_EQ(released[1].targetReference, made[0].resultReference);
}

}  // namespace

}  // namespace storage::javaprovider::test
