#include <stdexcept>

#include "Locations.h"
#include "Pairs.h"

namespace bench {

namespace {

/// An operation that must fail, caught as any caller would catch it.
template <class Action>
Operation failing(Action action) {
    return operation([action = std::move(action)] {
        try {
            action();
        } catch (const std::exception& error) {
            benchmark::DoNotOptimize(error.what());
            return;
        }
        throw std::logic_error("an operation that was to fail did not");
    });
}

}  // namespace

std::vector<Pair> errorPairs(Sides& sides) {
    constexpr double Target = 1.30;
    return {{"removeFolder/ProviderException", "errors", Target, 1,
             failing([&sides] { sides.floor.errors.removeFolder(Folder.text); }),
             failing([&sides] { sides.provider->removeFolder(Folder.iri); }),
             failing([&sides] { sides.bare.errors.removeFolder(Folder.text); })},
            {"removeFolderRecursive/otherException", "errors", Target, 1,
             failing([&sides] { sides.floor.errors.removeFolderRecursive(Folder.text); }),
             failing([&sides] { sides.provider->removeFolderRecursive(Folder.iri); }),
             failing([&sides] { sides.bare.errors.removeFolderRecursive(Folder.text); })}};
}

}  // namespace bench
