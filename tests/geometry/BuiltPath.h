#pragma once

#include <KorvidAppKit/ZRPath.h>

#include <vector>

/// A built path through the points.
inline RetainPtr<ZRPath> builtPath(const std::vector<CGPoint>& points)
{
    auto path = ZRPath::pathWithPts(points.data(), points.size());
    path->build();
    return path;
}
