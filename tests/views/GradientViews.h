#pragma once

#include "support/Rendering.h"

#include <KorvidAppKit/ZRGradientView.h>

#include <AppKit/NSColor.h>

/// A view at the origin that is not marked for redisplay.
inline RetainPtr<ZRGradientView> makeGradientView(double width, double height)
{
    auto view = make<ZRGradientView>(NSMakeRect(0, 0, width, height));
    view->setNeedsDisplay(false);
    return view;
}

/// From red to blue in sRGB.
inline RetainPtr<CGGradient> redToBlue()
{
    const auto red = adopt(CGColorCreateSRGB(1, 0, 0, 1));
    const auto blue = adopt(CGColorCreateSRGB(0, 0, 1, 1));
    const CGColorRef colors[] = {red.get(), blue.get()};
    return adopt(CGGradientCreateWithColors(nullptr, colors, 2, nullptr));
}
