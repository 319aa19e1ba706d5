#include "CoreGraphics/CGAffineTransformInternal.h"
#include "CoreGraphics/pdf/DisplayListPlayer.h"
#include "CoreGraphics/pdf/PDFBudget.h"
#include "CoreGraphics/pdf/PDFPixelLayer.h"

#include <CoreGraphics/CGBitmapContext.h>

#include <algorithm>
#include <cmath>

// A tiling is drawn from one period of it: a bitmap of the rectangle of one step in each direction, with all
// cells that reach into it. A pixel of the context is the average of the pixels of the period that it covers;
// beyond an edge the period continues at the other one. So there are no seams between cells at any scale and
// angle, which cells with soft edges side by side would have. Cells that are too large for that are drawn one
// by one.

namespace {

/// One period of a tiling in pixels.
class TilePeriod {
public:
    /// Nothing is allocated where `isTooLarge`.
    TilePeriod(const TileItem& tile, const CGAffineTransform& pixelFromPattern)
        : _tile(tile)
    {
        const CGAffineTransform& t = pixelFromPattern;
        const double width = tile.xStep * std::hypot(t.a, t.b);
        const double height = tile.yStep * std::hypot(t.c, t.d);
        const CGPoint origin = CGPointApplyAffineTransform(tile.cellBox.origin, t);
        isUpright = t.b == 0 && t.c == 0;
        const bool isAligned = isUpright && isWhole(width) && isWhole(height) && isWhole(origin.x)
            && isWhole(origin.y) && width >= 0.5 && height >= 0.5;
        samples = isAligned ? 1 : 4;
        while (samples > 1 && width * height * samples * samples > kMostPixels)
            samples /= 2;
        isTooLarge = !(width * height * samples * samples <= kMostPixels)
            || std::max(width, height) * samples > kMostPixels / 64;
        if (isTooLarge)
            return;
        _width = std::max(1, int(std::lround(width * samples)));
        _height = std::max(1, int(std::lround(height * samples)));
        _pixels.resize(std::size_t(_width) * std::size_t(_height));
    }

    bool isUpright = false;  ///< its axes are those of the context's pixels
    bool isTooLarge = false; ///< for a bitmap
    int samples = 1;         ///< that a pixel of the context covers in each direction

    int width() const { return _width; }
    int height() const { return _height; }
    double pixelCount() const { return double(_pixels.size()); }
    const PixelBytes& at(int x, int y) const
    {
        return _pixels[std::size_t(y) * std::size_t(_width) + std::size_t(x)];
    }

    /// Maps pattern space to pixels, y downward. What lies in other periods maps to outside of this one.
    CGAffineTransform periodFromPattern() const
    {
        const double x = _width / _tile.xStep;
        const double y = -_height / _tile.yStep;
        return {x, 0, 0, y, -_tile.cellBox.origin.x * x, _height - _tile.cellBox.origin.y * y};
    }

    /// A context that draws into the pixels, its user space that of the pattern. The caller owns it.
    RetainPtr<CGContext> makeContext()
    {
        const auto rgb = adopt(CGColorSpaceCreateDeviceRGB());
        auto context = adopt(CGBitmapContextCreate(_pixels.data(), std::size_t(_width), std::size_t(_height),
            8, std::size_t(_width) * sizeof(PixelBytes), rgb, kCGImageAlphaPremultipliedLast));
        const CGAffineTransform flip{1, 0, 0, -1, 0, double(_height)};
        CGContextConcatCTM(context, CGAffineTransformConcat(periodFromPattern(), flip));
        return context;
    }

private:
    static constexpr double kMostPixels = 1 << 20;

    static bool isWhole(double length)
    {
        constexpr double kTolerance = 1e-6; // of products of matrices
        return std::abs(length - std::round(length)) < kTolerance;
    }

    const TileItem& _tile;
    int _width = 0;
    int _height = 0;
    std::vector<PixelBytes> _pixels;
};

/// A position in a period of that many pixels; periods repeat.
int wrapped(double position, int size)
{
    const double offset = position - std::floor(position / size) * size;
    return offset < size ? int(offset) : 0;
}

/// Fills the layer with averages of samples × samples pixels. `sampleAt` returns those in turn, numbered from
/// the layer's corner.
template <class SampleAt> void fillWithAverages(PDFPixelLayer& layer, int samples, SampleAt sampleAt)
{
    const int count = samples * samples;
    for (int y = 0; y < layer.height(); ++y) {
        const auto row = layer.row(y);
        for (int x = 0; x < layer.width(); ++x) {
            std::array<int, 4> sum{};
            for (int sample = 0; sample < count; ++sample) {
                const PixelBytes& bytes =
                    sampleAt(x * samples + sample % samples, y * samples + sample / samples);
                for (std::size_t i = 0; i < sum.size(); ++i)
                    sum[i] += bytes[i];
            }
            for (std::size_t i = 0; i < sum.size(); ++i)
                row[std::size_t(x)][i] = std::uint8_t((sum[i] + count / 2) / count);
        }
    }
}

void fillWithPeriods(
    PDFPixelLayer& layer, const TilePeriod& period, const CGAffineTransform& patternFromPixel)
{
    const int samples = period.samples;
    const CGAffineTransform t = CGAffineTransformConcat(patternFromPixel, period.periodFromPattern());
    const auto positionOf = [samples](int sample) { return (sample + 0.5) / samples; };
    if (!period.isUpright)
        return fillWithAverages(layer, samples, [&](int x, int y) -> const PixelBytes& {
            const CGPoint point = CGPointApplyAffineTransform({positionOf(x), positionOf(y)}, t);
            return period.at(wrapped(point.x, period.width()), wrapped(point.y, period.height()));
        });
    std::vector<int> columns(std::size_t(layer.width() * samples));
    std::vector<int> rows(std::size_t(layer.height() * samples));
    for (std::size_t x = 0; x < columns.size(); ++x)
        columns[x] = wrapped(positionOf(int(x)) * t.a + t.tx, period.width());
    for (std::size_t y = 0; y < rows.size(); ++y)
        rows[y] = wrapped(positionOf(int(y)) * t.d + t.ty, period.height());
    fillWithAverages(layer, samples, [&](int x, int y) -> const PixelBytes& {
        return period.at(columns[std::size_t(x)], rows[std::size_t(y)]);
    });
}

/// Whole numbers from `first` to `last`.
struct Range {
    double first = 0;
    double last = 0;

    double count() const { return std::max(0.0, last - first + 1); }
};

/// The copies of a cell, counted in steps, that overlap an interval. Cells start at multiples of the step,
/// beyond `origin`.
Range copiesIn(double low, double high, double origin, double cellLength, double step)
{
    constexpr double kTolerance = 1e-9; // of the step: cells that only touch do not overlap
    return {std::floor((low - origin - cellLength) / step + kTolerance) + 1,
        std::ceil((high - origin) / step - kTolerance) - 1};
}

/// Where a copy of a cell lies along an axis: at `scale` times its positions in the cell, plus `offset`.
struct Placement {
    double scale = 1;
    double offset = 0;
};

/// The copy that is `count` steps away, stretched so that the ends of its step are whole pixels: the soft
/// edges of neighbours would show as a seam. The cell starts at `origin`; positions are `pixels` pixels long,
/// and 0 is at `pixelOfZero`.
Placement placeInPixels(double origin, double count, double step, double pixels, double pixelOfZero)
{
    const double start = (origin + count * step) * pixels + pixelOfZero;
    const double first = std::round(start);
    const double last = std::round(start + step * pixels);
    if (first == last)
        return {1, count * step};
    const double scale = (last - first) / (step * pixels);
    return {scale, (first - pixelOfZero) / pixels - scale * origin};
}

} // namespace

void DisplayListPlayer::draw(const TileItem& item)
{
    if (!beginPattern(item.compositing, item.shape, item.pageFromPattern))
        return;
    PDFPixelLayer layer(_context);
    const auto patternFromPixel = inverse(layer.pixelFromUser());
    if (!layer.isEmpty() && patternFromPixel) {
        TilePeriod period(item, layer.pixelFromUser());
        const CGRect box = CGRectMake(item.cellBox.origin.x, item.cellBox.origin.y, item.xStep, item.yStep);
        if (period.isTooLarge) {
            const auto cells = layer.makeContext();
            drawCells(item, cells, CGContextGetClipBoundingBox(_context));
        } else {
            const auto cells = period.makeContext();
            drawCells(item, cells, box);
            constexpr double kWorkPerSample = 10;
            _workLeft -= layer.pixelCount() * period.samples * period.samples * kWorkPerSample;
            if (!isExhausted())
                fillWithPeriods(layer, period, *patternFromPixel);
        }
        layer.draw();
    }
    endPattern();
}

void DisplayListPlayer::drawCells(const TileItem& item, CGContextRef context, CGRect box)
{
    const CGRect& cell = item.cellBox;
    const Range columns =
        copiesIn(CGRectGetMinX(box), CGRectGetMaxX(box), cell.origin.x, cell.size.width, item.xStep);
    const Range rows =
        copiesIn(CGRectGetMinY(box), CGRectGetMaxY(box), cell.origin.y, cell.size.height, item.yStep);
    _workLeft -= columns.count() * rows.count() * kPDFLimits.workPerTile;
    const CGAffineTransform t = CGContextGetUserSpaceToDeviceSpaceTransform(context);
    const bool isUpright = t.b == 0 && t.c == 0;
    for (double row = rows.first; row <= rows.last && !isExhausted(); ++row) {
        for (double column = columns.first; column <= columns.last && !isExhausted(); ++column) {
            CGContextSaveGState(context);
            const Placement x = isUpright ? placeInPixels(cell.origin.x, column, item.xStep, t.a, t.tx)
                                          : Placement{1, column * item.xStep};
            const Placement y = isUpright ? placeInPixels(cell.origin.y, row, item.yStep, t.d, t.ty)
                                          : Placement{1, row * item.yStep};
            CGContextConcatCTM(context, {x.scale, 0, 0, y.scale, x.offset, y.offset});
            CGContextClipToRect(context, cell);
            DisplayListPlayer player(context);
            player._workLeft = _workLeft;
            player.play(*item.cell);
            _workLeft = player._workLeft;
            CGContextRestoreGState(context);
        }
    }
}
