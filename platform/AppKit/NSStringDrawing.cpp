#include <AppKit/NSStringDrawing.h>

#include "TextLayout.h"

#include <AppKit/NSGraphicsContext.h>

namespace NSExtendedStringDrawing {

NSRect boundingRectWithSize(const NSAttributedString* string, NSSize size, NSStringDrawingOptions options,
    NSStringDrawingContext* /*context*/)
{
    if (!string)
        return NSZeroRect;
    const TextLayout layout(*string, size.width, options);
    const bool isBlock = options & NSStringDrawingUsesLineFragmentOrigin;
    return {{0, isBlock ? 0 : layout.firstBaseline() - layout.size().height}, layout.size()};
}

NSRect boundingRectWithSize(const NSString& string, NSSize size, NSStringDrawingOptions options,
    RetainPtr<NSDictionary> attributes, NSStringDrawingContext* context)
{
    const auto attributed = make<NSAttributedString>(string, std::move(attributes));
    return boundingRectWithSize(attributed, size, options, context);
}

void drawWithRect(const NSAttributedString* string, NSRect rect, NSStringDrawingOptions options,
    NSStringDrawingContext* /*context*/)
{
    const NSGraphicsContext* const graphics = NSGraphicsContext::currentContext();
    if (!string || !graphics)
        return;
    const TextLayout layout(*string, rect.size.width, options);
    const double down = graphics->isFlipped() ? 1 : -1;
    double top = graphics->isFlipped() ? NSMinY(rect) : NSMaxY(rect);
    if (!(options & NSStringDrawingUsesLineFragmentOrigin))
        top = NSMinY(rect) - down * layout.firstBaseline();
    layout.draw(graphics->CGContext(), NSMinX(rect), top, graphics->isFlipped());
}

void drawWithRect(const NSString& string, NSRect rect, NSStringDrawingOptions options,
    RetainPtr<NSDictionary> attributes, NSStringDrawingContext* context)
{
    drawWithRect(make<NSAttributedString>(string, std::move(attributes)).get(), rect, options, context);
}

} // namespace NSExtendedStringDrawing
