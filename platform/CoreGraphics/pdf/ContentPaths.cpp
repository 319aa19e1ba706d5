#include "CoreGraphics/CGPathInternal.h"
#include "CoreGraphics/pdf/ContentInterpreter.h"

#include <algorithm>
#include <cmath>

namespace {

/// The path with its points mapped by `transform`; the path itself for the identity.
RetainPtr<const CGPath> transformed(RetainPtr<const CGPath> path, const CGAffineTransform& transform)
{
    if (CGAffineTransformIsIdentity(transform))
        return path;
    const auto result = adopt(CGPathCreateMutable());
    CGPathAddPath(result, &transform, path);
    return result;
}

double distance(CGPoint a, CGPoint b)
{
    return std::sqrt((a.x - b.x) * (a.x - b.x) + (a.y - b.y) * (a.y - b.y));
}

/// The length of all lines between the points of a path, control points included.
double controlLength(const CGPath& path)
{
    double length = 0;
    CGPoint last{};
    CGPoint start{};
    std::size_t index = 0;
    const auto points = path.points();
    for (const CGPathOp op : path.ops()) {
        const std::size_t count = kCGPathPointsPerOp[op];
        if (op == kCGPathElementMoveToPoint) {
            last = start = points[index];
        } else if (op == kCGPathElementCloseSubpath) {
            length += distance(start, last);
            last = start;
        } else {
            for (std::size_t each = 0; each < count; ++each) {
                length += distance(points[index + each], last);
                last = points[index + each];
            }
        }
        index += count;
    }
    return length;
}

bool hasCurves(const CGPath& path)
{
    const auto ops = path.ops();
    return std::any_of(ops.begin(), ops.end(), [](CGPathOp op) { return kCGPathPointsPerOp[op] > 1; });
}

/// The factor by which a transform scales lengths, if it is the same in all directions; otherwise 0.
double uniformScale(const CGAffineTransform& transform)
{
    const double x = std::hypot(transform.a, transform.b);
    const double y = std::hypot(transform.c, transform.d);
    const double product = transform.a * transform.c + transform.b * transform.d;
    constexpr double kTolerance = 1e-6;
    return std::fabs(x - y) <= kTolerance * (x + y) && std::fabs(product) <= kTolerance * x * y ? x : 0;
}

PDFShape shapeOf(RetainPtr<const CGPath> path, bool isEvenOdd)
{
    PDFShape shape;
    shape.length = float(controlLength(*path));
    shape.hasCurves = hasCurves(*path);
    shape.isEvenOdd = isEvenOdd;
    shape.path = std::move(path);
    return shape;
}

} // namespace

void ContentInterpreter::moveTo()
{
    _recording.budget().spendPoints(1);
    _stream->currentPoint = _stream->subpathStart = point(0);
    CGPathMoveToPoint(_path, nullptr, number(0), number(1));
}

void ContentInterpreter::lineTo()
{
    if (_path->isEmpty())
        return moveTo();
    _recording.budget().spendPoints(1);
    _stream->currentPoint = point(0);
    CGPathAddLineToPoint(_path, nullptr, number(0), number(1));
}

void ContentInterpreter::addCurve(CGPoint control1, CGPoint control2, CGPoint end)
{
    if (_path->isEmpty())
        return;
    _recording.budget().spendPoints(3);
    _stream->currentPoint = end;
    CGPathAddCurveToPoint(_path, nullptr, control1.x, control1.y, control2.x, control2.y, end.x, end.y);
}

void ContentInterpreter::curveTo()
{
    addCurve(point(0), point(2), point(4));
}

void ContentInterpreter::curveFromCurrentPoint()
{
    addCurve(_stream->currentPoint, point(0), point(2));
}

void ContentInterpreter::curveToEndPoint()
{
    addCurve(point(0), point(2), point(2));
}

void ContentInterpreter::closePath()
{
    if (_path->isEmpty())
        return;
    CGPathCloseSubpath(_path);
    _stream->currentPoint = _stream->subpathStart;
}

void ContentInterpreter::rectangle()
{
    _recording.budget().spendPoints(4);
    const CGRect rect{point(0), {number(2), number(3)}};
    _stream->currentPoint = _stream->subpathStart = rect.origin;
    if (rect.size.width >= 0 && rect.size.height >= 0) {
        CGPathAddRect(_path, nullptr, rect);
        return;
    }
    // CGPathAddRect would turn the direction round, which decides what overlapping rectangles fill.
    const double right = rect.origin.x + rect.size.width;
    const double top = rect.origin.y + rect.size.height;
    CGPathMoveToPoint(_path, nullptr, rect.origin.x, rect.origin.y);
    CGPathAddLineToPoint(_path, nullptr, right, rect.origin.y);
    CGPathAddLineToPoint(_path, nullptr, right, top);
    CGPathAddLineToPoint(_path, nullptr, rect.origin.x, top);
    CGPathCloseSubpath(_path);
}

void ContentInterpreter::stroke()
{
    paintPath(FillRule::None, true);
}

void ContentInterpreter::closeAndStroke()
{
    closePath();
    paintPath(FillRule::None, true);
}

void ContentInterpreter::fill()
{
    paintPath(FillRule::Winding, false);
}

void ContentInterpreter::fillEvenOdd()
{
    paintPath(FillRule::EvenOdd, false);
}

void ContentInterpreter::fillAndStroke()
{
    paintPath(FillRule::Winding, true);
}

void ContentInterpreter::fillEvenOddAndStroke()
{
    paintPath(FillRule::EvenOdd, true);
}

void ContentInterpreter::closeFillAndStroke()
{
    closePath();
    paintPath(FillRule::Winding, true);
}

void ContentInterpreter::closeFillEvenOddAndStroke()
{
    closePath();
    paintPath(FillRule::EvenOdd, true);
}

void ContentInterpreter::endPath()
{
    paintPath(FillRule::None, false);
}

void ContentInterpreter::clip()
{
    _stream->pendingClip = Stream::PendingClip::Winding;
}

void ContentInterpreter::clipEvenOdd()
{
    _stream->pendingClip = Stream::PendingClip::EvenOdd;
}

void ContentInterpreter::paintPath(FillRule rule, bool strokes)
{
    const auto pendingClip = std::exchange(_stream->pendingClip, Stream::PendingClip::None);
    if (_path->isEmpty())
        return;
    const bool clips = pendingClip != Stream::PendingClip::None;
    const bool fills = rule != FillRule::None && !isHidden();
    strokes = strokes && !isHidden();
    RetainPtr<const CGPath> userPath = std::exchange(_path, adopt(CGPathCreateMutable()));
    RetainPtr<const CGPath> pagePath;
    if (fills || clips)
        pagePath = transformed(userPath, _state.pageFromUser);
    if (fills)
        fillPath(pagePath, rule == FillRule::EvenOdd);
    if (strokes)
        strokePath(std::move(userPath), _state.pageFromUser);
    if (clips)
        clipToPath(std::move(pagePath), pendingClip == Stream::PendingClip::EvenOdd);
}

void ContentInterpreter::clipToPath(RetainPtr<const CGPath> path, bool isEvenOdd)
{
    if (!_state.hasSavedClip) {
        append(SaveItem());
        _state.hasSavedClip = true;
    }
    append(ClipItem{shapeOf(std::move(path), isEvenOdd)});
}

void ContentInterpreter::fillPath(RetainPtr<const CGPath> path, bool isEvenOdd)
{
    paintShape(shapeOf(std::move(path), isEvenOdd), _state.fill, _state.fillAlpha);
}

void ContentInterpreter::strokePath(RetainPtr<const CGPath> path, const CGAffineTransform& pageFromPath)
{
    auto style = std::make_shared<PDFStrokeStyle>(_state.line);
    const double scale = uniformScale(pageFromPath);
    double lengthScale = 1;
    if (scale > 0) {
        path = transformed(std::move(path), pageFromPath);
        style->width *= scale;
        style->dashPhase *= scale;
        for (auto& dash : style->dashes)
            dash *= scale;
    } else {
        style->pageFromPath = pageFromPath;
        lengthScale = std::sqrt(std::fabs(pageFromPath.a * pageFromPath.d - pageFromPath.b * pageFromPath.c));
    }
    PDFShape shape = shapeOf(std::move(path), false);
    shape.length = float(shape.length * lengthScale);
    shape.stroke = std::move(style);
    paintShape(std::move(shape), _state.stroke, _state.strokeAlpha);
}

void ContentInterpreter::paintShape(PDFShape shape, const PDFPaint& paint, float alpha)
{
    if (paint.space->paintsNothing())
        return;
    if (paint.space->isPattern())
        return paintPattern(std::move(shape), paint, alpha);
    append(PathItem{std::move(shape), paint.color, compositing(alpha)});
}

PDFCompositing ContentInterpreter::compositing(float alpha) const
{
    return {alpha, _state.blendMode, _state.softMask};
}
