#include "java/LastFailure.h"

#include <utility>

#include "fl/i18n/text.h"
#include "java/JavaText.h"

namespace jstore {

using foundation::storage::provider::Exception;
using foundation::storage::provider::StorageIRI;

namespace {

constexpr const char* DottedName = "com.corvallen.storage.provider.LastFailure";

/// The class as the object's own class would find it; null, with an exception perhaps pending, if it does not.
jclass classBeside(JNIEnv* env, jobject object) {
    auto* const type = env->GetObjectClass(object);
    auto* const getLoader = env->GetMethodID(env->GetObjectClass(type), "getClassLoader", "()Ljava/lang/ClassLoader;");
    auto* const loader = getLoader == nullptr ? nullptr : env->CallObjectMethod(type, getLoader);
    if (env->ExceptionCheck() == JNI_TRUE || loader == nullptr) {
        return nullptr;
    }
    auto* const load =
        env->GetMethodID(env->GetObjectClass(loader), "loadClass", "(Ljava/lang/String;)Ljava/lang/Class;");
    auto* const name = load == nullptr ? nullptr : env->NewStringUTF(DottedName);
    return name == nullptr ? nullptr : static_cast<jclass>(env->CallObjectMethod(loader, load, name));
}

/// The Java object; null if there is none.
jobject take(JNIEnv* env, jobject object) {
    auto* const type = classBeside(env, object);
    if (env->ExceptionCheck() == JNI_TRUE || type == nullptr) {
        return nullptr;
    }
    auto* const take = env->GetStaticMethodID(type, "take", "()Lcom/corvallen/storage/provider/LastFailure;");
    auto* const taken = take == nullptr ? nullptr : env->CallStaticObjectMethod(type, take);
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
    auto* const taken = take(env, object);
    auto* const number =
        taken == nullptr ? nullptr : env->GetMethodID(env->GetObjectClass(taken), "getErrorCodeNumber", "()I");
    if (number == nullptr || env->ExceptionCheck() == JNI_TRUE) {
        // A class path of the user's own may hold a contract that does not remember: then there is no reason to show.
        env->ExceptionClear();
        return std::nullopt;
    }
    const auto code = errorCodeOf(env->CallIntMethod(taken, number));
    if (env->ExceptionCheck() == JNI_TRUE) {
        env->ExceptionClear();
        return std::nullopt;
    }
    return LastFailure{code, StorageIRI(callForText(env, taken, "getLocationString")),
                       fl::i18n::to_string(callForText(env, taken, "getReason"))};
}

}  // namespace jstore
