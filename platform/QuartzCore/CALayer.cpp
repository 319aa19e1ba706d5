#include <QuartzCore/CALayer.h>

#include "CoreGraphics/FiniteGeometry.h"
#include "LayerHost.h"

#include <CoreGraphics/CGBitmapContext.h>

#include <algorithm>
#include <cmath>

namespace {

/// The whole pixels that cover a length; an edge on a pixel boundary must not gain one by the last bit of the
/// product.
std::size_t pixelsFor(CGFloat length, CGFloat scale)
{
    constexpr CGFloat rounding = 1e-6;
    constexpr CGFloat most = 1e6; // more than any bitmap has
    return static_cast<std::size_t>(std::clamp<CGFloat>(std::ceil(length * scale - rounding), 0, most));
}

} // namespace

CALayer::CALayer() = default;

CALayer::~CALayer()
{
    for (const auto& sublayer : _sublayers)
        sublayer->_superlayer = nullptr;
}

// Place.

void CALayer::setBounds(CGRect bounds)
{
    bounds = {finiteOrZero(bounds.origin), positiveOrZero(bounds.size)};
    if (CGRectEqualToRect(bounds, _bounds))
        return;
    setNeedsCompositing(_bounds);
    _bounds = bounds;
    setNeedsCompositing(_bounds);
    if (_needsDisplayOnBoundsChange)
        setNeedsDisplay();
}

void CALayer::setPosition(CGPoint position)
{
    position = finiteOrZero(position);
    if (CGPointEqualToPoint(position, _position))
        return;
    setNeedsCompositing(_bounds);
    _position = position;
    setNeedsCompositing(_bounds);
}

CGRect CALayer::frame() const
{
    return {{_position.x - _bounds.size.width / 2, _position.y - _bounds.size.height / 2}, _bounds.size};
}

void CALayer::setFrame(CGRect frame)
{
    frame = {finiteOrZero(frame.origin), positiveOrZero(frame.size)};
    setPosition({CGRectGetMidX(frame), CGRectGetMidY(frame)});
    setBounds({_bounds.origin, frame.size});
}

void CALayer::setHidden(bool hidden)
{
    if (hidden == _isHidden)
        return;
    _isHidden = false; // what disappears has to be composited, too
    setNeedsCompositing(_bounds);
    _isHidden = hidden;
}

// The tree.

void CALayer::addSublayer(RetainPtr<CALayer> layer)
{
    if (!layer)
        return;
    for (const CALayer* ancestor = this; ancestor; ancestor = ancestor->_superlayer) {
        if (ancestor == layer)
            return;
    }
    layer->detach();
    layer->_superlayer = this;
    _sublayers.push_back(layer);
    layer->setNeedsCompositing(layer->_bounds);
}

void CALayer::removeFromSuperlayer()
{
    if (!_superlayer)
        return;
    const RetainPtr<CALayer> keep = this;
    detach();
}

/// Leaves the superlayer or the view.
void CALayer::detach()
{
    setNeedsCompositing(_bounds);
    if (CALayerHost* const host = std::exchange(_host, nullptr))
        host->layerDidLeave();
    if (CALayer* const superlayer = std::exchange(_superlayer, nullptr)) {
        std::vector<RetainPtr<CALayer>>& siblings = superlayer->_sublayers;
        siblings.erase(std::find(siblings.begin(), siblings.end(), this));
    }
}

/// Notifies the view that shows this layer of a change in a rectangle of the bounds.
void CALayer::setNeedsCompositing(CGRect rect) const
{
    const CALayer* layer = this;
    while (!layer->_isHidden && layer->_superlayer) {
        const CGPoint corner = layer->frame().origin;
        rect = CGRectOffset(rect, corner.x - layer->_bounds.origin.x, corner.y - layer->_bounds.origin.y);
        layer = layer->_superlayer;
    }
    if (!layer->_isHidden && layer->_host)
        layer->_host->layersDidChange(rect);
}

void CALayer::setHost(CALayerHost* host)
{
    if (host == _host)
        return;
    const RetainPtr<CALayer> keep = this;
    detach();
    _host = host;
}

// Contents.

void CALayer::setContentsScale(CGFloat scale)
{
    if (!std::isfinite(scale) || scale <= 0)
        return;
    takeContentsScale(scale);
    _hasOwnContentsScale = true;
}

/// Changes the scale, which a layer may have been given by its host.
void CALayer::takeContentsScale(CGFloat scale)
{
    if (scale == _contentsScale)
        return;
    _contentsScale = scale;
    if (_drewContents)
        setNeedsDisplay();
}

void CALayer::setNeedsDisplay()
{
    _needsDisplay = true;
    setNeedsCompositing(_bounds);
}

void CALayer::displayIfNeeded()
{
    if (_needsDisplay)
        display();
}

void CALayer::display()
{
    _needsDisplay = false;
    _drewContents = true;
    _contents = nullptr;
    const std::size_t width = pixelsFor(_bounds.size.width, _contentsScale);
    const std::size_t height = pixelsFor(_bounds.size.height, _contentsScale);
    if (width == 0 || height == 0)
        return;
    const auto space = adopt(CGColorSpaceCreateWithName(kCGColorSpaceSRGB));
    const auto context =
        adopt(CGBitmapContextCreate(nullptr, width, height, 8, 0, space, kCGImageAlphaPremultipliedLast));
    if (!context)
        return;
    CGContextScaleCTM(context, _contentsScale, _contentsScale);
    CGContextTranslateCTM(context, -_bounds.origin.x, -_bounds.origin.y);
    _contentsExtent = {static_cast<CGFloat>(width) / (_contentsScale * _bounds.size.width),
        static_cast<CGFloat>(height) / (_contentsScale * _bounds.size.height)};
    const RetainPtr<CALayer> keep = this;
    drawInContext(context);
    _contents = adopt(CGBitmapContextCreateImage(context));
}

void CALayer::drawInContext(CGContextRef) { }

void CALayer::setContents(RetainPtr<::CGImage> contents)
{
    if (contents == _contents && !_drewContents)
        return;
    _contents = std::move(contents);
    _contentsExtent = {1, 1};
    _drewContents = false;
    setNeedsCompositing(_bounds);
}

void CALayer::renderInContext(CGContextRef context)
{
    if (!context)
        return;
    const RetainPtr<CALayer> keep = this;
    displayIfNeeded();
    // From the lower left corner, where the bitmap's pixels begin.
    const CGSize size{
        _bounds.size.width * _contentsExtent.width, _bounds.size.height * _contentsExtent.height};
    CGContextDrawImage(context, {_bounds.origin, size}, _contents);

    // By index: a layer that is drawn may change the tree.
    for (std::size_t i = 0; i < _sublayers.size(); ++i) {
        const RetainPtr<CALayer> sublayer = _sublayers[i];
        if (sublayer->_isHidden)
            continue;
        const CGPoint corner = sublayer->frame().origin;
        CGContextSaveGState(context);
        CGContextTranslateCTM(
            context, corner.x - sublayer->_bounds.origin.x, corner.y - sublayer->_bounds.origin.y);
        sublayer->renderInContext(context);
        CGContextRestoreGState(context);
    }
}

// The host.

void CALayerHost::setContentsScale(CALayer& root, CGFloat scale)
{
    if (!root._hasOwnContentsScale)
        root.takeContentsScale(scale);
    for (const auto& sublayer : root._sublayers)
        setContentsScale(*sublayer, scale);
}
