// Gives each file of the folders named on the command line to the fuzz target that this program is linked with.
#include <algorithm>
#include <cstdio>
#include <exception>
#include <filesystem>
#include <fstream>
#include <iterator>
#include <string>
#include <vector>

#include "Input.h"

namespace {

std::vector<std::filesystem::path> filesIn(const std::filesystem::path& folder) {
    std::vector<std::filesystem::path> files;
    for (const auto& entry : std::filesystem::directory_iterator(folder)) {
        files.push_back(entry.path());
    }
    std::sort(files.begin(), files.end());
    return files;
}

void replay(const std::filesystem::path& file) {
    // Printed before, since a broken property ends the process.
    (void)std::fprintf(stderr, "%s\n", file.c_str());
    std::ifstream in(file, std::ios::binary);
    in.exceptions(std::ios::badbit);
    const std::string input{std::istreambuf_iterator<char>(in), {}};
    LLVMFuzzerTestOneInput(reinterpret_cast<const std::uint8_t*>(input.data()), input.size());
}

}  // namespace

int main(int argc, char** argv) {
    std::size_t count = 0;
    try {
        for (int i = 1; i < argc; ++i) {
            for (const auto& file : filesIn(argv[i])) {
                replay(file);
                ++count;
            }
        }
    } catch (const std::exception& error) {
        (void)std::fprintf(stderr, "%s\n", error.what());
        return 1;
    }
    (void)std::printf("%zu inputs\n", count);
    // A corpus that is not found must not look like one that passes.
    return count == 0 ? 1 : 0;
}
