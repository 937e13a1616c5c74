#pragma once

#include <jni.h>

#include <memory>
#include <string>

#include "foundation/storage/provider/PhysicalProviderFactory.h"
#include "jvm_interface/JVM.h"

namespace storage::javaprovider {

/// Makes a JavaProvider per request for the locations below "java://": over a new object of a named class, or over one
/// object given at construction.
///
/// Immutable, so any number of threads may use it. Providers keep their own share of the virtual machine and stay
/// usable after the factory is gone.
///
/// Hazards:
///  - An instance is kept as the reference it came as: the host passes a global reference and keeps it until the
///    factory is destroyed.
class JavaProviderFactory final : public foundation::storage::provider::PhysicalProviderFactory {
public:
    /// Neither constructor calls Java; a class that does not exist shows in createProvider().
    JavaProviderFactory(std::shared_ptr<jvm_interface::JVM> jvm, std::string className);
    JavaProviderFactory(std::shared_ptr<jvm_interface::JVM> jvm, jobject instance);

    ~JavaProviderFactory() override = default;

    /// Throws AnonymousInternalException<std::runtime_error>: "JVM remvoed"; "Failed to find Java Provider
    /// implementation class" or "Failed to instantiate Java Provider implementation.", a blank and the Java error; or
    /// the texts of a missing constructor or contract method. Nothing is kept of a failed call. Blocks in Java.
    [[nodiscard]] std::shared_ptr<foundation::storage::provider::IProvider> createProvider() const override;

    [[nodiscard]] foundation::storage::provider::StorageIRI getRootIri() const override { return m_root; }

private:
    std::shared_ptr<jvm_interface::JVM> m_jvm;
    std::string m_className;
    jobject m_instance;
    foundation::storage::provider::StorageIRI m_root;
};

}  // namespace storage::javaprovider
