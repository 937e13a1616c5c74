#pragma once

#include <boost/property_tree/ptree.hpp>

#include "foundation/storage/provider/IProvider.h"

namespace foundation::storage::provider {

/// A provider that takes settings.
class FOUNDATION_API IConfigurableProvider : public IProvider {
public:
    ~IConfigurableProvider() override;

    /// Hands settings over. Settings that the provider does not know are passed over in silence.
    void configure(const boost::property_tree::ptree& settings) { doConfigure(settings); }

protected:
    IConfigurableProvider() = default;

    // The slot that follows those of IProvider.
    virtual void doConfigure(const boost::property_tree::ptree& settings) = 0;
};

}  // namespace foundation::storage::provider
