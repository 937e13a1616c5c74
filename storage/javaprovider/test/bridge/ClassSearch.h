#pragma once

#include <jni.h>

#include <string>
#include <vector>

#include "BridgeTest.h"
#include "support/JavaHelpers.h"

namespace storage::javaprovider::test {

/// A test of the search for a class through loaders with set answers (the fixture class ScriptedLoader).
class ClassSearchTest : public BridgeTest {
protected:
    static constexpr const char* Fixture = "com/corvallen/storage/test/ScriptedLoader";

    /// The first of loaders with these answers ("null", "missing", "known"), each the parent of the one before it.
    [[nodiscard]] jobject loaders(const std::string& answers) {
        return callStaticObject(env(), Fixture, "chain", {answers});
    }
    /// What the loaders were asked: "loader1 java.util.HashMap".
    [[nodiscard]] std::vector<std::string> questions() { return callStaticStrings(env(), Fixture, "questions"); }

    /// The class that a loader gives that knows an answer.
    [[nodiscard]] jclass answer() { return classNamed("com/corvallen/storage/test/ScriptedLoader$Answer"); }
};

}  // namespace storage::javaprovider::test
