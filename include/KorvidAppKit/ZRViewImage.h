#pragma once

#include <CoreGraphics/CGImage.h>
#include <Foundation/NSObjCRuntime.h>

class NSAppearance;
class NSView;

extern "C" {

/// A new image of a view and the views in it, as a window of that scale shows them but without a background;
/// the caller releases it. Needs neither an application object nor a display, and does not load the window
/// system: for servers, thumbnails and tests.
///
///     const auto tag = make<ZRCapsuleView>(NSZeroRect);
///     tag->setString("beta");
///     tag->setFrameSize(tag->intrinsicContentSize());
///     const auto image = adopt(ZRCreateViewImage(tag, 2, nullptr));
///
/// Lays out the view's constraints first. The image has as many pixels as the view's frame has points times
/// `scale`, rounded up, 8-bit RGBA with premultiplied alpha in sRGB. The view's top left corner is that of
/// the image: where the frame times `scale` is not whole, the last column and the last row are covered in
/// part. What no view paints is transparent. The view is drawn even if it is hidden, and stays in its window
/// if it has one.
///
/// `appearance` is the drawing appearance of the call, which named colours resolve in, and what
/// `NSView::effectiveAppearance` returns to the views while they draw. Borrowed. Null means the current one:
/// the application's, or without an application object the light one.
///
/// Null if `view` is null or has no area, if `scale` is not above 0 or not finite, if a side of the image
/// would be longer than 32767 pixels, and if there is no memory for the pixels. What a view throws in
/// `drawRect` passes to the caller, after the other views were drawn. Main thread only, like every view.
[[nodiscard]] KORVID_EXPORT CGImageRef ZRCreateViewImage(
    NSView* view, double scale, NSAppearance* appearance);

} // extern "C"
