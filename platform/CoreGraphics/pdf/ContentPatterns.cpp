#include "CoreGraphics/pdf/ContentInterpreter.h"
#include "CoreGraphics/pdf/PDFShading.h"

#include <cmath>
#include <utility>

void ContentInterpreter::paintPattern(PDFShape shape, const PDFPaint& paint, float alpha)
{
    const auto matrix = paint.pattern["Matrix"].matrix().value_or(CGAffineTransformIdentity);
    const auto pageFromPattern = CGAffineTransformConcat(matrix, _stream->pageFromContent);
    switch (paint.pattern["PatternType"].integer()) {
    case 1:
        return paintTiling(std::move(shape), paint, pageFromPattern, alpha);
    case 2:
        return paintShadingPattern(std::move(shape), paint, pageFromPattern, alpha);
    default:
        _recording.notDrawn("a pattern is invalid, and paints nothing");
    }
}

void ContentInterpreter::paintShadingPattern(
    PDFShape shape, const PDFPaint& paint, const CGAffineTransform& pageFromPattern, float alpha)
{
    auto shading = PDFShading::make(paint.pattern["Shading"], resources(), _recording);
    if (!shading) {
        _recording.notDrawn("a shading is invalid, and not drawn");
        return;
    }
    auto item = std::make_unique<ShadeItem>();
    item->shape = std::move(shape);
    item->compositing = compositing(alpha);
    item->shading = std::move(shading);
    item->pageFromShading = pageFromPattern;
    item->isPattern = true;
    append(std::move(item));
}

void ContentInterpreter::paintTiling(
    PDFShape shape, const PDFPaint& paint, const CGAffineTransform& pageFromPattern, float alpha)
{
    const PDFObject& pattern = paint.pattern;
    const auto box = pattern["BBox"].rect();
    const double xStep = std::fabs(pattern["XStep"].number());
    const double yStep = std::fabs(pattern["YStep"].number());
    if (!pattern.isStream() || !box || CGRectIsEmpty(*box) || xStep == 0 || yStep == 0) {
        _recording.notDrawn("a pattern is invalid, and paints nothing");
        return;
    }
    const bool isUncolored = pattern["PaintType"].integer() == 2;
    auto item = std::make_unique<TileItem>();
    item->cell = isUncolored
        ? recordCell(pattern, paint.color, true)
        : _recording.cached<DisplayList>(pattern, [&] { return recordCell(pattern, {}, false); });
    if (!item->cell || item->cell->items.empty())
        return;
    item->shape = std::move(shape);
    item->compositing = compositing(alpha);
    item->pageFromPattern = pageFromPattern;
    item->cellBox = *box;
    item->xStep = xStep;
    item->yStep = yStep;
    append(std::move(item));
}

/// The items of a tiling's cell, in pattern space; null where the cell contains itself.
std::shared_ptr<const DisplayList> ContentInterpreter::recordCell(
    const PDFObject& pattern, const PDFRGB& color, bool isUncolored)
{
    const PDFRecording::StreamUse use(_recording, pattern);
    if (!use) {
        _recording.notDrawn("a pattern that contains itself is not drawn");
        return nullptr;
    }
    PDFGraphicsState initial;
    initial.fill.color = initial.stroke.color = color;
    ContentInterpreter cell(_recording, std::move(initial));
    const PDFObject own = pattern["Resources"];
    cell.run(_recording.decode(pattern), own.isDictionary() ? own : resources(), isUncolored);
    return cell.takeList();
}
