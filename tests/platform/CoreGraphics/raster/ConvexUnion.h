#pragma once

#include "CoreGraphics/raster/Vectors.h"

#include <CoreGraphics/CoreGraphics.h>

#include <algorithm>
#include <cmath>
#include <numbers>
#include <vector>

inline constexpr int kBitmapWidth = 40;
inline constexpr int kBitmapHeight = 30;
inline constexpr int kSamplesPerRow = 256;

/// The coverage of the union of convex polygons.
class ConvexUnion {
public:
    explicit ConvexUnion(const CGAffineTransform& transform = CGAffineTransformIdentity)
        : _transform(transform)
        , _spans(std::size_t(kBitmapHeight) * kSamplesPerRow)
    {
    }

    void add(std::vector<CGPoint> corners)
    {
        for (CGPoint& corner : corners)
            corner = CGPointApplyAffineTransform(corner, _transform);
        const auto [lowest, highest] = std::ranges::minmax_element(corners, {}, &CGPoint::y);
        const int first = std::max(0, int(std::floor(lowest->y * kSamplesPerRow)) - 1);
        const int last =
            std::min(kBitmapHeight * kSamplesPerRow - 1, int(std::ceil(highest->y * kSamplesPerRow)) + 1);
        for (int sample = first; sample <= last; ++sample) {
            const double y = (sample + 0.5) / kSamplesPerRow;
            Span span{kBitmapWidth, 0};
            bool isCrossed = false;
            for (std::size_t i = 0; i < corners.size(); ++i) {
                const CGPoint a = corners[i];
                const CGPoint b = corners[(i + 1) % corners.size()];
                if ((a.y <= y) == (b.y <= y))
                    continue;
                const double x = a.x + (y - a.y) * (b.x - a.x) / (b.y - a.y);
                span = {std::min(span.from, x), std::max(span.to, x)};
                isCrossed = true;
            }
            if (isCrossed)
                _spans[std::size_t(sample)].push_back(span);
        }
    }
    void addDisc(CGPoint center, double radius)
    {
        constexpr int kCorners = 400;
        std::vector<CGPoint> corners;
        for (int i = 0; i < kCorners; ++i) {
            const double angle = 2 * std::numbers::pi * i / kCorners;
            corners.push_back(center + CGPoint{radius * std::cos(angle), radius * std::sin(angle)});
        }
        add(corners);
    }
    /// Along a line, longer at both ends by `more`.
    void addStrip(CGPoint from, CGPoint to, double radius, double moreBefore = 0, double moreAfter = 0)
    {
        const CGPoint along = (to - from) * (1 / lengthOf(to - from));
        const CGPoint side{-along.y * radius, along.x * radius};
        const CGPoint start = from - along * moreBefore;
        const CGPoint end = to + along * moreAfter;
        add({start - side, end - side, end + side, start + side});
    }

    /// The greatest difference from a context's pixels, in steps of 255.
    double worstError(CGContextRef context)
    {
        const auto* bytes = static_cast<const unsigned char*>(CGBitmapContextGetData(context));
        double worst = 0;
        for (int row = 0; row < kBitmapHeight; ++row) {
            const auto coverage = rowOf(row);
            for (int x = 0; x < kBitmapWidth; ++x) {
                const int byte = bytes[(kBitmapHeight - 1 - row) * kBitmapWidth + x];
                worst = std::max(worst, std::abs(byte - coverage[std::size_t(x)]));
            }
        }
        return worst;
    }

private:
    struct Span {
        double from;
        double to;
    };

    std::vector<double> rowOf(int row)
    {
        std::vector<double> coverage(kBitmapWidth);
        for (int sample = row * kSamplesPerRow; sample < (row + 1) * kSamplesPerRow; ++sample) {
            auto& spans = _spans[std::size_t(sample)];
            std::ranges::sort(spans, {}, &Span::from);
            double covered = 0;
            for (const Span& span : spans) {
                const double from = std::max(span.from, covered);
                const double to = std::min(span.to, double(kBitmapWidth));
                if (from >= to)
                    continue;
                for (int x = int(from); x < to; ++x) {
                    coverage[std::size_t(x)] +=
                        255 * (std::min(to, x + 1.0) - std::max(from, double(x))) / kSamplesPerRow;
                }
                covered = std::max(covered, to);
            }
        }
        return coverage;
    }

    CGAffineTransform _transform;
    std::vector<std::vector<Span>> _spans; ///< of each row of samples
};
