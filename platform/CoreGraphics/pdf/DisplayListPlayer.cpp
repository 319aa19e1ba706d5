#include "CoreGraphics/pdf/DisplayListPlayer.h"

#include "CoreGraphics/CGPathInternal.h"
#include "CoreGraphics/context/CGContextInternal.h"
#include "CoreGraphics/pdf/PDFBudget.h"

#include <algorithm>
#include <cmath>
#include <numeric>
#include <utility>

namespace {

double area(CGRect rect)
{
    return CGRectIsNull(rect) ? 0 : rect.size.width * rect.size.height;
}

double meanScale(const CGAffineTransform& transform)
{
    return std::sqrt(std::fabs(transform.a * transform.d - transform.b * transform.c));
}

} // namespace

DisplayListPlayer::DisplayListPlayer(CGContextRef context)
    : _context(context)
    , _deviceFromPage(CGContextGetUserSpaceToDeviceSpaceTransform(context))
    , _scale(meanScale(_deviceFromPage))
    , _alpha(context->state().alpha)
{
    clipChanged();
    _workLeft = kPDFLimits.drawWork + kPDFLimits.drawWorkPerClipPixel * area(_clip);
}

void DisplayListPlayer::play(const DisplayList& list)
{
    const std::size_t outerSaves = std::exchange(_saves, 0);
    for (const auto& item : list.items) {
        std::visit([this](const auto& content) { draw(content); }, item);
        if (isExhausted())
            break;
    }
    while (_saves > 0)
        draw(RestoreItem());
    _saves = outerSaves;
}

CGRect DisplayListPlayer::paintedBox(const PDFShape& shape)
{
    CGRect box = CGPathGetBoundingBox(shape.path);
    if (!shape.stroke)
        return box;
    const PDFStrokeStyle& style = *shape.stroke;
    const double reach = style.width * (style.join == kCGLineJoinMiter ? style.miterLimit : std::sqrt(2)) / 2;
    box = CGRectInset(box, -reach, -reach);
    return style.pageFromPath ? CGRectApplyAffineTransform(box, *style.pageFromPath) : box;
}

CGRect DisplayListPlayer::visible(CGRect box) const
{
    return CGRectIntersection(CGRectApplyAffineTransform(box, _deviceFromPage), _clip);
}

double DisplayListPlayer::crossingWork(const PDFShape& shape, CGRect box, CGRect visibleBox) const
{
    // In each row of pixels the edges that cross it are sorted. A wide pen spreads them over more rows, but
    // those beyond the clip do not count.
    CGRect pathBox = CGPathGetBoundingBox(shape.path);
    if (shape.stroke && shape.stroke->pageFromPath)
        pathBox = CGRectApplyAffineTransform(pathBox, *shape.stroke->pageFromPath);
    const double height = std::max(CGRectApplyAffineTransform(pathBox, _deviceFromPage).size.height,
        std::min(CGRectApplyAffineTransform(box, _deviceFromPage).size.height, visibleBox.size.height));
    const double edges = shape.length * _scale / std::max(height, 1.0);
    const double work = !shape.stroke ? kPDFLimits.workPerCrossingOfFill
        : shape.hasCurves             ? kPDFLimits.workPerCrossingOfCurves
                                      : kPDFLimits.workPerCrossingOfLines;
    const double dashWork =
        shape.stroke && !isSolid(shape) ? kPDFLimits.workPerDashRow * crowdedDashRows(shape) : 0;
    return std::max(visibleBox.size.height, 1.0) * edges * edges * work + dashWork;
}

double DisplayListPlayer::lineScale(const PDFShape& shape) const
{
    const auto& pageFromPath = shape.stroke->pageFromPath;
    return pageFromPath ? _scale * meanScale(*pageFromPath) : _scale;
}

double DisplayListPlayer::crowdedDashRows(const PDFShape& shape) const
{
    const std::vector<CGFloat>& dashes = shape.stroke->dashes;
    if (dashes.empty())
        return 0;
    const double period = std::accumulate(dashes.begin(), dashes.end(), 0.0) * lineScale(shape);
    const double width = shape.stroke->width * lineScale(shape);
    // No line is visible for longer than the diagonal of the clip with the pen's reach around it.
    const double diagonal = std::hypot(_clip.size.width, _clip.size.height) + 2 * width;
    const double length = std::min(shape.length * _scale, double(shape.path->points().size()) * diagonal);
    const double count = length / period * double(dashes.size()) / 2;

    CGRect box = CGPathGetBoundingBox(shape.path);
    if (shape.stroke->pageFromPath)
        box = CGRectApplyAffineTransform(box, *shape.stroke->pageFromPath);
    const double clipHeight = std::max(_clip.size.height, 1.0);
    const double height = CGRectApplyAffineTransform(box, _deviceFromPage).size.height + width;
    const double rows = count * std::min(width + 1, clipHeight);
    return rows > std::clamp(height, 1.0, clipHeight) * kPDFLimits.dashesPerRow ? rows : 0;
}

bool DisplayListPlayer::isSolid(const PDFShape& shape) const
{
    // Dashes that are too small to be told apart take hours, those that lie over each other in thousands
    // seconds.
    const std::vector<CGFloat>& dashes = shape.stroke->dashes;
    const double period = std::accumulate(dashes.begin(), dashes.end(), 0.0) * lineScale(shape);
    return period < kPDFLimits.shortestDash || shape.length * _scale > period * kPDFLimits.dashes
        || crowdedDashRows(shape) > kPDFLimits.dashRows;
}

void DisplayListPlayer::spend(CGRect box, const PDFShape* shape)
{
    _workLeft -= kPDFLimits.workPerItem;
    const CGRect visibleBox = visible(box);
    if (CGRectIsNull(visibleBox))
        return;
    _workLeft -= area(visibleBox);
    if (shape && shape->stroke)
        _workLeft -= kPDFLimits.workPerStroke;
    if (shape)
        _workLeft -= crossingWork(*shape, box, visibleBox);
}

void DisplayListPlayer::clipChanged()
{
    _clip = CGContextConvertRectToDeviceSpace(_context, CGContextGetClipBoundingBox(_context));
}

void DisplayListPlayer::draw(const SaveItem&)
{
    CGContextSaveGState(_context);
    ++_saves;
}

void DisplayListPlayer::draw(const RestoreItem&)
{
    if (_saves == 0)
        return;
    --_saves;
    CGContextRestoreGState(_context);
    clipChanged();
}

void DisplayListPlayer::draw(const ClipItem& item)
{
    _workLeft -= kPDFLimits.workPerClip;
    spend(paintedBox(item.shape), &item.shape);
    if (!isExhausted())
        clipTo(item.shape);
}

void DisplayListPlayer::clipTo(const PDFShape& shape)
{
    if (!shape.path)
        return;
    addToPath(shape);
    if (CGContextIsPathEmpty(_context))
        CGContextClipToRect(_context, CGRectZero);
    else if (shape.isEvenOdd)
        CGContextEOClip(_context);
    else
        CGContextClip(_context);
    clipChanged();
}

void DisplayListPlayer::addToPath(const PDFShape& shape)
{
    CGContextBeginPath(_context);
    if (!shape.stroke) {
        CGContextAddPath(_context, shape.path);
        return;
    }
    CGContextSaveGState(_context);
    if (shape.stroke->pageFromPath)
        CGContextConcatCTM(_context, *shape.stroke->pageFromPath);
    CGContextAddPath(_context, shape.path);
    setLineAttributes(shape);
    CGContextReplacePathWithStrokedPath(_context);
    CGContextRestoreGState(_context);
}

void DisplayListPlayer::draw(const PathItem& item)
{
    const PDFShape& shape = item.shape;
    spend(paintedBox(shape), &shape);
    if (isExhausted())
        return;
    const PDFRGB& color = item.color;
    const auto* const pageFromPath =
        shape.stroke && shape.stroke->pageFromPath ? &*shape.stroke->pageFromPath : nullptr;
    const bool changesState =
        pageFromPath || item.compositing.softMask || item.compositing.blendMode != kCGBlendModeNormal;
    if (changesState) {
        CGContextSaveGState(_context);
        setCompositing(item.compositing);
        if (pageFromPath)
            CGContextConcatCTM(_context, *pageFromPath);
    }
    CGContextBeginPath(_context);
    CGContextAddPath(_context, shape.path);
    if (shape.stroke) {
        setLineAttributes(shape);
        CGContextSetRGBStrokeColor(_context, color.r, color.g, color.b, item.compositing.alpha);
        CGContextStrokePath(_context);
    } else {
        CGContextSetRGBFillColor(_context, color.r, color.g, color.b, item.compositing.alpha);
        if (shape.isEvenOdd)
            CGContextEOFillPath(_context);
        else
            CGContextFillPath(_context);
    }
    if (changesState)
        CGContextRestoreGState(_context);
}

void DisplayListPlayer::setLineAttributes(const PDFShape& shape)
{
    const PDFStrokeStyle& style = *shape.stroke;
    const double scale = lineScale(shape);
    const bool isThinnest = style.width == 0 && scale > 0;
    CGContextSetLineWidth(_context, isThinnest ? 1 / scale : style.width);
    CGContextSetLineCap(_context, style.cap);
    CGContextSetLineJoin(_context, style.join);
    CGContextSetMiterLimit(_context, style.miterLimit);
    const bool hasDashes = !isSolid(shape);
    CGContextSetLineDash(_context, style.dashPhase, hasDashes ? style.dashes.data() : nullptr,
        hasDashes ? style.dashes.size() : 0);
}
