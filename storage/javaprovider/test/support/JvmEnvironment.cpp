#include "support/JvmEnvironment.h"

#include <cstdlib>
#include <sstream>
#include <stdexcept>
#include <utility>

#include "storage/jvm/EmbeddedJVM.h"

namespace storage::javaprovider::test {

namespace {

std::shared_ptr<jvm_interface::JVM> theJvm;

std::vector<std::filesystem::path> splitClassPath(const std::string& classPath) {
    std::vector<std::filesystem::path> entries;
    std::istringstream in(classPath);
    for (std::string entry; std::getline(in, entry, ':');) {
        entries.emplace_back(entry);
    }
    return entries;
}

std::vector<std::string> optionsFromEnvironment() {
    const char* text = std::getenv("TEST_JVM_OPTIONS");
    std::istringstream in(text == nullptr ? "" : text);
    std::vector<std::string> options;
    for (std::string option; in >> option;) {
        options.push_back(option);
    }
    return options;
}

}  // namespace

JvmEnvironment::JvmEnvironment(const std::string& classPath) : m_classPath(splitClassPath(classPath)) {}

void JvmEnvironment::SetUp() {
    storage::jvm::EmbeddedJVMOptions options;
    options.classPath = m_classPath;
    options.maxHeapMiB = 256;
    options.jvmOptions = optionsFromEnvironment();
    theJvm = storage::jvm::EmbeddedJVM::start(options);
}

const std::shared_ptr<jvm_interface::JVM>& JvmEnvironment::jvm() {
    if (!theJvm) {
        throw std::logic_error("the test program's virtual machine is not running");
    }
    return theJvm;
}

}  // namespace storage::javaprovider::test
