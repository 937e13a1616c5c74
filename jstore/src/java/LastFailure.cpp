#include "java/LastFailure.h"

#include <utility>

#include "fl/i18n/text.h"
#include "java/JavaText.h"
#include "storage/javaprovider/ErrorNumbers.h"

namespace jstore {

using foundation::storage::provider::ErrorCode;
using foundation::storage::provider::Exception;
using foundation::storage::provider::StorageIRI;

namespace {

constexpr const char* DottedName = "com.corvallen.storage.provider.LastFailure";

/// The LastFailure class that the object's class loader finds; null, perhaps with a pending exception, if it finds
/// none.
jclass classBeside(JNIEnv* env, jobject object) {
    const jclass type = env->GetObjectClass(object);
    const jmethodID getLoader =
        env->GetMethodID(env->GetObjectClass(type), "getClassLoader", "()Ljava/lang/ClassLoader;");
    const jobject loader = getLoader == nullptr ? nullptr : env->CallObjectMethod(type, getLoader);
    if (env->ExceptionCheck() == JNI_TRUE || loader == nullptr) {
        return nullptr;
    }
    const jmethodID load =
        env->GetMethodID(env->GetObjectClass(loader), "loadClass", "(Ljava/lang/String;)Ljava/lang/Class;");
    const jstring name = load == nullptr ? nullptr : env->NewStringUTF(DottedName);
    return name == nullptr ? nullptr : static_cast<jclass>(env->CallObjectMethod(loader, load, name));
}

/// The Java object; null if there is none.
jobject take(JNIEnv* env, jobject object) {
    const jclass type = classBeside(env, object);
    if (env->ExceptionCheck() == JNI_TRUE || type == nullptr) {
        return nullptr;
    }
    const jmethodID take = env->GetStaticMethodID(type, "take", "()Lcom/corvallen/storage/provider/LastFailure;");
    const jobject taken = take == nullptr ? nullptr : env->CallStaticObjectMethod(type, take);
    return env->ExceptionCheck() == JNI_TRUE ? nullptr : taken;
}

}  // namespace

bool LastFailure::isReportedBy(const Exception& error) const {
    if (code != error.code()) {
        return false;
    }
    return location == error.location() ||
           (!location.empty() && !error.location().empty() &&
            location.normalized().getParent() == error.location().normalized().getParent());
}

std::optional<LastFailure> takeLastFailure(JNIEnv* env, jobject object) {
    const jobject taken = take(env, object);
    const jmethodID number =
        taken == nullptr ? nullptr : env->GetMethodID(env->GetObjectClass(taken), "getErrorCodeNumber", "()I");
    if (number == nullptr || env->ExceptionCheck() == JNI_TRUE) {
        // A class path of the user's own may hold a contract that does not remember: then there is no reason to show.
        env->ExceptionClear();
        return std::nullopt;
    }
    const ErrorCode code =
        storage::javaprovider::errorCodeOf(env->CallIntMethod(taken, number)).value_or(ErrorCode::Unknown);
    if (env->ExceptionCheck() == JNI_TRUE) {
        env->ExceptionClear();
        return std::nullopt;
    }
    return LastFailure{code, StorageIRI(callForText(env, taken, "getLocationString")),
                       fl::i18n::to_string(callForText(env, taken, "getReason"))};
}

}  // namespace jstore
