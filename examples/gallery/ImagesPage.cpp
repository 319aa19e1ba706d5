// Images: a picture as a whole and a part of it enlarged, the ways of resampling pixels, compositing two
// pictures, and pictures as the contents of layers.

#include "Icon.h"
#include "Page.h"
#include "Text.h"

#include <AppKit/NSColor.h>
#include <AppKit/NSEvent.h>
#include <AppKit/NSImage.h>
#include <CoreGraphics/CGBitmapContext.h>
#include <KorvidAppKit/ZRAppKitAdditions.h>
#include <KorvidAppKit/ZRGraphics.h>
#include <QuartzCore/CALayer.h>

#include <algorithm>
#include <cmath>
#include <iterator>
#include <utility>
#include <vector>

namespace {

constexpr CGFloat kImageGap = 12; // around and between the pictures of a card

/// The part of a card above its caption that pictures fill.
NSRect imageRoom(NSRect card)
{
    NSRect room = NSInsetRect(aboveCaption(card), kImageGap, 0);
    room.size.height -= kImageGap;
    return room;
}

/// The largest square in the middle of a rectangle, on whole points.
NSRect largestSquareIn(NSRect room)
{
    const CGFloat side = std::floor(std::max(0.0, std::min(room.size.width, room.size.height)));
    return NSMakeRect(std::round(NSMidX(room) - side / 2), std::round(NSMidY(room) - side / 2), side, side);
}

/// A transparent picture that is a square of `side` points, with two pixels for each.
RetainPtr<NSImage> makeEmptyImage(CGFloat side)
{
    const auto pixels = static_cast<std::size_t>(2 * side);
    const auto bitmap = adopt(CGBitmapContextCreate(nullptr, pixels, pixels, 8, 0,
        ZRGraphics::sharedGraphics()->csSRGB(), kCGImageAlphaPremultipliedLast));
    return make<NSImage>(adopt(CGBitmapContextCreateImage(bitmap)), NSMakeSize(side, side));
}

RetainPtr<NSImage> iconTinted(const char* hex, CGFloat side)
{
    const auto color = ZRGraphics::sharedGraphics()->platformColorFromHex(hex);
    const auto icon = makeGalleryIcon(side);
    return ZRAppKitAdditions_NSImage::imageByTinting(icon, color);
}

/// A picture as a whole, and beside it the part that a frame marks. A press or a drag moves the frame.
class PartCard : public NSView {
public:
    void mouseDown(NSEvent* event) override
    {
        const NSPoint point = convertPointFromView(event->locationInWindow(), nullptr);
        const NSRect whole = places().front();
        const auto within = [](CGFloat part) { return std::clamp(part - kPart / 2, 0.0, 1 - kPart); };
        _part = {within((point.x - NSMinX(whole)) / whole.size.width),
            within((point.y - NSMinY(whole)) / whole.size.height)};
        setNeedsDisplay(true);
    }
    void mouseDragged(NSEvent* event) override { mouseDown(event); }

    void drawRect(NSRect) override
    {
        CGContextRef context = ZRGraphics::sharedContext();
        fillGalleryCard(context, bounds());
        drawCaption(context, bounds(), "Whole and in part: drag");
        const auto squares = places();
        const NSRect whole = squares[0], part = squares[1];
        _image->drawInRect(whole);

        const NSSize size = _image->size();
        const NSRect from =
            NSMakeRect(_part.x * size.width, _part.y * size.height, kPart * size.width, kPart * size.height);
        _image->drawInRect(part, from, NSCompositingOperationSourceOver, 1);

        CGContextSetStrokeColorWithColor(context, galleryCGColor("zel-orange-highlight"));
        CGContextStrokeRectWithWidth(context, NSInsetRect(part, 0.5, 0.5), 1);
        const CGFloat side = std::round(kPart * whole.size.width);
        const NSRect frame = NSMakeRect(std::round(NSMinX(whole) + _part.x * whole.size.width),
            std::round(NSMinY(whole) + _part.y * whole.size.height), side, side);
        CGContextStrokeRectWithWidth(context, NSInsetRect(frame, 0.5, 0.5), 1);
    }

protected:
    ~PartCard() override = default;

private:
    std::vector<NSRect> places() const
    {
        auto squares = galleryGrid(2, 2, kImageGap)(imageRoom(bounds()));
        std::transform(squares.begin(), squares.end(), squares.begin(), largestSquareIn);
        return squares;
    }

    static constexpr CGFloat kPart = 0.3; ///< side of the part, of the picture's
    const RetainPtr<NSImage> _image = makeGalleryIcon(256);
    NSPoint _part{0.2, 0.5}; ///< its lower left corner, of the picture's sides
};

/// Rings that are finer than the pixels of a small picture of them.
RetainPtr<NSImage> makeFineRings(CGFloat side)
{
    auto image = makeEmptyImage(side);
    image->lockFocus();
    CGContextRef context = ZRGraphics::sharedContext();
    CGContextSetStrokeColorWithColor(context, paletteColor("zel-blue-highlight"));
    CGContextSetLineWidth(context, 2);
    for (int radius = 2; radius < side / 2; radius += 4)
        CGContextAddEllipseInRect(context, CGRectInset({{side / 2, side / 2}, CGSizeZero}, -radius, -radius));
    CGContextStrokePath(context);
    image->unlockFocus();
    return image;
}

/// Pixels enlarged, and below them a picture made smaller, in each of the ways to resample.
class InterpolationCard : public NSView {
public:
    void drawRect(NSRect) override
    {
        CGContextRef context = ZRGraphics::sharedContext();
        fillGalleryCard(context, bounds());
        drawCaption(context, bounds(), "Resampling: none, low, high");
        constexpr CGInterpolationQuality kQualities[]{
            kCGInterpolationNone, kCGInterpolationLow, kCGInterpolationHigh};
        constexpr std::size_t kCount = std::size(kQualities);
        const auto cells = galleryGrid(kCount, 2 * kCount, kImageGap)(imageRoom(bounds()));
        for (std::size_t i = 0; i < kCount; ++i) {
            CGContextSetInterpolationQuality(context, kQualities[i]);
            _few->drawInRect(largestSquareIn(cells[i]));
            _many->drawInRect(largestSquareIn(cells[kCount + i]));
        }
    }

protected:
    ~InterpolationCard() override = default;

private:
    const RetainPtr<NSImage> _few = makeGalleryIcon(8), _many = makeFineRings(200);
};

/// Two pictures in each of some operations. The place of a press or a drag is the alpha of the second one.
class CompositingCard : public NSView {
public:
    void mouseDown(NSEvent* event) override
    {
        const NSRect room = imageRoom(bounds());
        const CGFloat x = convertPointFromView(event->locationInWindow(), nullptr).x - NSMinX(room);
        _alpha = std::clamp(x / room.size.width, 0.0, 1.0);
        setNeedsDisplay(true);
    }
    void mouseDragged(NSEvent* event) override { mouseDown(event); }

    void drawRect(NSRect) override
    {
        CGContextRef context = ZRGraphics::sharedContext();
        fillGalleryCard(context, bounds());
        drawCaption(context, bounds(), "Compositing: drag for alpha");
        const auto cells = galleryGrid(3, std::size(kOperations), kImageGap)(imageRoom(bounds()));
        for (std::size_t i = 0; i < std::size(kOperations); ++i) {
            NSRect above = cells[i];
            above.origin.y += kNameHeight;
            above.size.height -= kNameHeight;
            const NSRect square = largestSquareIn(above);
            // In a layer, operations see the first picture and not the card.
            CGContextBeginTransparencyLayerWithRect(context, square, nullptr);
            _below->drawInRect(square);
            _above->drawInRect(square, NSZeroRect, kOperations[i].operation, _alpha);
            CGContextEndTransparencyLayer(context);
            drawLabel(context, kOperations[i].name, {std::round(NSMidX(cells[i])), NSMinY(cells[i]) + 4},
                {11, false, "zel-menu-fg", "zel-button-bg"}, LabelPlace::CentredOnPoint);
        }
    }

protected:
    ~CompositingCard() override = default;

private:
    struct NamedOperation {
        NSCompositingOperation operation;
        const char* name;
    };
    static constexpr NamedOperation kOperations[]{
        {NSCompositingOperationSourceOver, "over"},
        {NSCompositingOperationSourceIn, "in"},
        {NSCompositingOperationSourceOut, "out"},
        {NSCompositingOperationSourceAtop, "atop"},
        {NSCompositingOperationDestinationOut, "dest. out"},
        {NSCompositingOperationXOR, "XOR"},
    };
    static constexpr CGFloat kNameHeight = 18;

    static constexpr CGFloat kSide = 128; ///< of the pictures

    static RetainPtr<NSImage> imageOf(CGPathRef path, const char* hex)
    {
        auto image = makeEmptyImage(kSide);
        image->lockFocus();
        CGContextRef context = ZRGraphics::sharedContext();
        CGContextSetFillColorWithColor(context, ZRGraphics::sharedGraphics()->CGColorFromHex(hex));
        CGContextAddPath(context, path);
        CGContextFillPath(context);
        image->unlockFocus();
        return image;
    }
    static RetainPtr<NSImage> makeDisc()
    {
        const NSRect place = NSMakeRect(0, 0.3 * kSide, 0.7 * kSide, 0.7 * kSide);
        const auto path = adopt(CGPathCreateWithEllipseInRect(place, nullptr));
        return imageOf(path, "3D7DFF");
    }
    static RetainPtr<NSImage> makeSquare()
    {
        const NSRect place = NSMakeRect(0.3 * kSide, 0, 0.7 * kSide, 0.7 * kSide);
        const auto path = adopt(CGPathCreateWithRoundedRect(place, 16, 16, nullptr));
        return imageOf(path, "FF8A1E");
    }

    const RetainPtr<NSImage> _below = makeDisc(), _above = makeSquare();
    CGFloat _alpha = 0.8;
};

/// A layer with pictures in layers on it. A press or a drag moves the front one.
class LayersView : public NSView {
public:
    LayersView()
    {
        setLayer(make<CALayer>());
        setWantsLayer(true);
        for (const auto& image : {makeGalleryIcon(96), iconTinted("3D7DFF", 96), iconTinted("FF8A1E", 96)}) {
            const auto sublayer = make<CALayer>();
            sublayer->setContents(image->CGImageForProposedRect());
            layer()->addSublayer(sublayer);
        }
    }

    void mouseDown(NSEvent* event) override
    {
        const NSPoint point = convertPointFromView(event->locationInWindow(), nullptr);
        const auto within = [](CGFloat part) { return std::clamp(part, 0.0, 1.0); };
        _front = {within(point.x / bounds().size.width), within(point.y / bounds().size.height)};
        placeLayers();
    }
    void mouseDragged(NSEvent* event) override { mouseDown(event); }

    void resizeSubviewsWithOldSize(NSSize) override { placeLayers(); }

protected:
    ~LayersView() override = default;

private:
    void placeLayers()
    {
        const NSSize size = bounds().size;
        const CGFloat side = std::floor(std::min(size.width, size.height) * 0.62);
        constexpr NSPoint kPlaces[]{{0.08, 1}, {0.5, 0.5}};
        for (std::size_t i = 0; i < layer()->sublayers().size(); ++i) {
            const NSPoint place = i < std::size(kPlaces) ? kPlaces[i] : _front;
            layer()->sublayers()[i]->setFrame(CGRectMake(std::round(place.x * (size.width - side)),
                std::round(place.y * (size.height - side)), side, side));
        }
    }

    NSPoint _front{0.92, 0}; ///< of the room that the layer can move in
};

class LayersCard : public NSView {
public:
    LayersCard() { addSubview(make<LayersView>()); }

    void resizeSubviewsWithOldSize(NSSize) override
    {
        subviews().front()->setFrame(NSIntegralRect(imageRoom(bounds())));
    }

    void drawRect(NSRect) override
    {
        fillGalleryCard(ZRGraphics::sharedContext(), bounds());
        drawCaption(ZRGraphics::sharedContext(), bounds(), "Layers: drag the front one");
    }

protected:
    ~LayersCard() override = default;
};

RetainPtr<NSView> makeImagesPage(const GalleryOptions&)
{
    return makeGalleryPage(
        {make<PartCard>(), make<InterpolationCard>(), make<CompositingCard>(), make<LayersCard>()},
        galleryGrid(2, 4));
}

const GalleryPage imagesPage{"images", 45, "Images and layers",
    "Pictures as a whole, in part, resampled and combined, and as the contents of layers. Drag in the cards.",
    makeImagesPage};

} // namespace
