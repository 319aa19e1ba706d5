#include "CoreGraphics/raster/RectangleOrder.h"

#include <algorithm>
#include <array>
#include <bit>
#include <concepts>
#include <cstdint>
#include <limits>
#include <utility>

namespace {

/// Edges that are closer to each other than this, in pixels, differ by the rounding of coordinates.
constexpr double kEdgeRounding = 1e-6;

/// Edges in a path that are closer to each other than this share of the largest coordinate differ by
/// rounding: a few thousand times the precision of numbers.
constexpr double kRelativeRounding = 0x1p-42;

/// The bands of fewer rectangles are not cached.
constexpr std::size_t kLeastCached = 16;

/// The greatest number of keys of the sorter for a pixel, and for a unit of a path, whose scale is not known.
constexpr double kKeysPerPixel = 16;
constexpr double kAnyNumberOfKeys = std::numeric_limits<double>::infinity();

/// Puts rectangles into the order of RectangleRaster, by the direction of the bands and that of the
/// rectangles in each.
void normalize(std::span<AreaRect> rectangles, bool isUpward, bool isLeftward)
{
    if (isUpward)
        std::ranges::reverse(rectangles);
    if (isLeftward == isUpward)
        return;
    for (auto begin = rectangles.begin(); begin != rectangles.end();) {
        const double top = begin->top;
        const auto end =
            std::find_if(begin, rectangles.end(), [top](const AreaRect& rect) { return rect.top != top; });
        std::reverse(begin, end);
        begin = end;
    }
}

/// Checks that rectangles come in bands, with any direction of the bands and of the rectangles within them.
class ScanOrder {
public:
    /// Edges that are closer to each other than `rounding` are the same.
    ScanOrder(std::vector<AreaRect>& rectangles, double rounding)
        : _rectangles(rectangles)
        , _rounding(rounding)
    {
        _rectangles.clear();
    }

    /// False when the rectangle does not fit the order.
    bool add(const AreaRect& rect)
    {
        if (_rectangles.empty()) {
            _rectangles.push_back(rect);
            return true;
        }
        AreaRect& last = _rectangles.back();
        if (!isNear(rect.top, last.top) || !isNear(rect.bottom, last.bottom))
            return addBand(rect);
        if (!follows(rect.left >= last.right - _rounding, rect.right <= last.left + _rounding, _isLeftward,
                _hasNeighbours))
            return false;
        if (isNear(rect.left, last.right))
            last.right = std::max(rect.right, last.right);
        else if (isNear(rect.right, last.left))
            last.left = std::min(rect.left, last.left);
        else
            _rectangles.push_back({rect.left, last.top, rect.right, last.bottom});
        return true;
    }

    /// Reverses the order where necessary: bands from top to bottom, from left to right in each.
    void normalize() { ::normalize(_rectangles, _isUpward, _isLeftward); }

private:
    /// Begins a band, whose top and bottom the other rectangles in it take over.
    bool addBand(AreaRect rect)
    {
        const AreaRect& last = _rectangles.back();
        if (!follows(rect.top >= last.bottom - _rounding, rect.bottom <= last.top + _rounding, _isUpward,
                _hasBands))
            return false;
        if (_isUpward)
            rect.bottom = std::min(rect.bottom, last.top);
        else
            rect.top = std::max(rect.top, last.bottom);
        if (!rect.isEmpty())
            _rectangles.push_back(rect);
        return true;
    }
    bool isNear(double a, double b) const { return std::abs(a - b) <= _rounding; }
    /// The first step of each kind determines its direction; the others must have the same.
    static bool follows(bool isForward, bool isBackward, bool& goesBackward, bool& isDecided)
    {
        if (!isForward && !isBackward)
            return false;
        if (isDecided)
            return goesBackward == isBackward;
        isDecided = true;
        goesBackward = isBackward;
        return true;
    }

    std::vector<AreaRect>& _rectangles;
    double _rounding;
    bool _isUpward = false;
    bool _isLeftward = false;
    bool _hasBands = false;
    bool _hasNeighbours = false;
};

/// Calls `use(rect)` for the rectangles of a path that are not empty, until it returns false; true if it
/// never did.
template <std::predicate<const AreaRect&> Use>
bool forEachRectangle(const CGPath& path, const PixelSpace& space, bool isAntialiased, Use use)
{
    const std::span<const CGPoint> points = path.points();
    for (std::size_t i = 0; i < points.size(); i += 4) {
        AreaRect rect = space.area(points[i], points[i + 2]);
        if (!isAntialiased)
            rect = snapped(rect);
        if (!rect.isEmpty() && !use(rect))
            return false;
    }
    return true;
}

/// Sorts rectangles by their tops, those with the same top by their left sides.
class RectangleSorter {
public:
    /// Fewer than 2^32 rectangles, not none. With at most so many different keys in a unit.
    std::span<const AreaRect> sorted(std::span<const AreaRect> rectangles, double keysPerUnit)
    {
        double left = rectangles.front().left;
        double top = rectangles.front().top;
        double right = left; // of the left sides
        double bottom = top; // of the tops
        for (const AreaRect& rect : rectangles) {
            left = std::min(left, rect.left);
            top = std::min(top, rect.top);
            right = std::max(right, rect.left);
            bottom = std::max(bottom, rect.top);
        }
        const Scale fromTop(top, bottom, keysPerUnit);
        const Scale fromLeft(left, right, keysPerUnit);
        const int leftBits = fromLeft.bits();
        _keys.resize(rectangles.size());
        for (std::size_t i = 0; i < rectangles.size(); ++i) {
            const std::uint64_t place =
                fromTop.key(rectangles[i].top) << leftBits | fromLeft.key(rectangles[i].left);
            _keys[i] = place << kIndexBits | i;
        }
        const int end = kIndexBits + leftBits + fromTop.bits();
        for (int shift = kIndexBits; shift < end; shift += kDigitBits)
            sortByDigit(shift);
        _sorted.resize(rectangles.size());
        std::ranges::transform(_keys, _sorted.begin(),
            [rectangles](std::uint64_t key) { return rectangles[std::uint32_t(key)]; });
        return _sorted;
    }

private:
    static constexpr int kIndexBits = 32;
    static constexpr int kDigitBits = 8;

    /// Maps a range to at most 16 bits. Numbers that differ by rounding get the same key, unless they are at
    /// odd multiples of half a unit.
    class Scale {
    public:
        Scale(double first, double last, double keysPerUnit)
            : _keysPerUnit(std::min(keysPerUnit, powerOf2(65535 / (last - first))))
            , _origin(first - 0.5 / _keysPerUnit)
            , _bits(int(std::bit_width(key(last))))
        {
        }
        std::uint64_t key(double value) const { return std::uint32_t(int((value - _origin) * _keysPerUnit)); }
        /// Of the greatest key.
        int bits() const { return _bits; }

    private:
        /// The greatest power of 2 that is not above a number; a very large one for infinity.
        static double powerOf2(double value)
        {
            return std::exp2(std::min(std::floor(std::log2(value)), 1000.0));
        }

        double _keysPerUnit;
        double _origin;
        int _bits;
    };

    /// Keys with the same digit stay in their order.
    void sortByDigit(int shift)
    {
        const auto digitOf = [shift](std::uint64_t key) { return key >> shift & ((1U << kDigitBits) - 1); };
        std::array<std::uint32_t, 1 << kDigitBits> place{};
        for (const std::uint64_t key : _keys)
            ++place[digitOf(key)];
        std::uint32_t next = 0;
        for (std::uint32_t& each : place)
            next += std::exchange(each, next);
        _otherKeys.resize(_keys.size());
        std::uint64_t* const other = _otherKeys.data();
        for (const std::uint64_t key : _keys)
            other[place[digitOf(key)]++] = key;
        _keys.swap(_otherKeys);
    }

    std::vector<std::uint64_t> _keys; ///< each with the index of its rectangle in the lower half
    std::vector<std::uint64_t> _otherKeys;
    std::vector<AreaRect> _sorted;
};

/// See rectanglesInScanOrder. For a path that consists only of rectangles.
bool findScanOrder(const CGPath& path, const PixelSpace& space, bool isAntialiased, double rounding,
    double keysPerUnit, std::vector<AreaRect>& memory)
{
    ScanOrder order(memory, rounding);
    if (forEachRectangle(path, space, isAntialiased, [&](const AreaRect& rect) { return order.add(rect); })) {
        order.normalize();
        return true;
    }
    memory.clear();
    memory.reserve(path.points().size() / 4);
    forEachRectangle(path, space, isAntialiased, [&](const AreaRect& rect) {
        memory.push_back(rect);
        return true;
    });
    thread_local RectangleSorter sorter;
    const std::span<const AreaRect> sorted = sorter.sorted(memory, keysPerUnit);
    ScanOrder downward(memory, rounding);
    if (!std::ranges::all_of(sorted, [&](const AreaRect& rect) { return downward.add(rect); }))
        return false;
    downward.normalize();
    return true;
}

RetainPtr<CGPathBands> findBands(const CGPath& path)
{
    const CGRect box = path.boundingBox();
    const double reach = std::max({std::abs(CGRectGetMinX(box)), std::abs(CGRectGetMaxX(box)),
        std::abs(CGRectGetMinY(box)), std::abs(CGRectGetMaxY(box))});
    auto bands = adopt(new CGPathBands);
    bands->rounding = reach * kRelativeRounding;
    // In a space of height 0, y is only negated.
    if (!findScanOrder(path, PixelSpace{}, true, bands->rounding, kAnyNumberOfKeys, bands->rectangles))
        bands->rectangles.clear();
    bands->rectangles.shrink_to_fit();
    return bands;
}

} // namespace

std::optional<std::span<const AreaRect>> rectanglesInScanOrder(
    const CGPath& path, const PixelSpace& space, bool isAntialiased, std::vector<AreaRect>& memory)
{
    if (!path.hasOnlyRectangles()
        || !findScanOrder(path, space, isAntialiased, kEdgeRounding, kKeysPerPixel, memory))
        return std::nullopt;
    return memory;
}

const CGPathBands* cachedBands(const CGPath& path)
{
    if (!path.hasOnlyRectangles() || path.points().size() < 4 * kLeastCached)
        return nullptr;
    const CGPathBands* bands = path.bandsCache().bands([&] { return findBands(path).leak(); });
    return bands && !bands->rectangles.empty() ? bands : nullptr;
}

std::optional<std::span<const AreaRect>> rectanglesInScanOrder(const CGPathBands& bands,
    const CGAffineTransform& baseFromPath, const PixelSpace& space, std::vector<AreaRect>& memory)
{
    const auto& [a, b, c, d, tx, ty] = baseFromPath;
    if (bands.rounding * std::max(std::abs(a), std::abs(d)) > kEdgeRounding)
        return std::nullopt;
    memory.resize(bands.rectangles.size());
    AreaRect* next = memory.data();
    for (const AreaRect& rect : bands.rectangles) {
        *next = space.area(
            {a * rect.left + tx, d * -rect.bottom + ty}, {a * rect.right + tx, d * -rect.top + ty});
        next += next->isEmpty() ? 0 : 1;
    }
    memory.resize(std::size_t(next - memory.data()));
    normalize(memory, d < 0, a < 0);
    return memory;
}
