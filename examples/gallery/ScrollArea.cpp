#include "ScrollArea.h"

#include <AppKit/NSEvent.h>

#include <algorithm>
#include <utility>

namespace {

/// What an arrow key scrolls by, in points.
constexpr CGFloat kStep = 40;

/// The offset nearest to `offset` at which from `start` to `end` is visible, the start if not both are.
CGFloat offsetToShow(CGFloat offset, CGFloat visible, CGFloat start, CGFloat end)
{
    return std::min(std::max(offset, end - visible), start);
}

} // namespace

ScrollArea::ScrollArea()
    : _horizontal(make<ScrollBar>(ScrollBar::Axis::Horizontal,
        [this](CGFloat x) {
            scrollTo({x, _offset.y});
        }))
    , _vertical(make<ScrollBar>(ScrollBar::Axis::Vertical, [this](CGFloat y) {
        scrollTo({_offset.x, y});
    }))
{
    addSubview(_horizontal);
    addSubview(_vertical);
}

ScrollArea::~ScrollArea() = default;

void ScrollArea::setContent(RetainPtr<ScrolledView> content)
{
    if (content == _content)
        return;
    if (_content)
        _content->removeFromSuperview();
    _content = std::move(content);
    if (_content)
        addSubview(_content, NSWindowBelow, nullptr);
    _offset = {};
    layOut();
}

ScrollRange ScrollArea::range(ScrollBar::Axis axis) const
{
    const NSSize total = _content ? _content->frame().size : NSZeroSize;
    if (axis == ScrollBar::Axis::Horizontal)
        return {_offset.x, bounds().size.width, total.width};
    return {_offset.y, bounds().size.height, total.height};
}

void ScrollArea::resizeSubviewsWithOldSize(NSSize)
{
    layOut();
}

void ScrollArea::layOut()
{
    const NSSize visible = bounds().size;
    constexpr CGFloat kWidth = ScrollBar::kWidth;
    _horizontal->setFrame(NSMakeRect(0, 0, visible.width - kWidth, kWidth));
    _vertical->setFrame(NSMakeRect(visible.width - kWidth, 0, kWidth, visible.height));
    if (_content) {
        const NSSize size = _content->sizeFor(visible);
        _content->setFrameSize({std::max(size.width, visible.width), std::max(size.height, visible.height)});
    }
    scrollTo(_offset);
}

void ScrollArea::scrollTo(NSPoint offset)
{
    _offset = {range(ScrollBar::Axis::Horizontal).clamped(offset.x),
        range(ScrollBar::Axis::Vertical).clamped(offset.y)};
    if (_content) {
        const NSPoint origin{-_offset.x, bounds().size.height - _content->frame().size.height + _offset.y};
        if (!NSEqualPoints(origin, _content->frame().origin))
            _content->setFrameOrigin(origin);
    }
    _horizontal->setRange(range(ScrollBar::Axis::Horizontal));
    _vertical->setRange(range(ScrollBar::Axis::Vertical));
}

void ScrollArea::scrollToVisible(NSRect rect)
{
    if (!_content)
        return;
    const NSSize visible = bounds().size;
    const CGFloat height = _content->frame().size.height;
    scrollTo({offsetToShow(_offset.x, visible.width, NSMinX(rect), NSMaxX(rect)),
        offsetToShow(_offset.y, visible.height, height - NSMaxY(rect), height - NSMinY(rect))});
}

bool ScrollArea::scrollByKey(char16_t key)
{
    const CGFloat page = std::max(bounds().size.height - kStep, kStep);
    NSPoint offset = _offset;
    switch (key) {
    case NSUpArrowFunctionKey:
        offset.y -= kStep;
        break;
    case NSDownArrowFunctionKey:
        offset.y += kStep;
        break;
    case NSLeftArrowFunctionKey:
        offset.x -= kStep;
        break;
    case NSRightArrowFunctionKey:
        offset.x += kStep;
        break;
    case NSPageUpFunctionKey:
        offset.y -= page;
        break;
    case NSPageDownFunctionKey:
        offset.y += page;
        break;
    case NSHomeFunctionKey:
        offset.y = 0;
        break;
    case NSEndFunctionKey:
        offset.y = range(ScrollBar::Axis::Vertical).maximum();
        break;
    default:
        return false;
    }
    scrollTo(offset);
    return true;
}

void ScrollArea::scrollWheel(NSEvent* event)
{
    CGFloat x = event->scrollingDeltaX(), y = event->scrollingDeltaY();
    if (!event->hasPreciseScrollingDeltas()) {
        x *= kStep;
        y *= kStep;
    }
    if (event->modifierFlags() & NSEventModifierFlagShift && x == 0)
        std::swap(x, y);
    const NSPoint old = _offset;
    scrollTo({_offset.x - x, _offset.y - y});
    if (NSEqualPoints(old, _offset))
        NSView::scrollWheel(event);
}
