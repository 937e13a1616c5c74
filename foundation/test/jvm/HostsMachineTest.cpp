#include <dlfcn.h>
#include <gmock/gmock.h>

#include <algorithm>

#include "JavaCalls.h"
#include "OwnProcess.h"
#include "storage/jvm/EmbeddedJVM.h"
#include "storage/jvm/JVMWrapper.h"

namespace {

using storage::jvm::EmbeddedJVM;
using storage::jvm::EmbeddedJVMOptions;
using storage::jvm::JVMWrapper;
using test::inOwnProcess;

std::filesystem::path anyLibjvm() {
    const auto candidates = storage::jvm::findJava();
    const auto usable = std::ranges::find(candidates, "", &storage::jvm::JavaCandidate::problem);
    return usable == candidates.end() ? "" : usable->libjvm;
}

/// A virtual machine that the host has made by its own means; the calling thread stays attached, as JNI has it.
JavaVM* makeHostsMachine(int mode) {
    void* const library = dlopen(anyLibjvm().c_str(), mode);
    auto* const create = reinterpret_cast<decltype(JNI_CreateJavaVM)*>(dlsym(library, "JNI_CreateJavaVM"));
    JavaVMOption option{const_cast<char*>("-Xrs"), nullptr};
    JavaVMInitArgs arguments{JNI_VERSION_1_8, 1, &option, JNI_FALSE};
    JavaVM* vm = nullptr;
    void* env = nullptr;
    EXPECT_EQ(create(&vm, &env, &arguments), JNI_OK);
    return vm;
}

TEST(HostsMachineTest, MachineThatRunsIsUsedAsItIs) {
    inOwnProcess([] {
        JavaVM* const vm = makeHostsMachine(RTLD_NOW | RTLD_LOCAL);
        EmbeddedJVMOptions ignored;
        ignored.classPath = {"/nowhere/missing.jar"};
        const auto jvm = EmbeddedJVM::start(ignored);
        EXPECT_EQ(jvm->getJavaVM(), vm);
        EXPECT_FALSE(jvm->startedHere());
        EXPECT_TRUE(std::filesystem::equivalent(jvm->libjvm(), anyLibjvm()));
        EXPECT_TRUE(test::isAttached(vm));
    });
}

TEST(HostsMachineTest, MachineInTheGlobalNamespaceIsFoundToo) {
    inOwnProcess([] {
        JavaVM* const vm = makeHostsMachine(RTLD_NOW | RTLD_GLOBAL);
        EXPECT_EQ(EmbeddedJVM::start()->getJavaVM(), vm);
    });
}

TEST(HostsMachineTest, ShutdownOnlyLetsItGo) {
    inOwnProcess([] {
        JavaVM* const vm = makeHostsMachine(RTLD_NOW);
        const auto jvm = EmbeddedJVM::start();
        jvm->shutdown();
        jvm->shutdown();
        EXPECT_EQ(jvm->getJavaVM(), nullptr);
        EXPECT_TRUE(test::isAttached(vm));
        EXPECT_NE(test::systemProperty(test::envOf(vm), "java.version"), "<null>");
        EXPECT_EQ(EmbeddedJVM::start()->getJavaVM(), vm);
    });
}

TEST(HostsMachineTest, ForkedChildSeesNoMachine) {
    inOwnProcess([] {
        makeHostsMachine(RTLD_NOW);
        const auto jvm = EmbeddedJVM::start();
        inOwnProcess([&jvm] { EXPECT_EQ(jvm->getJavaVM(), nullptr); });
    });
}

TEST(HostsMachineTest, NoMachineCanBeMadeAfterTheHostHasDestroyedItsOwn) {
    inOwnProcess([] {
        makeHostsMachine(RTLD_NOW)->DestroyJavaVM();
        EXPECT_THROW(static_cast<void>(EmbeddedJVM::start()), std::runtime_error);
    });
}

}  // namespace
