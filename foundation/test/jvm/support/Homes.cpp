#include "Homes.h"

#include <elf.h>
#include <link.h>

#include <algorithm>
#include <array>
#include <cstdint>
#include <fstream>
#include <stdexcept>

#include "storage/jvm/EmbeddedJVM.h"

namespace test {

namespace fs = std::filesystem;

namespace {

void linkContents(const fs::path& from, const fs::path& to) {
    fs::create_directories(to);
    for (const auto& entry : fs::directory_iterator(from)) {
        fs::create_symlink(entry.path(), to / entry.path().filename());
    }
}

fs::path libjvmOfThisMachine() {
    const auto candidates = storage::jvm::findJava();
    const auto usable = std::ranges::find(candidates, "", &storage::jvm::JavaCandidate::problem);
    if (usable == candidates.end()) {
        throw std::runtime_error("no Java on this machine");
    }
    return fs::canonical(usable->libjvm);
}

}  // namespace

void makeEmptyLibrary(const fs::path& file) {
    ElfW(Ehdr) header{};
    std::ifstream("/proc/self/exe", std::ios::binary).read(reinterpret_cast<char*>(&header), sizeof(header));
    header.e_phnum = 0;
    header.e_shnum = 0;
    std::ofstream(file, std::ios::binary).write(reinterpret_cast<const char*>(&header), sizeof(header));
}

void makeEmptyImage(const fs::path& file) {
    const std::array<std::uint32_t, 8> words{0xCAFEDADA, 0x10000};
    std::ofstream(file, std::ios::binary).write(reinterpret_cast<const char*>(words.data()), sizeof(words));
}

void makeEmptyHome(const fs::path& home) {
    fs::create_directories(home / "lib/server");
    for (const auto* const library : {"server/libjvm.so", "libjava.so", "libjimage.so"}) {
        makeEmptyLibrary(home / "lib" / library);
    }
    makeEmptyImage(home / "lib/modules");
}

void makeLinkedHome(const fs::path& home) {
    const fs::path libjvm = libjvmOfThisMachine();
    const fs::path original = libjvm.parent_path().parent_path().parent_path();
    linkContents(original, home);
    fs::remove(home / "lib");
    linkContents(original / "lib", home / "lib");
    fs::remove(home / "lib/server");
    linkContents(libjvm.parent_path(), home / "lib/server");
    fs::remove(home / "lib/server/libjvm.so");
    fs::copy_file(libjvm, home / "lib/server/libjvm.so");
}

}  // namespace test
