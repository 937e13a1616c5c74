#include "sweep/SweepRules.h"

#include <algorithm>
#include <iterator>
#include <string_view>

#include "sweep/SweepRuleParts.h"

namespace storage::javaprovider::test {

namespace {

void replace(std::string& text, std::string_view placeholder, const std::string& value) {
    if (const auto at = text.find(placeholder); at != std::string::npos) {
        text.replace(at, placeholder.size(), value);
    }
}

/// Puts in the name and the signature of the method that the point's call looks up ("java/lang/Object toString()…").
std::string withMethod(std::string text, const SweepPoint& point) {
    const std::string& lookedUp = point.call.text;
    const std::size_t name = lookedUp.find(' ') + 1;
    const std::size_t signature = lookedUp.find('(');
    if (signature != std::string::npos) {
        replace(text, "<method>", lookedUp.substr(name, signature - name));
        replace(text, "<signature>", lookedUp.substr(signature));
    }
    return text;
}

bool names(const std::string& pattern, const std::string& operation) {
    return pattern.ends_with('*') ? operation.starts_with(pattern.substr(0, pattern.size() - 1)) : operation == pattern;
}

}  // namespace

std::string SweepPoint::toString() const {
    return operation + ": " + call.toString() + " (number " + std::to_string(occurrence) + " of its function) fails " +
           (failing == Failing::WithError ? "with an OutOfMemoryError" : "without an exception");
}

bool SweepRule::fits(const SweepPoint& point) const {
    const bool wayFits = way == Way::Either || (way == Way::WithError) == (point.failing == Failing::WithError);
    const bool beforeFits = before == Before::Any || (before == Before::Pending) == point.call.pendingBefore;
    return wayFits && beforeFits && point.operation.starts_with(operation) && point.call.matches(call) &&
           (repetition == 0 || repetition == point.repetition);
}

SweepOutcome SweepRule::expected(const SweepPoint& point, const SweepOutcome& good, const SweepOutcome& outcome) const {
    if (text == AsEver) {
        return {good.ending, altered && good.ending == Ending::Returns ? altered(good.text) : good.text};
    }
    const std::string whole = withMethod(text, point);
    return {ending, !openEnd.empty() && outcome.text.starts_with(whole) ? outcome.text : whole};
}

const SweepRule::Broken* SweepRule::breaks(const std::string& other) const {
    const auto found =
        std::find_if(broken.begin(), broken.end(), [&](const Broken& each) { return names(each.operation, other); });
    return found == broken.end() ? nullptr : &*found;
}

std::vector<SweepRule> joined(std::vector<std::vector<SweepRule>> parts) {
    std::vector<SweepRule> all;
    for (auto& part : parts) {
        std::move(part.begin(), part.end(), std::back_inserter(all));
    }
    return all;
}

const std::vector<SweepRule>& sweepRules() {
    // Look-ups come last: some subjects have rules of their own for them.
    static const auto all = joined({translationRules(), makingRules(), valueRules(), listingRules(), streamRules(),
                                    eventRules(), backEndRules(), lookUpRules()});
    return all;
}

}  // namespace storage::javaprovider::test
