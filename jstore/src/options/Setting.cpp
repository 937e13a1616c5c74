#include "options/Setting.h"

#include <fmt/format.h>

#include "base/Problem.h"
#include "base/Text.h"

namespace jstore {

namespace {

/// The only setting that reaches a back end; the bridge ignores all others.
constexpr std::string_view ContentCache = "gds.enableContentCache";

}  // namespace

Setting parseSetting(std::string_view argument) {
    if (!isUtf8(argument)) {
        throw usageError(fmt::format("--config {}: not UTF-8", printable(argument)));
    }
    const std::size_t equals = argument.find('=');
    if (equals == std::string_view::npos) {
        throw usageError(fmt::format("--config {}: expected KEY=VALUE", argument));
    }
    const std::string_view key = argument.substr(0, equals);
    if (key != ContentCache) {
        throw usageError(fmt::format("--config {}: unknown setting; the only one is {}", argument, ContentCache));
    }
    return {std::string(key), std::string(argument.substr(equals + 1))};
}

boost::property_tree::ptree treeOf(const std::vector<Setting>& settings) {
    boost::property_tree::ptree tree;
    for (const Setting& setting : settings) {
        tree.put(setting.key, setting.value);
    }
    return tree;
}

}  // namespace jstore
