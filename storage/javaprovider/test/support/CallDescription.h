#pragma once

#include <jni.h>

#include <cstdarg>

#include "support/JavaNames.h"
#include "support/JniCall.h"

namespace storage::javaprovider::test {

/// Fills in what a record says of the arguments of one kind of JNI function. Each kind is a type whose `describe` takes
/// the record, the names of the machine, and the arguments of the function.

/// Nothing but the name.
struct Plain {
    template <class... Arguments>
    static void describe(JniCall&, const JavaNames&, Arguments...) {}
};

/// The object that the function works on, whatever else it takes.
struct OnObject {
    template <class... Rest>
    static void describe(JniCall& call, const JavaNames&, jobject object, Rest...) {
        call.target = object;
    }
};

/// The reference that the function releases.
struct Releasing {
    static void describe(JniCall& call, const JavaNames&, jobject reference);
};

/// The characters that the function releases.
struct ReleasingChars {
    static void describe(JniCall& call, const JavaNames&, jstring string, const void* chars);
};

struct ClassByName {
    static void describe(JniCall& call, const JavaNames&, const char* name);
};

struct MemberLookup {
    static void describe(JniCall& call, const JavaNames&, jclass clazz, const char* name, const char* signature);
};

struct StaticField {
    static void describe(JniCall& call, const JavaNames&, jclass clazz, jfieldID field);
};

/// IsInstanceOf: the object and the class.
struct ObjectAndClass {
    static void describe(JniCall& call, const JavaNames&, jobject object, jclass clazz);
};

struct ThrowingNew {
    static void describe(JniCall& call, const JavaNames&, jclass clazz, const char* message);
};

/// A Java method called on an object.
struct MethodCall {
    static void describe(JniCall& call, const JavaNames& names, jobject object, jmethodID method, va_list arguments);
    static void describe(JniCall& call, const JavaNames& names, jobject object, jmethodID method,
                         const jvalue* arguments);
};

/// A constructor or a static method, called on a class.
struct ClassMethodCall {
    static void describe(JniCall& call, const JavaNames& names, jclass clazz, jmethodID method, va_list arguments);
    static void describe(JniCall& call, const JavaNames& names, jclass clazz, jmethodID method,
                         const jvalue* arguments);
};

struct TextOfBytes {
    static void describe(JniCall& call, const JavaNames&, const char* text);
};

struct TextOfUnits {
    static void describe(JniCall& call, const JavaNames&, const jchar* units, jsize length);
};

struct ArrayElement {
    static void describe(JniCall& call, const JavaNames&, jobjectArray array, jsize index);
};

struct BufferOfMemory {
    static void describe(JniCall& call, const JavaNames&, void* address, jlong capacity);
};

struct NativeMethods {
    static void describe(JniCall& call, const JavaNames& names, jclass clazz, const JNINativeMethod* methods,
                         jint count);
};

}  // namespace storage::javaprovider::test
