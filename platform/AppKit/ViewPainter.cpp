#include "ViewPainter.h"

#include "CoreGraphics/context/SourceOverWatch.h"

#include <AppKit/NSAppearance.h>

#include <cmath>
#include <utility>

namespace {

/// A graphics state and a text matrix that are restored at the end of the scope, also by an exception from a
/// view.
class SavedState {
public:
    explicit SavedState(CGContextRef context)
        : _context(context)
        , _textMatrix(CGContextGetTextMatrix(context))
    {
        CGContextSaveGState(_context);
    }
    SavedState(const SavedState&) = delete;
    SavedState& operator=(const SavedState&) = delete;
    ~SavedState()
    {
        CGContextRestoreGState(_context);
        CGContextSetTextMatrix(_context, _textMatrix);
    }

private:
    CGContextRef _context;
    CGAffineTransform _textMatrix;
};

} // namespace

const ViewPainter* ViewPainter::s_current = nullptr;

ViewPainter::ViewPainter(CGContextRef context, SavedPixels::Memory& memory)
    : _outer(s_current)
    , _context(context)
    , _memory(memory)
    , _baseFromUser(CGContextGetCTM(context))
    , _userFromBase(CGAffineTransformInvert(_baseFromUser))
    , _appearance(NSAppearance::currentDrawingAppearance())
    , _previous(NSGraphicsContext::currentContext())
{
    s_current = this;
}

ViewPainter::~ViewPainter()
{
    NSGraphicsContext::setCurrentContext(_previous);
    s_current = _outer;
}

CGFloat ViewPainter::currentScale()
{
    return s_current ? std::hypot(s_current->_baseFromUser.a, s_current->_baseFromUser.b) : 1;
}

NSGraphicsContext* ViewPainter::graphicsContext(bool flipped)
{
    RetainPtr<NSGraphicsContext>& context = flipped ? _flipped : _upright;
    if (!context)
        context = NSGraphicsContext::graphicsContextWithCGContext(_context, flipped);
    return context.get();
}

CGRect ViewPainter::pixelsAround(CGRect rect) const
{
    // An edge on a pixel boundary must not gain a pixel by the last bit of a product.
    constexpr CGFloat rounding = 1e-6;
    const CGRect pixels = CGRectApplyAffineTransform(rect, _baseFromUser);
    const CGFloat minX = std::floor(CGRectGetMinX(pixels) + rounding);
    const CGFloat minY = std::floor(CGRectGetMinY(pixels) + rounding);
    return CGRectMake(minX, minY, std::ceil(CGRectGetMaxX(pixels) - rounding) - minX,
        std::ceil(CGRectGetMaxY(pixels) - rounding) - minY);
}

bool ViewPainter::tryToDraw(NSView& view, const CGAffineTransform& userFromView, CGRect clip, Attempt attempt)
{
    _attempt = attempt;
    _isSpoiled = false;
    _failure = nullptr;
    _found.clear();
    drawTree(view, userFromView, clip);
    if (_isSpoiled)
        return false; // the next attempt fails in the same way
    if (const std::exception_ptr failure = std::exchange(_failure, nullptr))
        std::rethrow_exception(failure);
    return true;
}

void ViewPainter::drawTree(NSView& view, const CGAffineTransform& userFromView, CGRect clip)
{
    clip = CGRectIntersection(clip, pixelsAround(CGRectApplyAffineTransform(view._bounds, userFromView)));
    if (!(clip.size.width > 0 && clip.size.height > 0))
        return;

    {
        const SavedState state(_context);
        const CGRect userClip = CGRectApplyAffineTransform(clip, _userFromBase);
        const bool isUpright = _baseFromUser.b == 0 && _baseFromUser.c == 0;
        if (isUpright)
            CGContextClipToRect(_context, userClip);
        CGContextConcatCTM(_context, userFromView);
        CGContextSetTextMatrix(_context, CGAffineTransformIdentity);
        // In a rotated context no rectangle of pixels is the view.
        if (!isUpright)
            CGContextClipToRect(_context, view._bounds);
        NSGraphicsContext::setCurrentContext(graphicsContext(view.isFlipped()));
        view._needsDisplay = false;
        const CGRect dirtyRect = CGRectApplyAffineTransform(userClip, CGAffineTransformInvert(userFromView));
        try {
            drawContents(view, NSIntersectionRect(dirtyRect, view._bounds), clip);
        } catch (...) {
            if (!_failure)
                _failure = std::current_exception();
        }
    }

    drawSubviews(view, userFromView, clip);
}

void ViewPainter::drawSubviews(NSView& view, const CGAffineTransform& userFromView, CGRect clip)
{
    const auto draw = [&](NSView& subview) {
        if (!subview._isHidden)
            drawTree(subview, CGAffineTransformConcat(subview.superviewFromView(), userFromView), clip);
    };
    // One pixel more on each side: a view may cover a part of it, and its clip is widened to all of it.
    const CGRect rect = CGRectApplyAffineTransform(CGRectInset(clip, -1, -1),
        CGAffineTransformInvert(CGAffineTransformConcat(userFromView, _baseFromUser)));
    if (!CGRectContainsRect(rect, view._bounds)) {
        if (const auto* const index = view.subviewIndex())
            return index->forEach(rect, _found, draw);
    }
    // By position: a view that is drawn may change the tree.
    for (std::size_t i = 0; i < view._subviews.size(); ++i) {
        const RetainPtr<NSView> subview = view._subviews[i];
        draw(*subview);
    }
}

/// Draws the view itself, with everything prepared; `pixels` are those that the view is clipped to.
void ViewPainter::drawContents(NSView& view, NSRect dirtyRect, CGRect pixels)
{
    if (view._needsLayer || _attempt == Attempt::Last) {
        if (_isSpoiled)
            return; // the next attempt draws it
        const ViewLayer layer(_context, pixels, _memory);
        return view.drawContents(dirtyRect);
    }
    // After a spoiled view the others are only searched for more that need a layer.
    using Paints = SourceOverWatch::Paints;
    const SourceOverWatch watch(_context, _isSpoiled ? Paints::Nothing : Paints::UntilOtherMode);
    view.drawContents(dirtyRect);
    if (watch.hasSeenOtherModes())
        view._needsLayer = _isSpoiled = true;
}
