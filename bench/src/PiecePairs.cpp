#include "Locations.h"
#include "Pairs.h"
#include "storage/jvm/JVMWrapper.h"

namespace bench {

namespace {

constexpr const char* Group = "pieces";

/// The floor of the existence test, beside itself with something more.
template <class More>
Pair piece(const char* name, Sides& sides, More more) {
    const auto plain = [&sides] { return sides.floor.fileExists(File.text); };
    return {name, Group, std::nullopt, 1, operation(plain), operation([more, plain] { return more(plain); })};
}

/// What a guard does before it wraps the environment: its own share of the handle, and two questions.
JavaVM* lookUp(std::shared_ptr<jvm_interface::JVM> jvm) {
    return jvm->getJavaVM() == nullptr ? nullptr : jvm->getJavaVM();
}

std::u16string asciiOf(const foundation::storage::provider::StorageIRI& location) {
    return location.toIRI().toAsciiString(/*strict=*/true);
}

}  // namespace

std::vector<Pair> piecePairs(Sides& sides) {
    const std::shared_ptr<jvm_interface::JVM> jvm = sides.machine.jvm();
    JNIEnv* env = sides.machine.env();
    const auto look = [jvm](const auto& plain) {
        benchmark::DoNotOptimize(lookUp(jvm));
        return plain();
    };
    const auto frame = [env](const auto& plain) {
        env->PushLocalFrame(16);
        const bool result = plain();
        env->PopLocalFrame(nullptr);
        return result;
    };
    const auto guard = [jvm](const auto& plain) {
        const storage::jvm::JVMWrapper wrapper(lookUp(jvm));
        return plain();
    };
    const auto location = [&sides](const auto&) { return sides.floor.fileExists(asciiOf(File.iri)); };
    const auto both = [jvm, &sides](const auto&) {
        const storage::jvm::JVMWrapper wrapper(lookUp(jvm));
        return sides.floor.fileExists(asciiOf(File.iri));
    };
    return {piece("fileExists/floor with the look at the machine", sides, look),
            piece("fileExists/floor with a local frame", sides, frame),
            piece("fileExists/floor with a guard", sides, guard),
            piece("fileExists/floor with the location's ASCII form", sides, location),
            piece("fileExists/floor with guard and ASCII form", sides, both)};
}

}  // namespace bench
