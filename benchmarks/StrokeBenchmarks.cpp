// Strokes of shapes that move by parts of a pixel: outlines of controls, a star, dashes.

#include "Benchmarks.h"
#include "CairoCanvas.h"
#include "KorvidCanvas.h"
#include "QtCanvas.h"
#include "Table.h"

#include <array>

namespace {

constexpr const char* kTable = "stroke";
constexpr double kThin = 0.66;
constexpr double kThick = 3;
constexpr double kDashes[]{6, 4};

void setLine(KorvidCanvas& canvas, double width, bool isDashed)
{
    CGContextSetLineWidth(canvas.context(), width);
    if (isDashed)
        CGContextSetLineDash(canvas.context(), 0, kDashes, std::size(kDashes));
}
void setLine(CairoCanvas& canvas, double width, bool isDashed)
{
    cairo_set_line_width(canvas.cairo(), width);
    if (isDashed)
        cairo_set_dash(canvas.cairo(), kDashes, std::size(kDashes), 0);
}
void setLine(QtCanvas& canvas, double width, bool isDashed)
{
    QPen pen = canvas.pen();
    pen.setWidthF(width);
    if (isDashed)
        pen.setDashPattern({kDashes[0] / width, kDashes[1] / width}); // in widths
    canvas.painter().setPen(pen);
    canvas.painter().setBrush(Qt::NoBrush);
}

struct RoundedRect {
    CGRect rect;
    double radius;
};

void stroke(KorvidCanvas& canvas, const RoundedRect& shape, double offset)
{
    const auto path = adopt(CGPathCreateWithRoundedRect(
        CGRectOffset(shape.rect, offset, offset), shape.radius, shape.radius, nullptr));
    CGContextAddPath(canvas.context(), path);
    CGContextStrokePath(canvas.context());
}
void stroke(CairoCanvas& canvas, const RoundedRect& shape, double offset)
{
    addRoundedRect(canvas.cairo(), CGRectOffset(shape.rect, offset, offset), shape.radius);
    cairo_stroke(canvas.cairo());
}
void stroke(QtCanvas& canvas, const RoundedRect& shape, double offset)
{
    canvas.painter().drawRoundedRect(
        qtRect(CGRectOffset(shape.rect, offset, offset)), shape.radius, shape.radius);
}

struct Ellipse {
    CGRect rect;
};

void stroke(KorvidCanvas& canvas, const Ellipse& shape, double offset)
{
    CGContextStrokeEllipseInRect(canvas.context(), CGRectOffset(shape.rect, offset, offset));
}
void stroke(CairoCanvas& canvas, const Ellipse& shape, double offset)
{
    addEllipse(canvas.cairo(), CGRectOffset(shape.rect, offset, offset));
    cairo_stroke(canvas.cairo());
}
void stroke(QtCanvas& canvas, const Ellipse& shape, double offset)
{
    canvas.painter().drawEllipse(qtRect(CGRectOffset(shape.rect, offset, offset)));
}

/// A star of five points in one line that crosses itself.
struct Star {
    Size size;

    std::array<CGPoint, 5> corners(double offset) const
    {
        std::array<CGPoint, 5> result;
        for (std::size_t i = 0; i < result.size(); ++i) {
            const double angle = double(i) * 4 * std::numbers::pi / 5 - std::numbers::pi / 2;
            result[i] = {offset + size.width * (0.5 + 0.47 * std::cos(angle)),
                offset + size.height * (0.5 + 0.47 * std::sin(angle))};
        }
        return result;
    }
};

void stroke(KorvidCanvas& canvas, const Star& star, double offset)
{
    const auto corners = star.corners(offset);
    CGContextAddLines(canvas.context(), corners.data(), corners.size());
    CGContextClosePath(canvas.context());
    CGContextStrokePath(canvas.context());
}
void stroke(CairoCanvas& canvas, const Star& star, double offset)
{
    for (const CGPoint corner : star.corners(offset))
        cairo_line_to(canvas.cairo(), corner.x, corner.y);
    cairo_close_path(canvas.cairo());
    cairo_stroke(canvas.cairo());
}
void stroke(QtCanvas& canvas, const Star& star, double offset)
{
    const auto corners = star.corners(offset);
    static_assert(sizeof(QPointF) == sizeof(CGPoint)); // two doubles each
    canvas.painter().drawPolygon(reinterpret_cast<const QPointF*>(corners.data()), int(corners.size()));
}

template <class Canvas, class Shape>
void addStroke(const std::string& name, Size size, const Shape& shape, double width, bool isDashed)
{
    addBenchmark(kTable, name, Canvas::kLibrary, [=](benchmark::State& state) {
        Canvas canvas(size);
        setLine(canvas, width, isDashed);
        Motion motion(true);
        for (auto _ : state)
            stroke(canvas, shape, motion.next());
    });
}

template <class Shape>
void addStrokes(const std::string& name, Size size, const Shape& shape, double width, bool isDashed = false)
{
    addStroke<KorvidCanvas>(name, size, shape, width, isDashed);
    addStroke<CairoCanvas>(name, size, shape, width, isDashed);
    addStroke<QtCanvas>(name, size, shape, width, isDashed);
}

} // namespace

void addStrokeBenchmarks()
{
    addTable({kTable, "Strokes",
        "Shapes with another subpixel position each time, so that nothing drawn before can be reused. Thin "
        "lines are 0.66 pixels wide, as the outlines of controls, others 3."});
    constexpr Size kControl{88, 30}, kPanel{308, 128}, kPicture{400, 300};
    constexpr RoundedRect kControlOutline{{{4, 4}, {79, 21}}, 5};
    constexpr RoundedRect kPanelOutline{{{4, 4}, {299, 119}}, 12};
    addStrokes("rounded rectangle 80x22, thin", kControl, kControlOutline, kThin);
    addStrokes("rounded rectangle 300x120, thin", kPanel, kPanelOutline, kThin);
    addStrokes("ellipse 24x24, thin", Size{32, 32}, Ellipse{{{4, 4}, {23, 23}}}, kThin);
    addStrokes("ellipse 300x120, thin", kPanel, Ellipse{kPanelOutline.rect}, kThin);
    addStrokes("ellipse 300x120, 3 wide", kPanel, Ellipse{kPanelOutline.rect}, kThick);
    addStrokes("star 400x300, 3 wide", kPicture, Star{kPicture}, kThick);
    addStrokes("rounded rectangle 300x120, dashed", kPanel, kPanelOutline, kThick, true);
}
