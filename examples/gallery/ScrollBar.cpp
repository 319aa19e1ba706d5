#include "ScrollBar.h"

#include "Page.h"

#include <AppKit/NSEvent.h>
#include <KorvidAppKit/ZRGraphics.h>

#include <algorithm>
#include <cmath>

namespace {

constexpr CGFloat kThickness = 6;
constexpr CGFloat kMinimumKnob = 24;
/// Between the knob and the ends of the bar.
constexpr CGFloat kEnd = 3;

} // namespace

CGFloat ScrollRange::maximum() const
{
    return std::max(0.0, total - visible);
}

CGFloat ScrollRange::clamped(CGFloat value) const
{
    return std::isnan(value) ? 0 : std::clamp(std::round(value), 0.0, maximum());
}

ScrollBar::ScrollBar(Axis axis, std::function<void(CGFloat offset)> scrollTo)
    : _axis(axis)
    , _scrollTo(std::move(scrollTo))
{
    setHidden(true);
}

ScrollBar::~ScrollBar() = default;

void ScrollBar::setRange(const ScrollRange& range)
{
    if (range == _range)
        return;
    _range = range;
    setHidden(range.maximum() == 0);
    setNeedsDisplay(true);
}

/// The length that the knob moves in.
CGFloat ScrollBar::track() const
{
    const NSSize size = bounds().size;
    return (_axis == Axis::Vertical ? size.height : size.width) - 2 * kEnd;
}

CGFloat ScrollBar::knobLength() const
{
    if (_range.total <= 0)
        return track();
    return std::clamp(std::round(track() * _range.visible / _range.total), std::min(kMinimumKnob, track()),
        std::max(track(), 0.0));
}

NSRect ScrollBar::knob() const
{
    const CGFloat length = knobLength();
    const CGFloat part = _range.maximum() > 0 ? _range.offset / _range.maximum() : 0;
    const CGFloat start = kEnd + std::round((track() - length) * part);
    constexpr CGFloat kAside = (kWidth - kThickness) / 2;
    if (_axis == Axis::Vertical)
        return NSMakeRect(kAside, bounds().size.height - start - length, kThickness, length);
    return NSMakeRect(start, kAside, length, kThickness);
}

void ScrollBar::drawRect(NSRect)
{
    CGContextRef context = ZRGraphics::sharedContext();
    const auto outline = adopt(CGPathCreateWithRoundedRect(knob(), kThickness / 2, kThickness / 2, nullptr));
    CGContextSetFillColorWithColor(context, galleryCGColor("gallery-knob"));
    CGContextAddPath(context, outline);
    CGContextFillPath(context);
}

/// Where the pointer is along the axis, from the start of the content.
CGFloat ScrollBar::position(NSEvent* event) const
{
    const NSPoint point = convertPointFromView(event->locationInWindow(), nullptr);
    return _axis == Axis::Vertical ? bounds().size.height - point.y : point.x;
}

void ScrollBar::mouseDown(NSEvent* event)
{
    const NSRect knob = this->knob();
    const CGFloat start = _axis == Axis::Vertical ? bounds().size.height - NSMaxY(knob) : NSMinX(knob);
    const CGFloat pointer = position(event);
    if (pointer < start)
        _scrollTo(_range.offset - _range.visible);
    else if (pointer >= start + knobLength())
        _scrollTo(_range.offset + _range.visible);
    else
        _grip = pointer - start;
}

void ScrollBar::mouseDragged(NSEvent* event)
{
    const CGFloat room = track() - knobLength();
    if (_grip && room > 0)
        _scrollTo((position(event) - *_grip - kEnd) * _range.maximum() / room);
}

void ScrollBar::mouseUp(NSEvent*)
{
    _grip.reset();
}
