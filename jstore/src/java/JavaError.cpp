#include "java/JavaError.h"

#include <fmt/format.h>

#include "base/MemoryError.h"
#include "fl/i18n/text.h"
#include "java/JavaText.h"
#include "java/LastFailure.h"
#include "storage/javaprovider/ErrorNumbers.h"

namespace jstore {

using foundation::storage::provider::ErrorCode;

namespace {

void readProviderException(JNIEnv* env, jthrowable throwable, JavaError& error) {
    const jclass type = env->FindClass("com/corvallen/storage/provider/ProviderException");
    if (type == nullptr) {
        env->ExceptionClear();  // Without the contract on the class path, it is not a ProviderException.
        return;
    }
    if (env->IsInstanceOf(throwable, type) == JNI_TRUE) {
        const jint number = env->CallIntMethod(throwable, env->GetMethodID(type, "getErrorCodeNumber", "()I"));
        error.code = storage::javaprovider::errorCodeOf(number).value_or(ErrorCode::Unknown);
        error.location = fl::i18n::to_string(callForText(env, throwable, "getLocationString"));
        // Asking for the number has made this exception the last failure.
        const std::optional<LastFailure> last = takeLastFailure(env, throwable);
        error.reason = last ? last->reason : std::string();
    }
}

}  // namespace

std::optional<JavaError> takeJavaError(JNIEnv* env) {
    const jthrowable throwable = env->ExceptionOccurred();
    if (throwable == nullptr) {
        return std::nullopt;
    }
    env->ExceptionClear();
    JavaError error;
    error.text = fl::i18n::to_string(callForText(env, throwable, "toString"));
    readProviderException(env, throwable, error);
    return error;
}

std::optional<Problem> problemOf(const std::optional<JavaError>& error) {
    if (!error) {
        return std::nullopt;
    }
    const auto code = std::string(toString(error->code));
    constexpr const char* loss = "what was written may be lost";
    if (error->location.empty()) {
        if (const std::optional<std::string> hint = memoryHint(error->text)) {
            return Problem{MemoryCode, {}, fmt::format("{}: {}", loss, *hint), ExitCode::Failed};
        }
        return Problem{code, {}, fmt::format("{}: {}: {}", code, loss, error->text), exitCodeOf(error->code)};
    }
    Problem problem{code, error->location, loss, exitCodeOf(error->code)};
    addReason(problem, error->reason);
    if (!problem.reason.empty()) {
        problem.text += ": " + problem.reason;
    }
    return problem;
}

}  // namespace jstore
