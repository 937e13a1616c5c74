#include "Machine.h"

#include <sstream>
#include <stdexcept>

#include "storage/javaprovider/EntryPoints.h"

namespace bench {

namespace {

std::vector<std::filesystem::path> splitClassPath(const std::string& classPath) {
    std::vector<std::filesystem::path> entries;
    std::istringstream in(classPath);
    for (std::string entry; std::getline(in, entry, ':');) {
        entries.emplace_back(entry);
    }
    return entries;
}

std::shared_ptr<storage::jvm::EmbeddedJVM> start(const std::vector<std::string>& extraOptions) {
    storage::jvm::EmbeddedJVMOptions options;
    options.classPath = splitClassPath(BENCH_CLASS_PATH);
    options.jvmOptions = {"-XX:+UseSerialGC", "-Xms768m", "-Xmx768m", "-Xmn256m"};
    options.jvmOptions.insert(options.jvmOptions.end(), extraOptions.begin(), extraOptions.end());
    return storage::jvm::EmbeddedJVM::start(options);
}

}  // namespace

JNIEnv* environmentOf(JavaVM* vm) {
    void* env = nullptr;
    if (vm->GetEnv(&env, JNI_VERSION_1_8) != JNI_OK) {
        throw std::runtime_error("the measuring thread is not attached to the virtual machine");
    }
    return static_cast<JNIEnv*>(env);
}

Machine::Machine(const std::vector<std::string>& extraOptions)
    : m_jvm(start(extraOptions)), m_attachment(m_jvm), m_env(environmentOf(m_jvm->getJavaVM())) {}

jclass Machine::holdClass(const char* name) const {
    jclass found = m_env->FindClass(name);
    if (found == nullptr) {
        m_env->ExceptionClear();
        throw std::runtime_error(std::string("no class ") + name);
    }
    auto* held = static_cast<jclass>(m_env->NewGlobalRef(found));
    m_env->DeleteLocalRef(found);
    return held;
}

std::unique_ptr<foundation::storage::provider::IProvider> Machine::makeProvider() const {
    return std::unique_ptr<foundation::storage::provider::IProvider>(
        storage::javaprovider::buildProvider(m_jvm, "com/corvallen/bench/IdleProvider"));
}

void Machine::setListing(jint entryCount) const {
    jclass provider = holdClass("com/corvallen/bench/IdleProvider");
    m_env->CallStaticVoidMethod(provider, m_env->GetStaticMethodID(provider, "setListing", "(I)V"), entryCount);
    m_env->DeleteGlobalRef(provider);
    if (m_env->ExceptionCheck() == JNI_TRUE) {
        m_env->ExceptionClear();
        throw std::runtime_error("the listing does not fit into the heap");
    }
}

}  // namespace bench
