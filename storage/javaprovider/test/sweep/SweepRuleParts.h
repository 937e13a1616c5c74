#pragma once

#include <string>
#include <vector>

#include "sweep/SweepRules.h"

// What the files of rules share; each has one subject.
namespace storage::javaprovider::test {

/// The description of the Java exception that a failing call leaves.
inline const std::string Injected = "java.lang.OutOfMemoryError: made to fail by a test";
/// What becomes of it where the back end is asked.
inline const std::string Unexpected =
    "ProviderCallback threw an unexpected java.lang.OutOfMemoryError. The message was: made to fail by a test";
inline const std::string MethodNotFound = "Method <method> with signature <signature> not found.\n";
inline const std::string NoMemory = "std::bad_alloc";
inline const std::string Incomplete = "The provider has no Java object, or classes of its contract are missing";

/// A call whose failure is a want of memory.
[[nodiscard]] inline SweepRule wantOfMemory(const char* operation, const char* call,
                                            SweepRule::Way way = SweepRule::Way::Either) {
    return {.operation = operation, .call = call, .way = way, .ending = Ending::InternalBadAlloc, .text = NoMemory};
}

/// A call whose exception is translated before its result is used.
[[nodiscard]] inline SweepRule checked(const char* operation, const char* call) {
    return {.operation = operation,
            .call = call,
            .way = SweepRule::Way::WithError,
            .ending = Ending::InternalError,
            .text = Unexpected};
}

/// A call that fails without an exception and counts for what it gave.
[[nodiscard]] inline SweepRule returns(const char* operation, const char* call, const std::string& text) {
    return {.operation = operation, .call = call, .way = SweepRule::Way::Silently, .text = text};
}

/// What becomes of a good run's result.
using Altered = std::function<std::string(const std::string&)>;
/// The back end gets `said` in place of the location at that position.
[[nodiscard]] Altered withoutLocation(std::size_t number, const std::string& said);

/// One list made of several.
[[nodiscard]] std::vector<SweepRule> joined(std::vector<std::vector<SweepRule>> parts);

[[nodiscard]] std::vector<SweepRule> translationRules();
[[nodiscard]] std::vector<SweepRule> makingRules();
[[nodiscard]] std::vector<SweepRule> valueRules();
[[nodiscard]] std::vector<SweepRule> listingRules();
[[nodiscard]] std::vector<SweepRule> streamRules();
[[nodiscard]] std::vector<SweepRule> eventRules();
[[nodiscard]] std::vector<SweepRule> backEndRules();
[[nodiscard]] std::vector<SweepRule> lookUpRules();

}  // namespace storage::javaprovider::test
