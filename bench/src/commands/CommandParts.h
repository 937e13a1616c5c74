#pragma once

#include <filesystem>
#include <vector>

#include "Row.h"

namespace bench {

/// What the measurement of whole programs works with.
struct Programs {
    std::filesystem::path jstore;
    std::filesystem::path wordJar;  ///< holds the Java program that prints a word
    std::filesystem::path work;     ///< an empty folder, for a few gigabytes
    int rounds;
    bool smoke;  ///< small data, to prove that everything works
};

/// `jstore ls` of a folder against `java` with a program that prints a word.
[[nodiscard]] std::vector<Row> measureStartUp(const Programs& programs);
/// `jstore cp` into a Java location against `cp`: one large file, and a tree of small ones.
[[nodiscard]] std::vector<Row> measureCopies(const Programs& programs);

}  // namespace bench
