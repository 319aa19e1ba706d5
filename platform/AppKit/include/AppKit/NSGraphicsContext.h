#pragma once

#include <CoreGraphics/CGContext.h>
#include <Foundation/NSObject.h>

class NSBitmapImageRep;

/// Where drawing goes: a Core Graphics context, and whether its y axis runs downward.
///
/// Each thread has its own current context, which is null outside of drawing; a view finds the right one in
/// its `drawRect`. One context belongs to one thread at a time.
///
///     CGContextRef context = NSGraphicsContext::currentContext()->CGContext();
class KORVID_EXPORT NSGraphicsContext final : public NSObject {
public:
    /// Draws in `context`, which is retained. `flipped` only tells what the context's transform is like, for
    /// whoever asks `isFlipped()`; it changes nothing. Null gives null.
    static RetainPtr<NSGraphicsContext> graphicsContextWithCGContext(
        RetainPtr<::CGContext> context, bool flipped);
    /// Draws in the pixels of `rep`, which is retained: one unit is one pixel, y points upward. Null for null
    /// and for a bitmap that is not RGBA with premultiplied alpha.
    static RetainPtr<NSGraphicsContext> graphicsContextWithBitmapImageRep(RetainPtr<NSBitmapImageRep> rep);

    /// The calling thread's context, lent. Null outside of drawing.
    static NSGraphicsContext* currentContext();
    /// Makes a context, or none, the calling thread's current one, and retains it.
    static void setCurrentContext(RetainPtr<NSGraphicsContext> context);

    /// Remembers which context is current on the calling thread, and saves its graphics state.
    static void saveGraphicsState();
    /// Makes the context current again that the last `saveGraphicsState` remembered, and restores its state.
    /// Without one, nothing happens.
    static void restoreGraphicsState();

    // The same names for one context; in C++ an instance method could not share them, so the receiver comes
    // as a parameter. Null does nothing.

    /// Saves the graphics state of `context`, whichever is current.
    static void saveGraphicsState(NSGraphicsContext* context);
    /// Restores the graphics state of `context`.
    static void restoreGraphicsState(NSGraphicsContext* context);

    /// Lent; never null.
    CGContextRef CGContext() const { return _cgContext.get(); }
    /// True when y runs downward, as in a flipped view.
    bool isFlipped() const { return _flipped; }
    /// Brings all drawing to the pixels.
    void flushGraphics();

protected:
    ~NSGraphicsContext() override;

private:
    NSGraphicsContext(RetainPtr<::CGContext> context, bool flipped, RetainPtr<NSBitmapImageRep> rep);

    RetainPtr<NSBitmapImageRep> _rep; ///< whose memory the context draws in; null for others
    RetainPtr<::CGContext> _cgContext;
    bool _flipped;
};
