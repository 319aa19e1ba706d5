#include "CoreGraphics/raster/Compositor.h"

#include "CoreGraphics/raster/RasterQueue.h"

#include <array>
#include <exception>
#include <memory>

namespace {

/// Enough for a few threads, which do not all start or run alike.
constexpr int kBands = 4;

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
    for (int i = 0; i < kBands; ++i) {
        auto copy = pixels.forOtherThread(area.pixelCount());
        if (!copy)
            return false;
        bands.reserve(kBands);
        const auto edge = [&](int index) {
            return int(area.top + std::int64_t(area.height()) * index / kBands);
        };
        const PixelRect rows{area.left, edge(i), area.right, edge(i + 1)};
        bands.push_back({rows, Compositor(memoryAt(rows), rows, _space), std::move(copy)});
    }
    applyOnRasterQueue(kBands, [&](std::size_t i) {
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
