#include "CoreGraphics/raster/PathRows.h"

// Bands in which chains cross: they are cut at each corner and each crossing, so that the lines of a part lie
// side by side.

namespace {

/// The least height of a part of a crossing band. There is at most this many of them in a row.
constexpr double kLeastHeight = 1.0 / 2048;
/// More edges than this in one crossing band are not cut at their crossings, but into a number of equal
/// parts: the time to find all crossings grows with the square of the edges.
constexpr std::size_t kMostCrossingEdges = 128;
constexpr int kEqualParts = 16;

} // namespace

void PathRows::addCrossingBand(double top, double bottom)
{
    _isUpright = false;
    _crossing.clear();
    _corners.clear();
    for (const ActiveChain& each : std::span(_active).subspan(_group.begin, _group.end - _group.begin)) {
        for (const PathEdge* edge = each.edge; edge != each.end && edge->top < bottom; ++edge) {
            if (edge->bottom <= top)
                continue;
            _crossing.emplace_back(*edge, each.winding);
            if (edge->top > top)
                _corners.push_back(edge->top);
            if (edge->bottom < bottom)
                _corners.push_back(edge->bottom);
        }
    }
    if (_crossing.size() > kMostCrossingEdges) {
        ++_crowdedBands;
        _corners.clear();
        for (int i = 1; i < kEqualParts; ++i)
            _corners.push_back(top + (bottom - top) * i / kEqualParts);
    }
    _corners.push_back(bottom);
    std::ranges::sort(_corners);
    double begin = top;
    for (const double end : _corners) {
        if (end > begin) {
            addCrossingEdges(begin, end);
            begin = end;
        }
    }
}

void PathRows::addCrossingEdges(double top, double bottom)
{
    const double middle = 0.5 * (top + bottom);
    _cuts.clear();
    for (const auto& [edge, winding] : _crossing) {
        if (edge.top < middle && edge.bottom > middle)
            _cuts.push_back({edge.xAt(top), edge.xAt(bottom), winding});
    }
    if (_crossing.size() > kMostCrossingEdges) {
        std::ranges::sort(_cuts, {}, [](const Cut& cut) { return cut.topX + cut.bottomX; });
        return addCuts(bottom - top, 1);
    }
    for (double height = bottom - top; height > 0;) {
        // Crossings closer to the top than the least height have no effect: the order is that below them.
        const double least = std::min(kLeastHeight / height, 1.0);
        sortCuts(least / 2);
        const double share = std::max(partAboveCrossings(), least);
        addCuts(height, share);
        height = share < 1 ? height * (1 - share) : 0;
    }
}

void PathRows::sortCuts(double share)
{
    const auto position = [share](const Cut& cut) { return cut.topX + (cut.bottomX - cut.topX) * share; };
    // By insertion: after a crossing only few cuts are not in order.
    for (std::size_t i = 1; i < _cuts.size(); ++i) {
        const Cut cut = _cuts[i];
        const double x = position(cut);
        std::size_t place = i;
        for (; place > 0 && position(_cuts[place - 1]) > x; --place)
            _cuts[place] = _cuts[place - 1];
        _cuts[place] = cut;
    }
}

double PathRows::partAboveCrossings() const
{
    // The first crossing is one of neighbours.
    double part = 1;
    for (std::size_t i = 1; i < _cuts.size(); ++i) {
        const Cut& a = _cuts[i - 1];
        const Cut& b = _cuts[i];
        if (a.bottomX > b.bottomX + kTolerance)
            part = std::min(part, (b.topX - a.topX) / (b.topX - a.topX + a.bottomX - b.bottomX));
    }
    return part;
}

void PathRows::addCuts(double height, double share)
{
    int winding = _windingBefore;
    for (Cut& cut : _cuts) {
        const double x = share < 1 ? cut.topX + (cut.bottomX - cut.topX) * share : cut.bottomX;
        const bool wasInside = isInside(winding);
        winding += cut.winding;
        if (isInside(winding) != wasInside) {
            _row.addLine(cut.topX, x, wasInside ? -height * share : height * share);
            _row.touch(std::min(cut.topX, x), std::max(cut.topX, x));
        }
        cut.topX = x;
    }
}
