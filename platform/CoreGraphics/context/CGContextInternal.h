#pragma once

#include "CoreGraphics/CGCounted.h"
#include "CoreGraphics/CGPathInternal.h"
#include "CoreGraphics/cairo/ImagePaints.h"
#include "CoreGraphics/context/GraphicsState.h"
#include "CoreGraphics/context/SourceOverWatch.h"
#include "CoreGraphics/raster/Compositor.h"

#include <CoreGraphics/CGBitmapContext.h>

/// The pixels that a bitmap context was made for.
struct BitmapProperties {
    void* data = nullptr;
    std::size_t width = 0;
    std::size_t height = 0;
    std::size_t bytesPerRow = 0;
    RetainPtr<CGColorSpace> space = nullptr; ///< null when there is only alpha
    CGBitmapInfo bitmapInfo = 0;
    CGBitmapContextReleaseDataCallback releaseData = nullptr;
    void* releaseInfo = nullptr;

    CGImageAlphaInfo alphaInfo() const { return CGImageAlphaInfo(bitmapInfo & kCGBitmapAlphaInfoMask); }
    std::size_t bytesPerPixel() const { return alphaInfo() == kCGImageAlphaOnly ? 1 : 4; }
};

/// The record behind CGContextRef.
struct CGContext final : CGCounted {
    explicit CGContext(const BitmapProperties& properties);
    CGContext(const CGContext&) = delete;
    ~CGContext();

    GraphicsState& state() { return states.back(); }
    const GraphicsState& state() const { return states.back(); }
    const PixelSpace& space() const { return compositor.space(); }

    /// The inside of the current path, as rectangles where possible. What a shape borrows is valid until the
    /// next call for a shape or a change of the path.
    Shape pathShape(bool isEvenOdd);
    /// A rectangle of user space. Does not change the current path.
    Shape rectShape(CGRect rect);

    // Every paint passes through these: each paints the shadow first, if there is one, and both within the
    // clip, in the current blend mode. The paint includes the alpha of the state.

    void paint(const Shape& shape, const Paint& paint);
    /// The mask may reach as far as `paintedPixels()`, and should: what it lacks casts no shadow. A paint of
    /// pixels casts as if it were opaque.
    void paint(const MaskView& mask, const Paint& paint);
    /// The pixels of the clip, and those that cast a shadow there.
    PixelRect paintedPixels() const;

    /// Whether a watch, if there is one, lets a paint in the state's blend mode change pixels. It takes note
    /// of the paint: to be called once for each, before anything is painted.
    bool admits(const Paint& paint) const;
    /// The same for a paint of which only the blend mode is known.
    bool admits(CGBlendMode mode) const;

    /// Paints a shape in one of the state's colours.
    void paint(const Shape& shape, const StateColor& color);
    /// Fills the current path, which stays.
    void fillPath(bool isEvenOdd);
    /// Strokes the current path, which stays.
    void strokePath(const LineStyle& style);

    const BitmapProperties bitmap;
    Compositor compositor;
    std::vector<GraphicsState> states;                        ///< the last is the current one
    RetainPtr<CGPath> path;                                   ///< the current path, in base space
    CGAffineTransform textMatrix = CGAffineTransformIdentity; ///< to user space; moves to the text position
    SourceOverWatch* watch = nullptr;                         ///< borrowed

    // Memory for the shape or image that is being drawn, reused by the next.
    RetainPtr<CGPath> rectPath;
    RetainPtr<CGPath> textPath;
    std::vector<AreaRect> rectangles;
    Scratch maskMemory;
    ShadowCaster shadowCaster;
    ImagePaints images;
};
