#include "Host.h"

#include <AppKit/NSApplication.h>
#include <AppKit/NSPasteboard.h>

NSPasteboard::NSPasteboard() = default;

NSPasteboard::~NSPasteboard() = default;

NSPasteboard* NSPasteboard::generalPasteboard()
{
    NSApplication::sharedApplication();
    static auto* const pasteboard = new NSPasteboard;
    return pasteboard;
}

NSInteger NSPasteboard::changeCount() const
{
    return Host::shared().clipboardChangeCount();
}

NSInteger NSPasteboard::clearContents()
{
    Host::shared().setClipboardText(nullptr);
    return changeCount();
}

bool NSPasteboard::setString(const NSString& string, const NSPasteboardType& dataType)
{
    if (!string || dataType != NSPasteboardTypeString)
        return false;
    Host::shared().setClipboardText(string);
    return true;
}

NSString NSPasteboard::stringForType(const NSPasteboardType& dataType) const
{
    return dataType == NSPasteboardTypeString ? Host::shared().clipboardText() : NSString(nullptr);
}
