#include "Locations.h"
#include "Pairs.h"

namespace bench {

namespace {

constexpr const char* PieceGroup = "pieces";

/// The bare existence test, beside itself with something more.
template <class More>
Pair piece(const char* name, Sides& sides, More more) {
    jmethodID method = sides.floor.provider.java().method(FloorJava::FileExists);
    const auto bare = [&sides, method](std::u16string_view text) { return sides.bare.provider.exists(method, text); };
    return {name, PieceGroup, std::nullopt, 1, operation([bare] { return bare(File.text); }), operation([more, bare] {
                return more(bare);
            })};
}

std::u16string asciiOf(const foundation::storage::provider::StorageIRI& location) {
    return location.toIRI().toAsciiString(/*strict=*/true);
}

}  // namespace

std::vector<Pair> piecePairs(Sides& sides) {
    const std::shared_ptr<jvm_interface::JVM> jvm = sides.machine.jvm();
    JNIEnv* env = sides.machine.env();
    const auto handle = [jvm](const auto& bare) {
        benchmark::DoNotOptimize(FloorGuard::lookUp(jvm));
        return bare(File.text);
    };
    const auto environment = [vm = jvm->getJavaVM()](const auto& bare) {
        benchmark::DoNotOptimize(environmentOf(vm));
        return bare(File.text);
    };
    const auto frame = [env](const auto& bare) {
        env->PushLocalFrame(16);
        const bool result = bare(File.text);
        env->PopLocalFrame(nullptr);
        return result;
    };
    const auto search = [&sides](const auto& bare) {
        benchmark::DoNotOptimize(sides.floor.provider.java().method(FloorJava::FileExists));
        return bare(File.text);
    };
    const auto floor = [&sides](const auto&) { return sides.floor.provider.fileExists(File.text); };
    const auto location = [](const auto& bare) { return bare(asciiOf(File.iri)); };
    const auto library = [&sides](const auto&) { return sides.provider->fileExists(File.iri); };
    return {piece("bare test with the handle asked", sides, handle),
            piece("bare test with the environment asked for", sides, environment),
            piece("bare test in a local frame", sides, frame),
            piece("bare test with the search for the method", sides, search),
            piece("the floor: all of these", sides, floor),
            piece("bare test with the location in ASCII", sides, location),
            piece("the library", sides, library)};
}

}  // namespace bench
