#include "GalleryWindow.h"

#include <AppKit/NSEvent.h>

namespace {

/// Whether a key closes the window.
bool isCloseKey(const NSEvent& event)
{
    const NSString& characters = event.charactersIgnoringModifiers();
    if (event.modifierFlags() & NSEventModifierFlagControl)
        return characters == "q" || characters == "w";
    return characters == "\x1B";
}

} // namespace

GalleryWindow::GalleryWindow(const GalleryOptions& options)
    : NSWindow(NSRect{NSZeroPoint, kSize},
        NSWindowStyleMaskTitled | NSWindowStyleMaskClosable | NSWindowStyleMaskMiniaturizable
            | NSWindowStyleMaskResizable,
        NSBackingStoreBuffered, false)
    , _galleryView(make<GalleryView>(NSRect{NSZeroPoint, kSize}, options))
{
    setTitle("KorvidAppKit Gallery");
    setContentMinSize(kMinimumSize);
    setContentView(_galleryView);
    makeFirstResponder(_galleryView->list());
}

GalleryWindow::~GalleryWindow() = default;

void GalleryWindow::keyDown(NSEvent* event)
{
    if (isCloseKey(*event))
        performClose();
    else
        NSWindow::keyDown(event);
}
