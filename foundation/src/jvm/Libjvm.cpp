#include "jvm/Libjvm.h"

#include <dlfcn.h>
#include <link.h>

#include <string>
#include <utility>

#include "jvm/Failure.h"

namespace storage::jvm::detail {

namespace fs = std::filesystem;

namespace {

using GetCreatedJavaVMs = decltype(JNI_GetCreatedJavaVMs);

/// The machine's entry point, or null with the linker's words in `problem`.
CreateJavaVM* load(const fs::path& libjvm, std::string& problem) {
    void* const library = dlopen(libjvm.c_str(), RTLD_NOW);
    void* const symbol = library == nullptr ? nullptr : dlsym(library, "JNI_CreateJavaVM");
    if (symbol == nullptr) {
        const char* const words = dlerror();
        problem = words == nullptr ? "it has no JNI_CreateJavaVM" : words;
    }
    return reinterpret_cast<CreateJavaVM*>(symbol);
}

/// A candidate whose library is loaded; both null when there is none.
struct LoadedCandidate {
    const JavaCandidate* java = nullptr;
    CreateJavaVM* create = nullptr;
};

/// Loads the first usable candidate that can be loaded; one that cannot gets the linker's words as its problem.
LoadedCandidate loadFirst(std::vector<JavaCandidate>& candidates) {
    for (JavaCandidate& candidate : candidates) {
        CreateJavaVM* const create = candidate.problem.empty() ? load(candidate.libjvm, candidate.problem) : nullptr;
        if (create != nullptr) {
            return {&candidate, create};
        }
    }
    return {};
}

JavaVM* askForMachine(void* library) {
    auto* const getCreated = reinterpret_cast<GetCreatedJavaVMs*>(dlsym(library, "JNI_GetCreatedJavaVMs"));
    JavaVM* vm = nullptr;
    jsize count = 0;
    const bool answered = getCreated != nullptr && getCreated(&vm, 1, &count) == JNI_OK;
    return answered && count > 0 ? vm : nullptr;
}

std::vector<fs::path> loadedLibjvms() {
    std::vector<fs::path> found;
    const auto collect = [](dl_phdr_info* library, std::size_t, void* result) {
        if (fs::path name = library->dlpi_name; name.filename() == "libjvm.so") {
            static_cast<std::vector<fs::path>*>(result)->push_back(std::move(name));
        }
        return 0;
    };
    dl_iterate_phdr(collect, &found);
    return found;
}

}  // namespace

LoadedLibjvm loadLibjvm(std::vector<JavaCandidate> candidates) {
    if (const LoadedCandidate loaded = loadFirst(candidates); loaded.java != nullptr) {
        return {loaded.java->libjvm, loaded.create};
    }
    std::string problems;
    for (const JavaCandidate& candidate : candidates) {
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

RunningMachine findRunningMachine() {
    for (const fs::path& libjvm : loadedLibjvms()) {
        void* const library = dlopen(libjvm.c_str(), RTLD_LAZY | RTLD_NOLOAD);
        if (library == nullptr) {
            continue;
        }
        if (JavaVM* const vm = askForMachine(library); vm != nullptr) {
            // Not closed: the machine's code must stay while anyone holds its JavaVM.
            return {vm, libjvm};
        }
        dlclose(library);
    }
    return {askForMachine(RTLD_DEFAULT), {}};
}

}  // namespace storage::jvm::detail

namespace storage::jvm {

const JavaCandidate* loadJava(std::vector<JavaCandidate>& candidates) { return detail::loadFirst(candidates).java; }

}  // namespace storage::jvm
