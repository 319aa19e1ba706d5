#pragma once

#include "CoreGraphics/CGCounted.h"
#include "CoreGraphics/context/CurrentPath.h"
#include "CoreGraphics/context/GraphicsState.h"
#include "CoreGraphics/context/SourceOverWatch.h"
#include "CoreGraphics/raster/Compositor.h"
#include "CoreGraphics/raster/ImageSampler.h"

#include <CoreGraphics/CGBitmapContext.h>

/// The bitmap that a context draws into.
struct BitmapProperties {
    void* data = nullptr;
    std::size_t width = 0;
    std::size_t height = 0;
    std::size_t bytesPerRow = 0;
    RetainPtr<CGColorSpace> space = nullptr; ///< null in an alpha-only context
    CGBitmapInfo bitmapInfo = 0;
    CGBitmapContextReleaseDataCallback releaseData = nullptr;
    void* releaseInfo = nullptr;

    CGImageAlphaInfo alphaInfo() const { return CGImageAlphaInfo(bitmapInfo & kCGBitmapAlphaInfoMask); }
    std::size_t bytesPerPixel() const { return alphaInfo() == kCGImageAlphaOnly ? 1 : 4; }
};

/// A transparency layer under construction.
struct TransparencyLayer {
    Compositor below;           ///< what the layer is painted into
    std::size_t stateCount = 0; ///< of the context once the layer has its own state
    std::unique_ptr<unsigned char[]> pixels;
};

/// The record behind CGContextRef.
struct CGContext final : CGCounted {
    explicit CGContext(const BitmapProperties& properties);
    CGContext(const CGContext&) = delete;
    ~CGContext();

    GraphicsState& state() { return states.back(); }
    const GraphicsState& state() const { return states.back(); }
    const PixelSpace& space() const { return compositor.space(); }

    /// The inside of the current path, as rectangles where possible. The shape borrows the context's path and
    /// scratch memory: it is valid until the next call that returns a shape and until the path changes.
    Shape pathShape(bool isEvenOdd);
    /// A rectangle of user space. Does not change the current path.
    Shape rectShape(CGRect rect);

    // Everything that can cast a shadow is painted by one of these. Each paints the shadow first, if there is
    // one, and both within the clip, in the current blend mode. The paint includes the state's alpha.

    void paint(const Shape& shape, const Paint& paint);
    /// The mask should extend over all of `paintedPixels()` that the shape covers: parts that it lacks cast
    /// no shadow. A paint of pixels casts a shadow as if it were opaque.
    void paint(const MaskView& mask, const Paint& paint);
    /// The pixels of the clip, and those whose shadow falls into it.
    PixelRect paintedPixels() const;

    /// Whether the watch, if there is one, allows a paint in the state's blend mode to change pixels. Also
    /// records the paint in the watch: call it once per paint, before painting.
    bool admits(const Paint& paint) const;
    /// Like the function above, for a paint of which only the blend mode is known.
    bool admits(CGBlendMode mode) const;

    /// Paints a shape in one of the state's colours.
    void paint(const Shape& shape, const StateColor& color);
    /// Begins a transparency layer of at most the given pixels.
    void beginLayer(const PixelRect& limits);
    /// Ends the layer that was begun last. Only when there is one.
    void endLayer();

    /// Fills the current path without clearing it.
    void fillPath(bool isEvenOdd);
    /// Strokes the current path without clearing it.
    void strokePath(const LineStyle& style);
    /// Replaces the current path by the outline of its stroke.
    void replacePathByStroke();

    const BitmapProperties bitmap;
    Compositor compositor;                 ///< of the bitmap, or of the last layer
    std::vector<TransparencyLayer> layers; ///< each in the one before it
    std::vector<GraphicsState> states;     ///< the last is the current one
    CurrentPath path;
    CGAffineTransform textMatrix = CGAffineTransformIdentity; ///< to user space; holds the text position
    SourceOverWatch* watch = nullptr;                         ///< borrowed

    // Scratch memory for the current shape or image, reused by the next one.
    RetainPtr<CGPath> rectPath;
    RetainPtr<CGPath> textPath;
    std::vector<AreaRect> rectangles;
    Scratch maskMemory;
    ShadowCaster shadowCaster;
    ImageSampler image;
    std::vector<unsigned char> fadedRow;
};
