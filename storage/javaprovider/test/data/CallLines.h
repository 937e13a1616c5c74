#pragma once

#include <string>
#include <vector>

namespace storage::javaprovider::test {

/// The groups of a recorder's lines, one after the other.
[[nodiscard]] inline std::vector<std::string> joined(const std::vector<std::vector<std::string>>& groups) {
    std::vector<std::string> lines;
    for (const auto& group : groups) {
        lines.insert(lines.end(), group.begin(), group.end());
    }
    return lines;
}

/// The lines that a recorder writes when a location's Java object is made.
[[nodiscard]] inline std::vector<std::string> makingOfUri(const std::string& text) {
    return {"GetMethodID com/corvallen/storage/provider/StorageURI <init>(Ljava/lang/String;)V", "NewString " + text,
            "NewObject com/corvallen/storage/provider/StorageURI <init>(Ljava/lang/String;)V", "DeleteLocalRef"};
}

}  // namespace storage::javaprovider::test
