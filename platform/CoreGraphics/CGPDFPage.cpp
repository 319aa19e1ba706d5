#include <CoreGraphics/CGPDFPage.h>

#include "CoreGraphics/CGPDFInternal.h"

#include <algorithm>

namespace {

/// Turns a box at any place by a clockwise angle, a multiple of 90 from 0 to 270, and moves it to the origin.
CGAffineTransform turnToOrigin(CGRect box, int angle)
{
    const double left = box.origin.x;
    const double bottom = box.origin.y;
    const double right = left + box.size.width;
    const double top = bottom + box.size.height;
    switch (angle) {
    case 90:
        return {0, -1, 1, 0, -bottom, right};
    case 180:
        return {-1, 0, 0, -1, right, top};
    case 270:
        return {0, 1, -1, 0, top, -left};
    default:
        return {1, 0, 0, 1, -left, -bottom};
    }
}

} // namespace

CGPDFPageRef CGPDFPageRetain(CGPDFPageRef page)
{
    if (page)
        CGPDFDocumentRetain(&page->document);
    return page;
}

void CGPDFPageRelease(CGPDFPageRef page)
{
    if (page)
        CGPDFDocumentRelease(&page->document);
}

CGPDFDocumentRef CGPDFPageGetDocument(CGPDFPageRef page)
{
    return page ? &page->document : nullptr;
}

std::size_t CGPDFPageGetPageNumber(CGPDFPageRef page)
{
    return page ? page->index + 1 : 0;
}

CGRect CGPDFPageGetBoxRect(CGPDFPageRef page, CGPDFBox box)
{
    return page ? page->document.file->box(page->index, box) : CGRectNull;
}

int CGPDFPageGetRotationAngle(CGPDFPageRef page)
{
    return page ? page->document.file->rotation(page->index) : 0;
}

CGAffineTransform CGPDFPageGetDrawingTransform(
    CGPDFPageRef page, CGPDFBox box, CGRect rect, int rotate, bool preserveAspectRatio)
{
    const CGRect source = CGPDFPageGetBoxRect(page, box);
    if (CGRectIsNull(source) || CGRectIsEmpty(rect))
        return CGAffineTransformIdentity;
    const CGRect target = CGRectStandardize(rect);
    const int extra = rotate % 90 == 0 ? rotate % 360 : 0;
    const int angle = (CGPDFPageGetRotationAngle(page) + extra + 360) % 360;
    const auto turned = turnToOrigin(source, angle);
    const CGSize size = CGRectApplyAffineTransform(source, turned).size;
    double scaleX = std::min(1.0, target.size.width / size.width);
    double scaleY = std::min(1.0, target.size.height / size.height);
    if (preserveAspectRatio)
        scaleX = scaleY = std::min(scaleX, scaleY);
    const CGAffineTransform fitted{scaleX, 0, 0, scaleY, //
        target.origin.x + (target.size.width - size.width * scaleX) / 2,
        target.origin.y + (target.size.height - size.height * scaleY) / 2};
    return CGAffineTransformConcat(turned, fitted);
}

void CGContextDrawPDFPage(CGContextRef context, CGPDFPageRef page)
{
    if (context && page)
        page->document.file->draw(page->index, context);
}
