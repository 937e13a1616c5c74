#include "jvm/RunningMachine.h"

#include <dlfcn.h>
#include <link.h>

#include <vector>

namespace storage::jvm::detail {

namespace fs = std::filesystem;

namespace {

using GetCreatedJavaVMs = decltype(JNI_GetCreatedJavaVMs);

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

RunningMachine findRunningMachine() {
    for (const fs::path& libjvm : loadedLibjvms()) {
        void* const library = dlopen(libjvm.c_str(), RTLD_LAZY | RTLD_NOLOAD);
        if (library == nullptr) {
            continue;
        }
        if (JavaVM* const vm = askForMachine(library); vm != nullptr) {
            // Not closed: the machine's code must stay as long as anyone holds its JavaVM.
            return {vm, libjvm};
        }
        dlclose(library);
    }
    return {askForMachine(RTLD_DEFAULT), {}};
}

}  // namespace storage::jvm::detail
