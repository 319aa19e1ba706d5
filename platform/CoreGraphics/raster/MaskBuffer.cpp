#include "CoreGraphics/raster/MaskBuffer.h"

#include "CoreGraphics/raster/ByteProduct.h"
#include "CoreGraphics/raster/CenterRaster.h"
#include "CoreGraphics/raster/PixelSource.h"
#include "CoreGraphics/raster/RectangleRaster.h"
#include "CoreGraphics/raster/StrokeOutline.h"

#include <cstring>

namespace {

/// Writes rows of coverage to a mask.
class MaskRows final : public CoverageRows {
public:
    explicit MaskRows(const MutableMaskView& mask)
        : _mask(mask)
    {
    }

    void rows(
        int top, int bottom, std::span<const CoverageSpan> spans, const unsigned char* coverage) override
    {
        const int left = _mask.area.left;
        for (const CoverageSpan& span : spans) {
            const auto size = std::size_t(span.end - span.begin);
            for (int y = top; y < bottom; ++y) {
                unsigned char* bytes = _mask.pixel(left + span.begin, y);
                if (span.isFull)
                    std::memset(bytes, 255, size);
                else
                    std::memcpy(bytes, coverage + span.begin, size);
            }
        }
    }

private:
    MutableMaskView _mask;
};

} // namespace

MaskBuffer::MaskBuffer(Scratch& memory, const PixelRect& area)
{
    const Scratch::Rows rows = memory.make(area, 1);
    _mask = {area, rows.data, rows.bytesPerRow};
    std::memset(rows.data, 0, std::size_t(rows.bytesPerRow) * std::size_t(area.height()));
}

void MaskBuffer::draw(const Shape& shape)
{
    if (shape.fillsCenters())
        return fillCenters(shape, _mask);
    MaskRows rows(_mask);
    if (shape.fillsPath() || shape.strokesPath())
        return rasterizePath(shape, _mask.area, rows);
    RectangleRaster().run(shape.rectangles, _mask.area, rows);
}

void MaskBuffer::draw(const Shape& shape, PixelSource& pixels)
{
    draw(shape);
    ::multiply(_mask, pixels);
}

void MaskBuffer::copy(const MaskView& other)
{
    const PixelRect common = _mask.area.intersection(other.area);
    for (int y = common.top; y < common.bottom && !common.isEmpty(); ++y)
        std::memcpy(pixel(common.left, y), other.pixel(common.left, y), std::size_t(common.width()));
}

void MaskBuffer::multiply(const MaskView& other)
{
    for (int y = _mask.area.top; y < _mask.area.bottom; ++y)
        multiplyRow(pixel(_mask.area.left, y), other.pixel(_mask.area.left, y), _mask.area.width());
}
