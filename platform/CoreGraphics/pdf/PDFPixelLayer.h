#pragma once

#include "CoreGraphics/pdf/PDFRGB.h"
#include "CoreGraphics/raster/Pixels.h"

#include <CoreGraphics/CGContext.h>

#include <span>
#include <vector>

/// The pixel of an opaque colour.
inline PixelBytes opaquePixel(const PDFRGB& color)
{
    // lround is a call.
    const auto byte = [](float component) {
        const float halfUp = component * 255 + 0.5F;
        return std::uint8_t(halfUp);
    };
    return {byte(color.r), byte(color.g), byte(color.b), 255};
}

/// The pixels that a context's clip may leave visible: filled apart, then drawn into the context in one go,
/// within its clip and with its alpha and blend mode. Transparent at first.
class PDFPixelLayer {
public:
    /// Borrows `target`, whose clip and CTM must be the same when the layer is drawn. `box`, in user space,
    /// may exclude more pixels.
    explicit PDFPixelLayer(CGContextRef target, CGRect box = CGRectInfinite);

    bool isEmpty() const { return _pixels.empty(); }
    int width() const { return _area.width(); }
    int height() const { return _area.height(); }
    double pixelCount() const { return double(_pixels.size()); }
    /// A row of premultiplied pixels. Row 0 is on top.
    std::span<PixelBytes> row(int y);
    /// From the target's user space to the layer's pixels, y downward, (0, 0) the corner of the first pixel.
    const CGAffineTransform& pixelFromUser() const { return _pixelFromUser; }

    /// A context that draws into these pixels, its user space that of the target. The caller owns it, and
    /// destroys it before the layer. Null when the layer is empty.
    RetainPtr<CGContext> makeContext();

    /// Draws the pixels into the target.
    void draw() const;

private:
    CGContextRef _target;
    PixelRect _area{}; ///< in the target's device space
    CGAffineTransform _pixelFromUser = CGAffineTransformIdentity;
    std::vector<PixelBytes> _pixels;
};
