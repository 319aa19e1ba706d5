#pragma once

#include "CoreGraphics/CGImageInternal.h"
#include "CoreGraphics/raster/MeanImage.h"
#include "CoreGraphics/raster/PixelSource.h"
#include "CoreGraphics/raster/ScaledImage.h"
#include "CoreGraphics/raster/TurnedImage.h"
#include "CoreGraphics/raster/TurnedMeanImage.h"

/// How an image is resampled where its pixels are not aligned with the drawn ones.
enum class ImageFilter : std::uint8_t {
    Nearest,
    Linear,
    Mean, ///< linear, and the mean of all covered pixels where the image shrinks
};

/// The pixels of an image under a transform, sampled at the centres of the drawn pixels, at any scale and
/// distance. Beyond its edges the image continues in the colours of its border.
class ImageSampler final : public PixelSource {
public:
    ImageSampler()
        : PixelSource(false, false)
    {
    }

    /// Prepares for the drawn pixels of an area, which is not empty. Borrows `drawable`, a
    /// CGImage::drawable(). The transform maps drawn pixels to pixels of the image, rows downward in both.
    /// False when the image cannot be drawn: it is longer than 2^30 pixels, or the transform's numbers are
    /// not finite or too large.
    [[nodiscard]] bool begin(const CGImage& drawable, const CGAffineTransform& imageFromPixel,
        ImageFilter filter, const PixelRect& area);

    const unsigned char* row(int column, int row, int count) override;
    RowsInMemory rowsInMemory(int column, int row) const override;
    std::unique_ptr<PixelSource> forOtherThread(std::int64_t pixelCount) const override;

private:
    enum class Kind : std::uint8_t {
        Copied, ///< pixel for pixel
        Halved, ///< each drawn pixel covers exactly four
        Scaled,
        Mean,
        Turned,
        TurnedMean,
    };

    Kind kindFor(ImageFilter filter) const;
    /// About how long a drawn pixel takes, in nanoseconds.
    double timeOfPixel() const;
    /// True when no pixel of the area reaches beyond the image, which is not turned.
    bool isWithinImage() const;
    const unsigned char* sampled(int column, int row, int count);
    const unsigned char* copied(int column, int row) const;
    const unsigned char* halved(int column, int row, int count);

    ImageView _image;
    CGAffineTransform _imageFromPixel{};
    PixelRect _area;
    Kind _kind = Kind::Copied;
    bool _isAlphaUnset = false; ///< whether the image's bytes of alpha mean nothing
    std::vector<unsigned char> _row;
    std::vector<unsigned char> _opaqueRow;
    ScaledImage _scaled;
    MeanImage _mean;
    TurnedImage _turned;
    TurnedMeanImage _turnedMean;
};
