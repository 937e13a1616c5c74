#include "JavaProviderFactory.h"

#include <utility>

#include "JNIUtilsClass.h"
#include "JNIUtilsEnv.h"
#include "JavaProvider.h"

namespace storage::javaprovider {

namespace {

constexpr const char16_t* Root = u"java://";

}  // namespace

JavaProviderFactory::JavaProviderFactory(std::shared_ptr<jvm_interface::JVM> jvm, std::string className)
    : m_jvm(std::move(jvm)), m_className(std::move(className)), m_instance(nullptr), m_root(Root) {}

JavaProviderFactory::JavaProviderFactory(std::shared_ptr<jvm_interface::JVM> jvm, jobject instance)
    : m_jvm(std::move(jvm)), m_instance(instance), m_root(Root) {}

std::shared_ptr<foundation::storage::provider::IProvider> JavaProviderFactory::createProvider() const {
    if (m_instance != nullptr) {
        return std::make_shared<JavaProvider>(m_jvm, m_instance);
    }
    const JNIEnvPtr env(m_jvm);
    jobject provider = newInstance(
        env, m_className,
        {"Failed to find Java Provider implementation class", "Failed to instantiate Java Provider implementation."});
    return std::make_shared<JavaProvider>(m_jvm, provider);
}

}  // namespace storage::javaprovider
