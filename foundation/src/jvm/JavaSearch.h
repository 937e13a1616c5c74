#pragma once

#include <filesystem>
#include <string>
#include <vector>

#include "storage/jvm/EmbeddedJVM.h"

namespace storage::jvm::detail {

/// Where Java is looked for: the process's surroundings, or a test's.
struct SearchPlaces {
    std::string javaHome;                                    ///< the variable JAVA_HOME; empty: not set
    std::string path;                                        ///< the variable PATH
    std::vector<std::filesystem::path> distributionFolders;  ///< folders whose subfolders are Java homes

    /// The places of this process.
    [[nodiscard]] static SearchPlaces ofProcess();
};

/// Every place in the order of the search; at least one candidate for each place. Reads the file system, loads nothing.
/// An empty `givenHome` is no place.
[[nodiscard]] std::vector<JavaCandidate> searchJava(const std::filesystem::path& givenHome, const SearchPlaces& places);

/// A candidate as a phrase of an error text: its origin, its home and its problem.
[[nodiscard]] std::string describe(const JavaCandidate& candidate);

}  // namespace storage::jvm::detail
