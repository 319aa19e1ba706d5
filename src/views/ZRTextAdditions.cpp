#include <AppKit/NSGraphicsContext.h>
#include <AppKit/NSParagraphStyle.h>
#include <AppKit/NSTextField.h>
#include <KorvidAppKit/ZRAppKitAdditions.h>

#include "graphics/ZRSavedGState.h"

#include <limits>

namespace {

/// Deliberately a constant, whatever the width of the rectangle that a text is drawn in.
constexpr double kMeasuringWidth = 300;

constexpr NSStringDrawingOptions kMeasuringOptions =
    NSStringDrawingUsesLineFragmentOrigin | NSStringDrawingUsesFontLeading;

/// The part of the difference between the heights of text and rectangle by which a text is moved.
double shareOfDifference(NSInteger verticalAlign)
{
    switch (verticalAlign) {
    case ZRVerticalAlignCenter:
        return 0.5;
    case ZRVerticalAlignBottom:
        return 1;
    default:
        return 0;
    }
}

} // namespace

namespace ZRAppKitAdditions {

void drawWithRect(
    const NSAttributedString* string, NSRect rect, NSStringDrawingOptions options, NSInteger verticalAlign)
{
    const NSGraphicsContext* const graphics = NSGraphicsContext::currentContext();
    if (!string || !graphics)
        return;
    const NSSize limits{kMeasuringWidth, std::numeric_limits<double>::max()};
    const NSSize size = NSExtendedStringDrawing::boundingRectWithSize(string, limits, kMeasuringOptions).size;
    const double shift = (size.height - rect.size.height) * shareOfDifference(verticalAlign);
    const ZRSavedGState savedState(graphics->CGContext());
    CGContextConcatCTM(graphics->CGContext(), CGAffineTransformMakeTranslation(0, shift));
    NSExtendedStringDrawing::drawWithRect(string, rect, options);
}

void drawWithRect(const NSString& string, NSRect rect, RetainPtr<NSDictionary> attributes,
    NSStringDrawingOptions options, NSInteger verticalAlign)
{
    drawWithRect(make<NSAttributedString>(string, std::move(attributes)).get(), rect, options, verticalAlign);
}

void setLineHeight(NSTextField* field, double height)
{
    const auto text = field ? field->attributedStringValue() : nullptr;
    if (!text || text->length() == 0)
        return;
    const NSDictionary& first = *text->attributesAtIndex(0);
    const auto* const oldStyle =
        dynamic_cast<const NSParagraphStyle*>(first.objectForKey(NSParagraphStyleAttributeName));
    const auto style = (oldStyle ? oldStyle : NSParagraphStyle::defaultParagraphStyle())->mutableCopy();
    style->setLineSpacing(0);
    style->setMaximumLineHeight(height);
    const auto attributes = make<NSMutableDictionary>(NSDictionary::Map(first.begin(), first.end()));
    attributes->setObject(style, NSParagraphStyleAttributeName);
    field->setAttributedStringValue(make<NSAttributedString>(text->string(), attributes));
}

bool beginsWith(const NSString& string, const NSString& prefix)
{
    return string.hasPrefix(prefix);
}

} // namespace ZRAppKitAdditions
