#include "report/Svg.h"

#include <fmt/core.h>
#include <fmt/format.h>

#include <iterator>

namespace bench {

namespace {

constexpr const char* Style = R"(<style>
text { font-family: system-ui, sans-serif; }
.paper { fill: #ffffff; } .ink { fill: #1f2328; stroke: none; } .muted { fill: #59636e; } .grid { stroke: #d1d9e0; }
.floor { fill: #8c959f; } .above { fill: #0969da; } .missed { fill: #cf222e; } )"
                              R"(.target { stroke: #1a7f37; stroke-width: 2; }
@media (prefers-color-scheme: dark) {
.paper { fill: #0d1117; } .ink { fill: #f0f6fc; } .muted { fill: #9198a1; } .grid { stroke: #3d444d; }
.floor { fill: #656c76; } .above { fill: #4493f8; } .missed { fill: #f85149; } .target { stroke: #3fb950; }
}
</style>
)";

const char* className(Svg::Role role) {
    switch (role) {
        case Svg::Role::Ink:
            return "ink";
        case Svg::Role::Muted:
            return "muted";
        case Svg::Role::Grid:
            return "grid";
        case Svg::Role::Floor:
            return "floor";
        case Svg::Role::Above:
            return "above";
        case Svg::Role::Missed:
            return "missed";
        case Svg::Role::Target:
            return "target";
    }
    return "";
}

const char* anchor(Svg::Align align) {
    switch (align) {
        case Svg::Align::Left:
            return "start";
        case Svg::Align::Middle:
            return "middle";
        case Svg::Align::Right:
            return "end";
    }
    return "";
}

std::string escape(std::string_view text) {
    std::string result;
    for (const char c : text) {
        switch (c) {
            case '&':
                result += "&amp;";
                break;
            case '<':
                result += "&lt;";
                break;
            case '>':
                result += "&gt;";
                break;
            default:
                result += c;
        }
    }
    return result;
}

}  // namespace

Svg::Svg(int width, int height, std::string_view title)
    : m_body(fmt::format("<svg xmlns=\"http://www.w3.org/2000/svg\" viewBox=\"0 0 {0} {1}\" width=\"{0}\" "
                         "height=\"{1}\" role=\"img\">\n<title>{2}</title>\n{3}"
                         "<rect class=\"paper\" width=\"{0}\" height=\"{1}\" rx=\"6\"/>\n",
                         width, height, escape(title), Style)) {}

void Svg::rectangle(double x, double y, double width, double height, Role role) {
    fmt::format_to(std::back_inserter(m_body),
                   "<rect class=\"{}\" x=\"{:.1f}\" y=\"{:.1f}\" width=\"{:.1f}\" height=\"{:.1f}\"/>\n",
                   className(role), x, y, width, height);
}

void Svg::line(double x1, double y1, double x2, double y2, Role role) {
    fmt::format_to(std::back_inserter(m_body),
                   "<line class=\"{}\" x1=\"{:.1f}\" y1=\"{:.1f}\" x2=\"{:.1f}\" y2=\"{:.1f}\"/>\n", className(role),
                   x1, y1, x2, y2);
}

void Svg::text(double x, double y, std::string_view text, Role role, Align align, int size) {
    fmt::format_to(std::back_inserter(m_body),
                   "<text class=\"{}\" x=\"{:.1f}\" y=\"{:.1f}\" font-size=\"{}\" text-anchor=\"{}\">{}</text>\n",
                   className(role), x, y, size, anchor(align), escape(text));
}

std::string Svg::finish() const { return m_body + "</svg>\n"; }

}  // namespace bench
