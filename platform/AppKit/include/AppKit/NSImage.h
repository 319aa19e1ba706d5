#pragma once

#include <AppKit/NSGraphics.h>
#include <CoreGraphics/CGContext.h>
#include <CoreGraphics/CGImage.h>
#include <Foundation/NSObject.h>

class NSGraphicsContext;

/// A picture with a size in points, from a Core Graphics image or drawn between `lockFocus` and
/// `unlockFocus`.
///
///     auto badge = make<NSImage>(image, NSMakeSize(16, 16)); // 32 x 32 pixels: sharp at scale 2
///     badge->drawInRect(NSMakeRect(10, 10, 16, 16));
///
/// Sides that are not finite or above 0 count as 0. One thread at a time.
class KORVID_EXPORT NSImage : public NSObject {
public:
    /// A transparent picture without pixels yet.
    explicit NSImage(NSSize size);
    /// A picture of the pixels of `image`, which is retained. NSZeroSize stands for one point for each pixel.
    /// Null gives a picture without pixels.
    NSImage(RetainPtr<::CGImage> image, NSSize size);

    /// In points.
    NSSize size() const { return _size; }
    /// Changes how large the pixels are shown.
    void setSize(NSSize size);

    /// A new picture with the same pixels and size. Later changes of either do not change the other. Within
    /// `lockFocus`, the pixels from before it.
    RetainPtr<NSImage> copy() const;

    // Drawing. The destination is `NSGraphicsContext::currentContext()`, which may be null. A picture without
    // pixels draws nothing.

    /// Draws the whole picture stretched over a rectangle, upright in flipped contexts too.
    void drawInRect(NSRect rect) const;
    /// Draws `fromRect` of the picture, in its points from the bottom left, stretched over `rect`; the whole
    /// picture for NSZeroRect. `fraction` is the alpha, 0 to 1, in place of the context's. In a flipped
    /// context the picture is upside down, unless `respectFlipped`. An unsupported operation is logged and
    /// draws nothing.
    void drawInRect(NSRect rect, NSRect fromRect, NSCompositingOperation operation, CGFloat fraction,
        bool respectFlipped = false) const;

    /// Makes a context current that draws on the picture: in points, from the bottom left, y upward. It has
    /// the pixels of the picture, or, if that has none yet, the screen's number of pixels for each point.
    ///
    /// Each call needs one of `unlockFocus`; a picture may be locked twice. A picture without a size, or too
    /// large for memory, discards what is drawn.
    void lockFocus();
    /// Stores what was drawn, and makes the previous context current again. Does nothing without `lockFocus`.
    void unlockFocus();

    /// The pixels, for drawing with Core Graphics. Borrowed, until the picture changes; null without pixels.
    /// The arguments are not used: there is one set of pixels, for the whole picture. Pass null.
    CGImageRef CGImageForProposedRect(
        NSRect* proposedRect = nullptr, NSGraphicsContext* context = nullptr) const;

protected:
    ~NSImage() override;

private:
    RetainPtr<CGContext> makeContext() const;

    RetainPtr<::CGImage> _image;
    NSSize _size;
    RetainPtr<CGContext> _focus; ///< while locked
    NSInteger _lockCount = 0;
};
