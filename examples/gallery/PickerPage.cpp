// A colour picker with its axes to choose from, and the picked colour as a swatch and in hex. Drag the knob,
// or the bar at the right for the third component; or use the arrow keys, + and -, and 1 to 6 for the axes.

#include "Page.h"
#include "Text.h"

#include <AppKit/NSEvent.h>
#include <Foundation/NSFormat.h>
#include <KorvidAppKit/ZR2DColorPicker.h>
#include <KorvidAppKit/ZRCapsuleView.h>
#include <KorvidAppKit/ZRGraphics.h>

#include <algorithm>
#include <array>
#include <cmath>
#include <functional>
#include <iterator>
#include <vector>

namespace {

constexpr CGFloat kMargin = 20;
constexpr CGFloat kPickerGap = 16;
constexpr CGFloat kBarWidth = 20;
constexpr CGFloat kSwatchSide = 44;
constexpr CGFloat kChipHeight = 24;
constexpr double kKnobSize = 14;
constexpr double kKeyStep = 0.05;                   ///< of the third component
constexpr CGFloat kFieldMargin = kKnobSize / 2 + 2; ///< of the picker, around its field

/// What one of the axes codes shows.
struct Axes {
    ZR2DColorPickerAxes code;
    const char* name;
    const char* explanation;
};
constexpr Axes kAxes[] = {
    {kZR2DColorPickerAxesHueSaturation, "H × S", "Hue and saturation, with a fixed brightness"},
    {kZR2DColorPickerAxesHueBrightness, "H × B", "Hue and brightness, with a fixed saturation"},
    {kZR2DColorPickerAxesSaturationBrightness, "S × B", "Saturation and brightness, with a fixed hue"},
    {kZR2DColorPickerAxesRedGreen, "R × G", "Red and green, with a fixed blue"},
    {kZR2DColorPickerAxesRedBlue, "R × B", "Red and blue, with a fixed green"},
    {kZR2DColorPickerAxesGreenBlue, "G × B", "Green and blue, with a fixed red"},
};

/// A capsule that a click chooses.
class Chip : public ZRCapsuleView {
public:
    Chip(const Axes& axes, std::function<void()> choose)
        : _choose(std::move(choose))
    {
        setString(axes.name);
        setToolTip(axes.explanation);
        setFontSize(12);
    }

    void setChosen(bool isChosen)
    {
        setDrawType(isChosen ? kZRCapsuleDrawTypeFilled : kZRCapsuleDrawTypeOutline);
        setColor(galleryColor(isChosen ? "gallery-blue-fill" : "zel-menu-fg"));
    }

    void mouseDown(NSEvent*) override { _choose(); }

protected:
    ~Chip() override = default;

private:
    const std::function<void()> _choose;
};

/// A bar of the colours that the third component makes of the picked one, from 0 at the bottom to 1.
class ThirdComponentBar : public NSView {
public:
    ThirdComponentBar(ZR2DColorPicker* picker, std::function<void()> changed)
        : _picker(picker)
        , _changed(std::move(changed))
    {
    }

    void mouseDown(NSEvent* event) override
    {
        const CGFloat y = convertPointFromView(event->locationInWindow(), nullptr).y;
        _picker->setThirdComponent(std::clamp(y / bounds().size.height, 0.0, 1.0));
        _changed();
    }
    void mouseDragged(NSEvent* event) override { mouseDown(event); }

    void drawRect(NSRect) override
    {
        CGContextRef context = ZRGraphics::sharedContext();
        const NSRect bar = NSInsetRect(bounds(), 1, 1);
        CGContextSaveGState(context);
        CGContextClipToRect(context, bar);
        const auto gradient = makeGradient();
        CGContextDrawLinearGradient(context, gradient, {0, NSMinY(bar)}, {0, NSMaxY(bar)}, 0);
        CGContextRestoreGState(context);
        CGContextSetStrokeColorWithColor(context, paletteColor("black"));
        CGContextSetLineWidth(context, 1);
        CGContextStrokeRect(context, NSInsetRect(bounds(), 0.5, 0.5));

        // A white mark with a dark edge, which stands out from every colour.
        const CGFloat y = std::round(_picker->thirdComponent() * (bounds().size.height - 5));
        CGContextSetFillColorWithColor(context, paletteColor("black"));
        CGContextFillRect(context, NSMakeRect(0, y, bounds().size.width, 5));
        CGContextSetFillColorWithColor(context, paletteColor("white"));
        CGContextFillRect(context, NSMakeRect(1, y + 1, bounds().size.width - 2, 3));
    }

protected:
    ~ThirdComponentBar() override = default;

private:
    /// Straight between sixths, in which every component of every model is linear.
    RetainPtr<CGGradient> makeGradient() const
    {
        const auto sample = make<ZR2DColorPicker>();
        sample->setAxes(_picker->axes());
        std::vector<RetainPtr<NSColor>> colors;
        std::vector<CGColorRef> stops;
        for (int i = 0; i <= 6; ++i) {
            sample->setThirdComponent(i / 6.0);
            colors.push_back(sample->colorForComps(_picker->comps()));
            stops.push_back(colors.back()->CGColor());
        }
        return adopt(CGGradientCreateWithColors(
            ZRGraphics::sharedGraphics()->csSRGB(), stops.data(), stops.size(), nullptr));
    }

    ZR2DColorPicker* const _picker; ///< among the same card's subviews
    const std::function<void()> _changed;
};

/// The whole page: swatch and hex string above the picker and the bar, and chips for the axes below.
class PickerCard : public NSView {
public:
    PickerCard()
    {
        _picker->setPickerSize(kKnobSize);
        _picker->setThirdComponent(0.95);
        _picker->setComps({0.56, 0.64});
        // The card owns what calls it.
        _picker->setComponentsChangedCB([this](ZR2Components) { colorDidChange(); });
        addSubview(_picker);
        addSubview(_bar);
        for (const Axes& axes : kAxes) {
            _chips.push_back(make<Chip>(axes, [this, &axes] { choose(axes); }));
            addSubview(_chips.back());
        }
        choose(kAxes[0]);
    }

    void resizeSubviewsWithOldSize(NSSize) override
    {
        const NSRect inside = this->inside();
        const CGFloat bottom = NSMinY(inside) + kChipHeight + kPickerGap;
        const CGFloat height = NSMaxY(inside) - kSwatchSide - kPickerGap - bottom;
        const CGFloat left = NSMaxX(inside) - kBarWidth;
        _bar->setFrame(NSMakeRect(left - 1, bottom - 1, kBarWidth + 2, height + 2));
        const NSRect field = NSMakeRect(NSMinX(inside), bottom, left - kPickerGap - NSMinX(inside), height);
        _picker->setFrame(NSInsetRect(field, -kFieldMargin, -kFieldMargin));

        constexpr CGFloat kChipGap = 8;
        const CGFloat step = (inside.size.width + kChipGap) / CGFloat(_chips.size());
        for (std::size_t i = 0; i < _chips.size(); ++i) {
            const CGFloat x = std::round(CGFloat(i) * step);
            const CGFloat end = std::round(CGFloat(i + 1) * step) - kChipGap;
            _chips[i]->setFrame(NSMakeRect(NSMinX(inside) + x, NSMinY(inside), end - x, kChipHeight));
        }
    }

    /// Gets the keys that the picker does not use.
    void keyDown(NSEvent* event) override
    {
        const NSString& characters = event->charactersIgnoringModifiers();
        const char16_t key = characters.length() == 1 ? characters.characterAtIndex(0) : 0;
        if (key >= u'1' && key < u'1' + std::size(kAxes))
            return choose(kAxes[key - u'1']);
        if (key != u'+' && key != u'-')
            return NSView::keyDown(event);
        const double step = key == u'+' ? kKeyStep : -kKeyStep;
        _picker->setThirdComponent(std::clamp(_picker->thirdComponent() + step, 0.0, 1.0));
        colorDidChange();
    }

    void drawRect(NSRect) override
    {
        CGContextRef context = ZRGraphics::sharedContext();
        fillGalleryCard(context, bounds());
        const NSRect inside = this->inside();
        const NSRect swatch =
            NSMakeRect(NSMinX(inside), NSMaxY(inside) - kSwatchSide, kSwatchSide, kSwatchSide);
        const auto color = _picker->color();
        const auto outline =
            adopt(CGPathCreateWithRoundedRect(swatch, kGalleryCardRadius, kGalleryCardRadius, nullptr));
        CGContextSetFillColorWithColor(context, color->CGColor());
        CGContextAddPath(context, outline);
        CGContextFillPath(context);
        // The capitals are as high as the swatch's middle two thirds.
        drawLabel(context, hexOf(color), {NSMaxX(swatch) + kPickerGap, NSMinY(swatch) + 10}, kHexText);
    }

protected:
    ~PickerCard() override = default;

private:
    static constexpr TextStyle kHexText{34, true, "zel-white-evenstronger", "zel-button-bg"};

    static NSString hexOf(const NSColor* color)
    {
        std::array<CGFloat, 4> rgba{};
        color->colorUsingColorSpace(NSColorSpace::sRGBColorSpace())->getComponents(rgba.data());
        const auto byte = [&](std::size_t i) { return int(std::lround(rgba[i] * 255)); };
        return NSString::stringWithFormat("#%02X%02X%02X", byte(0), byte(1), byte(2));
    }

    NSRect inside() const { return NSInsetRect(bounds(), kMargin, kMargin); }

    void choose(const Axes& axes)
    {
        _picker->setAxes(axes.code);
        for (std::size_t i = 0; i < _chips.size(); ++i)
            _chips[i]->setChosen(kAxes[i].code == axes.code);
        colorDidChange();
    }

    void colorDidChange()
    {
        setNeedsDisplay(true);
        _bar->setNeedsDisplay(true);
    }

    const RetainPtr<ZR2DColorPicker> _picker = make<ZR2DColorPicker>();
    const RetainPtr<ThirdComponentBar> _bar =
        make<ThirdComponentBar>(_picker.get(), [this] { colorDidChange(); });
    std::vector<RetainPtr<Chip>> _chips; ///< in the order of `kAxes`
};

RetainPtr<NSView> makePickerPage(const GalleryOptions&)
{
    return makeGalleryPage({make<PickerCard>()}, galleryGrid(1, 1));
}

const GalleryPage pickerPage{"picker", 25, "Colour picker",
    "A field of colours along two components; the bar at the right is the third. Drag the knob or the mark, "
    "and choose the axes below: hue, saturation and brightness, or red, green and blue. Keys: Tab, then the "
    "arrows, + and -, and 1 to 6.",
    makePickerPage};

} // namespace
