#include "CoreGraphics/raster/PixelSource.h"

#include "CoreGraphics/raster/ByteProduct.h"

namespace {

/// FadedPixels that own what they borrow.
class OwningFadedPixels final : public PixelSource {
public:
    OwningFadedPixels(std::unique_ptr<PixelSource> pixels, std::uint8_t alpha)
        : PixelSource(pixels->isAlphaOnly(), false)
        , _pixels(std::move(pixels))
        , _faded(*_pixels, alpha, _row)
    {
    }

    const unsigned char* row(int column, int row, int count) override
    {
        return _faded.row(column, row, count);
    }

private:
    std::unique_ptr<PixelSource> _pixels;
    std::vector<unsigned char> _row;
    FadedPixels _faded;
};

} // namespace

FadedPixels::FadedPixels(PixelSource& pixels, std::uint8_t alpha, std::vector<unsigned char>& memory)
    : PixelSource(pixels.isAlphaOnly(), false)
    , _pixels(pixels)
    , _alpha(alpha)
    , _row(memory)
{
}

const unsigned char* FadedPixels::row(int column, int row, int count)
{
    const int size = isAlphaOnly() ? count : 4 * count;
    const unsigned char* pixels = _pixels.row(column, row, count);
    _row.assign(pixels, pixels + size);
    multiplyRow(_row.data(), _alpha, size);
    return _row.data();
}

std::unique_ptr<PixelSource> FadedPixels::forOtherThread(std::int64_t pixelCount) const
{
    auto pixels = _pixels.forOtherThread(pixelCount);
    return pixels ? std::make_unique<OwningFadedPixels>(std::move(pixels), _alpha) : nullptr;
}

const unsigned char* alphasOfRow(
    PixelSource& pixels, int column, int row, int count, std::vector<unsigned char>& memory)
{
    const unsigned char* bytes = pixels.row(column, row, count);
    if (pixels.isAlphaOnly())
        return bytes;
    memory.resize(std::size_t(count));
    for (std::size_t i = 0; i < memory.size(); ++i)
        memory[i] = bytes[4 * i + 3];
    return memory.data();
}

void multiply(const MutableMaskView& mask, PixelSource& pixels)
{
    if (pixels.isOpaque())
        return;
    const PixelRect& area = mask.area;
    std::vector<unsigned char> alphas;
    for (int y = area.top; y < area.bottom; ++y)
        multiplyRow(
            mask.pixel(area.left, y), alphasOfRow(pixels, area.left, y, area.width(), alphas), area.width());
}
