#include "Gradients.h"
#include "support/EachVectorUnit.h"

#include <algorithm>
#include <cmath>
#include <gtest/gtest.h>
#include <optional>
#include <random>

// Gradients against a reference that computes each pixel in double precision.

namespace {

constexpr int kWidth = 61; // not a multiple of a vector's length
constexpr int kHeight = 37;

struct Stops {
    std::vector<RGBA> colors;
    std::vector<CGFloat> locations;
};

CanvasPixel colorAt(const Stops& stops, CGFloat t)
{
    RGBA color = stops.colors.front();
    for (std::size_t i = 0; i < stops.colors.size() && stops.locations[i] <= t; ++i) {
        color = stops.colors[i];
        if (i + 1 == stops.colors.size() || stops.locations[i + 1] <= t)
            continue;
        const CGFloat share = (t - stops.locations[i]) / (stops.locations[i + 1] - stops.locations[i]);
        for (std::size_t c = 0; c < 4; ++c)
            color[c] += share * (stops.colors[i + 1][c] - stops.colors[i][c]);
    }
    const auto byte = [](CGFloat value) { return int(std::lround(value * 255)); };
    return rgba(
        byte(color[0] * color[3]), byte(color[1] * color[3]), byte(color[2] * color[3]), byte(color[3]));
}

/// The greatest parameter of a drawn circle through `p`, by the plain quadratic equation.
std::optional<CGFloat> circleThrough(
    CGPoint p, CGPoint c0, CGFloat r0, CGPoint c1, CGFloat r1, unsigned options)
{
    using Real = long double;
    const Real dx = c1.x - c0.x, dy = c1.y - c0.y, dr = r1 - r0, px = p.x - c0.x, py = p.y - c0.y;
    const Real a = dx * dx + dy * dy - dr * dr;
    const Real b = px * dx + py * dy + r0 * dr;
    const Real c = px * px + py * py - Real(r0) * r0;
    const Real root = std::sqrt(b * b - a * c);
    std::optional<CGFloat> best;
    for (const Real s : {(b - root) / a, (b + root) / a}) {
        if (std::isnan(s) || r0 + s * dr < 0 || (s < 0 && !(options & 1)) || (s >= 1 && !(options & 2)))
            continue;
        if (!best || s > *best)
            best = CGFloat(s);
    }
    return best;
}

/// Whether the colour is that of a location within 1e-5 of `t`: at a hard stop rounding decides the side.
bool isColorNear(const Stops& stops, std::optional<CGFloat> t, unsigned options, const CanvasPixel& pixel)
{
    if (!t)
        return pixel == rgba(0, 0, 0, 0);
    for (const CGFloat offset : {0.0, -1e-5, 1e-5}) {
        const CGFloat place = *t + offset;
        if ((place < 0 && !(options & 1)) || (place >= 1 && !(options & 2))) {
            if (pixel == rgba(0, 0, 0, 0))
                return true;
        } else if (isAbout(pixel, colorAt(stops, place))) {
            return true;
        }
    }
    return false;
}

class GradientPixels : public testing::Test {
protected:
    CGFloat uniform(CGFloat from, CGFloat to) { return std::uniform_real_distribution(from, to)(random); }

    Stops makeStops()
    {
        Stops stops;
        const int count = int(uniform(2, 6));
        for (int i = 0; i < count; ++i) {
            stops.colors.push_back(
                {uniform(0, 1), uniform(0, 1), uniform(0, 1), uniform(0, 1) < 0.5 ? 1 : uniform(0, 1)});
            stops.locations.push_back(uniform(0, 1));
        }
        std::sort(stops.locations.begin(), stops.locations.end());
        if (uniform(0, 1) < 0.3)
            stops.locations[1] = stops.locations[0]; // a hard stop
        return stops;
    }

    std::mt19937 random{7};
};

} // namespace

TEST_F(GradientPixels, OfLinearGradientsMatchTheReference)
{
    onEachVectorUnit([&] {
        for (int round = 0; round < 60; ++round) {
            const Stops stops = makeStops();
            const auto gradient = gradientOf(stops.colors, stops.locations);
            const auto options = CGGradientDrawingOptions(round % 4);
            const CGPoint start{uniform(-20, 80), uniform(-20, 60)};
            const CGPoint end{round % 5 ? uniform(-20, 80) : start.x, uniform(-20, 60)};
            Canvas canvas(kWidth, kHeight);
            CGContextDrawLinearGradient(canvas.context(), gradient, start, end, options);
            const CGFloat dx = end.x - start.x, dy = end.y - start.y;
            for (int i = 0; i < kWidth * kHeight; ++i) {
                const int x = i % kWidth, y = i / kWidth;
                const CGPoint p{x + 0.5, kHeight - (y + 0.5)};
                const CGFloat t = ((p.x - start.x) * dx + (p.y - start.y) * dy) / (dx * dx + dy * dy);
                const CanvasPixel pixel = canvas.pixel(x, y);
                ASSERT_TRUE(isColorNear(stops, t, options, pixel))
                    << "round " << round << ", location " << t << ": " << pixel;
            }
        }
    });
}

TEST_F(GradientPixels, OfRadialGradientsMatchTheReference)
{
    onEachVectorUnit([&] {
        for (int round = 0; round < 100; ++round) {
            const Stops stops = makeStops();
            const auto gradient = gradientOf(stops.colors, stops.locations);
            const auto options = CGGradientDrawingOptions(round % 4);
            const CGPoint c0{uniform(0, 61), uniform(0, 37)};
            const CGPoint c1 = round % 3 ? CGPoint{uniform(0, 61), uniform(0, 37)} : c0;
            const CGFloat r0 = round % 5 ? uniform(0, 20) : 0;
            const CGFloat r1 = round % 7 ? uniform(0, 40) : r0 + 1e-3;
            Canvas canvas(kWidth, kHeight);
            CGContextDrawRadialGradient(canvas.context(), gradient, c0, r0, c1, r1, options);
            int wrong = 0;
            for (int i = 0; i < kWidth * kHeight; ++i) {
                const int x = i % kWidth, y = i / kWidth;
                const CGPoint p{x + 0.5, kHeight - (y + 0.5)};
                const auto t = circleThrough(p, c0, r0, c1, r1, options);
                wrong += !isColorNear(stops, t, options, canvas.pixel(x, y));
            }
            // Rounding decides where an edge of the cone or of an end circle passes exactly through a pixel's
            // centre.
            ASSERT_LE(wrong, 1) << "round " << round;
        }
    });
}

TEST_F(GradientPixels, BlendWithinOneStep)
{
    onEachVectorUnit([&] {
        for (int round = 0; round < 40; ++round) {
            const RGBA color{uniform(0, 1), uniform(0, 1), uniform(0, 1), uniform(0, 1)};
            const CGFloat alpha = round % 2 ? uniform(0, 1) : 1;
            const CGFloat covered = round % 3 ? std::round(uniform(0, 1) * 255) / 255 : 1;
            Canvas canvas(kWidth, 2);
            for (int x = 0; x < kWidth; ++x)
                canvas.setPixel(x, 0, rgba(4 * x, 2 * x, x, 255));
            CGContextSetAlpha(canvas.context(), alpha);
            CGContextClipToRect(canvas.context(), CGRectMake(0, 1, kWidth, covered));
            CGContextDrawLinearGradient(canvas.context(), gradientOf({color}).get(), {0, 0}, {3, 4}, kBoth);
            for (int x = 0; x < kWidth; ++x) {
                const CGFloat factor = covered * alpha;
                const auto over = [&](CGFloat source, CGFloat below) {
                    return source * color[3] * factor * 255 + below * (1 - color[3] * factor);
                };
                const auto& bytes = canvas.pixel(x, 0).bytes;
                // 1 for the blend; the colour and the alpha are bytes, each rounded by up to 0.5.
                EXPECT_NEAR(bytes[0], over(color[0], 4 * x), 2);
                EXPECT_NEAR(bytes[1], over(color[1], 2 * x), 2);
                EXPECT_NEAR(bytes[2], over(color[2], x), 2);
                EXPECT_EQ(bytes[3], 255);
            }
        }
    });
}
