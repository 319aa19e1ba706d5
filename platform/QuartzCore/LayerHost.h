#pragma once

#include <QuartzCore/CALayer.h>

/// What shows a tree of layers, and is notified of its changes.
class KORVID_EXPORT CALayerHost { // exported for the tests
public:
    /// `rect`, in the coordinates of the root's bounds, has to be composited again.
    virtual void layersDidChange(CGRect rect) = 0;
    /// The root has been given to another host, or to a superlayer.
    virtual void layerDidLeave() = 0;

protected:
    ~CALayerHost() = default;

    /// Makes this the host of a tree, in place of another one or a superlayer.
    void attach(CALayer& root) { root.setHost(this); }
    static void detach(CALayer& root) { root._host = nullptr; }
    /// Sets the scale of all layers in the tree without one of their own.
    static void setContentsScale(CALayer& root, CGFloat scale);
};
