#pragma once

#include <cstddef>
#include <string>
#include <vector>

#include "support/JniCall.h"
#include "sweep/SweepOutcome.h"

namespace storage::javaprovider::test {

/// How a call fails: what it gives is null, zero or an error code in each case.
enum class Failing { WithError, Silently };

/// One call of an operation that is to fail in one way.
struct SweepPoint {
    std::string operation;
    JniCall call;                ///< as it was made when nothing failed
    std::size_t occurrence = 1;  ///< the how-manieth call of that function in the operation
    Failing failing = Failing::WithError;

    [[nodiscard]] std::string toString() const;
};

/// What the library promises when a call fails.
struct SweepRule {
    enum class Way { Either, WithError, Silently };
    enum class Before { Any, Clean, Pending };
    enum class Promise {
        Ends,      ///< in `ending`, with `text`
        Untested,  ///< nothing: the library does not look at what the call gave, and would end the process
    };
    /// Which global references the operation leaves beyond the usual.
    enum class Lost { None, ThoseOfProvider, ThatOfStream };

    // Which points it is for; the first rule that fits a point counts.
    std::string operation = {};  ///< the operation's name begins with it
    std::string call = {};       ///< as JniCall::matches() takes it
    Way way = Way::Either;
    Before before = Before::Any;  ///< whether a Java exception is pending when the call is made
    std::size_t occurrence = 0;   ///< zero: each

    Promise promise = Promise::Ends;
    Ending ending = Ending::Returns;
    std::string text = {};          ///< the whole of a result; a part of an exception's text; AsEver
    bool leavesException = false;   ///< a Java exception that came with the failure, or was before it, stays
    bool keepsFeatureClass = true;  ///< a provider was made that refers to ExtendedFeature for ever
    bool usable = true;             ///< what the operation made can be used
    Lost lost = Lost::None;
    std::string reason = {};  ///< why nothing is promised

    [[nodiscard]] bool fits(const SweepPoint& point) const;
};

/// The result is what it is when nothing fails.
inline constexpr const char* AsEver = "(as ever)";

/// The one table of calls that nothing is promised of. Its rows are met after the rules for look-ups.
[[nodiscard]] std::vector<SweepRule> untestedCalls();

/// All rules, in order.
[[nodiscard]] const std::vector<SweepRule>& sweepRules();

}  // namespace storage::javaprovider::test
