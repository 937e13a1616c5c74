#include <gmock/gmock.h>
#include <unistd.h>

#include <cstdlib>
#include <fstream>
#include <sstream>

#include "CapturedOutput.h"
#include "JavaCalls.h"
#include "OwnProcess.h"
#include "TemporaryFolder.h"
#include "storage/jvm/EmbeddedJVM.h"
#include "storage/jvm/JVMWrapper.h"

namespace {

using storage::jvm::EmbeddedJVM;
using storage::jvm::EmbeddedJVMOptions;
using storage::jvm::JVMWrapper;
using test::inOwnProcess;

std::vector<std::string> environmentNow() {
    std::vector<std::string> entries;
    for (char** entry = environ; *entry != nullptr; ++entry) {
        entries.emplace_back(*entry);
    }
    return entries;
}

std::string contentsOf(const std::filesystem::path& file) {
    std::ostringstream contents;
    contents << std::ifstream(file).rdbuf();
    return contents.str();
}

TEST(QuietStartTest, OptionsInTheEnvironmentCountAndPrintNothing) {
    inOwnProcess([] {
        setenv("JAVA_TOOL_OPTIONS", "-Dtest.first=1 '-Dtest.quoted=a b' -Dtest.each=tool", 1);
        setenv("_JAVA_OPTIONS", "-Dtest.last=2 -Dtest.each=last", 1);
        EmbeddedJVMOptions options;
        options.jvmOptions = {"-Dtest.each=host"};
        const test::CapturedOutput output;
        const auto jvm = EmbeddedJVM::start(options);
        JVMWrapper wrapper(jvm->getJavaVM());
        EXPECT_EQ(test::systemProperty(wrapper.getEnv(), "test.first"), "1");
        EXPECT_EQ(test::systemProperty(wrapper.getEnv(), "test.quoted"), "a b");
        EXPECT_EQ(test::systemProperty(wrapper.getEnv(), "test.last"), "2");
        EXPECT_EQ(test::systemProperty(wrapper.getEnv(), "test.each"), "last");
        EXPECT_EQ(output.text(), "");
    });
}

TEST(QuietStartTest, HostsOptionsWinOverThoseOfTheToolVariable) {
    inOwnProcess([] {
        setenv("JAVA_TOOL_OPTIONS", "-Dtest.each=tool", 1);
        EmbeddedJVMOptions options;
        options.jvmOptions = {"-Dtest.each=host"};
        const auto jvm = EmbeddedJVM::start(options);
        JVMWrapper wrapper(jvm->getJavaVM());
        EXPECT_EQ(test::systemProperty(wrapper.getEnv(), "test.each"), "host");
    });
}

TEST(QuietStartTest, EnvironmentIsTheSameAfterwards) {
    inOwnProcess([] {
        setenv("JAVA_TOOL_OPTIONS", "-Dtest=1", 1);
        setenv("LC_ALL", "C", 1);
        setenv("LC_CTYPE", "POSIX", 1);
        char** const variables = environ;
        const std::vector<std::string> before = environmentNow();
        const auto jvm = EmbeddedJVM::start();
        EXPECT_EQ(environ, variables);
        EXPECT_EQ(environmentNow(), before);
        JVMWrapper wrapper(jvm->getJavaVM());
        EXPECT_EQ(test::environmentVariable(wrapper.getEnv(), "LC_ALL"), "C");
        EXPECT_EQ(test::environmentVariable(wrapper.getEnv(), "JAVA_TOOL_OPTIONS"), "-Dtest=1");
    });
}

TEST(QuietStartTest, WarningsOfTheMachineAreNotPrinted) {
    inOwnProcess([] {
        EmbeddedJVMOptions options;
        options.jvmOptions = {"-XX:+PrintGC", "-Xlog:gc*"};  // the first is warned about
        const test::CapturedOutput output;
        const auto jvm = EmbeddedJVM::start(options);
        JVMWrapper wrapper(jvm->getJavaVM());
        jclass const system = wrapper.getEnv()->FindClass("java/lang/System");
        wrapper.getEnv()->CallStaticVoidMethod(system, wrapper.getEnv()->GetStaticMethodID(system, "gc", "()V"));
        EXPECT_EQ(output.text(), "");
    });
}

TEST(QuietStartTest, LogFilesOfTheMachineAreWritten) {
    inOwnProcess([] {
        const test::TemporaryFolder folder;
        EmbeddedJVMOptions options;
        options.jvmOptions = {"-Xlog:gc*:file=" + (folder.path() / "gc.log").string()};
        const auto jvm = EmbeddedJVM::start(options);
        jvm->shutdown();
        EXPECT_THAT(contentsOf(folder.path() / "gc.log"), testing::HasSubstr("Using"));
    });
}

}  // namespace
