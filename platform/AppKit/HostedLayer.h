#pragma once

#include "QuartzCore/LayerHost.h"

#include <AppKit/NSView.h>

/// The layer that a view shows in place of its own drawing.
struct NSView::HostedLayer final : CALayerHost {
    explicit HostedLayer(NSView& view)
        : view(view)
    {
    }
    ~HostedLayer() { setLayer(nullptr); }

    /// Retains the layer, and takes it from where it was. Null for none.
    void setLayer(RetainPtr<CALayer> newLayer);
    /// Whether the layer is drawn, and the view's `drawRect` is not called.
    bool isShown() const { return isWanted && layer; }
    /// Resizes the layer to the view.
    void resize();
    /// Draws the layer in the view's coordinates.
    void draw(CGContextRef context);

    void layersDidChange(CGRect rect) override;
    void layerDidLeave() override;

    NSView& view;
    RetainPtr<CALayer> layer;
    bool isWanted = false;

private:
    CGAffineTransform viewFromLayer() const;

    bool _isAdapting = false; ///< to the window's scale: a part of drawing
};
