#include "CoreGraphics/raster/MaskView.h"

namespace {

bool isCovered(unsigned char coverage)
{
    return coverage != 0;
}

} // namespace

PixelRect coveredArea(const MaskView& mask)
{
    PixelRect covered{mask.area.right, mask.area.bottom, mask.area.left, mask.area.top};
    for (int y = mask.area.top; y < mask.area.bottom; ++y) {
        const unsigned char* begin = mask.pixel(mask.area.left, y);
        const unsigned char* end = begin + mask.area.width();
        const unsigned char* first = std::find_if(begin, end, isCovered);
        if (first == end)
            continue;
        const unsigned char* last = end;
        while (!isCovered(last[-1]))
            --last;
        covered = {std::min(covered.left, mask.area.left + int(first - begin)), std::min(covered.top, y),
            std::max(covered.right, mask.area.left + int(last - begin)), y + 1};
    }
    return covered.isEmpty() ? PixelRect{} : covered;
}
