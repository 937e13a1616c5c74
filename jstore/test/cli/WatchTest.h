#pragma once

#include <gtest/gtest.h>

#include <functional>
#include <memory>
#include <string>
#include <string_view>
#include <utility>
#include <vector>

#include "support/FolderTest.h"
#include "support/Jstore.h"

namespace jstore::test {

/// Whether the run has written the text by now.
[[nodiscard]] inline std::function<bool(const Outcome&)> says(const std::string& text) {
    return [text](const Outcome& outcome) { return (outcome.out + outcome.err).find(text) != std::string::npos; };
}

/// Watches of a folder "w".
class WatchTest : public FolderTest {
protected:
    WatchTest() { m_folder.folder("w/sub"); }

    /// A watch of the folder "w" that has begun.
    [[nodiscard]] std::unique_ptr<Jstore> watching(std::vector<std::string> arguments, const std::string& ready) const {
        arguments.insert(arguments.begin(), "watch");
        arguments.push_back(at("w"));
        auto run = std::make_unique<Jstore>(std::move(arguments));
        run->start();
        EXPECT_TRUE(run->readUntil(says(ready))) << run->soFar().err;
        return run;
    }
    [[nodiscard]] std::unique_ptr<Jstore> watching(std::vector<std::string> arguments) const {
        return watching(std::move(arguments), readyLine("w"));
    }

    [[nodiscard]] std::string readyLine(std::string_view name) const { return "jstore: watching " + at(name) + '\n'; }
    [[nodiscard]] std::string line(const char* event, const char* type, std::string_view name) const {
        return std::string(event) + "  " + type + "  " + at(name) + '\n';
    }
};

}  // namespace jstore::test
