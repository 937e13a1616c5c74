#pragma once

#include <memory>

#include "foundation/Export.h"
#include "foundation/storage/provider/IProvider.h"

namespace foundation::storage::provider {

/// Makes the providers of one kind of location. The slot order is fixed: destructor, createProvider, getRootIri.
class FOUNDATION_API PhysicalProviderFactory {
public:
    virtual ~PhysicalProviderFactory();

    /// Makes a new provider each time; nothing is cached. Safe to call from any thread. May block, and throws if the
    /// provider cannot be made.
    [[nodiscard]] virtual std::shared_ptr<IProvider> createProvider() const = 0;

    /// Returns the root of all locations of the factory's providers, for example `java://`.
    [[nodiscard]] virtual StorageIRI getRootIri() const = 0;

    PhysicalProviderFactory(const PhysicalProviderFactory&) = delete;
    PhysicalProviderFactory& operator=(const PhysicalProviderFactory&) = delete;

protected:
    PhysicalProviderFactory() = default;
};

}  // namespace foundation::storage::provider
