#pragma once

#include <string>
#include <string_view>

namespace bench {

/// A drawing as SVG text, readable on a light and on a dark page: each thing has a role, whose colour follows the
/// reader's scheme, and the drawing brings its own paper.
class Svg {
public:
    enum class Role { Ink, Muted, Grid, Floor, Above, Missed, Target };
    enum class Align { Left, Middle, Right };

    Svg(int width, int height, std::string_view title);

    void rectangle(double x, double y, double width, double height, Role role);
    void line(double x1, double y1, double x2, double y2, Role role);
    /// `y` is the text's base line.
    void text(double x, double y, std::string_view text, Role role, Align align = Align::Left, int size = 12);

    /// The whole drawing so far.
    [[nodiscard]] std::string finish() const;

private:
    std::string m_body;
};

}  // namespace bench
