#pragma once

#include <boost/property_tree/ptree.hpp>

#include "foundation/storage/provider/IProvider.h"

namespace foundation::storage::provider {

/// A provider that takes settings.
class FOUNDATION_API IConfigurableProvider : public IProvider {
public:
    ~IConfigurableProvider() override;

    /// Passes settings to the provider; ignores those that it does not know. Throws Exception with NotSupported if the
    /// back end refuses the value of a setting that it knows. May be called again at any time, from any thread; blocks
    /// until the back end has answered.
    ///
    /// A back end in Java receives only the setting `gds.enableContentCache`. If that is absent, Java is not called.
    void configure(const boost::property_tree::ptree& settings) { doConfigure(settings); }

protected:
    IConfigurableProvider() = default;

    // Its slot follows those of IProvider.
    virtual void doConfigure(const boost::property_tree::ptree& settings) = 0;
};

}  // namespace foundation::storage::provider
