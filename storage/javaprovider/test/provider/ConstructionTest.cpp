// What the constructor of a provider asks of Java, and in which order.
#include <gmock/gmock.h>

#include <memory>
#include <string>
#include <utility>
#include <vector>

#include "JavaProvider.h"
#include "provider/ProviderTest.h"
#include "provider/ThrownErrors.h"
#include "support/ContractMethods.h"
#include "support/LogCapture.h"

namespace storage::javaprovider::test {
namespace {

using foundation::log::Severity;
using ::testing::ElementsAreArray;
using ::testing::IsEmpty;

class ConstructionTest : public ProviderTest {};

std::vector<std::string> methodLookups() {
    std::vector<std::string> lines;
    for (const auto& [name, signature] : ContractMethods) {
        lines.push_back(std::string("GetMethodID ") + ScriptedProviderClass + " " + name + signature);
    }
    return lines;
}

void append(std::vector<std::string>& lines, const std::vector<std::string>& more) {
    lines.insert(lines.end(), more.begin(), more.end());
}

/// The search of a class that the object's own loader knows, and the reference that is kept of it.
std::vector<std::string> searchOf(const std::string& className) {
    return {"FindClass java/lang/ClassLoader",
            "GetMethodID java/lang/ClassLoader loadClass(Ljava/lang/String;)Ljava/lang/Class;",
            "FindClass java/lang/ClassLoader",
            "GetMethodID java/lang/ClassLoader getParent()Ljava/lang/ClassLoader;",
            "NewStringUTF " + className,
            "CallObjectMethod loadClass(Ljava/lang/String;)Ljava/lang/Class;",
            "ExceptionCheck",
            "NewGlobalRef"};
}

std::vector<std::string> wholeConstruction() {
    std::vector<std::string> lines = {"PushLocalFrame", "GetObjectClass"};
    append(lines, methodLookups());
    append(lines, {"NewGlobalRef", "FindClass java/lang/Class",
                   "GetMethodID java/lang/Class getClassLoader()Ljava/lang/ClassLoader;",
                   "CallObjectMethod getClassLoader()Ljava/lang/ClassLoader;"});
    for (const char* name : HeldClasses) {
        append(lines, searchOf(name));
    }
    append(lines, {"DeleteLocalRef", "PopLocalFrame"});
    return lines;
}

TEST_F(ConstructionTest, ResolvesTheContractThenHoldsTheObjectAndFourClasses) {
    jobject backEnd = newBackEnd();
    const JavaProvider provider(handle, backEnd);
    EXPECT_THAT(recorder.calls(), ElementsAreArray(wholeConstruction()));
}

TEST_F(ConstructionTest, HoldsTheObjectItWasGivenAndTheClassesThatTheLoaderGave) {
    jobject backEnd = newBackEnd();
    const JavaProvider provider(handle, backEnd);
    const auto held = recorder.records({.only = "NewGlobalRef"});
    const auto loaded = recorder.records({.only = "CallObjectMethod loadClass"});
    ASSERT_EQ(held.size(), 5U);
    ASSERT_EQ(loaded.size(), 4U);
    EXPECT_EQ(held[0].target, backEnd);
    for (std::size_t i = 0; i < loaded.size(); ++i) {
        EXPECT_EQ(held[i + 1].targetReference, loaded[i].resultReference) << HeldClasses[i];
    }
}

TEST_F(ConstructionTest, AsksTheLoaderOfTheObjectsOwnClass) {
    jobject backEnd = newBackEnd();
    const JavaProvider provider(handle, backEnd);
    const auto providerClass = recorder.record("GetObjectClass").resultReference;
    const auto loader = recorder.record("CallObjectMethod getClassLoader");
    EXPECT_EQ(loader.targetReference, providerClass);
    for (const JniCall& call : recorder.records({.only = "CallObjectMethod loadClass"})) {
        EXPECT_EQ(call.targetReference, loader.resultReference);
    }
}

TEST_F(ConstructionTest, MakesFiveGlobalReferencesAndLeavesNoLocalOne) {
    jobject backEnd = newBackEnd();
    const JavaProvider provider(handle, backEnd);
    EXPECT_EQ(recorder.liveGlobals(), 5);
    EXPECT_EQ(recorder.liveWeaks(), 0);
    EXPECT_EQ(recorder.liveLocals(), 0);
}

TEST_F(ConstructionTest, ReleasesTheClassReferenceLast) {
    jobject backEnd = newBackEnd();
    const JavaProvider provider(handle, backEnd);
    const auto released = recorder.record("DeleteLocalRef");
    EXPECT_EQ(released.targetReference, recorder.record("GetObjectClass").resultReference);
    EXPECT_EQ(recorder.calls({.localFrames = false}).back(), "DeleteLocalRef");
}

TEST_F(ConstructionTest, NeverDeletesTheCallersReference) {
    jobject backEnd = newBackEnd();
    { const JavaProvider provider(handle, backEnd); }
    EXPECT_EQ(env()->GetObjectRefType(backEnd), JNILocalRefType);
}

TEST_F(ConstructionTest, CallerMayDeleteItsReferenceAtOnce) {
    const auto provider = makeProvider();  // deletes it
    script::answer(env(), "fileExists", true);
    EXPECT_TRUE(provider->fileExists(StorageIRI(u"java://test/a")));
}

TEST_F(ConstructionTest, CallsNoMethodOfTheObject) {
    const auto provider = makeProvider();
    EXPECT_THAT(javaCalls(), IsEmpty());
}

TEST_F(ConstructionTest, LooksForTheMachineOnceAndKeepsTheHandle) {
    const auto before = handle.use_count();
    const auto provider = makeProvider();
    EXPECT_EQ(handle->lookups(), 2U) << "whether it is there, and what it is";
    EXPECT_EQ(handle.use_count(), before + 1);
}

TEST_F(ConstructionTest, MovesTheHandleIn) {
    const auto before = handle.use_count();
    auto mine = std::shared_ptr<jvm_interface::JVM>(handle);
    jobject backEnd = newBackEnd();
    const JavaProvider provider(std::move(mine), backEnd);
    EXPECT_EQ(handle.use_count(), before + 1);
}

TEST_F(ConstructionTest, TracesNothingWhileTheChannelIsOff) {
    LogCapture log(0);
    const auto provider = makeProvider();
    EXPECT_THAT(log.records(), IsEmpty());
}

TEST_F(ConstructionTest, LogsEachMethodThatItLooksUp) {
    LogCapture log(static_cast<std::uint32_t>(Severity::Arguments));
    const auto provider = makeProvider();
    std::vector<std::string> lookups;
    for (const std::string& text : log.texts()) {
        if (text.starts_with(" methodName=")) {
            lookups.push_back(text);
        }
    }
    ASSERT_GE(lookups.size(), ContractMethods.size());
    for (std::size_t i = 0; i < ContractMethods.size(); ++i) {
        EXPECT_EQ(lookups[i],
                  std::string(" methodName=") + ContractMethods[i].name + " signature=" + ContractMethods[i].signature);
    }
}

// ---- without a machine ----

TEST_F(ConstructionTest, EmptyHandleIsReportedBeforeAnythingElse) {
    jobject backEnd = newBackEnd();
    EXPECT_EQ(internalErrorOf([&] { const JavaProvider provider(nullptr, backEnd); }), "JVM remvoed");
    EXPECT_THAT(recorder.calls(), IsEmpty());
}

TEST_F(ConstructionTest, RemovedMachineIsReportedBeforeAnythingElse) {
    jobject backEnd = newBackEnd();
    handle->remove();
    EXPECT_EQ(internalErrorOf([&] { const JavaProvider provider(handle, backEnd); }), "JVM remvoed");
    EXPECT_THAT(recorder.calls(), IsEmpty());
    EXPECT_EQ(handle.use_count(), 1);
}

TEST_F(ConstructionTest, RemovedMachineIsReportedForANullObjectToo) {
    handle->remove();
    EXPECT_EQ(internalErrorOf([&] { const JavaProvider provider(handle, nullptr); }), "JVM remvoed");
}

}  // namespace
}  // namespace storage::javaprovider::test
