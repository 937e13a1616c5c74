#include "copy/Replacing.h"

#include "base/Facts.h"
#include "base/Problem.h"

namespace jstore {

using foundation::storage::provider::ErrorCode;
using foundation::storage::provider::IProvider;

void requireReplaceable(const IProvider& provider, const Location& source, const Location& target, MadeHere& made) {
    const auto facts = factsOf(provider, target.iri());
    const bool same = source.iri().normalized() == target.iri().normalized() ||
                      (!facts.identity.empty() && facts.identity == factsOf(provider, source.iri()).identity);
    if (same) {
        throw refusal(target, ErrorCode::AlreadyExists, "source and destination are the same file");
    }
    if (facts.special) {
        throw refusal(target, ErrorCode::NotSupported, "what is neither a file nor a folder is never replaced");
    }
    if (made.has(target.iri(), facts.identity)) {
        throw refuseOwn(target);
    }
}

CommandError refuseOwn(const Location& target) {
    return refusal(target, ErrorCode::AlreadyExists, "this command has put it there itself and does not replace it");
}

}  // namespace jstore
