#include "CoreGraphics/raster/GradientRows.h"

#include "CoreGraphics/raster/PixelFill.h"

#include <algorithm>
#include <bit>
#include <cmath>
#include <limits>

// Highway compiles this file once for each kind of vector unit, and picks one when the program runs.
#undef HWY_TARGET_INCLUDE
#define HWY_TARGET_INCLUDE "CoreGraphics/raster/GradientRows.cpp"
#include <hwy/foreach_target.h> // must come before highway.h

#include <hwy/highway.h>

#ifndef KORVID_GRADIENT_ROWS_TYPES
#define KORVID_GRADIENT_ROWS_TYPES

namespace {

/// A ramp along one row, in single precision, which is enough for pixels.
struct RowRamp {
    RowRamp(const PixelRamp& ramp, int column, int row, double factor = 1)
        : first(float(ramp.at(column, row) * factor))
        , step(float(ramp.perColumn * factor))
    {
    }
    float first;
    float step;
};

/// Ramps of the three quantities of nested circles, in cells.
struct NestedRow {
    RowRamp mean, u, v;
    float sign;
};

/// Where a row of a cone begins, and which of its locations are drawn.
struct ConeRow {
    ConeRow(const GradientGeometry& geometry, int column, int row, double cellCount)
        : cone(&geometry.cone())
        , along(cone->along.at(column, row))
        , across(cone->across.at(column, row))
        , inverseOfA(cone->a == 0 ? std::numeric_limits<double>::quiet_NaN() : 1 / cone->a)
        , least(geometry.drawsBefore() ? -std::numeric_limits<double>::infinity() : 0)
        , limit(geometry.drawsAfter() ? std::numeric_limits<double>::infinity() : 1)
        , cells(cellCount)
    {
    }
    const GradientGeometry::ConeOfCircles* cone;
    double along;
    double across;
    double inverseOfA; ///< NaN when there is none
    double least;      ///< the least location that is drawn
    double limit;      ///< the exclusive upper bound of the locations that are drawn
    double cells;
};

/// The pixels of the cells, and those before and after them.
struct GradientPixels {
    const CGGradientPixel* cells;
    int count;
    CGGradientPixel before;
    CGGradientPixel after;
};

} // namespace

#endif

HWY_BEFORE_NAMESPACE();
namespace HWY_NAMESPACE {
namespace {

namespace hn = hwy::HWY_NAMESPACE;
using Floats = hn::ScalableTag<float>;
using Pixels = hn::Rebind<std::uint32_t, Floats>;
using Indices = hn::Rebind<std::int32_t, Floats>;
using Vector = hn::Vec<Floats>;
using Doubles = hn::ScalableTag<double>;
using HalfFloats = hn::Rebind<float, Doubles>;
using Wide = hn::Vec<Doubles>;

/// Looks up the pixels of locations, which are in units of cells.
class PixelTable {
public:
    explicit PixelTable(const GradientPixels& pixels)
        : _cells(reinterpret_cast<const std::uint32_t*>(pixels.cells))
        , _count(hn::Set(Floats(), float(pixels.count)))
        , _last(hn::Set(Floats(), float(pixels.count - 1)))
        , _before(hn::Set(Pixels(), pixels.before))
        , _after(hn::Set(Pixels(), pixels.after))
    {
    }

    hn::Vec<Pixels> at(Vector location) const
    {
        const Vector zero = hn::Zero(Floats());
        // In this order a NaN gives a valid index, too.
        const Vector inside = hn::Min(hn::Max(location, zero), _last);
        const auto cell = hn::GatherIndex(Pixels(), _cells, hn::ConvertTo(Indices(), inside));
        const auto isBefore = hn::RebindMask(Pixels(), hn::Lt(location, zero));
        const auto isAfter = hn::RebindMask(Pixels(), hn::Ge(location, _count));
        return hn::IfThenElse(isAfter, _after, hn::IfThenElse(isBefore, _before, cell));
    }

private:
    const std::uint32_t* _cells;
    Vector _count, _last;
    hn::Vec<Pixels> _before, _after;
};

/// Writes a row whose pixels `pixelsAt` returns for a vector of columns; true when one of them is unsettled.
template <class PixelsAt> bool writeRow(CGGradientPixel* row, std::size_t count, const PixelsAt& pixelsAt)
{
    const Pixels tag;
    const std::size_t lanes = hn::Lanes(tag);
    const auto unsettled = hn::Set(tag, CGGradient::kUnsettled);
    const Vector step = hn::Set(Floats(), float(lanes));
    Vector columns = hn::Iota(Floats(), 0);
    auto found = hn::Zero(tag);
    std::size_t i = 0;
    for (; i + lanes <= count; i += lanes, columns = hn::Add(columns, step)) {
        const auto pixels = pixelsAt(columns);
        hn::StoreU(pixels, tag, row + i);
        found = hn::Or(found, hn::VecFromMask(tag, hn::Eq(pixels, unsettled)));
    }
    if (i < count) {
        const auto pixels = pixelsAt(columns);
        HWY_ALIGN CGGradientPixel last[hn::MaxLanes(tag)];
        hn::Store(pixels, tag, last);
        std::copy_n(last, count - i, row + i);
        found = hn::Or(found, hn::VecFromMask(tag, hn::Eq(pixels, unsettled)));
    }
    return !hn::AllTrue(tag, hn::Eq(found, hn::Zero(tag)));
}

/// The values of a ramp at a vector of columns.
class VectorRamp {
public:
    explicit VectorRamp(const RowRamp& ramp)
        : _first(hn::Set(Floats(), ramp.first))
        , _step(hn::Set(Floats(), ramp.step))
    {
    }
    Vector at(Vector columns) const { return hn::MulAdd(columns, _step, _first); }

private:
    Vector _first, _step;
};

bool fillLinear(
    CGGradientPixel* row, std::size_t count, const RowRamp& location, const GradientPixels& pixels)
{
    const PixelTable table(pixels);
    const VectorRamp ramp(location);
    return writeRow(row, count, [&](Vector columns) { return table.at(ramp.at(columns)); });
}

bool fillNested(
    CGGradientPixel* row, std::size_t count, const NestedRow& circles, const GradientPixels& pixels)
{
    const PixelTable table(pixels);
    const VectorRamp mean(circles.mean), uRamp(circles.u), vRamp(circles.v);
    const Vector sign = hn::Set(Floats(), circles.sign);
    return writeRow(row, count, [&](Vector columns) {
        const Vector u = uRamp.at(columns), v = vRamp.at(columns);
        const Vector root = hn::Sqrt(hn::MulAdd(u, u, hn::Mul(v, v)));
        return table.at(hn::MulAdd(root, sign, mean.at(columns)));
    });
}

/// The cone's locations in double precision, because floats are too coarse where its circles nearly touch.
class VectorCone {
public:
    explicit VectorCone(const ConeRow& row)
        : _row(row)
    {
    }

    /// In cells; NaN where nothing is drawn.
    hn::Vec<HalfFloats> at(Wide columns) const
    {
        const Doubles tag;
        const auto set = [&](double value) { return hn::Set(tag, value); };
        const GradientGeometry::ConeOfCircles& cone = *_row.cone;
        const Wide x = hn::MulAdd(columns, set(cone.along.perColumn), set(_row.along));
        const Wide y = hn::MulAdd(columns, set(cone.across.perColumn), set(_row.across));
        const Wide radius = set(cone.startRadius), distance = set(cone.distance), growth = set(cone.growth);
        const Wide b = hn::MulAdd(x, distance, hn::Mul(radius, growth));
        const Wide c = hn::NegMulAdd(radius, radius, hn::MulAdd(x, x, hn::Mul(y, y)));
        const Wide u = hn::MulAdd(x, growth, hn::Mul(radius, distance));
        const Wide discriminant = hn::NegMulAdd(hn::Mul(y, y), set(cone.a), hn::Mul(u, u));
        // Without a circle this is NaN, and so is all that follows.
        const Wide q = hn::Add(b, hn::CopySign(hn::Sqrt(discriminant), b));
        const Wide first = hn::Mul(q, set(_row.inverseOfA));
        const Wide second = hn::Div(c, q);
        const auto isSecondUpper = hn::Lt(first, second);
        const Wide upper = hn::IfThenElse(isSecondUpper, second, first);
        const Wide lower = hn::IfThenElse(isSecondUpper, first, second);
        const Wide none = set(std::numeric_limits<double>::quiet_NaN());
        const Wide drawn = hn::IfThenElse(isDrawn(upper), upper, hn::IfThenElse(isDrawn(lower), lower, none));
        return hn::DemoteTo(HalfFloats(), hn::Mul(drawn, set(_row.cells)));
    }

private:
    hn::Mask<Doubles> isDrawn(Wide s) const
    {
        const Doubles tag;
        const GradientGeometry::ConeOfCircles& cone = *_row.cone;
        const Wide radius = hn::MulAdd(s, hn::Set(tag, cone.growth), hn::Set(tag, cone.startRadius));
        return hn::And(hn::Ge(radius, hn::Zero(tag)),
            hn::And(hn::Ge(s, hn::Set(tag, _row.least)), hn::Lt(s, hn::Set(tag, _row.limit))));
    }

    const ConeRow& _row;
};

bool fillCone(CGGradientPixel* row, std::size_t count, const ConeRow& circles, const GradientPixels& pixels)
{
    const PixelTable table(pixels);
    const VectorCone cone(circles);
    const std::size_t lanes = hn::Lanes(Doubles());
    HWY_ALIGN float locations[hn::MaxLanes(Floats())];
    return writeRow(row, count, [&](Vector columns) {
        Wide next = hn::Iota(Doubles(), double(hn::GetLane(columns)));
        for (std::size_t i = 0; i < hn::Lanes(Floats()); i += lanes) {
            hn::Store(cone.at(next), HalfFloats(), locations + i);
            next = hn::Add(next, hn::Set(Doubles(), double(lanes)));
        }
        const Vector location = hn::Load(Floats(), locations);
        const auto isSomewhere = hn::RebindMask(Pixels(), hn::Eq(location, location));
        return hn::IfThenElseZero(isSomewhere, table.at(location));
    });
}

} // namespace
} // namespace HWY_NAMESPACE
HWY_AFTER_NAMESPACE();

#if HWY_ONCE

HWY_EXPORT(fillCone);
HWY_EXPORT(fillLinear);
HWY_EXPORT(fillNested);

namespace {

/// The only cell of a stencil: full coverage.
constexpr CGGradientPixel kDrawn[] = {~CGGradientPixel(0)};

/// A ramp that changes by less than this part of a cell counts as constant.
constexpr double kStandstill = 0.01;

} // namespace

GradientRows::GradientRows(const CGGradient& gradient, const GradientGeometry& geometry)
    : _geometry(geometry)
    , _gradient(&gradient)
    , _cells(gradient.cells())
    , _before(geometry.drawsBefore() ? gradient.firstPixel() : 0)
    , _after(geometry.drawsAfter() ? gradient.lastPixel() : 0)
{
}

GradientRows::GradientRows(const GradientGeometry& geometry)
    : _geometry(geometry)
    , _gradient(nullptr)
    , _cells(kDrawn)
    , _before(geometry.drawsBefore() ? kDrawn[0] : 0)
    , _after(geometry.drawsAfter() ? kDrawn[0] : 0)
{
}

bool GradientRows::isOpaque() const
{
    return _gradient && _gradient->isOpaque() && _geometry.isUnbounded();
}

bool GradientRows::stands(double perPixel, int count) const
{
    return _geometry.kind() == GradientGeometry::Kind::Linear
        && std::abs(perPixel) * count * double(_cells.size()) < kStandstill;
}

CGGradientPixel GradientRows::pixelAt(double location) const
{
    if (!(location >= 0))
        return location < 0 ? _before : 0;
    if (location >= 1)
        return _after;
    const CGGradientPixel cell = _cells[std::size_t(location * double(_cells.size()))];
    return cell == CGGradient::kUnsettled ? _gradient->pixelAt(location) : cell;
}

bool GradientRows::fillFromCells(int column, int row, std::span<CGGradientPixel> pixels) const
{
    const GradientPixels table{_cells.data(), int(_cells.size()), _before, _after};
    const auto cells = double(_cells.size());
    switch (_geometry.kind()) {
    case GradientGeometry::Kind::Linear: {
        const RowRamp location(_geometry.ramp(), column, row, cells);
        return HWY_DYNAMIC_DISPATCH(fillLinear)(pixels.data(), pixels.size(), location, table);
    }
    case GradientGeometry::Kind::Nested: {
        const GradientGeometry::NestedCircles& circles = _geometry.nested();
        const NestedRow nested{RowRamp(circles.mean, column, row, cells),
            RowRamp(circles.u, column, row, cells), RowRamp(circles.v, column, row, cells),
            float(circles.sign)};
        return HWY_DYNAMIC_DISPATCH(fillNested)(pixels.data(), pixels.size(), nested, table);
    }
    default:
        return HWY_DYNAMIC_DISPATCH(fillCone)(
            pixels.data(), pixels.size(), ConeRow(_geometry, column, row, cells), table);
    }
}

void GradientRows::fill(int column, int row, std::span<CGGradientPixel> pixels) const
{
    if (isSameInColumns(int(pixels.size()))) {
        const auto same = std::bit_cast<PixelBytes>(pixel(column, row));
        return fillPixels(reinterpret_cast<unsigned char*>(pixels.data()), pixels.size(), same);
    }
    if (!fillFromCells(column, row, pixels))
        return;
    for (std::size_t i = 0; i < pixels.size(); ++i) {
        if (pixels[i] == CGGradient::kUnsettled)
            pixels[i] = pixel(column + int(i), row);
    }
}

#endif
