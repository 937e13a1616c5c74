#include "copy/ReplacementChecks.h"

#include "base/NodeInfo.h"
#include "base/Problem.h"

namespace jstore {

using foundation::storage::provider::ErrorCode;
using foundation::storage::provider::IProvider;

void requireReplaceable(const IProvider& provider, const Location& source, const Location& target,
                        WrittenTargets& written) {
    const NodeInfo info = nodeInfoOf(provider, target.iri());
    const bool same = source.iri().normalized() == target.iri().normalized() ||
                      (!info.identity.empty() && info.identity == nodeInfoOf(provider, source.iri()).identity);
    if (same) {
        throw refusal(target, ErrorCode::AlreadyExists, "source and destination are the same file");
    }
    if (info.special) {
        throw refusal(target, ErrorCode::NotSupported, "it is neither a file nor a folder, so it is not replaced");
    }
    if (written.has(target.iri(), info.identity)) {
        throw refuseOwn(target);
    }
}

CommandError refuseOwn(const Location& target) {
    return refusal(target, ErrorCode::AlreadyExists, "this command has just put it there; it does not replace it");
}

}  // namespace jstore
