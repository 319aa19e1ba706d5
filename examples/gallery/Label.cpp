#include "Label.h"

#include "Page.h"

#include <AppKit/NSFont.h>
#include <CoreText/CTLine.h>

void drawLabel(CGContextRef context, const NSString& text, CGPoint point, CGFloat fontSize, const char* color,
    LabelPlace place)
{
    const auto attributes = make<NSDictionary>(NSDictionary::Map{
        {kCTFontAttributeName, NSFont::boldSystemFontOfSize(fontSize)},
        {kCTForegroundColorAttributeName, box(galleryCGColor(color))},
    });
    const auto string = make<NSAttributedString>(text, attributes);
    const auto line = adopt(CTLineCreateWithAttributedString(string));
    if (place == LabelPlace::Around) {
        const CGRect ink = CTLineGetBoundsWithOptions(line, kCTLineBoundsUseGlyphPathBounds);
        point = {point.x - CGRectGetMidX(ink), point.y - CGRectGetMidY(ink)};
    }
    CGContextSetTextPosition(context, point.x, point.y);
    CTLineDraw(line, context);
}
