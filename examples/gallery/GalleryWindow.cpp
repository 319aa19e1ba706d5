#include "GalleryWindow.h"

#include <AppKit/NSEvent.h>

#include <algorithm>

namespace {

/// Whether a key closes the window.
bool isCloseKey(const NSEvent& event)
{
    const NSString& characters = event.charactersIgnoringModifiers();
    if (event.modifierFlags() & NSEventModifierFlagControl)
        return characters == "q" || characters == "w";
    return characters == "\x1B";
}

/// Window managers set the height of title bars, and tell it only once the window is shown.
constexpr CGFloat kRoomForTitleBar = 40;

} // namespace

NSSize GalleryWindow::sizeOnScreen(NSSize room)
{
    return {std::clamp(room.width, kMinimumSize.width, kSize.width),
        std::clamp(room.height - kRoomForTitleBar, kMinimumSize.height, kSize.height)};
}

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
