#pragma once

#include <jni.h>

#include <memory>
#include <string>

#include "foundation/storage/provider/IProvider.h"
#include "foundation/storage/provider/PhysicalProviderFactory.h"
#include "jvm_interface/JVM.h"

/// Marks the five functions that libstorage_javaprovider.so gives to its host.
#define STORAGE_JAVAPROVIDER_API __attribute__((visibility("default")))

/// Storage providers whose back end is a Java object.
///
/// All five functions may be called from any thread, several at once. Class names have the form of JNI, with slashes
/// ("com/example/MyProvider"), and are looked up through the virtual machine's system class loader on a native thread.
/// A provider keeps its share of the virtual-machine handle and a global reference to its Java object; it is destroyed
/// by its owner after every operation, stream and event delivery of it has ended, and before the virtual machine is
/// shut down. Destroying it calls the Java object's "dispose".
namespace storage::javaprovider {

/// Makes a provider over a new object of the named Java class. The caller owns and deletes it.
///
/// The class needs a public constructor without arguments and the 22 methods of the contract. Blocks in Java.
/// Throws AnonymousInternalException<std::runtime_error>: "JVM remvoed" when the virtual machine is gone; the Java
/// exception's description when the class is not found (a dotted name never is) or its constructor throws; a text
/// naming method and signature when the constructor or a method of the contract is missing. Throws std::bad_alloc when
/// the Java object cannot be held. The caller's thread has no Java exception pending afterwards.
[[nodiscard]] STORAGE_JAVAPROVIDER_API foundation::storage::provider::IProvider* buildProvider(
    std::shared_ptr<jvm_interface::JVM> jvm, const std::string& className);

/// Makes a provider over a Java object that exists. The caller owns and deletes it.
///
/// `instance` is any reference valid on this thread; the provider makes its own, so the caller may delete it
/// afterwards. Fails like the overload above. A null `instance` gives, without an error, a provider on which every
/// operation fails: check it first.
[[nodiscard]] STORAGE_JAVAPROVIDER_API foundation::storage::provider::IProvider* buildProvider(
    std::shared_ptr<jvm_interface::JVM> jvm, jobject instance);

/// Makes a factory whose providers each have a new object of the named Java class.
///
/// Makes no call to Java, so neither a missing class nor a missing virtual machine shows before createProvider().
/// createProvider() fails like buildProvider(), the texts beginning "Failed to find Java Provider implementation
/// class" and "Failed to instantiate Java Provider implementation."; a failed call leaves nothing behind.
[[nodiscard]] STORAGE_JAVAPROVIDER_API std::shared_ptr<foundation::storage::provider::PhysicalProviderFactory>
buildPhysicalFactory(std::shared_ptr<jvm_interface::JVM> jvm, const std::string& className);

/// Makes a factory whose providers all share one Java object.
///
/// Unlike buildProvider(), the factory keeps `instance` as it is: pass a global reference and keep it until the factory
/// is gone. Each provider calls "dispose" on the object when it is destroyed.
[[nodiscard]] STORAGE_JAVAPROVIDER_API std::shared_ptr<foundation::storage::provider::PhysicalProviderFactory>
buildPhysicalFactory(std::shared_ptr<jvm_interface::JVM> jvm, jobject instance);

}  // namespace storage::javaprovider

/// Stores a factory for the class into `result`, for hosts that find the library by this plain name (dlsym).
///
/// Never throws: on failure `result` stays as it was and the log channel "storage::javaprovider" gets one record that
/// begins "Exception caught: ". Host and library must be built with one compiler and standard library.
extern "C" STORAGE_JAVAPROVIDER_API void buildPhysicalFactory_V1(
    std::shared_ptr<jvm_interface::JVM> jvm, const char* className,
    std::shared_ptr<foundation::storage::provider::PhysicalProviderFactory>& result);
