#pragma once

#include "foundation/storage/provider/ExtendedFeature.h"
#include "foundation/storage/provider/IProvider.h"

namespace jstore {

/// Asks the provider for a feature; a back end that fails to answer does not have it. Blocks in Java.
///
/// The bridge leaves an exception that Java throws at this question pending on the thread. So the question is asked on
/// a thread of its own, whose attachment to the virtual machine takes the exception along when it ends.
[[nodiscard]] bool hasFeature(const foundation::storage::provider::IProvider& provider,
                              foundation::storage::provider::ExtendedFeature feature);

}  // namespace jstore
