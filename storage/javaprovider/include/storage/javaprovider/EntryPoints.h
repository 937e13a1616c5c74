#pragma once

#include <jni.h>

#include <memory>
#include <string>

#include "foundation/storage/provider/IProvider.h"
#include "foundation/storage/provider/PhysicalProviderFactory.h"
#include "jvm_interface/JVM.h"

/// Marks the five functions that libstorage_javaprovider.so exports.
#define STORAGE_JAVAPROVIDER_API __attribute__((visibility("default")))

/// Storage providers whose back end is a Java object.
///
/// All five functions may be called from any thread, and by several at once. Class names have the form that JNI uses,
/// with slashes ("com/example/MyProvider"). On a native thread they are looked up through the system class loader of
/// the virtual machine.
///
/// A provider shares the ownership of the virtual-machine handle and holds a global reference to its Java object. Its
/// owner destroys it after all its operations and event deliveries have ended and its transactional streams and
/// recursive listings are destroyed, and before the virtual machine is shut down. Destroying it calls the Java object's
/// "dispose", blocks in Java, and reports no failure.
///
/// Operations call Java on the calling thread and block there. Except where stated otherwise, they throw
///  - foundation::storage::provider::Exception for a Java ProviderException, with its code and location;
///  - AnonymousInternalException<std::runtime_error> for any other Java exception, and "JVM remvoed" when the virtual
///    machine is gone;
///  - AnonymousInternalException<std::bad_alloc> when JNI has no memory.
/// Only hasFeature() differs: if the Java method throws, the answer is false, and the Java exception stays pending on a
/// thread that the host attached.
namespace storage::javaprovider {

/// Creates a provider over a new object of the named Java class. The caller owns and deletes it.
///
/// The class needs a constructor without arguments and the 22 methods of the contract. Blocks in Java.
///
/// Throws AnonymousInternalException<std::runtime_error>: "JVM remvoed" if the virtual machine is gone; the description
/// of the Java exception if the class is not found (a dotted name never is) or its constructor throws; a text with the
/// method's name and signature if the constructor or a method of the contract is missing. Throws std::bad_alloc if the
/// Java object cannot be held. No Java exception is pending on the thread afterwards.
[[nodiscard]] STORAGE_JAVAPROVIDER_API foundation::storage::provider::IProvider* buildProvider(
    std::shared_ptr<jvm_interface::JVM> jvm, const std::string& className);

/// Creates a provider over an existing Java object. The caller owns and deletes it.
///
/// `instance` is any reference that is valid on this thread. The provider creates its own, so the caller may delete it
/// afterwards. Fails like the overload above. Check for a null `instance` first: it causes no error here, but every
/// operation of the provider fails.
[[nodiscard]] STORAGE_JAVAPROVIDER_API foundation::storage::provider::IProvider* buildProvider(
    std::shared_ptr<jvm_interface::JVM> jvm, jobject instance);

/// Creates a factory whose providers each have a new object of the named Java class.
///
/// Does not call Java: a missing class or virtual machine is reported only by createProvider(). That fails like
/// buildProvider(), with texts that begin "Failed to find Java Provider implementation class" and "Failed to
/// instantiate Java Provider implementation." A failed call leaves nothing behind.
[[nodiscard]] STORAGE_JAVAPROVIDER_API std::shared_ptr<foundation::storage::provider::PhysicalProviderFactory>
buildPhysicalFactory(std::shared_ptr<jvm_interface::JVM> jvm, const std::string& className);

/// Creates a factory whose providers all share one Java object.
///
/// Unlike buildProvider(), the factory creates no reference of its own: pass a global one and keep it until the factory
/// is destroyed. Each provider calls "dispose" on the object when it is destroyed.
[[nodiscard]] STORAGE_JAVAPROVIDER_API std::shared_ptr<foundation::storage::provider::PhysicalProviderFactory>
buildPhysicalFactory(std::shared_ptr<jvm_interface::JVM> jvm, jobject instance);

}  // namespace storage::javaprovider

/// Stores a factory for the class in `result`, for hosts that find this function by its plain name (dlsym).
///
/// Never throws: after a failure `result` is unchanged, and the log channel "storage::javaprovider" receives one record
/// that begins "Exception caught: ". Build host and library with the same compiler and standard library.
extern "C" STORAGE_JAVAPROVIDER_API void buildPhysicalFactory_V1(
    std::shared_ptr<jvm_interface::JVM> jvm, const char* className,
    std::shared_ptr<foundation::storage::provider::PhysicalProviderFactory>& result);
