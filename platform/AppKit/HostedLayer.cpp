#include "HostedLayer.h"

#include <AppKit/NSGraphicsContext.h>

// The layers of views.

void NSView::HostedLayer::setLayer(RetainPtr<CALayer> newLayer)
{
    if (layer)
        detach(*layer);
    layer = std::move(newLayer);
    if (!layer)
        return;
    attach(*layer);
    resize();
}

void NSView::HostedLayer::resize()
{
    if (layer)
        layer->setFrame(view._bounds);
}

CGAffineTransform NSView::HostedLayer::viewFromLayer() const
{
    const CGPoint origin = layer->bounds().origin;
    const CGFloat x = NSMinX(view._bounds) - origin.x;
    return view.isFlipped() ? CGAffineTransformMake(1, 0, 0, -1, x, NSMaxY(view._bounds) + origin.y)
                            : CGAffineTransformMakeTranslation(x, NSMinY(view._bounds) - origin.y);
}

void NSView::HostedLayer::draw(CGContextRef context)
{
    const RetainPtr<CALayer> shown = layer;
    _isAdapting = true;
    setContentsScale(*shown, view.convertRectToBacking(NSMakeRect(0, 0, 1, 1)).size.width);
    _isAdapting = false;
    CGContextConcatCTM(context, viewFromLayer());
    shown->renderInContext(context);
}

void NSView::HostedLayer::layersDidChange(CGRect rect)
{
    if (isShown() && !_isAdapting)
        view.setNeedsDisplayInRect(CGRectApplyAffineTransform(rect, viewFromLayer()));
}

void NSView::HostedLayer::layerDidLeave()
{
    layer = nullptr;
    view.setNeedsDisplay(true);
}

NSView::HostedLayer& NSView::hostedLayer()
{
    if (!_hostedLayer)
        _hostedLayer = std::make_unique<HostedLayer>(*this);
    return *_hostedLayer;
}

bool NSView::wantsLayer() const
{
    return _hostedLayer && _hostedLayer->isWanted;
}

void NSView::setWantsLayer(bool wantsLayer)
{
    if (wantsLayer == this->wantsLayer())
        return;
    hostedLayer().isWanted = wantsLayer;
    setNeedsDisplay(true);
}

CALayer* NSView::layer() const
{
    return _hostedLayer ? _hostedLayer->layer.get() : nullptr;
}

void NSView::setLayer(RetainPtr<CALayer> layer)
{
    if (layer == this->layer())
        return;
    hostedLayer().setLayer(std::move(layer));
    setNeedsDisplay(true);
}

/// Draws the view's layer, or calls `drawRect`.
void NSView::drawContents(NSRect dirtyRect)
{
    if (_hostedLayer && _hostedLayer->isShown())
        _hostedLayer->draw(NSGraphicsContext::currentContext()->CGContext());
    else
        drawRect(dirtyRect);
}
