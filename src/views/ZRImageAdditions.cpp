#include <KorvidAppKit/ZRAppKitAdditions.h>

#include <AppKit/NSColor.h>
#include <AppKit/NSGraphics.h>
#include <AppKit/NSImage.h>

namespace ZRAppKitAdditions_NSImage {

RetainPtr<NSImage> imageByTinting(const NSImage* image, const NSColor* color)
{
    if (!image)
        return nullptr;
    auto copy = image->copy();
    if (!color)
        return copy;
    copy->lockFocus();
    color->set();
    NSRectFillUsingOperation({NSZeroPoint, copy->size()}, NSCompositingOperationSourceAtop);
    copy->unlockFocus();
    return copy;
}

} // namespace ZRAppKitAdditions_NSImage
