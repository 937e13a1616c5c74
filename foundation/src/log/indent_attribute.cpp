#include "foundation/log/indent_attribute.h"

#include <boost/log/attributes/attribute_value_impl.hpp>

namespace foundation::log::detail {

namespace {

thread_local unsigned t_depth = 0;

class Implementation final : public boost::log::attribute::impl {
public:
    boost::log::attribute_value get_value() override {
        return boost::log::attributes::make_attribute_value(indent_attribute::depth());
    }
};

}  // namespace

indent_attribute::indent_attribute() : boost::log::attribute(new Implementation) {}

void indent_attribute::increase() noexcept { ++t_depth; }

void indent_attribute::decrease() noexcept {
    if (t_depth > 0) {
        --t_depth;
    }
}

unsigned indent_attribute::depth() noexcept { return t_depth; }

}  // namespace foundation::log::detail
