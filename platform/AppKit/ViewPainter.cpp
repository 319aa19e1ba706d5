#include "ViewPainter.h"

#include <cmath>

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

ViewPainter::ViewPainter(CGContextRef context)
    : _context(context)
    , _deviceFromUser(CGContextGetUserSpaceToDeviceSpaceTransform(context))
    , _userFromDevice(CGAffineTransformInvert(_deviceFromUser))
    , _previous(NSGraphicsContext::currentContext())
{
}

ViewPainter::~ViewPainter()
{
    NSGraphicsContext::setCurrentContext(_previous);
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
    const CGRect device = CGRectApplyAffineTransform(rect, _deviceFromUser);
    const CGFloat minX = std::floor(CGRectGetMinX(device) + rounding);
    const CGFloat minY = std::floor(CGRectGetMinY(device) + rounding);
    return CGRectMake(minX, minY, std::ceil(CGRectGetMaxX(device) - rounding) - minX,
        std::ceil(CGRectGetMaxY(device) - rounding) - minY);
}

void ViewPainter::draw(NSView& view, CGAffineTransform userFromView, CGRect clip)
{
    clip = CGRectIntersection(clip, pixelsAround(CGRectApplyAffineTransform(view._bounds, userFromView)));
    if (!(clip.size.width > 0 && clip.size.height > 0))
        return;

    {
        const SavedState state(_context);
        const CGRect userClip = CGRectApplyAffineTransform(clip, _userFromDevice);
        const bool isUpright = _deviceFromUser.b == 0 && _deviceFromUser.c == 0;
        if (isUpright)
            CGContextClipToRect(_context, userClip);
        CGContextConcatCTM(_context, userFromView);
        CGContextSetTextMatrix(_context, CGAffineTransformIdentity);
        // In a turned context no rectangle of pixels is the view.
        if (!isUpright)
            CGContextClipToRect(_context, view._bounds);
        NSGraphicsContext::setCurrentContext(graphicsContext(view.isFlipped()));
        view._needsDisplay = false;
        view.drawRect(NSIntersectionRect(
            CGRectApplyAffineTransform(userClip, CGAffineTransformInvert(userFromView)), view._bounds));
    }

    // By index: a view that is drawn may change the tree.
    for (std::size_t i = 0; i < view._subviews.size(); ++i) {
        const RetainPtr<NSView> subview = view._subviews[i];
        if (!subview->_isHidden)
            draw(*subview, CGAffineTransformConcat(subview->superviewFromView(), userFromView), clip);
    }
}
