#include <KorvidAppKit/ZRCapsuleView.h>

#include <AppKit/NSColor.h>
#include <AppKit/NSFont.h>
#include <AppKit/NSStringAttributes.h>
#include <CoreText/CTLine.h>
#include <Foundation/NSNumber.h>
#include <KorvidAppKit/ZRAppKitAdditions.h>
#include <KorvidAppKit/ZRGraphics.h>

#include "graphics/ZRSavedGState.h"
#include "views/ZRReplaceColor.h"

#include <algorithm>
#include <cmath>

namespace {

const NSCodingClass<ZRCapsuleView> capsuleViewCoding("ZRCapsuleView");

struct LineSize {
    double width = 0; ///< includes the kern after the last letter
    double ascent = 0;
};

LineSize sizeOf(CTLineRef line)
{
    LineSize size;
    size.width = CTLineGetTypographicBounds(line, &size.ascent, nullptr, nullptr);
    return size;
}

RetainPtr<const CTLine> makeLine(const NSAttributedString* text)
{
    return adopt(CTLineCreateWithAttributedString(text));
}

/// The gray level of text that contrasts with a colour.
double textLevelOn(const NSColor* color)
{
    double red = 0, green = 0, blue = 0, alpha = 0;
    if (!ZRAppKitAdditions::SRGBGetRed(color, &red, &green, &blue, &alpha))
        return 0.1;
    return 0.299 * red + 0.587 * green + 0.114 * blue > 0.8 ? 0.1 : 1;
}

/// The text in a calibrated gray, with the other attributes of its first letter. Null for an empty text.
RetainPtr<NSAttributedString> inGray(const NSAttributedString& text, double level)
{
    if (text.length() == 0)
        return nullptr;
    const NSDictionary& first = *text.attributesAtIndex(0);
    const auto attributes = make<NSMutableDictionary>(NSDictionary::Map(first.begin(), first.end()));
    attributes->setObject(NSColor::colorWithCalibratedWhite(level, 1), NSForegroundColorAttributeName);
    return make<NSAttributedString>(text.string(), attributes);
}

} // namespace

ZRCapsuleView::ZRCapsuleView()
{
    _postInit();
}

ZRCapsuleView::ZRCapsuleView(NSRect frame)
    : NSView(frame)
{
    _postInit();
}

ZRCapsuleView::ZRCapsuleView(NSCoder* coder)
    : NSView(coder)
{
    _postInit();
}

ZRCapsuleView::~ZRCapsuleView() = default;

void ZRCapsuleView::_postInit()
{
    _fontSize = 9;
    _color = NSColor::whiteColor();
    _drawType = kZRCapsuleDrawTypeOutline;
    _fontName = "Helvetica Neue Regular";
}

void ZRCapsuleView::drawRect(NSRect)
{
    const CGContextRef context = ZRGraphics::sharedContext();
    if (!context)
        return;
    const NSRect bounds = this->bounds();
    const ZRSavedGState savedState(context);
    NSColor* const color = _color ? _color.get() : NSColor::purpleColor();
    const bool isOutline = _drawType == kZRCapsuleDrawTypeOutline;
    const double lineWidth = isOutline ? std::clamp(bounds.size.height * 0.03, 0.5, 2.0) : 0;
    const CGRect capsule = CGRectInset(bounds, lineWidth / 2, lineWidth / 2);
    // Deliberately a quarter of the height, not half: the ends are not half circles.
    const double radius = capsule.size.height * 0.25;

    CGContextSetStrokeColorWithColor(context, color->CGColor());
    CGContextSetFillColorWithColor(context, color->CGColor());
    CGContextSetLineWidth(context, lineWidth);
    const auto path = adopt(CGPathCreateWithRoundedRect(capsule, radius, radius, nullptr));
    CGContextAddPath(context, path);

    auto text = _attributedString();
    if (_drawType == kZRCapsuleDrawTypeFilled) {
        CGContextDrawPath(context, kCGPathFill);
        text = inGray(*text, textLevelOn(color));
    } else if (isOutline) {
        CGContextDrawPath(context, kCGPathStroke);
    } else {
        // Filling a rectangle discards the path, so the capsule is not drawn.
        CGContextSetFillColorWithColor(context, NSColor::redColor()->CGColor());
        CGContextFillRect(context, bounds);
    }
    if (text)
        drawText(context, text);
}

void ZRCapsuleView::drawText(CGContextRef context, const NSAttributedString* text) const
{
    const auto line = makeLine(text);
    const LineSize size = sizeOf(line);
    const double width = size.width - _kern();
    CGAffineTransform transform = CGAffineTransformIdentity;
    if (width > 0) {
        // Placed by the size alone, from (0, 0): an origin of the bounds does not move the text.
        const NSSize bounds = this->bounds().size;
        transform = CGAffineTransformTranslate(transform, 0, bounds.height * 0.5);
        transform = CGAffineTransformTranslate(transform, 0, size.ascent * -0.3);
        transform = CGAffineTransformTranslate(transform, (bounds.width - width) * 0.5, 0);
    }
    const ZRSavedGState savedState(context);
    CGContextConcatCTM(context, transform);
    CTLineDraw(line, context);
}

double ZRCapsuleView::_kern() const
{
    return std::isfinite(_fontSize) ? _fontSize * 0.125 : 0;
}

RetainPtr<NSAttributedString> ZRCapsuleView::_attributedString() const
{
    RetainPtr<NSFont> font = NSFont::fontWithName(fontName(), _fontSize);
    if (!font)
        font = NSFont::systemFontOfSize(_fontSize);
    const auto attributes = make<NSMutableDictionary>();
    attributes->setObject(font, NSFontAttributeName);
    attributes->setObject(NSNumber::numberWithDouble(_kern()), NSKernAttributeName);
    if (_color)
        attributes->setObject(_color, NSForegroundColorAttributeName);
    return make<NSAttributedString>(_string, attributes);
}

NSSize ZRCapsuleView::intrinsicContentSize() const
{
    const LineSize size = sizeOf(makeLine(_attributedString().get()).get());
    _pad = size.ascent * 1.4;
    return {size.width - _kern() + _pad, size.ascent + _pad};
}

void ZRCapsuleView::setFontSize(double size)
{
    if (size == _fontSize)
        return;
    _fontSize = size;
    invalidateIntrinsicContentSize();
    setNeedsDisplay(true);
}

void ZRCapsuleView::setString(NSString string)
{
    if (string == _string)
        return;
    _string = std::move(string);
    invalidateIntrinsicContentSize();
    setNeedsDisplay(true);
}

void ZRCapsuleView::setColor(RetainPtr<NSColor> color)
{
    if (ZRReplaceColor(_color, std::move(color)))
        setNeedsDisplay(true);
}

void ZRCapsuleView::setDrawType(std::int32_t drawType)
{
    if (drawType == _drawType)
        return;
    _drawType = drawType;
    setNeedsDisplay(true);
}

NSString ZRCapsuleView::fontName() const
{
    const std::lock_guard guard(_fontNameMutex);
    return _fontName;
}

void ZRCapsuleView::setFontName(NSString name)
{
    const std::lock_guard guard(_fontNameMutex);
    std::swap(_fontName, name); // the old name is released after the lock
}

std::vector<NSString> ZRCapsuleView::keyPathsForValuesAffectingIntrinsicContentSize()
{
    return {"fontSize", "string"};
}
