#pragma once

#include "CoreGraphics/CGImageInternal.h"

#include <CoreGraphics/CGAffineTransform.h>

#include <span>
#include <vector>

/// How an image is resampled where its pixels are not aligned with the drawn ones.
enum class ImageFilter : std::uint8_t {
    Nearest,
    Bilinear,
    Average, ///< bilinear, and the mean of all covered pixels where the image shrinks
};

/// Samples an image at the centres of pixels, in floating point at any scale and distance. Beyond its edges
/// the image continues in the colours of its border.
class ImageSampler {
public:
    /// Borrows `drawable`, a CGImage::drawable(). The transform maps drawn pixels to pixels of the image,
    /// rows downward in both.
    ImageSampler(const CGImage& drawable, const CGAffineTransform& imageFromPixel, ImageFilter filter);

    /// Writes `count` pixels of a row from `column` on: premultiplied bytes red, green, blue, alpha, or one
    /// byte for an alpha-only image.
    void fill(int column, int row, int count, unsigned char* bytes);

    /// The weights of a run of an image's pixels along one axis.
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
    double _width; ///< of the area that a drawn pixel covers, in pixels of the image
    double _height;
    std::vector<Window> _columns; ///< of a row; the same for all rows while the image is axis-aligned
    int _firstColumn = 0;
};
