#include "options/HelpFormatter.h"

namespace jstore {

namespace {

constexpr std::size_t NameColumn = 24;

}  // namespace

HelpFormatter::HelpFormatter() {
    column_width(NameColumn);
    label("SUBCOMMAND", "VERB ...");
    label("Positionals", "Arguments");
}

std::string HelpFormatter::make_usage(const CLI::App* app, std::string name) const {
    return '\n' + Formatter::make_usage(app, std::move(name));
}

std::string HelpFormatter::make_option_opts(const CLI::Option* option) const {
    const std::string value = option->get_type_name();
    return option->get_positional() || value.empty() ? std::string() : ' ' + value;
}

std::string HelpFormatter::make_option_usage(const CLI::Option* option) const {
    return make_option_name(option, /*is_positional=*/true);
}

}  // namespace jstore
