#pragma once

#include <boost/property_tree/ptree.hpp>

#include <string>
#include <string_view>
#include <vector>

namespace jstore {

/// A setting of the provider, such as "gds.enableContentCache" and "true". The back end decides what a value means.
struct Setting {
    std::string key;
    std::string value;
};

/// Reads `KEY=VALUE`; the value may be empty, and hold further `=`.
///
/// Throws CommandError, exit code 2: no `=`, not UTF-8, or a key that the bridge to Java would silently
/// ignore.
[[nodiscard]] Setting parseSetting(std::string_view argument);

/// The settings as the tree that providers are configured with: the dots of a key separate its levels. Of two values
/// for one key the last counts.
[[nodiscard]] boost::property_tree::ptree treeOf(const std::vector<Setting>& settings);

}  // namespace jstore
