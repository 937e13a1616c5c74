#include "support/JavaNames.h"

#include <utility>

namespace storage::javaprovider::test {

namespace {

/// Owns a text that the machine has allocated.
class MachineText {
public:
    explicit MachineText(jvmtiEnv* jvmti) : m_jvmti(jvmti) {}
    ~MachineText() { m_jvmti->Deallocate(reinterpret_cast<unsigned char*>(m_text)); }
    MachineText(const MachineText&) = delete;
    MachineText& operator=(const MachineText&) = delete;

    [[nodiscard]] char** out() { return &m_text; }
    [[nodiscard]] std::string text() const { return m_text == nullptr ? std::string() : m_text; }

private:
    jvmtiEnv* m_jvmti;
    char* m_text = nullptr;
};

/// "Ljava/lang/String;" as "java/lang/String"; other descriptors as they are.
std::string withoutWrapping(std::string descriptor) {
    if (descriptor.starts_with('L') && descriptor.ends_with(';')) {
        return descriptor.substr(1, descriptor.size() - 2);
    }
    return descriptor;
}

}  // namespace

std::string JavaNames::ofClass(jclass clazz) const {
    if (clazz == nullptr) {
        return "(null)";
    }
    MachineText signature(m_jvmti);
    if (m_jvmti->GetClassSignature(clazz, signature.out(), nullptr) != JVMTI_ERROR_NONE) {
        return "(not a class)";
    }
    return withoutWrapping(signature.text());
}

const JavaNames::Method& JavaNames::ofMethod(jmethodID method) const {
    const std::lock_guard lock(m_mutex);
    if (const auto known = m_methods.find(method); known != m_methods.end()) {
        return known->second;
    }
    MachineText name(m_jvmti);
    MachineText signature(m_jvmti);
    if (method == nullptr || m_jvmti->GetMethodName(method, name.out(), signature.out(), nullptr) != JVMTI_ERROR_NONE) {
        return m_methods.emplace(method, Method{"(null)", ""}).first->second;
    }
    return m_methods.emplace(method, Method{name.text(), signature.text()}).first->second;
}

std::string JavaNames::ofField(jclass clazz, jfieldID field) const {
    MachineText name(m_jvmti);
    if (clazz == nullptr || field == nullptr ||
        m_jvmti->GetFieldName(clazz, field, name.out(), nullptr, nullptr) != JVMTI_ERROR_NONE) {
        return "(null)";
    }
    return name.text();
}

}  // namespace storage::javaprovider::test
