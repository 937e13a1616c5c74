#include "storage/javaprovider/EntryPoints.h"

#include <boost/exception/diagnostic_information.hpp>

#include <utility>

#include "JNIUtilsClass.h"
#include "JNIUtilsEnv.h"
#include "JNIUtilsLog.h"
#include "JavaProvider.h"
#include "JavaProviderFactory.h"

namespace storage::javaprovider {

using foundation::storage::provider::IProvider;
using foundation::storage::provider::PhysicalProviderFactory;

IProvider* buildProvider(std::shared_ptr<jvm_interface::JVM> jvm, const std::string& className) {
    const JNIEnvPtr env(jvm);
    jobject provider = newInstance(env, className, {});
    return buildProvider(std::move(jvm), provider);
}

IProvider* buildProvider(std::shared_ptr<jvm_interface::JVM> jvm, jobject instance) {
    return new JavaProvider(std::move(jvm), instance);
}

std::shared_ptr<PhysicalProviderFactory> buildPhysicalFactory(std::shared_ptr<jvm_interface::JVM> jvm,
                                                              const std::string& className) {
    return std::make_shared<JavaProviderFactory>(std::move(jvm), className);
}

std::shared_ptr<PhysicalProviderFactory> buildPhysicalFactory(std::shared_ptr<jvm_interface::JVM> jvm,
                                                              jobject instance) {
    return std::make_shared<JavaProviderFactory>(std::move(jvm), instance);
}

namespace {

/// Writes the exception being handled to a logger of its own: a host may call before the library's static one exists
/// or after it is gone.
void logCurrentException() noexcept {
    try {
        DiagnosticLogger channel{std::string(ChannelName)};
        FOUNDATION_LOG(channel, Severity::Caught)
            << "Exception caught: " << boost::current_exception_diagnostic_information(/*verbose=*/true);
    } catch (...) {
        // The entry point promises to return; a log that fails has no other way out.
    }
}

}  // namespace

}  // namespace storage::javaprovider

void buildPhysicalFactory_V1(std::shared_ptr<jvm_interface::JVM> jvm, const char* className,
                             std::shared_ptr<foundation::storage::provider::PhysicalProviderFactory>& result) {
    try {
        const std::string name(className);
        result = storage::javaprovider::buildPhysicalFactory(std::move(jvm), name);
    } catch (...) {
        storage::javaprovider::logCurrentException();
    }
}
