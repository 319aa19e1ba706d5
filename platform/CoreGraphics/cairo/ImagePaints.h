#pragma once

#include "CoreGraphics/cairo/CairoPtr.h"
#include "CoreGraphics/raster/ImageSampler.h"
#include "CoreGraphics/raster/Paint.h"
#include "CoreGraphics/raster/PixelSpace.h"
#include "CoreGraphics/raster/Scratch.h"

#include <optional>

/// Makes paints of images.
class ImagePaints {
public:
    /// A paint of an image for the pixels of `area`. Beyond its edges the image continues in the colours of
    /// its border. Borrows `drawable`, a CGImage::drawable(). nullopt if the transform has no inverse. Valid
    /// until the next call.
    std::optional<Paint> makePaint(const CGImage& drawable, const CGAffineTransform& baseFromImage,
        ImageFilter filter, const PixelRect& area, const PixelSpace& space);
    /// The same pixels of `area` with their alpha multiplied. Valid until the next call.
    Paint makeFaded(const Paint& paint, CGFloat alpha, const PixelRect& area, const PixelSpace& space);

private:
    cairo_surface_t* surfaceOf(const CGImage& drawable);
    Paint makeScaled(const CGImage& drawable, const CGAffineTransform& imageFromBase, ImageFilter filter);
    Paint makeSampled(
        const CGImage& drawable, ImageSampler sampler, const PixelRect& area, const PixelSpace& space);

    /// The surface of the image that was drawn last, cached because icons are drawn repeatedly. Does not own
    /// the pixels: it is used only while a caller passes the same image.
    CairoPtr<cairo_surface_t> _lastSurface;
    std::uint64_t _lastSerial = 0; ///< the image's; 0 for none
    Scratch _sampledMemory;
    Scratch _fadedMemory;
};
