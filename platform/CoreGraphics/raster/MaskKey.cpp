#include "CoreGraphics/raster/MaskKey.h"

void MaskKey::addMoved(std::span<const CGPoint> points, double byX, double byY)
{
    add(points.size());
    char* bytes = _bytes.extend(points.size_bytes());
    for (const CGPoint& point : points) {
        const CGPoint moved{point.x + byX, point.y + byY};
        std::memcpy(bytes, &moved, sizeof moved);
        bytes += sizeof moved;
    }
}
