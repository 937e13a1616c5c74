#include "Refusal.h"

#include <utility>

namespace jstore {

CommandError refusal(const Location& location, foundation::storage::provider::ErrorCode code, std::string hint) {
    return CommandError({std::string(toString(code)), location.text(), std::move(hint), exitCodeOf(code)});
}

}  // namespace jstore
