#pragma once

#include <filesystem>
#include <string>
#include <vector>

#include "storage/jvm/JavaCandidate.h"

namespace storage::jvm::detail {

/// The places where searchJava() looks for Java.
struct SearchPlaces {
    std::string javaHome;                                    ///< the variable JAVA_HOME; empty: not set
    std::string path;                                        ///< the variable PATH
    std::vector<std::filesystem::path> distributionFolders;  ///< folders whose subfolders are Java homes

    /// The places of this process.
    [[nodiscard]] static SearchPlaces ofProcess();
};

/// The candidates in the order of the search, at least one for each place. Reads the file system, loads nothing. An
/// empty `givenHome` is no place.
[[nodiscard]] std::vector<JavaCandidate> searchJava(const std::filesystem::path& givenHome, const SearchPlaces& places);

}  // namespace storage::jvm::detail
