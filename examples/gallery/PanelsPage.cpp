// Gradient views of all kinds. Dragging across one moves the nearer end of its gradient, or its circles.

#include "Page.h"

#include <AppKit/NSColor.h>
#include <AppKit/NSEvent.h>
#include <KorvidAppKit/ZRGradientView.h>
#include <KorvidAppKit/ZRGraphics.h>
#include <KorvidAppKit/ZRShapes.h>

#include <algorithm>
#include <cmath>
#include <initializer_list>

namespace {

constexpr CGFloat kGap = 14;
constexpr CGFloat kWidth = 2 * kGalleryCardSide + kGalleryMargin; // of the page within its margins
constexpr CGFloat kPanelWidth = (kGalleryCardSide - kGap) / 2;
constexpr CGFloat kPanelHeight = (kGalleryCardSide - 2 * kGap) / 3;

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

/// A panel with round corners at (x, y) within the page's margins.
RetainPtr<DraggedPanel> makePanel(CGFloat x, CGFloat y, CGFloat width, CGFloat height)
{
    auto panel = make<DraggedPanel>(NSMakeRect(kGalleryMargin + x, kGalleryMargin + y, width, height));
    panel->setRoundedCorners(kZRCornerAll);
    panel->setCornerRadius(kGalleryCardRadius);
    return panel;
}

/// One of the small panels; columns and rows count from the top left.
RetainPtr<DraggedPanel> makeSmallPanel(int column, int row)
{
    return makePanel(kGalleryCardSide + kGalleryMargin + column * (kPanelWidth + kGap),
        (2 - row) * (kPanelHeight + kGap), kPanelWidth, kPanelHeight);
}

void setPoints(ZRGradientView* panel, NSPoint start, NSPoint end)
{
    panel->setStartPoint(start);
    panel->setEndPoint(end);
}

/// A glow with a focus above its centre, which fades out.
RetainPtr<NSView> makeGlow()
{
    auto panel = makePanel(0, 0, kGalleryCardSide, kGalleryCardSide);
    panel->setType(kZRGradientTypeRadial);
    panel->setGradient(makeGradient({"fff3d6", "ffc271", "fb7f15", "c2325e", "6a1f6e", "2a1654", "10122a"}));
    panel->setStartCenter({0.5, 0.62});
    panel->setEndCenter({0.5, 0.46});
    panel->setEndRadius(0.66);
    panel->setToolTip("radial gradient: drag it");
    return panel;
}

/// A raised bar: a vertical gradient with a bezel.
RetainPtr<NSView> makeBar()
{
    auto panel = makeSmallPanel(0, 0);
    panel->setGradient(makeGradient({"454a78", "262a4c"}));
    setPoints(panel, {0.5, 1}, {0.5, 0});
    panel->setBezel(true);
    panel->setToolTip("vertical gradient with a bezel: drag one of its ends");
    return panel;
}

RetainPtr<NSView> makeSunset()
{
    auto panel = makeSmallPanel(1, 0);
    panel->setGradient(makeGradient({"2b1a6b", "b02a7b", "fb7f15", "fbc02b"}));
    setPoints(panel, {0, 1}, {1, 0});
    panel->setToolTip("diagonal gradient: drag one of its ends");
    return panel;
}

/// Two opposite corners with a radius larger than all four could have.
RetainPtr<NSView> makeLeaf()
{
    auto panel = makeSmallPanel(0, 1);
    panel->setGradient(makeGradient({"01e970", "01b6c4", "1d4fd8"}));
    setPoints(panel, {0, 0}, {1, 1});
    panel->setRoundedCorners(kZRCornerMinXMaxY | kZRCornerMaxXMinY);
    panel->setCornerRadius(48);
    panel->setToolTip("two round corners: drag an end of the gradient");
    return panel;
}

RetainPtr<NSView> makeOutlined()
{
    auto panel = makeSmallPanel(1, 1);
    panel->setGradient(makeGradient({"06445c", "10122a"}));
    setPoints(panel, {0.5, 1}, {0.5, 0});
    panel->setCornerRadius(20);
    panel->setStroke(2);
    panel->setStrokeColor(makeColor("01dafd"));
    panel->setToolTip("gradient with an outline: drag one of its ends");
    return panel;
}

/// A radial gradient that starts in a corner.
RetainPtr<NSView> makeLight()
{
    auto panel = makeSmallPanel(0, 2);
    panel->setType(kZRGradientTypeRadial);
    panel->setGradient(makeGradient({"8f7bff", "4b3bb0", "1d1b4a", "12132c"}));
    panel->setStartCenter({0.18, 0.9});
    panel->setEndCenter({0.18, 0.9});
    panel->setEndRadius(1.5);
    panel->setStroke(1);
    panel->setStrokeColor(makeColor("ffffff20"));
    panel->setToolTip("radial gradient from a corner: drag it");
    return panel;
}

RetainPtr<NSView> makePlain()
{
    auto panel = makeSmallPanel(1, 2);
    panel->setColor(makeColor("181b36"));
    panel->setStroke(1);
    panel->setStrokeColor(makeColor("37384c"));
    panel->setToolTip("plain colour with an outline");
    return panel;
}

RetainPtr<NSView> makePanelsPage(const GalleryOptions&)
{
    auto page = makeGalleryPage({kWidth, kGalleryCardSide});
    for (const auto makeView : {makeGlow, makeBar, makeSunset, makeLeaf, makeOutlined, makeLight, makePlain})
        page->addSubview(makeView());
    return page;
}

const GalleryPage page{"panels", 70, "Panels",
    "Gradients of all kinds, with corners, outlines and a bezel. Drag across one to move the nearer end of "
    "its gradient, or its circles.",
    makePanelsPage};

} // namespace
