#include "support/CallDescription.h"

#include <string>
#include <string_view>
#include <type_traits>

#include "fl/i18n/text.h"

namespace storage::javaprovider::test {

namespace {

std::string orNull(const char* text) { return text == nullptr ? "(null)" : text; }

/// The first letters of the parameters' descriptors: "L[Z" for "(Ljava/lang/String;[IZ)V".
std::string parameterTypes(std::string_view signature) {
    std::string types;
    for (std::size_t at = 1; at < signature.size() && signature[at] != ')'; ++at) {
        types += signature[at];
        while (signature[at] == '[') {
            ++at;
        }
        if (signature[at] == 'L') {
            at = signature.find(';', at);
        }
    }
    return types;
}

/// The next argument as a C call passes it: small integers as int, float as double.
jvalue nextArgument(char type, va_list& arguments) {
    jvalue value{};
    switch (type) {
        case 'Z':
            value.z = static_cast<jboolean>(va_arg(arguments, int) != 0);
            break;
        case 'B':
            value.b = static_cast<jbyte>(va_arg(arguments, int));
            break;
        case 'C':
            value.c = static_cast<jchar>(va_arg(arguments, int));
            break;
        case 'S':
            value.s = static_cast<jshort>(va_arg(arguments, int));
            break;
        case 'I':
            value.i = va_arg(arguments, jint);
            break;
        case 'J':
            value.j = va_arg(arguments, jlong);
            break;
        case 'F':
            value.f = static_cast<jfloat>(va_arg(arguments, double));
            break;
        case 'D':
            value.d = va_arg(arguments, double);
            break;
        default:
            value.l = va_arg(arguments, jobject);
            break;
    }
    return value;
}

void readArguments(JniCall& call, const std::string& signature, va_list arguments) {
    va_list copy;  // the call itself still needs the original
    va_copy(copy, arguments);
    for (const char type : parameterTypes(signature)) {
        call.arguments.push_back({type, nextArgument(type, copy)});
    }
    va_end(copy);
}

void readArguments(JniCall& call, const std::string& signature, const jvalue* arguments) {
    for (const char type : parameterTypes(signature)) {
        call.arguments.push_back({type, *arguments++});
    }
}

}  // namespace

void Releasing::describe(JniCall& call, const JavaNames&, jobject reference) {
    call.target = reference;
    call.released = reference;
}

void ReleasingChars::describe(JniCall& call, const JavaNames&, jstring string, const void* chars) {
    call.target = string;
    call.released = chars;
}

void ClassByName::describe(JniCall& call, const JavaNames&, const char* name) { call.text = orNull(name); }

void MemberLookup::describe(JniCall& call, const JavaNames& names, jclass clazz, const char* name,
                            const char* signature) {
    call.target = clazz;
    const std::string descriptor = orNull(signature);
    const char* separator = descriptor.starts_with('(') ? "" : " ";
    call.text = names.ofClass(clazz) + " " + orNull(name) + separator + descriptor;
}

void StaticField::describe(JniCall& call, const JavaNames& names, jclass clazz, jfieldID field) {
    call.target = clazz;
    call.text = names.ofClass(clazz) + " " + names.ofField(clazz, field);
}

void ObjectAndClass::describe(JniCall& call, const JavaNames& names, jobject object, jclass clazz) {
    call.target = object;
    call.text = names.ofClass(clazz);
}

void ThrowingNew::describe(JniCall& call, const JavaNames& names, jclass clazz, const char*) {
    call.target = clazz;
    call.text = names.ofClass(clazz);
}

void MethodCall::describe(JniCall& call, const JavaNames& names, jobject object, jmethodID method, va_list arguments) {
    const JavaNames::Method& called = names.ofMethod(method);
    call.target = object;
    call.text = called.name + called.signature;
    readArguments(call, called.signature, arguments);
}

void MethodCall::describe(JniCall& call, const JavaNames& names, jobject object, jmethodID method,
                          const jvalue* arguments) {
    const JavaNames::Method& called = names.ofMethod(method);
    call.target = object;
    call.text = called.name + called.signature;
    readArguments(call, called.signature, arguments);
}

void ClassMethodCall::describe(JniCall& call, const JavaNames& names, jclass clazz, jmethodID method,
                               va_list arguments) {
    MethodCall::describe(call, names, clazz, method, arguments);
    call.text = names.ofClass(clazz) + " " + call.text;
}

void ClassMethodCall::describe(JniCall& call, const JavaNames& names, jclass clazz, jmethodID method,
                               const jvalue* arguments) {
    MethodCall::describe(call, names, clazz, method, arguments);
    call.text = names.ofClass(clazz) + " " + call.text;
}

void TextOfBytes::describe(JniCall& call, const JavaNames&, const char* text) { call.text = orNull(text); }

void TextOfUnits::describe(JniCall& call, const JavaNames&, const jchar* units, jsize length) {
    const std::u16string text(units, units + length);
    call.text = fl::i18n::to_string(text);
}

void ArrayElement::describe(JniCall& call, const JavaNames&, jobjectArray array, jsize index) {
    call.target = array;
    call.text = std::to_string(index);
}

void BufferOfMemory::describe(JniCall& call, const JavaNames&, void*, jlong capacity) {
    call.text = std::to_string(capacity);
}

void NativeMethods::describe(JniCall& call, const JavaNames& names, jclass clazz, const JNINativeMethod* methods,
                             jint count) {
    call.target = clazz;
    call.text = names.ofClass(clazz);
    for (jint i = 0; i < count; ++i) {
        call.text += std::string(" ") + methods[i].name + methods[i].signature;
    }
}

}  // namespace storage::javaprovider::test
