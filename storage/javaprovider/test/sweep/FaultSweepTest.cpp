// Each JNI call of each operation fails once in each way, and the library keeps its promise.
#include <gmock/gmock.h>

#include <algorithm>
#include <cstdlib>
#include <iostream>
#include <map>
#include <set>
#include <string>
#include <vector>

#include "JavaProvider.h"
#include "data/StreamTest.h"
#include "support/JavaHelpers.h"
#include "sweep/SweepNames.h"
#include "sweep/SweepOperations.h"
#include "sweep/SweepRules.h"

namespace storage::javaprovider::test {
namespace {

using Lost = SweepRule::Lost;
using Promise = SweepRule::Promise;

constexpr long GlobalsOfProvider = 5;

/// When the variable FAULT_SWEEP_TRACE is set, tells of each point before it is tried, so that the last one is what
/// ended the process.
void announce(const SweepPoint& point, const std::string& whySkipped) {
    static const bool wanted = std::getenv("FAULT_SWEEP_TRACE") != nullptr;
    if (wanted) {
        std::cerr << point.toString() << (whySkipped.empty() ? "" : " - skipped: " + whySkipped) << std::endl;
    }
}

class FaultSweepTest : public StreamTest {
protected:
    void SetUp() override {
        StreamTest::SetUp();
        // Each point makes a provider of its own.
        provider.reset();
        recorder.clear();
    }

    /// The operation's outcome and calls when nothing fails.
    struct GoodRun {
        SweepOutcome outcome;
        std::vector<JniCall> calls;
    };

    [[nodiscard]] GoodRun runWithoutFault(const SweepOperation& operation) {
        GoodRun run;
        SweepStage stage(env(), handle);
        recorder.clear();
        operation.prepare(stage);
        const std::size_t before = recorder.records().size();
        run.outcome = outcomeOf([&] { return operation.run(stage); });
        run.calls = recorder.records();
        run.calls.erase(run.calls.begin(), run.calls.begin() + static_cast<std::ptrdiff_t>(before));
        finish(stage, {}, run.outcome);
        return run;
    }

    void sweep(const SweepOperation& operation) {
        const GoodRun good = runWithoutFault(operation);
        // What a first run loads or looks up once is no part of the operation.
        EXPECT_EQ(runWithoutFault(operation).outcome.toString(), good.outcome.toString()) << operation.name;
        std::map<std::string, std::size_t> seen;
        for (const JniCall& call : runWithoutFault(operation).calls) {
            if (call.function->fallibility == Fallibility::Never) {
                continue;
            }
            const std::size_t occurrence = ++seen[call.function->name];
            for (const Failing failing : {Failing::WithError, Failing::Silently}) {
                meet(operation, {operation.name, call, occurrence, failing}, good.outcome);
            }
        }
    }

    /// Finds the rule for the point and tries it.
    void meet(const SweepOperation& operation, const SweepPoint& point, const SweepOutcome& good) {
        const auto rule = std::find_if(sweepRules().begin(), sweepRules().end(),
                                       [&](const SweepRule& each) { return each.fits(point); });
        if (rule == sweepRules().end()) {
            ADD_FAILURE() << "no rule for " << point.toString();
            return;
        }
        met.insert(&*rule);
        announce(point, rule->reason);
        if (rule->promise == Promise::Untested) {
            ++skipped;
            return;
        }
        ++tried;
        SCOPED_TRACE(point.toString());
        attempt(operation, point, *rule, good);
    }

    void attempt(const SweepOperation& operation, const SweepPoint& point, const SweepRule& rule,
                 const SweepOutcome& good) {
        SweepStage stage(env(), handle);
        recorder.clear();
        operation.prepare(stage);
        recorder.fail(
            {.call = point.call.function->name,
             .occurrence = point.occurrence,
             .failure = point.failing == Failing::WithError ? JniFailure::outOfMemory() : JniFailure::silent()});
        const SweepOutcome outcome = outcomeOf([&] { return operation.run(stage); });
        EXPECT_EQ(recorder.faultsLeft(), 0U) << "the call was not made this time";
        expectPromise(rule, outcome, good);
        const bool hasException = point.failing == Failing::WithError || point.call.pendingBefore;
        EXPECT_EQ(takePendingException(env()) != "", rule.leavesException && hasException);
        EXPECT_EQ(recorder.liveLocals(), 0) << ::testing::PrintToString(recorder.leaks());
        EXPECT_EQ(recorder.liveChars(), 0) << ::testing::PrintToString(recorder.leaks());
        if (rule.usable) {
            expectStillWorks(operation, stage, good);
        }
        finish(stage, rule, outcome);
        expectFreshProviderWorks();
    }

    static void expectPromise(const SweepRule& rule, const SweepOutcome& outcome, const SweepOutcome& good) {
        if (rule.text == AsEver) {
            EXPECT_EQ(outcome.toString(), good.toString());
            return;
        }
        EXPECT_STREQ(nameOf(outcome.ending), nameOf(rule.ending)) << outcome.toString();
        if (rule.ending == Ending::Returns && !rule.text.empty()) {
            EXPECT_EQ(outcome.text, rule.text);
        } else {
            EXPECT_THAT(outcome.text, ::testing::HasSubstr(rule.text));
        }
    }

    /// The next operations on what the failure left behind.
    static void expectStillWorks(const SweepOperation& operation, SweepStage& stage, const SweepOutcome& good) {
        stage.answerEverything();
        if (operation.repeatable) {
            const SweepOutcome second = outcomeOf([&] { return operation.run(stage); });
            EXPECT_EQ(second.toString(), good.toString()) << "the second time";
            stage.answerEverything();
        }
        if (stage.stream) {
            EXPECT_EQ(std::streamoff(stage.stream->seek(1, std::ios_base::beg)), 1);
        }
        if (stage.provider) {
            EXPECT_TRUE(stage.provider->fileExists(SweptLocation));
        }
    }

    /// Destroys what the stage has; only the references that are kept on purpose are left.
    void finish(SweepStage& stage, const SweepRule& rule, const SweepOutcome& outcome) {
        stage.stream.reset();
        const bool neverMade = outcome.ending != Ending::Returns && !stage.provider;
        stage.provider.reset();
        EXPECT_EQ(takePendingException(env()), "");
        EXPECT_EQ(recorder.liveWeaks(), rule.lost == Lost::ThoseOfProvider ? 1 : 0);
        EXPECT_EQ(recorder.liveLocals(), 0);
        const long made = madeGlobals();
        if (neverMade) {
            // A provider that could not be made leaves what it had made until then.
            EXPECT_EQ(recorder.liveGlobals(), made);
            return;
        }
        const long kept = made == 0 || !rule.keepsFeatureClass ? 0 : 1;
        const long lost = rule.lost == Lost::ThoseOfProvider ? GlobalsOfProvider - 1
                          : rule.lost == Lost::ThatOfStream  ? 1
                                                             : 0;
        EXPECT_EQ(recorder.liveGlobals(), kept + lost) << ::testing::PrintToString(recorder.leaks());
    }

    [[nodiscard]] long madeGlobals() const {
        const auto calls = recorder.records({.only = "NewGlobalRef"});
        return std::count_if(calls.begin(), calls.end(), [](const JniCall& call) { return call.result != nullptr; });
    }

    void expectFreshProviderWorks() {
        SweepStage stage(env(), handle);
        stage.makeProvider();
        EXPECT_TRUE(stage.provider->fileExists(SweptLocation));
    }

    std::set<const SweepRule*> met;
    std::size_t tried = 0;
    std::size_t skipped = 0;
};

// The two methods of ProviderException are looked up once in a process, so this comes first; it says nothing when a
// provider's error was translated before.
TEST_F(FaultSweepTest, LookUpsOfTheFirstProviderErrorAreRepeatedUntilTheySucceed) {
    for (const char* method : {"getLocationString", "getErrorCodeNumber"}) {
        SweepStage stage(env(), handle);
        stage.makeProvider();
        stage.failNext("fileExists", "IN_USE");
        recorder.fail({.call = std::string("GetMethodID com/corvallen/storage/provider/ProviderException ") + method});
        const auto outcome = outcomeOf([&] { return std::to_string(stage.provider->fileExists(SweptLocation)); });
        if (recorder.faultsLeft() > 0) {
            recorder.clear();
            GTEST_SKIP() << "not the first provider error of the process";
        }
        EXPECT_THAT(outcome.toString(), ::testing::HasSubstr(std::string("internal error \"Method ") + method));
        stage.provider.reset();
        EXPECT_EQ(takePendingException(env()), "");
    }
    SweepStage stage(env(), handle);
    stage.makeProvider();
    stage.failNext("fileExists", "IN_USE");
    EXPECT_EQ(outcomeOf([&] { return std::to_string(stage.provider->fileExists(SweptLocation)); }).toString(),
              "provider error \"11 java://test/a\"");
}

TEST_F(FaultSweepTest, EachCallThatFailsEndsAsPromised) {
    for (const SweepOperation& operation : sweepOperations()) {
        sweep(operation);
    }
    for (const SweepRule& rule : sweepRules()) {
        EXPECT_TRUE(met.contains(&rule)) << "no call that this rule is for: " << rule.operation << " / " << rule.call;
    }
    std::cout << "fault sweep: " << tried << " points tried, " << skipped << " skipped" << std::endl;
    recorder.clear();
}

}  // namespace
}  // namespace storage::javaprovider::test
