#pragma once

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <filesystem>
#include <string>
#include <utility>
#include <vector>

#include "support/Jstore.h"
#include "support/TemporaryFolder.h"

namespace jstore::test {

namespace fs = std::filesystem;

/// What doctor prints of an archive that this run uses.
inline const auto Uses = ::testing::ContainsRegex("ok +archive +.*/classes-[0-9.]+.jsa: used\n");

/// An installation of its own, without a class archive: the program and its jars.
class ArchiveTest : public ::testing::Test {
protected:
    ArchiveTest() {
        const fs::path program = JSTORE_PROGRAM;
        const auto root = program.parent_path().parent_path();
        fs::create_directory(m_root / "bin");
        fs::create_directory(m_root / "share");
        fs::copy(program, m_root / "bin/jstore");
        fs::copy(root / "share/java", m_root / "share/java", fs::copy_options::recursive);
        m_listed.file("document.txt");
    }

    /// Runs the copied program.
    [[nodiscard]] Outcome installed(std::vector<std::string> arguments) const {
        return through("", std::move(arguments));
    }
    /// The same, after a shell has run some words.
    [[nodiscard]] Outcome through(const std::string& before, std::vector<std::string> arguments) const {
        return Jstore(std::move(arguments)).through(programIn(m_root, before)).run();
    }
    /// The words that run an installation's program in place of the original.
    [[nodiscard]] static std::vector<std::string> programIn(const TemporaryFolder& root,
                                                            const std::string& before = "") {
        return {"/bin/sh", "-c", before + "exec '" + (root / "bin/jstore").string() + "' \"$@\""};
    }
    Outcome make() const { return installed({"doctor", "--make-archive"}); }

    [[nodiscard]] fs::path folder() const { return m_root / "lib/jstore"; }
    [[nodiscard]] std::string location() const { return m_listed.path().string(); }

    [[nodiscard]] std::vector<fs::path> archives() const {
        return fs::exists(folder()) ? std::vector<fs::path>(fs::directory_iterator(folder()), {})
                                    : std::vector<fs::path>();
    }

    TemporaryFolder m_root;
    TemporaryFolder m_listed;
};

}  // namespace jstore::test
