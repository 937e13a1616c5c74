#pragma once

#include <nlohmann/json.hpp>

#include <vector>

#include "support/Jstore.h"

namespace jstore::test {

/// The objects that a run with --json wrote, one a line. Throws if a line is none.
inline std::vector<nlohmann::json> objectsOf(const Outcome& outcome) {
    std::vector<nlohmann::json> objects;
    for (const auto& line : outcome.outLines()) {
        objects.push_back(nlohmann::json::parse(line));
    }
    return objects;
}

}  // namespace jstore::test
