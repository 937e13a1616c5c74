#pragma once

#include <CLI/App.hpp>
#include <CLI/Formatter.hpp>

#include <string>

namespace jstore {

/// The layout of --help: option names with their one value, and arguments spelled as the verb names them.
class HelpFormatter final : public CLI::Formatter {
public:
    HelpFormatter();

    std::string make_usage(const CLI::App* app, std::string name) const override;
    std::string make_option_opts(const CLI::Option* option) const override;
    std::string make_option_usage(const CLI::Option* option) const override;
};

}  // namespace jstore
