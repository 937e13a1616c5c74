#include <gmock/gmock.h>

#include <boost/exception/exception.hpp>

#include <functional>
#include <stdexcept>
#include <type_traits>

#include "BridgeTest.h"
#include "JNIUtilsEnv.h"
#include "foundation/core/except/AnonymousInternalException.h"
#include "storage/jvm/ThreadAttachment.h"
#include "support/FakeJVM.h"
#include "support/JavaHelpers.h"

namespace storage::javaprovider::test {

namespace {

namespace except = foundation::core::except;
using ::testing::IsEmpty;
using Handle = std::shared_ptr<jvm_interface::JVM>;

static_assert(!std::is_copy_constructible_v<JNIEnvPtr> && !std::is_copy_assignable_v<JNIEnvPtr>);

class GuardTest : public RecordedJvmTest {
protected:
    std::shared_ptr<FakeJVM> fake = std::make_shared<FakeJVM>(jvm());
    Handle handle = fake;
};

TEST_F(GuardTest, GivesTheEnvironmentOfTheThread) {
    const JNIEnvPtr guard(handle);
    EXPECT_EQ(guard.get(), env());
    EXPECT_EQ(guard.operator->(), env());
}

TEST_F(GuardTest, GivesEachThreadItsOwnEnvironment) {
    const JNIEnvPtr guard(handle);
    onFreshThread([&] {
        const JNIEnvPtr other(handle);
        EXPECT_NE(other.get(), nullptr);
        EXPECT_NE(other.get(), guard.get());
    });
}

TEST_F(GuardTest, AsksTheHandleForTheMachineTwice) {
    const JNIEnvPtr guard(handle);
    EXPECT_EQ(fake->lookups(), 2U);
}

TEST_F(GuardTest, RemembersTheOwnersHandleWithoutSharingIt) {
    const auto owners = handle.use_count();
    const JNIEnvPtr guard(handle);
    EXPECT_EQ(&guard.jvm(), &handle);
    EXPECT_EQ(handle.use_count(), owners);
}

TEST_F(GuardTest, MakesNoJniCallOfItsOwn) {
    { const JNIEnvPtr guard(handle); }
    EXPECT_THAT(recorder.calls({.exceptionChecks = false, .localFrames = false}), IsEmpty());
}

TEST_F(GuardTest, ReleasesOnAnAttachedThreadWhatIsLeftToItsFrame) {
    {
        const JNIEnvPtr guard(handle);
        ASSERT_NE(guard->FindClass("java/lang/String"), nullptr);
        EXPECT_EQ(recorder.liveLocals(), 1);
    }
    EXPECT_EQ(recorder.liveLocals(), 0);
}

TEST_F(GuardTest, LeavesTheHostsAttachmentAlone) {
    { const JNIEnvPtr guard(handle); }
    EXPECT_EQ(fake->attachments(), 0U);
    EXPECT_EQ(fake->detachments(), 0U);
    EXPECT_TRUE(isAttached(vm()));
}

TEST_F(GuardTest, AttachesAThreadThatJavaDoesNotKnowAndDetachesIt) {
    onFreshThread([&] {
        {
            const JNIEnvPtr guard(handle);
            EXPECT_TRUE(isAttached(vm()));
            EXPECT_EQ(guard->ExceptionCheck(), JNI_FALSE);
        }
        EXPECT_FALSE(isAttached(vm()));
    });
    EXPECT_EQ(fake->attachments(), 1U);
    EXPECT_EQ(fake->detachments(), 1U);
}

TEST_F(GuardTest, InnerGuardLeavesTheOuterOnesAttachment) {
    onFreshThread([&] {
        const JNIEnvPtr outer(handle);
        { const JNIEnvPtr inner(handle); }
        EXPECT_TRUE(isAttached(vm()));
        EXPECT_EQ(fake->detachments(), 0U);
    });
    EXPECT_EQ(fake->attachments(), 1U);
    EXPECT_EQ(fake->detachments(), 1U);
}

TEST_F(GuardTest, LeavesAThreadAttachmentAlone) {
    onFreshThread([&] {
        const storage::jvm::ThreadAttachment attachment(handle);
        { const JNIEnvPtr guard(handle); }
        EXPECT_TRUE(isAttached(vm()));
        EXPECT_EQ(fake->attachments(), 1U);
        EXPECT_EQ(fake->detachments(), 0U);
    });
    EXPECT_EQ(fake->detachments(), 1U);
}

TEST_F(GuardTest, DetachesWhenAnExceptionLeavesItsScope) {
    onFreshThread([&] {
        const auto failing = [&] {
            const JNIEnvPtr guard(handle);
            throw std::logic_error("from inside");
        };
        EXPECT_THROW(failing(), std::logic_error);
        EXPECT_FALSE(isAttached(vm()));
    });
    EXPECT_EQ(fake->detachments(), 1U);
}

TEST_F(GuardTest, ThreadThatTheMachineRefusesIsAnInternalError) {
    fake->refuseAttachments(true);
    onFreshThread([&] {
        const auto make = [&] { const JNIEnvPtr guard(handle); };
        EXPECT_TRUE(throwsAs<except::detail::AnonymousInternalException<std::runtime_error>>(make));
        EXPECT_FALSE(isAttached(vm()));
    });
}

/// A JavaVM that runs an action when it is asked for a thread's environment.
struct WatchedVM : JavaVM_ {
    explicit WatchedVM(JavaVM* machine) : real(machine), table(*machine->functions) {
        table.GetEnv = [](JavaVM* vm, void** env, jint version) {
            auto& watched = *static_cast<WatchedVM*>(vm);
            watched.whenAsked();
            return watched.real->GetEnv(env, version);
        };
        functions = &table;
    }

    JavaVM* real;
    JNIInvokeInterface_ table;
    std::function<void()> whenAsked;
};

struct WatchedJVM final : jvm_interface::JVM {
    explicit WatchedJVM(JavaVM* machine) : vm(machine) {}
    JavaVM* getJavaVM() override { return &vm; }
    WatchedVM vm;
};

TEST_F(GuardTest, ReleasesItsCopyOfTheHandleBeforeTheThreadsEnvironmentIsSought) {
    const auto watched = std::make_shared<WatchedJVM>(vm());
    const Handle owned = watched;
    std::vector<long> owners;
    watched->vm.whenAsked = [&] { owners.push_back(owned.use_count()); };
    { const JNIEnvPtr guard(owned); }
    ASSERT_FALSE(owners.empty());
    EXPECT_EQ(owners.front(), owned.use_count());
}

/// How a host finds out that the virtual machine is gone.
struct GoneCase {
    const char* name;
    std::function<void(const Handle&)> use;
    bool emptyHandle;
};

void PrintTo(const GoneCase& gone, std::ostream* out) { *out << gone.name; }

class MachineGoneTest : public RecordedJvmTest, public ::testing::WithParamInterface<GoneCase> {
protected:
    MachineGoneTest() {
        fake->remove();
        if (!GetParam().emptyHandle) {
            handle = fake;
        }
    }

    std::shared_ptr<FakeJVM> fake = std::make_shared<FakeJVM>(jvm());
    Handle handle;
    std::function<void()> use = [this] { GetParam().use(handle); };
};

TEST_P(MachineGoneTest, MessageIsSpelledAsHostsMatchIt) {
    EXPECT_EQ(messageOf<std::runtime_error>(use), "JVM remvoed");
}

TEST_P(MachineGoneTest, IsCaughtInEveryForm) {
    EXPECT_TRUE(throwsAs<except::detail::AnonymousInternalException<std::runtime_error>>(use));
    EXPECT_TRUE((throwsAs<except::Exception<except::IInternalException, std::runtime_error, void>>(use)));
    EXPECT_TRUE(throwsAs<except::IInternalException>(use));
    EXPECT_TRUE(throwsAs<except::IException>(use));
    EXPECT_TRUE(throwsAs<std::runtime_error>(use));
    EXPECT_TRUE(throwsAs<std::exception>(use));
    EXPECT_TRUE(throwsAs<boost::exception>(use));
}

TEST_P(MachineGoneTest, NothingIsMade) {
    onFreshThread([&] {
        EXPECT_THROW(use(), std::runtime_error);
        EXPECT_FALSE(isAttached(vm()));
    });
    EXPECT_EQ(fake->attachments(), 0U);
    EXPECT_EQ(recorder.countOnAllThreads("PushLocalFrame"), 0U);
}

TEST_P(MachineGoneTest, HandleIsAskedOnceAtMost) {
    EXPECT_THROW(use(), std::runtime_error);
    EXPECT_EQ(fake->lookups(), GetParam().emptyHandle ? 0U : 1U);
}

TEST_P(MachineGoneTest, HandleKeepsItsOwners) {
    const auto owners = handle.use_count();
    EXPECT_THROW(use(), std::runtime_error);
    EXPECT_EQ(handle.use_count(), owners);
}

const auto makeGuard = [](const Handle& handle) { const JNIEnvPtr guard(handle); };
const auto lookUp = [](const Handle& handle) { static_cast<void>(getJavaVM(handle)); };

INSTANTIATE_TEST_SUITE_P(Bridge, MachineGoneTest,
                         ::testing::Values(GoneCase{"GuardOfAnEmptyHandle", makeGuard, true},
                                           GoneCase{"GuardOfARemovedMachine", makeGuard, false},
                                           GoneCase{"LookupOfAnEmptyHandle", lookUp, true},
                                           GoneCase{"LookupOfARemovedMachine", lookUp, false}),
                         NameOfCase);

TEST_F(GuardTest, MachineThatComesBackServesAgain) {
    fake->remove();
    EXPECT_THROW(makeGuard(handle), std::runtime_error);
    fake->restore();
    EXPECT_NO_THROW(makeGuard(handle));
}

TEST_F(GuardTest, MachineThatGoesBetweenTheTwoQuestionsIsGone) {
    fake->removeAfter(1);
    onFreshThread([&] {
        EXPECT_EQ(messageOf<std::runtime_error>([&] { makeGuard(handle); }), "JVM remvoed");
        EXPECT_FALSE(isAttached(vm()));
    });
    EXPECT_EQ(fake->lookups(), 2U);
    EXPECT_EQ(fake->attachments(), 0U);
}

TEST_F(GuardTest, LookupGivesTheMachineOfTheHandle) {
    EXPECT_EQ(getJavaVM(jvm()), vm());
    EXPECT_EQ(getJavaVM(handle), fake->getJavaVM());
    EXPECT_NE(getJavaVM(handle), vm());
}

TEST_F(GuardTest, LookupAsksTwiceAndAttachesNothing) {
    onFreshThread([&] {
        EXPECT_NE(getJavaVM(handle), nullptr);
        EXPECT_FALSE(isAttached(vm()));
    });
    EXPECT_EQ(fake->lookups(), 2U);
}

TEST_F(GuardTest, LookupKeepsTheMachineThatTheSecondQuestionGave) {
    fake->removeAfter(1);
    EXPECT_EQ(getJavaVM(handle), nullptr);
    EXPECT_EQ(fake->lookups(), 2U);
}

}  // namespace

}  // namespace storage::javaprovider::test
