#include "process/Inheritance.h"

#include <fcntl.h>
#include <unistd.h>

#include <algorithm>
#include <charconv>
#include <csignal>
#include <filesystem>
#include <string>
#include <system_error>

namespace jstore {

namespace {

std::vector<int>& noted() {
    static std::vector<int> descriptors;
    return descriptors;
}

/// The descriptors that are open now; one may be that of the folder itself.
std::vector<int> numbersInFolder() {
    std::vector<int> numbers;
    std::error_code error;
    for (std::filesystem::directory_iterator entry("/proc/self/fd", error), end; !error && entry != end;
         entry.increment(error)) {
        const std::string name = entry->path().filename().string();
        int number = -1;
        std::from_chars(name.data(), name.data() + name.size(), number);
        numbers.push_back(number);
    }
    return numbers;
}

}  // namespace

void noteInheritedDescriptors() {
    std::vector<int> numbers = numbersInFolder();
    std::erase_if(numbers, [](int number) { return number <= STDERR_FILENO || ::fcntl(number, F_GETFD) == -1; });
    std::sort(numbers.begin(), numbers.end());
    noted() = std::move(numbers);
}

const std::vector<int>& inheritedDescriptors() noexcept { return noted(); }

void keepEndsOfChildren() noexcept {
    struct sigaction action = {};
    if (::sigaction(SIGCHLD, nullptr, &action) == 0 && action.sa_handler == SIG_IGN) {
        std::signal(SIGCHLD, SIG_DFL);
    }
}

}  // namespace jstore
