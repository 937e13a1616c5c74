#include "jvm/RedirectedImports.h"

#include <dlfcn.h>
#include <gtest/gtest.h>
#include <unistd.h>

#include <array>
#include <cstring>
#include <filesystem>

namespace storage::jvm::detail {
namespace {

/// Called in place of getcwd(), with no buffer of the caller's.
char* elsewhere(char*, std::size_t) { return strdup("/elsewhere"); }

TEST(RedirectedImportsTest, CallsOfTheLibraryGoElsewhereUntilTheEndOfTheScope) {
    const std::filesystem::path here = std::filesystem::current_path();
    const void* const library = dlsym(RTLD_DEFAULT, "_ZSt9terminatev");  // the C++ library's std::terminate()
    {
        const std::array imports{Import{"getcwd", reinterpret_cast<void*>(elsewhere)},
                                 Import{"no such thing", nullptr}};
        const RedirectedImports redirected(library, imports);
        EXPECT_EQ(std::filesystem::current_path(), "/elsewhere");
        std::array<char, 4096> own{};
        EXPECT_EQ(getcwd(own.data(), own.size()), here) << "the program's own calls";
    }
    EXPECT_EQ(std::filesystem::current_path(), here);
}

TEST(RedirectedImportsTest, AddressOutsideOfAnyLibraryChangesNothing) {
    const int local = 0;
    const std::array imports{Import{"getcwd", reinterpret_cast<void*>(elsewhere)}};
    const RedirectedImports redirected(&local, imports);
    EXPECT_NE(std::filesystem::current_path(), "/elsewhere");
}

}  // namespace
}  // namespace storage::jvm::detail
