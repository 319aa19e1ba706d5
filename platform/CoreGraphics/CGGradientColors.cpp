#include "CoreGraphics/CGGradientInternal.h"

#include <cmath>

// Pixels are stored as bytes red, green, blue, alpha.
static_assert(__BYTE_ORDER__ == __ORDER_LITTLE_ENDIAN__);

namespace {

/// Bounds of the table's size: few colours need no large table, and a larger one would evict other data from
/// the processor's caches.
constexpr std::size_t kLeastCells = 64;
constexpr std::size_t kMostCells = 1 << 14;

/// How much a component may change within a cell, in steps of 255: the change that the size of the table aims
/// at, and the change above which a cell is unsettled.
constexpr double kWantedChange = 0.5;
constexpr double kGreatestChange = 1;

/// The part of 0 to 1 that may change faster than the cells resolve: pixels there are computed individually.
constexpr double kSteepShare = 1.0 / 64;

/// The greatest change of the sRGB component per change of a generic gray level, rounded up.
constexpr double kGammaStep = 1.25;

CGGradientPixel packed(const CGColorRGBA& color)
{
    const auto byte = [](CGFloat value) { return CGGradientPixel(std::lrint(value * 255)); };
    return byte(color.red * color.alpha) | byte(color.green * color.alpha) << 8
        | byte(color.blue * color.alpha) << 16 | byte(color.alpha) << 24;
}

} // namespace

CGGradient::CGGradient(CGColorSpaceRef space, std::vector<CGGradientStop> stops)
    : _space(space)
    , _stops(std::move(stops))
    , _isOpaque(std::ranges::all_of(
          _stops, [&](const CGGradientStop& stop) { return stop.components[_space->componentCount()] == 1; }))
{
    std::ranges::stable_sort(_stops, {}, &CGGradientStop::location);
    _cells.resize(cellCount());
    fillCells();
}

CGGradientPixel CGGradient::pixelOf(const std::array<CGFloat, 4>& components) const
{
    return packed(_space->rgba(components.data()).clamped());
}

/// The interpolated components. `following` is the index of the first stop after the location.
std::array<CGFloat, 4> CGGradient::componentsAt(CGFloat location, std::size_t following) const
{
    if (following == 0)
        return _stops.front().components;
    if (following == _stops.size())
        return _stops.back().components;
    const CGGradientStop& from = _stops[following - 1];
    const CGGradientStop& to = _stops[following];
    const CGFloat share = (location - from.location) / (to.location - from.location);
    std::array<CGFloat, 4> components;
    for (std::size_t i = 0; i < components.size(); ++i)
        components[i] = from.components[i] + share * (to.components[i] - from.components[i]);
    return components;
}

CGGradientPixel CGGradient::pixelAt(CGFloat location) const
{
    const auto following = std::ranges::upper_bound(_stops, location, {}, &CGGradientStop::location);
    return pixelOf(componentsAt(location, std::size_t(following - _stops.begin())));
}

/// The greatest rate of change between a stop and the one before it, in steps of 255 per unit of location.
/// Infinite at a jump.
double CGGradient::steepness(std::size_t following) const
{
    if (following == 0 || following == _stops.size())
        return 0;
    const CGGradientStop& from = _stops[following - 1];
    const CGGradientStop& to = _stops[following];
    const std::size_t alpha = _space->componentCount();
    const auto change = [&](std::size_t i) { return std::abs(to.components[i] - from.components[i]); };
    const auto greater = [&](std::size_t i) { return std::max(to.components[i], from.components[i]); };
    // Pixels are premultiplied: bounds the change of alpha, and of each component times alpha.
    double greatest = change(alpha);
    const double factor = _space->kind == CGColorSpace::Kind::GenericGrayGamma2_2 ? kGammaStep : 1;
    for (std::size_t i = 0; i < alpha; ++i)
        greatest = std::max(greatest, factor * change(i) * greater(alpha) + change(alpha) * greater(i));
    return greatest == 0 ? 0 : 255 * greatest / (to.location - from.location);
}

std::size_t CGGradient::cellCount() const
{
    for (std::size_t count = kLeastCells; count < kMostCells; count *= 2) {
        CGFloat tooSteep = 0;
        for (std::size_t i = 1; i < _stops.size(); ++i) {
            if (steepness(i) > kWantedChange * CGFloat(count))
                tooSteep += _stops[i].location - _stops[i - 1].location;
        }
        if (tooSteep <= kSteepShare)
            return count;
    }
    return kMostCells;
}

void CGGradient::fillCells()
{
    const auto count = CGFloat(_cells.size());
    // Indices of the first stops after the beginning and after the middle of the cell.
    std::size_t following = 0;
    std::size_t beyondMiddle = 0;
    double change = 0;
    for (std::size_t i = 0; i < _cells.size(); ++i) {
        const CGFloat begin = CGFloat(i) / count;
        const CGFloat middle = (CGFloat(i) + 0.5) / count;
        const CGFloat end = CGFloat(i + 1) / count;
        for (; following < _stops.size() && _stops[following].location <= begin; ++following)
            change = steepness(following + 1) / count;
        while (beyondMiddle < _stops.size() && _stops[beyondMiddle].location <= middle)
            ++beyondMiddle;

        double changeInCell = change;
        for (std::size_t next = following; next < _stops.size() && _stops[next].location < end; ++next)
            changeInCell += steepness(next + 1) / count; // infinite for a jump
        _cells[i] = changeInCell > kGreatestChange ? kUnsettled : pixelOf(componentsAt(middle, beyondMiddle));
    }
}
