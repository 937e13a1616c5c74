#pragma once

#include <cstddef>
#include <string>
#include <vector>

#include "sweep/SweepOutcome.h"

namespace storage::javaprovider::test {

/// A local reference that an operation leaves to its JNI frame on purpose. All others it releases itself.
struct FrameAllowance {
    /// What must have happened in the operation.
    enum class When {
        Always,
        Failing,    ///< a call failed, or the back end threw
        Described,  ///< it ended in the description of a Java error
    };

    std::string operation;  ///< the operation's name begins with it
    When when;
    std::string call;  ///< the call that made the reference begins with it
    std::size_t most;  ///< how many at most
};

/// Compares what operations left to their frames with what they may leave.
class FrameTally {
public:
    /// What of `left` the operation was to release. `failing`: one of its calls was made to fail.
    [[nodiscard]] std::vector<std::string> surplus(const std::string& operation, const SweepOutcome& outcome,
                                                   bool failing, const std::vector<std::string>& left);
    /// The allowances that no operation has used in full: they allow too much.
    [[nodiscard]] std::vector<std::string> tooGenerous() const;

private:
    std::vector<std::size_t> m_used = {};  ///< by allowance, the most of any operation
};

}  // namespace storage::javaprovider::test
