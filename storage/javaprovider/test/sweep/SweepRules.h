#pragma once

#include <cstddef>
#include <functional>
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
    std::size_t repetition = 1;  ///< the how-manieth call in the operation that reads the same
    Failing failing = Failing::WithError;

    [[nodiscard]] std::string toString() const;
};

/// What the library promises when a call fails.
struct SweepRule {
    enum class Way { Either, WithError, Silently };
    enum class Before { Any, Clean, Pending };
    /// Which global references the operation leaves beyond the usual.
    enum class Lost { None, ThoseOfProvider, ThatOfStream };
    /// What an operation can no longer do with what this one made: it ends in an internal error with this text.
    struct Broken {
        std::string operation;  ///< its name; one that ends in "*" stands for all that begin so
        std::string text;
    };

    // Which points it is for; the first rule that fits a point counts.
    std::string operation = {};  ///< the operation's name begins with it
    std::string call = {};       ///< as JniCall::matches() takes it
    Way way = Way::Either;
    Before before = Before::Any;  ///< whether a Java exception is pending when the call is made
    std::size_t repetition = 0;   ///< zero: each

    Ending ending = Ending::Returns;
    /// The whole result, or the whole text of the exception. AsEver; or a text, in which "<method>" and "<signature>"
    /// stand for those of a method whose look-up fails.
    std::string text = {};
    std::function<std::string(const std::string&)> altered = {};  ///< what becomes of a result that is AsEver
    std::string openEnd = {};         ///< why more may follow `text`, as a reason; usually none may
    bool leavesException = false;     ///< a Java exception that came with the failure, or was before it, stays
    bool keepsFeatureClass = true;    ///< a provider was made that refers to ExtendedFeature for ever
    std::vector<Broken> broken = {};  ///< all else works as ever
    Lost lost = Lost::None;
    std::string reason = {};  ///< of rows in the table of what is skipped: why nothing is promised

    [[nodiscard]] bool fits(const SweepPoint& point) const;
    /// How the operation must end, that ends as `good` when nothing fails. Where the end is open, `outcome` is the
    /// outcome if it begins as it must.
    [[nodiscard]] SweepOutcome expected(const SweepPoint& point, const SweepOutcome& good,
                                        const SweepOutcome& outcome) const;
    /// What the operation can no longer do; null when it works.
    [[nodiscard]] const Broken* breaks(const std::string& other) const;
};

/// The result is what it is when nothing fails.
inline constexpr const char* AsEver = "(as ever)";

/// All promises, in order.
[[nodiscard]] const std::vector<SweepRule>& sweepRules();

/// The one table of calls after which the library would end the process. No promise is for a point of these.
[[nodiscard]] const std::vector<SweepRule>& untestedCalls();

}  // namespace storage::javaprovider::test
