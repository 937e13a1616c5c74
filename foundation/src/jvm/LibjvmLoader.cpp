#include "jvm/LibjvmLoader.h"

#include <dlfcn.h>

#include "jvm/Failure.h"
#include "jvm/JavaSearch.h"

namespace storage::jvm::detail {

namespace {

/// The machine's entry point, or null with the linker's words in `problem`.
CreateJavaVM* load(const std::filesystem::path& libjvm, std::string& problem) {
    void* const library = dlopen(libjvm.c_str(), RTLD_NOW);
    void* const symbol = library == nullptr ? nullptr : dlsym(library, "JNI_CreateJavaVM");
    if (symbol == nullptr) {
        const char* const words = dlerror();
        problem = words == nullptr ? "it has no JNI_CreateJavaVM" : words;
    }
    return reinterpret_cast<CreateJavaVM*>(symbol);
}

}  // namespace

LoadedLibjvm loadLibjvm(const std::vector<JavaCandidate>& candidates) {
    std::string problems;
    for (JavaCandidate candidate : candidates) {
        CreateJavaVM* const create = candidate.problem.empty() ? load(candidate.libjvm, candidate.problem) : nullptr;
        if (create != nullptr) {
            return {candidate.libjvm, create};
        }
        problems += (problems.empty() ? "" : "; ") + describe(candidate);
    }
    fail("No Java found (" + problems + ")");
}

void stayInProcess() {
    Dl_info self{};
    if (dladdr(reinterpret_cast<const void*>(&stayInProcess), &self) != 0) {
        // Null when this code is linked into the program itself, which stays anyway.
        static_cast<void>(dlopen(self.dli_fname, RTLD_LAZY | RTLD_NOLOAD | RTLD_NODELETE));
    }
}

}  // namespace storage::jvm::detail
