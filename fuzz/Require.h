#pragma once

#include <cstdio>
#include <cstdlib>
#include <string>

namespace fuzz {

/// Ends the process, telling the broken property and what broke it, unless the property holds. The fuzzer takes that
/// for a find and keeps the input.
inline void require(bool holds, const char* property, const std::string& detail = {}) {
    if (!holds) {
        (void)std::fprintf(stderr, "broken property: %s\n%s\n", property, detail.c_str());
        std::abort();
    }
}

}  // namespace fuzz
