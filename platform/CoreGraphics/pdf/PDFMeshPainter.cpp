#include "CoreGraphics/pdf/PDFMeshPainter.h"

#include <algorithm>
#include <cmath>
#include <limits>
#include <utility>

namespace {

// In the units of a drawing's budget.
constexpr double kWorkPerTriangle = 500;
constexpr double kWorkPerRow = 90;
constexpr double kWorkPerPixel = 150;
constexpr double kWorkPerPatch = 2'000;

/// The ends of an interval to which nothing was added.
constexpr PDFInterval kNothing{
    std::numeric_limits<double>::infinity(), -std::numeric_limits<double>::infinity()};

/// The smallest and the largest x or y of some points. NaN where one of them is.
PDFInterval extentOf(std::span<const CGPoint> points, double CGPoint::*coordinate)
{
    PDFInterval extent = kNothing;
    for (const CGPoint& point : points) {
        const double value = point.*coordinate;
        if (std::isnan(value))
            return {value, value};
        extent.low = std::min(extent.low, value);
        extent.high = std::max(extent.high, value);
    }
    return extent;
}

CGPoint mix(CGPoint a, CGPoint b, double share)
{
    return {a.x + (b.x - a.x) * share, a.y + (b.y - a.y) * share};
}

PDFMeshColor mix(const PDFMeshColor& a, const PDFMeshColor& b, double share)
{
    PDFMeshColor color;
    for (std::size_t i = 0; i < color.size(); ++i)
        color[i] = float(a[i] + (double(b[i]) - a[i]) * share);
    return color;
}

/// The values of the four cubic Bernstein polynomials.
std::array<double, 4> bernstein(double t)
{
    const double s = 1 - t;
    return {s * s * s, 3 * s * s * t, 3 * s * t * t, t * t * t};
}

/// The length of the longest of four lines of control points, in pixels; the lines run in steps of `step`
/// from multiples of `stride`.
double controlLength(const std::array<CGPoint, 16>& points, std::size_t stride, std::size_t step)
{
    double longest = 0;
    for (std::size_t line = 0; line < 4; ++line) {
        double length = 0;
        for (std::size_t i = 0; i < 3; ++i) {
            const CGPoint a = points[line * stride + i * step];
            const CGPoint b = points[line * stride + (i + 1) * step];
            length += std::hypot(b.x - a.x, b.y - a.y);
        }
        longest = std::max(longest, length);
    }
    return longest;
}

class MeshPainter {
public:
    MeshPainter(bool hasRGB, const PDFShadingColors& colors, PDFPixelLayer& layer, double workLeft)
        : _colors(colors)
        , _hasRGB(hasRGB)
        , _workPerPixel(kWorkPerPixel + (hasRGB ? 0 : colors.work()))
        , _layer(layer)
        , _workLeft(workLeft)
    {
    }

    double work() const { return _work; }
    bool isExhausted() const { return _work > _workLeft; }

    void paint(const PDFMeshPatch& patch)
    {
        _work += kWorkPerPatch;
        std::array<CGPoint, 16> points;
        std::ranges::transform(
            patch.points, points.begin(), [this](CGPoint point) { return toPixels(point); });
        if (!mayBeVisible(points))
            return;
        const std::size_t columns = stepsFor(controlLength(points, 1, 4));
        const std::size_t rows = stepsFor(controlLength(points, 4, 1));
        std::vector<PDFMeshVertex> previous(columns + 1);
        std::vector<PDFMeshVertex> current(columns + 1);
        // Where a patch folds over itself, the largest v shows, and of those the largest u.
        for (std::size_t row = 0; row <= rows && !isExhausted(); ++row) {
            const double v = double(row) / double(rows);
            for (std::size_t column = 0; column <= columns; ++column)
                current[column] = vertexAt(points, patch.colors, double(column) / double(columns), v);
            for (std::size_t column = 0; column < columns && row > 0; ++column) {
                paintInPixels(previous[column], previous[column + 1], current[column]);
                paintInPixels(previous[column + 1], current[column], current[column + 1]);
            }
            previous.swap(current);
        }
    }

    void paint(const PDFMeshVertex& a, const PDFMeshVertex& b, const PDFMeshVertex& c)
    {
        paintInPixels(
            {toPixels(a.point), a.color}, {toPixels(b.point), b.color}, {toPixels(c.point), c.color});
    }

private:
    CGPoint toPixels(CGPoint point) const
    {
        return CGPointApplyAffineTransform(point, _layer.pixelFromUser());
    }

    /// False when points are not finite.
    bool mayBeVisible(std::span<const CGPoint> points) const
    {
        const PDFInterval xs = extentOf(points, &CGPoint::x);
        const PDFInterval ys = extentOf(points, &CGPoint::y);
        const bool isFinite = std::isfinite(xs.low) && std::isfinite(xs.high) && std::isfinite(ys.low)
            && std::isfinite(ys.high);
        return isFinite && xs.low <= _layer.width() && xs.high >= 0 && ys.low <= _layer.height()
            && ys.high >= 0;
    }

    /// Short enough for a curve to look like one.
    static std::size_t stepsFor(double lengthInPixels)
    {
        constexpr double kPixelsPerStep = 3;
        constexpr double kMostSteps = 256;
        return std::size_t(std::clamp(std::ceil(lengthInPixels / kPixelsPerStep), 1.0, kMostSteps));
    }

    static PDFMeshVertex vertexAt(
        const std::array<CGPoint, 16>& points, const std::array<PDFMeshColor, 4>& colors, double u, double v)
    {
        const std::array<double, 4> weightsOfU = bernstein(u);
        const std::array<double, 4> weightsOfV = bernstein(v);
        CGPoint point{};
        for (std::size_t i = 0; i < points.size(); ++i) {
            const double weight = weightsOfU[i / 4] * weightsOfV[i % 4];
            point.x += weight * points[i].x;
            point.y += weight * points[i].y;
        }
        return {point, mix(mix(colors[0], colors[3], u), mix(colors[1], colors[2], u), v)};
    }

    void paintInPixels(const PDFMeshVertex& a, const PDFMeshVertex& b, const PDFMeshVertex& c)
    {
        _work += kWorkPerTriangle;
        const std::array<CGPoint, 3> points{a.point, b.point, c.point};
        const double doubleArea = (b.point.x - a.point.x) * (c.point.y - a.point.y)
            - (c.point.x - a.point.x) * (b.point.y - a.point.y);
        if (doubleArea == 0 || !std::isfinite(doubleArea) || !mayBeVisible(points))
            return;
        // The areas of the triangles opposite to b and c, as shares of the whole, grow by this much a pixel.
        const double ofBToRight = (c.point.y - a.point.y) / doubleArea;
        const double ofBDownward = (a.point.x - c.point.x) / doubleArea;
        const double ofCToRight = (a.point.y - b.point.y) / doubleArea;
        const double ofCDownward = (b.point.x - a.point.x) / doubleArea;
        // Of the centres of pixels, including those on an edge: neighbours must not leave gaps.
        constexpr double kTolerance = 1e-6;
        const PDFInterval ys = extentOf(points, &CGPoint::y);
        const int first = firstCentre(ys.low - kTolerance);
        const int last = std::min(firstCentre(ys.high + kTolerance), _layer.height());
        for (int y = first; y < last && !isExhausted(); ++y) {
            const PDFInterval span = spanAt(points, ys.clamp(y + 0.5));
            const int left = firstCentre(span.low - kTolerance);
            const int right = std::min(firstCentre(span.high + kTolerance), _layer.width());
            _work += kWorkPerRow + std::max(0, right - left) * _workPerPixel;
            const auto row = _layer.row(y);
            for (int x = left; x < right; ++x) {
                const double dx = x + 0.5 - a.point.x;
                const double dy = y + 0.5 - a.point.y;
                const double ofB = dx * ofBToRight + dy * ofBDownward;
                const double ofC = dx * ofCToRight + dy * ofCDownward;
                row[std::size_t(x)] = opaquePixel(colorAt(a.color, b.color, c.color, ofB, ofC));
            }
        }
    }

    /// The first row or column whose pixels have their centre at or beyond a coordinate; 0 when it lies
    /// before the layer.
    int firstCentre(double coordinate) const
    {
        const double most = std::max(_layer.width(), _layer.height());
        return int(std::clamp(std::ceil(coordinate - 0.5), 0.0, most));
    }

    /// Where a horizontal line crosses a triangle.
    static PDFInterval spanAt(const std::array<CGPoint, 3>& points, double y)
    {
        PDFInterval span = kNothing;
        const auto include = [&span](double x) {
            span.low = std::min(span.low, x);
            span.high = std::max(span.high, x);
        };
        for (std::size_t i = 0; i < points.size(); ++i) {
            CGPoint upper = points[i];
            CGPoint lower = points[(i + 1) % points.size()];
            if (upper.y > lower.y)
                std::swap(upper, lower);
            if (y < upper.y || y > lower.y)
                continue;
            const bool isHorizontal = upper.y == lower.y;
            const double share = isHorizontal ? 0 : (y - upper.y) / (lower.y - upper.y);
            include(mix(upper, lower, share).x);
            if (isHorizontal)
                include(lower.x);
        }
        return span;
    }

    PDFRGB colorAt(
        const PDFMeshColor& a, const PDFMeshColor& b, const PDFMeshColor& c, double ofB, double ofC) const
    {
        std::array<double, std::tuple_size_v<PDFMeshColor>> color;
        for (std::size_t i = 0; i < color.size(); ++i) {
            const double value = a[i] + ofB * (double(b[i]) - a[i]) + ofC * (double(c[i]) - a[i]);
            // A triangle thinner than the tolerance would reach far beyond its colours.
            color[i] = PDFInterval{std::min({a[i], b[i], c[i]}), std::max({a[i], b[i], c[i]})}.clamp(value);
        }
        if (_hasRGB)
            return {float(color[0]), float(color[1]), float(color[2])};
        return _colors.color(color);
    }

    const PDFShadingColors& _colors;
    const bool _hasRGB;
    const double _workPerPixel;
    PDFPixelLayer& _layer;
    const double _workLeft;
    double _work = 0;
};

} // namespace

double paintPDFMesh(
    const PDFMesh& mesh, const PDFShadingColors& colors, PDFPixelLayer& layer, double workLeft)
{
    MeshPainter painter(mesh.hasRGB, colors, layer, workLeft);
    for (const auto& [a, b, c] : mesh.triangles) {
        if (painter.isExhausted())
            break;
        painter.paint(mesh.vertices[a], mesh.vertices[b], mesh.vertices[c]);
    }
    for (const PDFMeshPatch& patch : mesh.patches) {
        if (painter.isExhausted())
            break;
        painter.paint(patch);
    }
    return painter.work();
}
