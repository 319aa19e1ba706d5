// The blend modes of PDF, each in a square of its own: a disc over a gradient. A drag moves the disc in all
// squares.

#include "Captioned.h"

#include <AppKit/NSEvent.h>
#include <KorvidAppKit/ZRGraphics.h>

#include <algorithm>
#include <array>
#include <utility>
#include <vector>

namespace {

struct NamedMode {
    CGBlendMode mode;
    const char* name;
};

constexpr std::array<NamedMode, 16> kBlendModes{{
    {kCGBlendModeNormal, "normal"},
    {kCGBlendModeMultiply, "multiply"},
    {kCGBlendModeScreen, "screen"},
    {kCGBlendModeOverlay, "overlay"},
    {kCGBlendModeDarken, "darken"},
    {kCGBlendModeLighten, "lighten"},
    {kCGBlendModeColorDodge, "color dodge"},
    {kCGBlendModeColorBurn, "color burn"},
    {kCGBlendModeSoftLight, "soft light"},
    {kCGBlendModeHardLight, "hard light"},
    {kCGBlendModeDifference, "difference"},
    {kCGBlendModeExclusion, "exclusion"},
    {kCGBlendModeHue, "hue"},
    {kCGBlendModeSaturation, "saturation"},
    {kCGBlendModeColor, "color"},
    {kCGBlendModeLuminosity, "luminosity"},
}};

/// A gradient of three colours, from hex colour strings.
RetainPtr<CGGradient> makeThreeColors(const char* first, const char* second, const char* third)
{
    std::array<CGColorRef, 3> colors{};
    std::transform(colors.begin(), colors.end(), std::array{first, second, third}.begin(), colors.begin(),
        [](CGColorRef, const char* hex) { return ZRGraphics::sharedGraphics()->CGColorFromHex(hex); });
    return adopt(CGGradientCreateWithColors(nullptr, colors.data(), colors.size(), nullptr));
}

/// Where the middle of the disc is in each square, relative to its size.
class DiscPlace : public NSObject {
public:
    NSPoint point{0.5, 0.5};

protected:
    ~DiscPlace() override = default;
};

/// A gradient with a disc over it in one mode.
class BlendView : public NSView {
public:
    BlendView(CGBlendMode mode, RetainPtr<DiscPlace> place)
        : _mode(mode)
        , _place(std::move(place))
    {
    }

    void mouseDown(NSEvent* event) override
    {
        const NSPoint point = convertPointFromView(event->locationInWindow(), nullptr);
        _place->point = {std::clamp(point.x / bounds().size.width, 0.0, 1.0),
            std::clamp(point.y / bounds().size.height, 0.0, 1.0)};
        superview()->superview()->setNeedsDisplay(true); // the whole page
    }
    void mouseDragged(NSEvent* event) override { mouseDown(event); }

    void drawRect(NSRect) override
    {
        CGContextRef context = ZRGraphics::sharedContext();
        const NSSize size = bounds().size;
        CGContextSaveGState(context);
        clipToGalleryCard(context, bounds());
        static const auto ground = makeThreeColors("123A9E", "8E8BB8", "FB7F15");
        CGContextDrawLinearGradient(context, ground, {0, size.height}, {size.width, 0}, 0);

        static const auto disc = makeThreeColors("FFE14D", "E0217A", "2A1654");
        const CGFloat radius = std::min(size.width, size.height) * 0.36;
        const CGPoint middle{_place->point.x * size.width, _place->point.y * size.height};
        CGContextAddEllipseInRect(context, CGRectInset({middle, CGSizeZero}, -radius, -radius));
        CGContextClip(context);
        CGContextSetBlendMode(context, _mode);
        CGContextDrawLinearGradient(
            context, disc, {middle.x, middle.y + radius}, {middle.x, middle.y - radius}, 0);
        CGContextRestoreGState(context);
    }

protected:
    ~BlendView() override = default;

private:
    const CGBlendMode _mode;
    const RetainPtr<DiscPlace> _place;
};

RetainPtr<NSView> makeBlendingPage(const GalleryOptions&)
{
    const auto place = make<DiscPlace>();
    std::vector<RetainPtr<NSView>> views;
    views.reserve(kBlendModes.size());
    for (const NamedMode& mode : kBlendModes)
        views.emplace_back(make<CaptionedView>(make<BlendView>(mode.mode, place), mode.name, 1));
    return makeGalleryPage(std::move(views), galleryGrid(4, kBlendModes.size(), 12));
}

const GalleryPage blendingPage{"blending", 72, "Blend modes",
    "A disc over a gradient in each of the blend modes of PDF. Drag in any square to move all discs.",
    makeBlendingPage};

} // namespace
