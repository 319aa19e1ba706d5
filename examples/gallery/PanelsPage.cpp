// Gradient views of all kinds. Dragging across one moves the nearer end of its gradient, or its circles.

#include "Captioned.h"

#include <AppKit/NSColor.h>
#include <AppKit/NSEvent.h>
#include <KorvidAppKit/ZRGradientView.h>
#include <KorvidAppKit/ZRGraphics.h>
#include <KorvidAppKit/ZRShapes.h>

#include <algorithm>
#include <cmath>
#include <initializer_list>
#include <utility>
#include <vector>

namespace {

constexpr CGFloat kPanelsWidth = 2 * kGalleryCardSide + kGalleryMargin; // of the page within its margins

/// A gradient of evenly spaced colours, given as hex colour strings.
RetainPtr<CGGradient> makeGradient(std::initializer_list<const char*> hexColors)
{
    std::vector<CGColorRef> colors;
    for (const char* hex : hexColors)
        colors.push_back(ZRGraphics::sharedGraphics()->CGColorFromHex(hex));
    return adopt(CGGradientCreateWithColors(nullptr, colors.data(), colors.size(), nullptr));
}

RetainPtr<NSColor> makeColor(const char* hex)
{
    return ZRGraphics::sharedGraphics()->platformColorFromHex(hex);
}

/// A panel whose gradient follows the mouse.
class DraggedPanel : public ZRGradientView {
public:
    using ZRGradientView::ZRGradientView;

    void mouseDown(NSEvent* event) override
    {
        const NSPoint point = unitPoint(event);
        _dragsStart = distance(point, startPoint()) < distance(point, endPoint());
        drag(point);
    }
    void mouseDragged(NSEvent* event) override { drag(unitPoint(event)); }

protected:
    ~DraggedPanel() override = default;

private:
    /// The mouse position relative to the panel's size, from 0 to 1.
    NSPoint unitPoint(NSEvent* event) const
    {
        const NSPoint point = convertPointFromView(event->locationInWindow(), nullptr);
        return {point.x / bounds().size.width, point.y / bounds().size.height};
    }
    /// In points.
    CGFloat distance(NSPoint a, NSPoint b) const
    {
        return std::hypot((a.x - b.x) * bounds().size.width, (a.y - b.y) * bounds().size.height);
    }
    void drag(NSPoint point)
    {
        if (type() == kZRGradientTypeRadial) {
            // Both circles move by the same distance.
            const NSPoint start = startCenter(), end = endCenter();
            setStartCenter(point);
            setEndCenter({end.x + point.x - start.x, end.y + point.y - start.y});
        } else if (_dragsStart) {
            setStartPoint(point);
        } else {
            setEndPoint(point);
        }
        snd();
    }

    bool _dragsStart = false;
};

/// A panel with round corners.
RetainPtr<DraggedPanel> makePanel()
{
    auto panel = make<DraggedPanel>(NSZeroRect);
    panel->setRoundedCorners(kZRCornerAll);
    panel->setCornerRadius(kGalleryCardRadius);
    return panel;
}

RetainPtr<NSView> captioned(const RetainPtr<DraggedPanel>& panel, const char* caption)
{
    return make<CaptionedView>(panel, caption, 1);
}

void setPoints(ZRGradientView* panel, NSPoint start, NSPoint end)
{
    panel->setStartPoint(start);
    panel->setEndPoint(end);
}

/// A glow with a focus above its centre, which fades out.
RetainPtr<NSView> makeGlow()
{
    auto panel = makePanel();
    panel->setType(kZRGradientTypeRadial);
    panel->setGradient(makeGradient({"fff3d6", "ffc271", "fb7f15", "c2325e", "6a1f6e", "2a1654", "10122a"}));
    panel->setStartCenter({0.5, 0.62});
    panel->setEndCenter({0.5, 0.46});
    panel->setEndRadius(0.66);
    return captioned(panel, "radial gradient");
}

/// A raised bar: a vertical gradient with a bezel.
RetainPtr<NSView> makeBar()
{
    auto panel = makePanel();
    panel->setGradient(makeGradient({"454a78", "262a4c"}));
    setPoints(panel, {0.5, 1}, {0.5, 0});
    panel->setBezel(true);
    return captioned(panel, "vertical, bezel");
}

RetainPtr<NSView> makeSunset()
{
    auto panel = makePanel();
    panel->setGradient(makeGradient({"2b1a6b", "b02a7b", "fb7f15", "fbc02b"}));
    setPoints(panel, {0, 1}, {1, 0});
    return captioned(panel, "diagonal");
}

/// Two opposite corners with a radius larger than all four could have.
RetainPtr<NSView> makeLeaf()
{
    auto panel = makePanel();
    panel->setGradient(makeGradient({"01e970", "01b6c4", "1d4fd8"}));
    setPoints(panel, {0, 0}, {1, 1});
    panel->setRoundedCorners(kZRCornerMinXMaxY | kZRCornerMaxXMinY);
    panel->setCornerRadius(48);
    return captioned(panel, "two round corners");
}

RetainPtr<NSView> makeOutlined()
{
    auto panel = makePanel();
    panel->setGradient(makeGradient({"06445c", "10122a"}));
    setPoints(panel, {0.5, 1}, {0.5, 0});
    panel->setCornerRadius(20);
    panel->setStroke(2);
    panel->setStrokeColor(makeColor("01dafd"));
    return captioned(panel, "outline");
}

/// A radial gradient that starts in a corner.
RetainPtr<NSView> makeLight()
{
    auto panel = makePanel();
    panel->setType(kZRGradientTypeRadial);
    panel->setGradient(makeGradient({"8f7bff", "4b3bb0", "1d1b4a", "12132c"}));
    panel->setStartCenter({0.18, 0.9});
    panel->setEndCenter({0.18, 0.9});
    panel->setEndRadius(1.5);
    panel->setStroke(1);
    panel->setStrokeColor(makeColor("ffffff20"));
    return captioned(panel, "radial, from a corner");
}

RetainPtr<NSView> makePlain()
{
    auto panel = makePanel();
    panel->setColor(makeColor("181b36"));
    panel->setStroke(1);
    panel->setStrokeColor(makeColor("37384c"));
    return captioned(panel, "plain, outline");
}

/// The first panel fills the left half, the others a grid in the right one.
std::vector<NSRect> layOutPanels(NSRect inside)
{
    NSRect left = inside, right = inside;
    left.size.width = std::round((inside.size.width - kGalleryMargin) / 2);
    right.size.width -= left.size.width + kGalleryMargin;
    right.origin.x = NSMaxX(left) + kGalleryMargin;
    std::vector<NSRect> frames{left};
    for (const NSRect& frame : galleryGrid(2, 6)(right))
        frames.push_back(frame);
    return frames;
}

RetainPtr<NSView> makePanelsPage(const GalleryOptions&)
{
    std::vector<RetainPtr<NSView>> panels;
    for (const auto makeView : {makeGlow, makeBar, makeSunset, makeLeaf, makeOutlined, makeLight, makePlain})
        panels.push_back(makeView());
    return makeGalleryPage(
        std::move(panels), layOutPanels, {kPanelsWidth, kGalleryCardSide}, {512, kGalleryCardSide});
}

const GalleryPage panelsPage{"panels", 70, "Panels",
    "Gradients of all kinds, with corners, outlines and a bezel. Drag across one to move the nearer end of "
    "its gradient, or its circles.",
    makePanelsPage};

} // namespace
