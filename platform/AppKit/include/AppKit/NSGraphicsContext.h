#pragma once

#include <CoreGraphics/CGContext.h>
#include <Foundation/NSObject.h>

class NSBitmapImageRep;

/// The destination of drawing: a Core Graphics context, and whether its y axis runs downward.
///
/// Each thread has its own current context, which is null outside of drawing and set within a view's
/// `drawRect`. One thread at a time may use a context.
///
///     CGContextRef context = NSGraphicsContext::currentContext()->CGContext();
class KORVID_EXPORT NSGraphicsContext final : public NSObject {
public:
    /// Draws in `context`, which is retained. `flipped` is the value of `isFlipped()` and does not change the
    /// context's transform. Null gives null.
    static RetainPtr<NSGraphicsContext> graphicsContextWithCGContext(
        RetainPtr<::CGContext> context, bool flipped);
    /// Draws in the pixels of `rep`, which is retained: one unit is one pixel, y points upward. Null for null
    /// and for a bitmap that is not RGBA with premultiplied alpha.
    static RetainPtr<NSGraphicsContext> graphicsContextWithBitmapImageRep(RetainPtr<NSBitmapImageRep> rep);

    /// The calling thread's context. Borrowed; null outside of drawing.
    static NSGraphicsContext* currentContext();
    /// Makes `context`, which is retained and may be null, the calling thread's current one.
    static void setCurrentContext(RetainPtr<NSGraphicsContext> context);

    /// Pushes the calling thread's current context on a stack, and saves its graphics state.
    static void saveGraphicsState();
    /// Pops the context from the stack, makes it current, and restores its graphics state. Does nothing when
    /// the stack is empty.
    static void restoreGraphicsState();

    // Graphics states. These are static functions with a parameter, since in C++ instance methods cannot
    // share the names of static ones. Null does nothing.

    /// Saves the graphics state of `context`, which need not be current.
    static void saveGraphicsState(NSGraphicsContext* context);
    /// Restores the graphics state of `context`.
    static void restoreGraphicsState(NSGraphicsContext* context);

    /// Borrowed; never null.
    CGContextRef CGContext() const { return _cgContext.get(); }
    /// True when y runs downward, as in a flipped view.
    bool isFlipped() const { return _flipped; }
    /// Completes all drawing in the pixels.
    void flushGraphics();

protected:
    ~NSGraphicsContext() override;

private:
    NSGraphicsContext(RetainPtr<::CGContext> context, bool flipped, RetainPtr<NSBitmapImageRep> rep);

    RetainPtr<NSBitmapImageRep> _rep; ///< owns the memory that the context draws in; may be null
    RetainPtr<::CGContext> _cgContext;
    bool _flipped;
};
