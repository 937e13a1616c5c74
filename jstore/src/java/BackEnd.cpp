#include "java/BackEnd.h"

#include <fmt/format.h>

#include <exception>
#include <utility>

#include "base/MemoryError.h"
#include "base/Text.h"
#include "foundation/storage/provider/IConfigurableProvider.h"
#include "java/ClassPath.h"
#include "java/JavaError.h"
#include "java/LastFailure.h"
#include "storage/javaprovider/EntryPoints.h"
#include "storage/jvm/JVMWrapper.h"

namespace jstore {

using foundation::storage::provider::IConfigurableProvider;
using foundation::storage::provider::IProvider;
using storage::jvm::EmbeddedJVM;
using storage::jvm::JVMWrapper;

namespace {

std::string classPathText(const Options& options) {
    std::string text;
    for (const auto& entry : classPathOf(options)) {
        text += (text.empty() ? "" : ":") + entry.path.string();
    }
    return text;
}

/// Java says "java.lang.NoClassDefFoundError: com/example/Nope" for a class that is nowhere, and the same with
/// "(wrong name: …)" after it for a file that holds another class.
std::string reason(const std::string& javaText, const Options& options) {
    if (auto hint = memoryHint(javaText)) {
        return *hint;
    }
    const auto missing = "java.lang.NoClassDefFoundError: " + slashed(options.provider);
    if (oneLine(javaText) == missing) {
        return fmt::format("class not found on the class path ({})", classPathText(options));
    }
    return javaText;
}

CommandError unusable(const Options& options, const std::string& why) {
    const auto text = fmt::format("cannot use provider {}: {}", dotted(options.provider), reason(why, options));
    return CommandError({"Provider", {}, text, ExitCode::Failed});
}

void configure(IProvider& provider, const Options& options) {
    if (options.settings.empty()) {
        return;
    }
    try {
        dynamic_cast<IConfigurableProvider&>(provider).configure(treeOf(options.settings));
    } catch (const foundation::storage::provider::Exception& error) {
        const auto& last = options.settings.back();
        throw usageError(
            fmt::format("--config {}={}: the back end refuses it ({})", last.key, last.value, toString(error.code())));
    } catch (const std::exception& error) {
        const auto why = memoryHint(error).value_or(error.what());
        const auto text = fmt::format("cannot configure {}: {}", dotted(options.provider), why);
        throw CommandError({"Provider", {}, text, ExitCode::Failed});
    }
}

/// Keeps what Java code prints off the terminal: an archive that cannot be written prints stack traces about what it
/// throws as well.
void silenceErrors(JNIEnv* env) {
    auto* const stream = env->FindClass("java/io/OutputStream");
    auto* const print = env->FindClass("java/io/PrintStream");
    auto* const system = env->FindClass("java/lang/System");
    if (stream == nullptr || print == nullptr || system == nullptr) {
        env->ExceptionClear();
        return;
    }
    auto* const nothing = env->GetStaticMethodID(stream, "nullOutputStream", "()Ljava/io/OutputStream;");
    auto* const sink = env->CallStaticObjectMethod(stream, nothing);
    if (env->ExceptionCheck() == JNI_TRUE) {
        env->ExceptionClear();
        return;
    }
    auto* const printer = env->NewObject(print, env->GetMethodID(print, "<init>", "(Ljava/io/OutputStream;)V"), sink);
    if (printer != nullptr) {
        env->CallStaticVoidMethod(system, env->GetStaticMethodID(system, "setErr", "(Ljava/io/PrintStream;)V"),
                                  printer);
    }
    env->ExceptionClear();
}

/// A global reference to a new object; null with a Java exception pending.
jobject newObject(JNIEnv* env, const std::string& className) {
    auto* const type = env->FindClass(className.c_str());
    auto* const constructor = type == nullptr ? nullptr : env->GetMethodID(type, "<init>", "()V");
    auto* const object = constructor == nullptr ? nullptr : env->NewObject(type, constructor);
    return object == nullptr ? nullptr : env->NewGlobalRef(object);
}

}  // namespace

BackEnd::BackEnd(std::shared_ptr<EmbeddedJVM> jvm, const Options& options)
    : m_jvm(std::move(jvm)), m_quiet(options.logLevel == LogLevel::Off) {
    JVMWrapper attached(m_jvm->getJavaVM());
    auto* const env = attached.getEnv();
    m_object = newObject(env, slashed(options.provider));
    if (m_object == nullptr) {
        const auto error = takeJavaError(env);
        throw unusable(options, error ? error->text : "no memory is left in Java");
    }
    try {
        m_provider.reset(storage::javaprovider::buildProvider(m_jvm, m_object));
    } catch (const std::exception& error) {
        env->DeleteGlobalRef(m_object);
        throw unusable(options, memoryHint(error).value_or(error.what()));
    }
    try {
        configure(*m_provider, options);
    } catch (const CommandError&) {
        release();
        throw;
    }
}

BackEnd::~BackEnd() {
    if (m_provider != nullptr) {
        release();
    }
}

void BackEnd::release() {
    m_provider.reset();
    JVMWrapper attached(m_jvm->getJavaVM());
    attached.getEnv()->ExceptionClear();
    attached.getEnv()->DeleteGlobalRef(m_object);
}

std::string BackEnd::reasonOf(const foundation::storage::provider::Exception& error) const {
    JVMWrapper attached(m_jvm->getJavaVM());
    const auto last = takeLastFailure(attached.getEnv(), m_object);
    return last && last->isReportedBy(error) ? last->reason : std::string();
}

std::optional<Problem> BackEnd::closeObject() {
    JVMWrapper attached(m_jvm->getJavaVM());
    auto* const env = attached.getEnv();
    auto* const closeable = env->FindClass("java/lang/AutoCloseable");
    if (m_quiet) {
        silenceErrors(env);
    }
    if (closeable != nullptr && env->IsInstanceOf(m_object, closeable) == JNI_TRUE) {
        env->CallVoidMethod(m_object, env->GetMethodID(closeable, "close", "()V"));
    }
    return problemOf(takeJavaError(env));
}

std::optional<Problem> BackEnd::end() {
    auto problem = closeObject();
    m_provider.reset();
    // The provider does not look for an exception there, so one that was thrown is still pending on this thread.
    JVMWrapper attached(m_jvm->getJavaVM());
    auto thrown = problemOf(takeJavaError(attached.getEnv()));
    attached.getEnv()->DeleteGlobalRef(m_object);
    return problem ? problem : thrown;
}

}  // namespace jstore
