#pragma once

#include <cstdlib>
#include <string>

namespace storage::javaprovider::test {

/// How much a test does, unless the environment variable says so: sanitizers make each step many times slower.
[[nodiscard]] inline long numberFromEnvironment(const char* name, long otherwise) {
    const char* const text = std::getenv(name);
    return text == nullptr ? otherwise : std::stol(text);
}

}  // namespace storage::javaprovider::test
