#include <gmock/gmock.h>

#include <cstdlib>
#include <string>

#include "CapturedOutput.h"
#include "JavaCalls.h"
#include "OwnProcess.h"
#include "storage/jvm/EmbeddedJVM.h"
#include "storage/jvm/JVMWrapper.h"

namespace {

using storage::jvm::EmbeddedJVM;
using storage::jvm::EmbeddedJVMOptions;
using storage::jvm::JVMWrapper;
using test::inOwnProcess;
using testing::HasSubstr;

/// A machine with a host's preferences starts with these options in the variable, and says nothing.
void expectStart(const char* variable, const char* options, const std::string& property, const std::string& value) {
    inOwnProcess([&] {
        setenv(variable, options, 1);
        EmbeddedJVMOptions preferring;
        preferring.defaultOptions = {"-Xmx128m", "-XX:TieredStopAtLevel=1", "-Xshare:auto", "-XX:+UseSerialGC",
                                     "-XX:SharedArchiveFile=/nowhere.jsa"};
        const test::CapturedOutput output;
        const auto jvm = EmbeddedJVM::start(preferring);
        JVMWrapper wrapper(jvm->getJavaVM());
        EXPECT_THAT(test::systemProperty(wrapper.getEnv(), property), HasSubstr(value)) << variable << "=" << options;
        EXPECT_EQ(output.text(), "");
    });
}

TEST(EnvironmentWinsTest, CollectorInTheEnvironmentIsUsed) {
    expectStart("JAVA_TOOL_OPTIONS", "-XX:+UseG1GC", "java.vm.name", "VM");
    expectStart("_JAVA_OPTIONS", "-XX:+UseParallelGC", "java.vm.name", "VM");
}

TEST(EnvironmentWinsTest, SmallestHeapBeyondTheHostsIsUsed) {
    expectStart("JAVA_TOOL_OPTIONS", "-Xms200m", "java.vm.name", "VM");
}

TEST(EnvironmentWinsTest, ClassSharingIsTheEnvironments) {
    expectStart("JAVA_TOOL_OPTIONS", "-Xshare:on", "java.vm.info", "sharing");
    expectStart("_JAVA_OPTIONS", "-Xshare:off", "java.vm.info", "mixed mode");
}

TEST(EnvironmentWinsTest, CompilationIsTheEnvironments) {
    expectStart("JAVA_TOOL_OPTIONS", "-Xint", "java.vm.info", "interpreted mode");
}

TEST(EnvironmentWinsTest, AgentsInTheEnvironmentAreLoaded) {
    expectStart("JAVA_TOOL_OPTIONS", "-agentlib:jdwp=transport=dt_socket,server=y,suspend=n,quiet=y", "java.vm.name",
                "VM");
}

}  // namespace
