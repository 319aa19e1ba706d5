#pragma once

#include "PDFFiles.h"
#include "support/Describe.h"
#include "support/Rendering.h"

#include <algorithm>
#include <gtest/gtest.h>
#include <string>

/// A document that could not be read: it has no pages.
class MissingPDF : public ZRPDF {
public:
    MissingPDF()
        : ZRPDF(nullptr)
    {
    }
};

inline RetainPtr<CGColor> makeColor(double red, double green, double blue, double alpha)
{
    const auto space = adopt(CGColorSpaceCreateDeviceRGB());
    const CGFloat components[]{red, green, blue, alpha};
    return adopt(CGColorCreate(space, components));
}

/// Makes a context the thread's current one, to the end of the scope.
class CurrentContext {
public:
    explicit CurrentContext(CGContextRef context)
    {
        NSGraphicsContext::setCurrentContext(NSGraphicsContext::graphicsContextWithCGContext(context, false));
    }
    CurrentContext(const CurrentContext&) = delete;
    CurrentContext& operator=(const CurrentContext&) = delete;
    ~CurrentContext() { NSGraphicsContext::setCurrentContext(nullptr); }
};

/// A canvas of so many points, y upward, that is transparent at first.
inline Rendering transparentRendering(int width, int height, double scale = 1)
{
    Rendering rendering(width, height, scale);
    CGContextClearRect(rendering.context(), CGRectMake(0, 0, width, height));
    return rendering;
}

/// The alpha of a pixel, counted from the bottom left one.
inline int alphaAt(const Canvas& canvas, int x, int y)
{
    return canvas.alpha(x, canvas.height() - 1 - y);
}

/// The bounding box of the pixels with at least that alpha: x, y from the bottom, width and height in pixels.
/// "empty" when there is none.
inline std::string paintedBox(const Canvas& canvas, int alpha = 255)
{
    int left = canvas.width(), right = -1, bottom = canvas.height(), top = -1;
    for (int y = 0; y < canvas.height(); ++y) {
        for (int x = 0; x < canvas.width(); ++x) {
            if (alphaAt(canvas, x, y) < alpha)
                continue;
            left = std::min(left, x);
            right = std::max(right, x);
            bottom = std::min(bottom, y);
            top = std::max(top, y);
        }
    }
    if (right < 0)
        return "empty";
    return describe(CGRectMake(left, bottom, right - left + 1, top - bottom + 1));
}
inline std::string paintedBox(const Rendering& rendering, int alpha = 255)
{
    return paintedBox(rendering.canvas(), alpha);
}

/// Whether opaque paint covers `area`, in pixels from the bottom left, and nothing else; pixels that are
/// closer to its edges than `tolerance` may have any value.
inline testing::AssertionResult covers(const Canvas& canvas, CGRect area, double tolerance)
{
    const CGRect inside = CGRectInset(area, tolerance, tolerance);
    const CGRect outside = CGRectInset(area, -tolerance, -tolerance);
    for (int y = 0; y < canvas.height(); ++y) {
        for (int x = 0; x < canvas.width(); ++x) {
            const CGRect pixel = CGRectMake(x, y, 1, 1);
            const int alpha = alphaAt(canvas, x, y);
            const bool isWrong = CGRectContainsRect(inside, pixel)
                ? alpha != 255
                : !CGRectIntersectsRect(outside, pixel) && alpha != 0;
            if (isWrong)
                return testing::AssertionFailure() << "pixel " << x << ", " << y << " has alpha " << alpha
                                                   << "; the area is " << describe(area);
        }
    }
    return testing::AssertionSuccess();
}
