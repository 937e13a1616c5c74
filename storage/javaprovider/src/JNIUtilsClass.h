#pragma once

#include <jni.h>

#include <map>
#include <string>

#include "JNIUtilsEnv.h"

namespace storage::javaprovider {

/// Looks an instance method (or "<init>") up, afresh on every call.
///
/// Throws AnonymousInternalException<std::runtime_error> "Method … with signature … not found.\n" and the Java error's
/// description, the Java error cleared. Null only when Java gave no reason. Blocks in Java if the class must still be
/// initialised.
[[nodiscard]] jmethodID getMethodID(const JNIEnvPtr& env, jclass cls, const std::string& methodName,
                                    const std::string& signature);

/// Method IDs by name, as getMethodID() gave them.
using MethodTable = std::map<std::string, jmethodID>;

/// Throws AnonymousInternalException<std::runtime_error> "Method … not found.".
[[noreturn]] void throwMethodLacking(const std::string& name);

/// The ID under `name`, which is in the table. Throws like throwMethodLacking() for a method that Java lacked without a
/// reason, since a call of it would end the process.
[[nodiscard]] inline jmethodID methodIn(const MethodTable& table, const std::string& name) {
    jmethodID method = table.find(name)->second;
    if (method == nullptr) {
        throwMethodLacking(name);
    }
    return method;
}

/// The class's loader as a local reference; null for a class of the bootstrap loader.
[[nodiscard]] jobject getClassLoader(const JNIEnvPtr& env, jclass cls);

/// Finds a class through a loader, then through each of its parents, and last with FindClass.
///
/// The loaders get `clsName` as it stands (they expect dots); FindClass gets it with slashes. With a null
/// `classLoader` only FindClass is asked. Returns a local reference, or null when no loader knows the class. Blocks in
/// Java.
///
/// Hazards:
///  - Checks and clears no Java exception: one that a loader throws stays pending, even when a later one succeeds,
///    and the caller deals with it.
///  - Leaves the parent loaders and a few class references to the local frame.
[[nodiscard]] jclass loadClass(const JNIEnvPtr& env, jobject classLoader, const std::string& clsName);

/// What the errors of newInstance() begin with; empty for the bare Java description.
struct InstanceErrors {
    std::string classNotFound;
    std::string notConstructed;
};

/// A new object of the class with that slashed name, made with its constructor without arguments: a local reference
/// that, like the one to the class, is left to the caller's local frame. Null only when Java gave no reason.
///
/// Throws AnonymousInternalException<std::runtime_error> with the texts of throwPendingJavaException() when the class
/// is not found or the constructor throws, and that of getMethodID() when there is no such constructor.
[[nodiscard]] jobject newInstance(const JNIEnvPtr& env, const std::string& className, const InstanceErrors& errors);

}  // namespace storage::javaprovider
