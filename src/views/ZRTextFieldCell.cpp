#include <KorvidAppKit/ZRTextFieldCell.h>

#include <AppKit/NSColor.h>
#include <AppKit/NSFont.h>
#include <AppKit/NSGraphicsContext.h>
#include <AppKit/NSStringAttributes.h>
#include <AppKit/NSTextField.h>
#include <CoreText/CTLine.h>
#include <Foundation/NSException.h>
#include <Foundation/NSLog.h>
#include <Foundation/NSNumber.h>
#include <KorvidAppKit/ZRErrors.h>

#include "graphics/ZRSavedGState.h"
#include "views/ZRMiddleTruncation.h"

#include <cmath>

namespace {

/// What a field decides about the look of its lines.
struct LineStyle {
    NSInteger verticalAlignment = NSTextAlignmentNatural;
    double lineHeightMultiplier = 0;
    double kernMultiplier = 0;
};

double finiteOrZero(double number)
{
    return std::isfinite(number) ? number : 0;
}

LineStyle lineStyleOf(const NSTextField& field)
{
    const auto* const view = dynamic_cast<const ZRTextFieldCellControlView*>(&field);
    return view ? LineStyle{view->verticalAlignment(), finiteOrZero(view->lineHeightMultiplier()),
               finiteOrZero(view->kernMultiplier())}
                : LineStyle();
}

NSTextAlignment alignmentOf(const NSDictionary& attributes)
{
    const auto* const style =
        dynamic_cast<const NSParagraphStyle*>(attributes.objectForKey(NSParagraphStyleAttributeName));
    return style ? style->alignment() : NSTextAlignmentLeft;
}

RetainPtr<CTFont> fontOf(const NSDictionary& attributes)
{
    if (auto* const font = dynamic_cast<CTFont*>(attributes.objectForKey(NSFontAttributeName)))
        return font;
    // The message's own spelling: programs may look for it in their logs.
    NSLog("ZRTextFieldCell unexpectedly encounterd a null font. Defaulting to system 10.");
    return NSFont::systemFontOfSize(10);
}

RetainPtr<NSObject> colorOf(const NSDictionary& attributes)
{
    NSObject* const color = attributes.objectForKey(NSForegroundColorAttributeName);
    return color ? color : NSColor::labelColor();
}

/// Shortens the first line to the width and drops the others. The whole text becomes the field's tool tip
/// when the line was too wide; otherwise the field loses its tool tip.
void truncate(std::vector<NSString>& lines, NSTextField& field, double width,
    const RetainPtr<NSDictionary>& attributes, const ZRNarrowing& narrowing)
{
    if (lines.size() > 1) {
        NSLog("ZRTextFieldCell had multiple lines when NSLineBreakByTruncatingMiddle was set. Drawing only "
              "first "
              "line.");
        lines.resize(1);
    }
    if (ZRLineWidth(lines.front(), attributes) <= width)
        return field.setToolTip(nullptr);
    lines.front() = ZRTruncatedInMiddle(lines.front(), width, attributes, narrowing);
    field.setToolTip(field.stringValue());
}

CGSize opticalSize(CTLineRef line)
{
    return CTLineGetBoundsWithOptions(line, kCTLineBoundsUseOpticalBounds).size;
}

/// How far a line begins from the left edge.
double indent(CTLineRef line, double width, NSTextAlignment alignment)
{
    const double rest = width - opticalSize(line).width;
    const double x = alignment == NSTextAlignmentCenter ? rest * 0.5
        : alignment == NSTextAlignmentRight             ? rest
                                                        : 0;
    return std::max(std::round(x), 0.0);
}

/// Draws lines of text downward from the origin, y upward.
void drawLines(CGContextRef context, const std::vector<NSString>& texts, NSSize size,
    const RetainPtr<NSDictionary>& attributes, NSTextAlignment alignment, const LineStyle& style)
{
    std::vector<RetainPtr<const CTLine>> lines;
    lines.reserve(texts.size());
    for (const NSString& text : texts)
        lines.push_back(
            adopt(CTLineCreateWithAttributedString(make<NSAttributedString>(text, attributes).get())));

    const CTLineRef first = lines.front().get();
    const double firstHeight =
        std::ceil(CTLineGetBoundsWithOptions(first, kCTLineBoundsUseGlyphPathBounds).size.height);
    // With a multiplier of 0, the default, all lines are drawn on one baseline.
    const double step = std::ceil(style.lineHeightMultiplier * opticalSize(first).height);
    const double total = firstHeight + step * double(lines.size() - 1);
    const double offset = style.verticalAlignment == NSTextAlignmentCenter ? (size.height - total) * 0.5 : 0;

    CGContextTranslateCTM(context, 0, -firstHeight);
    for (const auto& line : lines) {
        CGContextSetTextMatrix(context, CGAffineTransformIdentity);
        {
            const ZRSavedGState savedState(context);
            CGContextTranslateCTM(context, indent(line, size.width, alignment), -offset);
            CTLineDraw(line, context);
        }
        CGContextTranslateCTM(context, 0, -step);
    }
}

} // namespace

ZRTextFieldCellControlView::~ZRTextFieldCellControlView() = default;
ZRTextFieldCell::~ZRTextFieldCell() = default;

void ZRTextFieldCell::drawWithFrame(NSRect frame, NSView*)
{
    const NSGraphicsContext* const graphics = NSGraphicsContext::currentContext();
    const CGContextRef context = graphics ? graphics->CGContext() : nullptr;
    CGContextSaveGState(context);
    CGContextSetTextMatrix(context, CGAffineTransformIdentity);

    const RetainPtr<NSView> view = controlView();
    auto* const field = dynamic_cast<NSTextField*>(view.get());
    // The graphics state stays saved: a mistake in the program, after which nothing is drawn.
    if (!field)
        NSException::raise(ZRErrorDomain, "ZRTextFieldCell was inside a view other than NSTextField");
    drawText(context, frame.size, *field);
    CGContextRestoreGState(context);
}

void ZRTextFieldCell::drawText(CGContextRef context, NSSize size, NSTextField& field)
{
    const bool truncatesMiddle = field.lineBreakMode() == NSLineBreakByTruncatingMiddle;
    const auto text = field.attributedStringValue();
    if (text->length() == 0) {
        if (truncatesMiddle)
            field.setToolTip(nullptr);
        return;
    }
    const LineStyle style = lineStyleOf(field);
    const NSDictionary& textAttributes = *text->attributesAtIndex(0);
    const RetainPtr<CTFont> font = fontOf(textAttributes);
    const double kern = finiteOrZero(style.kernMultiplier * font->pointSize());
    // Other attributes, and those of other characters, are dropped.
    const auto attributes = make<NSDictionary>(NSDictionary::Map{{NSFontAttributeName, font},
        {NSForegroundColorAttributeName, colorOf(textAttributes)},
        {NSKernAttributeName, NSNumber::numberWithDouble(kern)}});

    std::vector<NSString> lines = field.stringValue().componentsSeparatedByString("\n");
    const ZRSavedGState savedState(context);
    CGContextScaleCTM(context, 1, -1); // a field is flipped: y upward from its top edge
    if (truncatesMiddle)
        truncate(lines, field, size.width, attributes, {font->pointSize(), kern});
    drawLines(context, lines, size, attributes, alignmentOf(textAttributes), style);
}
