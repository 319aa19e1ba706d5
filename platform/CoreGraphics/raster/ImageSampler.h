#pragma once

#include "CoreGraphics/CGImageInternal.h"

#include <CoreGraphics/CGAffineTransform.h>

#include <span>
#include <vector>

/// How an image becomes pixels where it is not drawn pixel on pixel.
enum class ImageFilter : std::uint8_t {
    Nearest,
    Bilinear,
    Average, ///< bilinear, and the mean of all covered pixels where the image shrinks
};

/// Samples an image at the centres of pixels, in floating point at any scale and distance. Beyond its edges
/// the image continues in the colours of its border.
class ImageSampler {
public:
    /// Borrows `drawable`, a CGImage::drawable(). The transform leads from pixels to the image's own, rows
    /// downward in both.
    ImageSampler(const CGImage& drawable, const CGAffineTransform& imageFromPixel, ImageFilter filter);

    /// Writes `count` pixels of a row, the first of them in `column`: premultiplied bytes red, green, blue,
    /// alpha, or one byte of an image that has only alpha.
    void fill(int column, int row, int count, unsigned char* bytes);

    /// How much of a run of an image's pixels along one axis counts.
    struct Window {
        std::ptrdiff_t first;
        std::ptrdiff_t last;
        float firstWeight;
        float innerWeight; ///< of each pixel between the first and the last
        float lastWeight;

        float weight(std::ptrdiff_t i) const
        {
            return i == first ? firstWeight : i == last ? lastWeight : innerWeight;
        }
    };

private:
    Window window(double center, double size, std::size_t count) const;
    template <int channels> void fillRow(int column, int row, int count, unsigned char* bytes);
    template <int channels>
    void sample(const Window& columns, const Window& rows, unsigned char* bytes) const;

    const CGImage& _image;
    CGAffineTransform _imageFromPixel;
    ImageFilter _filter;
    double _width; ///< of what a pixel covers, in pixels of the image
    double _height;
    std::vector<Window> _columns; ///< of a row, all rows having the same while the image is upright
    int _firstColumn = 0;
};
