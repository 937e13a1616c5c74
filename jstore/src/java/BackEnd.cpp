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

using foundation::storage::provider::ExtendedFeature;
using foundation::storage::provider::IConfigurableProvider;
using foundation::storage::provider::IProvider;
using storage::jvm::EmbeddedJVM;
using storage::jvm::JVMWrapper;

namespace {

std::string classPathText(const Options& options) {
    std::string text;
    for (const ClassPathEntry& entry : classPathOf(options)) {
        text += (text.empty() ? "" : ":") + entry.path.string();
    }
    return text;
}

/// Java says "java.lang.NoClassDefFoundError: com/example/Nope" for a class that is nowhere, and the same with
/// "(wrong name: …)" after it for a file that holds another class.
std::string reason(const std::string& javaText, const Options& options) {
    if (std::optional<std::string> hint = memoryHint(javaText)) {
        return *hint;
    }
    const std::string missing = "java.lang.NoClassDefFoundError: " + slashed(options.provider);
    if (oneLine(javaText) == missing) {
        return fmt::format("class not found on the class path ({})", classPathText(options));
    }
    return javaText;
}

CommandError unusable(const Options& options, const std::string& why) {
    const std::string text = fmt::format("cannot use provider {}: {}", dotted(options.provider), reason(why, options));
    return CommandError({"Provider", {}, text, ExitCode::Failed});
}

void configure(IProvider& provider, const Options& options) {
    if (options.settings.empty()) {
        return;
    }
    try {
        dynamic_cast<IConfigurableProvider&>(provider).configure(treeOf(options.settings));
    } catch (const foundation::storage::provider::Exception& error) {
        const Setting& last = options.settings.back();
        throw usageError(fmt::format("--config {}={}: the back end refuses this value ({})", last.key, last.value,
                                     toString(error.code())));
    } catch (const std::exception& error) {
        const std::string why = memoryHint(error).value_or(error.what());
        const std::string text = fmt::format("cannot configure {}: {}", dotted(options.provider), why);
        throw CommandError({"Provider", {}, text, ExitCode::Failed});
    }
}

/// Keeps what Java code prints off the terminal. If an archive cannot be written, Java prints stack traces.
void silenceErrors(JNIEnv* env) {
    const jclass stream = env->FindClass("java/io/OutputStream");
    const jclass print = env->FindClass("java/io/PrintStream");
    const jclass system = env->FindClass("java/lang/System");
    if (stream == nullptr || print == nullptr || system == nullptr) {
        env->ExceptionClear();
        return;
    }
    const jmethodID nothing = env->GetStaticMethodID(stream, "nullOutputStream", "()Ljava/io/OutputStream;");
    const jobject sink = env->CallStaticObjectMethod(stream, nothing);
    if (env->ExceptionCheck() == JNI_TRUE) {
        env->ExceptionClear();
        return;
    }
    const jobject printer = env->NewObject(print, env->GetMethodID(print, "<init>", "(Ljava/io/OutputStream;)V"), sink);
    if (printer != nullptr) {
        env->CallStaticVoidMethod(system, env->GetStaticMethodID(system, "setErr", "(Ljava/io/PrintStream;)V"),
                                  printer);
    }
    env->ExceptionClear();
}

/// A global reference to a new object; null with a Java exception pending.
jobject newObject(JNIEnv* env, const std::string& className) {
    const jclass type = env->FindClass(className.c_str());
    const jmethodID constructor = type == nullptr ? nullptr : env->GetMethodID(type, "<init>", "()V");
    const jobject object = constructor == nullptr ? nullptr : env->NewObject(type, constructor);
    return object == nullptr ? nullptr : env->NewGlobalRef(object);
}

}  // namespace

BackEnd::BackEnd(std::shared_ptr<EmbeddedJVM> jvm, const Options& options)
    : m_jvm(std::move(jvm)), m_quiet(options.logLevel == LogLevel::Off) {
    JVMWrapper attached(m_jvm->getJavaVM());
    JNIEnv* const env = attached.getEnv();
    m_object = newObject(env, slashed(options.provider));
    if (m_object == nullptr) {
        const std::optional<JavaError> error = takeJavaError(env);
        throw unusable(options, error ? error->text : "Java is out of memory");
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

bool BackEnd::hasFeature(ExtendedFeature feature) const {
    const bool has = m_provider->hasFeature(feature);
    // The provider leaves an exception that Java threw at the question pending.
    JVMWrapper attached(m_jvm->getJavaVM());
    attached.getEnv()->ExceptionClear();
    return has;
}

std::string BackEnd::reasonOf(const foundation::storage::provider::Exception& error) const {
    JVMWrapper attached(m_jvm->getJavaVM());
    const std::optional<LastFailure> last = takeLastFailure(attached.getEnv(), m_object);
    return last && last->isReportedBy(error) ? last->reason : std::string();
}

std::optional<Problem> BackEnd::closeObject() {
    JVMWrapper attached(m_jvm->getJavaVM());
    JNIEnv* const env = attached.getEnv();
    const jclass closeable = env->FindClass("java/lang/AutoCloseable");
    if (m_quiet) {
        silenceErrors(env);
    }
    if (closeable != nullptr && env->IsInstanceOf(m_object, closeable) == JNI_TRUE) {
        env->CallVoidMethod(m_object, env->GetMethodID(closeable, "close", "()V"));
    }
    return problemOf(takeJavaError(env));
}

std::optional<Problem> BackEnd::end() {
    std::optional<Problem> problem = closeObject();
    m_provider.reset();
    // The provider does not check for an exception there, so one that dispose() threw is still pending.
    JVMWrapper attached(m_jvm->getJavaVM());
    std::optional<Problem> thrown = problemOf(takeJavaError(attached.getEnv()));
    attached.getEnv()->DeleteGlobalRef(m_object);
    return problem ? problem : thrown;
}

}  // namespace jstore
