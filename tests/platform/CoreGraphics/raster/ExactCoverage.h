#pragma once

#include <CoreGraphics/CGGeometry.h>

#include <algorithm>
#include <cmath>
#include <cstddef>
#include <iterator>
#include <numeric>
#include <utility>
#include <vector>

/// The corners of a closed polygon.
using Polygon = std::vector<CGPoint>;

/// The exact coverage of pixels by polygons, except for the rounding of floating-point numbers.
///
/// Each row is cut at all corners and all crossings of edges. Between these cuts the edges that bound the
/// inside are lines that do not meet, and the area to the right of a line has a formula.
class ExactCoverage {
public:
    ExactCoverage(const std::vector<Polygon>& polygons, bool isEvenOdd)
        : _isEvenOdd(isEvenOdd)
    {
        for (const Polygon& polygon : polygons) {
            for (std::size_t i = 0; i < polygon.size(); ++i)
                addEdge(polygon[i], polygon[(i + 1) % polygon.size()]);
        }
    }

    /// Of each pixel of a row, 0 to 255.
    std::vector<double> row(int row, int width) const
    {
        std::vector<Edge> edges;
        std::ranges::copy_if(_edges, std::back_inserter(edges),
            [row](const Edge& edge) { return edge.top.y < row + 1 && edge.bottom.y > row; });
        const std::vector<double> cuts = cutsOf(edges, row);
        std::vector<double> coverage(static_cast<std::size_t>(width));
        for (std::size_t i = 0; i + 1 < cuts.size(); ++i)
            addBand(edges, cuts[i], cuts[i + 1], coverage);
        std::partial_sum(coverage.begin(), coverage.end(), coverage.begin());
        return coverage;
    }

private:
    struct Edge {
        CGPoint top; ///< the end with the lesser y
        CGPoint bottom;
        int winding;

        double xAt(double y) const { return top.x + (y - top.y) * (bottom.x - top.x) / (bottom.y - top.y); }
    };

    void addEdge(CGPoint from, CGPoint to)
    {
        if (from.y < to.y)
            _edges.push_back({from, to, 1});
        else if (from.y > to.y)
            _edges.push_back({to, from, -1});
    }

    /// The heights of all corners and crossings within a row, and its limits.
    static std::vector<double> cutsOf(const std::vector<Edge>& edges, int row)
    {
        std::vector<double> cuts{double(row), row + 1.0};
        const auto add = [&](double y) {
            if (y > row && y < row + 1)
                cuts.push_back(y);
        };
        for (std::size_t i = 0; i < edges.size(); ++i) {
            const Edge& a = edges[i];
            add(a.top.y);
            add(a.bottom.y);
            for (std::size_t j = 0; j < i; ++j) {
                const Edge& b = edges[j];
                const double top = std::max({a.top.y, b.top.y, double(row)});
                const double bottom = std::min({a.bottom.y, b.bottom.y, row + 1.0});
                if (top >= bottom)
                    continue;
                const double above = a.xAt(top) - b.xAt(top);
                const double below = a.xAt(bottom) - b.xAt(bottom);
                if ((above < 0) != (below < 0))
                    add(top + (bottom - top) * above / (above - below));
            }
        }
        std::ranges::sort(cuts);
        return cuts;
    }

    /// Adds the inside between two neighbouring cuts to the differences of neighbouring pixels.
    void addBand(
        const std::vector<Edge>& edges, double top, double bottom, std::vector<double>& differences) const
    {
        const double middle = (top + bottom) / 2;
        std::vector<std::pair<double, const Edge*>> crossed;
        for (const Edge& edge : edges) {
            if (edge.top.y < middle && edge.bottom.y > middle)
                crossed.emplace_back(edge.xAt(middle), &edge);
        }
        std::ranges::sort(crossed);
        const auto isInside = [this](int winding) { return _isEvenOdd ? winding % 2 != 0 : winding != 0; };
        int winding = 0;
        for (const auto& [x, edge] : crossed) {
            const bool wasInside = isInside(winding);
            winding += edge->winding;
            if (isInside(winding) != wasInside)
                addLine(
                    edge->xAt(top), edge->xAt(bottom), wasInside ? top - bottom : bottom - top, differences);
        }
    }

    /// Adds the area to the right of a line.
    static void addLine(double topX, double bottomX, double height, std::vector<double>& differences)
    {
        const auto [left, right] = std::minmax(topX, bottomX);
        double before = 0; // of the pixel to the left
        for (auto pixel = std::size_t(std::max(left, 0.0)); pixel < differences.size(); ++pixel) {
            const double part = partToTheRight(topX, bottomX, double(pixel));
            differences[pixel] += 255 * height * (part - before);
            if (double(pixel) >= right)
                return;
            before = part;
        }
    }

    /// The part of a pixel that lies to the right of a line that crosses its row.
    static double partToTheRight(double topX, double bottomX, double pixel)
    {
        // The mean of clamp(t, 0, 1) for t from `a` to `b`.
        const double a = pixel + 1 - topX;
        const double b = pixel + 1 - bottomX;
        constexpr double kUpright = 1e-6; // below this, the difference of integrals loses its digits
        if (std::abs(b - a) < kUpright)
            return std::clamp((a + b) / 2, 0.0, 1.0);
        const auto integral = [](double t) { return t <= 0 ? 0 : t < 1 ? t * t / 2 : t - 0.5; };
        return (integral(b) - integral(a)) / (b - a);
    }

    bool _isEvenOdd;
    std::vector<Edge> _edges;
};
