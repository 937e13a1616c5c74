#include "verbs/Verb.h"

#include <utility>

namespace jstore {

std::vector<std::unique_ptr<Verb>> allVerbs(std::function<manual::Grammar()> grammar) {
    std::vector<std::unique_ptr<Verb>> verbs;
    verbs.push_back(makeLs());
    verbs.push_back(makeTree());
    verbs.push_back(makeFind());
    verbs.push_back(makeStat());
    verbs.push_back(makeExists());
    verbs.push_back(makeCat());
    verbs.push_back(makeCp());
    verbs.push_back(makeMkdir());
    verbs.push_back(makeTouch());
    verbs.push_back(makeMv());
    verbs.push_back(makeRm());
    verbs.push_back(makeDu());
    verbs.push_back(makeDf());
    verbs.push_back(makeWatch());
    verbs.push_back(makeFeatures());
    verbs.push_back(makeDoctor());
    verbs.push_back(makeCompletion(std::move(grammar)));
    return verbs;
}

}  // namespace jstore
