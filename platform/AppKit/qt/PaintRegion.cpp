#include "PaintRegion.h"

#include <algorithm>
#include <tuple>

QRegion paintRegion(const std::vector<QRect>& rects)
{
    constexpr std::size_t kFew = 8;
    if (rects.size() <= kFew) {
        QRegion exact;
        for (const QRect& rect : rects)
            exact += rect;
        return exact;
    }

    constexpr int kBandHeight = 16;
    std::vector<QRect> parts; // each in one band
    for (const QRect& rect : rects) {
        for (int y = rect.top() / kBandHeight * kBandHeight; y <= rect.bottom(); y += kBandHeight)
            parts.emplace_back(rect.left(), y, rect.width(), kBandHeight);
    }
    std::sort(parts.begin(), parts.end(), [](const QRect& a, const QRect& b) {
        return std::tuple(a.top(), a.left()) < std::tuple(b.top(), b.left());
    });
    std::vector<QRect> apart;
    for (const QRect& part : parts) {
        if (!apart.empty() && apart.back().top() == part.top() && part.left() <= apart.back().right() + 1)
            apart.back().setRight(std::max(apart.back().right(), part.right()));
        else
            apart.push_back(part);
    }
    QRegion region;
    region.setRects(apart.data(), int(apart.size()));
    return region;
}
