#include "CoreGraphics/raster/Compositor.h"

#include "CoreGraphics/raster/RasterQueue.h"

#include <exception>
#include <memory>
#include <vector>

namespace {

/// What one thread paints, with scratch memory of its own.
struct Band {
    PixelRect area;
    Compositor compositor;
    std::unique_ptr<PixelSource> pixels;
    std::exception_ptr error = nullptr;
};

} // namespace

bool Compositor::paintInBands(
    const Shape& shape, const PixelRect& area, PixelSource& pixels, CGBlendMode mode)
{
    std::vector<Band> bands;
    bands.reserve(kRasterBands);
    for (std::size_t i = 0; i < kRasterBands; ++i) {
        auto copy = pixels.forOtherThread(area.pixelCount());
        if (!copy)
            return false;
        const PixelRect rows{area.left, topOfRasterBand(area, i), area.right, topOfRasterBand(area, i + 1)};
        bands.push_back({rows, Compositor(memoryAt(rows), rows, _space), std::move(copy)});
    }
    applyOnRasterQueue(kRasterBands, [&](std::size_t i) {
        Band& band = bands[i];
        try {
            if (!band.area.isEmpty())
                band.compositor.paintModes(shape, band.area, Paint(*band.pixels), mode);
        } catch (...) {
            band.error = std::current_exception();
        }
    });
    for (const Band& band : bands) {
        if (band.error)
            std::rethrow_exception(band.error);
    }
    return true;
}
