#pragma once

#include <string>
#include <vector>

#include "support/JniRecorder.h"

namespace storage::javaprovider::test {

/// The numbers of the references that the matching calls of this thread gave, in order.
[[nodiscard]] inline std::vector<ReferenceNumber> resultsOf(const JniRecorder& recorder, const std::string& pattern) {
    std::vector<ReferenceNumber> numbers;
    for (const JniCall& call : recorder.records({.only = pattern})) {
        numbers.push_back(call.resultReference);
    }
    return numbers;
}

/// The numbers of the local references that this thread released one by one, in order.
[[nodiscard]] inline std::vector<ReferenceNumber> releasedLocals(const JniRecorder& recorder) {
    std::vector<ReferenceNumber> numbers;
    for (const JniCall& call : recorder.records({.only = "DeleteLocalRef"})) {
        numbers.push_back(call.targetReference);
    }
    return numbers;
}

}  // namespace storage::javaprovider::test
