#include "PageList.h"

#include "Page.h"
#include "Text.h"

#include <AppKit/NSEvent.h>
#include <AppKit/NSTrackingArea.h>
#include <KorvidAppKit/ZRGraphics.h>

#include <cmath>

namespace {

constexpr CGFloat kRowHeight = 32;
/// Above the first row, with the list's own title.
constexpr CGFloat kTop = 64;
constexpr CGFloat kBottom = 12;
/// Between a row and the sides of the list.
constexpr CGFloat kSide = 10;
constexpr CGFloat kTextIndent = 14;
constexpr CGFloat kRowRadius = 6;

} // namespace

PageList::PageList(std::vector<NSString> titles, std::function<void(std::size_t row)> select)
    : _titles(std::move(titles))
    , _select(std::move(select))
{
    addTrackingArea(make<NSTrackingArea>(NSZeroRect,
        NSTrackingMouseMoved | NSTrackingMouseEnteredAndExited | NSTrackingActiveAlways
            | NSTrackingInVisibleRect,
        this));
}

PageList::~PageList() = default;

void PageList::setSelectedRow(std::size_t row)
{
    if (row == _selectedRow || row >= count())
        return;
    setNeedsDisplayInRect(rectOfRow(_selectedRow));
    _selectedRow = row;
    setNeedsDisplayInRect(rectOfRow(row));
}

void PageList::setHoveredRow(std::optional<std::size_t> row)
{
    if (row == _hoveredRow)
        return;
    for (const auto& changed : {_hoveredRow, row}) {
        if (changed)
            setNeedsDisplayInRect(rectOfRow(*changed));
    }
    _hoveredRow = row;
}

NSRect PageList::rectOfRow(std::size_t row) const
{
    return NSMakeRect(kSide, bounds().size.height - kTop - kRowHeight * CGFloat(row + 1),
        bounds().size.width - 2 * kSide, kRowHeight);
}

std::optional<std::size_t> PageList::rowAt(NSPoint point) const
{
    for (std::size_t row = 0; row < count(); ++row) {
        if (NSPointInRect(point, rectOfRow(row)))
            return row;
    }
    return std::nullopt;
}

NSSize PageList::sizeFor(NSSize) const
{
    return {kWidth, kTop + kRowHeight * CGFloat(count()) + kBottom};
}

// Drawing.

void PageList::drawRect(NSRect dirtyRect)
{
    CGContextRef context = ZRGraphics::sharedContext();
    CGContextSetFillColorWithColor(context, galleryCGColor("zel-button-bg"));
    CGContextFillRect(context, dirtyRect);
    const NSRect bounds = this->bounds();
    CGContextSetFillColorWithColor(context, galleryCGColor("zel-hairline-solid"));
    CGContextFillRect(context, NSMakeRect(NSMaxX(bounds) - 1, 0, 1, bounds.size.height));

    drawLabel(context, "KorvidAppKit", {kSide + kTextIndent, NSMaxY(bounds) - 40}, kListTitleText);
    for (std::size_t row = 0; row < count(); ++row) {
        if (NSIntersectsRect(rectOfRow(row), dirtyRect))
            drawRow(context, row);
    }
}

void PageList::drawRow(CGContextRef context, std::size_t row) const
{
    const bool isSelected = row == _selectedRow;
    const TextStyle& style = isSelected ? (_isFocused ? kFocusedItemText : kSelectedItemText)
        : row == _hoveredRow            ? kHoveredItemText
                                        : kItemText;
    const NSRect rect = rectOfRow(row);
    if (isSelected || row == _hoveredRow) {
        const auto outline =
            adopt(CGPathCreateWithRoundedRect(NSInsetRect(rect, 0, 1), kRowRadius, kRowRadius, nullptr));
        CGContextSetFillColorWithColor(context, galleryCGColor(style.ground));
        CGContextAddPath(context, outline);
        CGContextFillPath(context);
    }
    if (isSelected) {
        const auto mark = adopt(
            CGPathCreateWithRoundedRect({{NSMinX(rect) + 4, NSMinY(rect) + 8}, {3, 16}}, 1.5, 1.5, nullptr));
        CGContextSetFillColorWithColor(context, galleryCGColor("zel-blue-highlight"));
        CGContextAddPath(context, mark);
        CGContextFillPath(context);
    }
    const CGFloat room = rect.size.width - 2 * kTextIndent;
    drawLabel(context, shortenedText(_titles[row], style, room),
        {NSMinX(rect) + kTextIndent, NSMinY(rect) + 11}, style);
}

// Events.

bool PageList::becomeFirstResponder()
{
    _isFocused = true;
    setNeedsDisplayInRect(rectOfRow(_selectedRow));
    return true;
}

bool PageList::resignFirstResponder()
{
    _isFocused = false;
    setNeedsDisplayInRect(rectOfRow(_selectedRow));
    return true;
}

void PageList::userSelects(std::size_t row)
{
    if (row == _selectedRow || row >= count())
        return;
    setSelectedRow(row);
    _select(row);
}

void PageList::mouseDown(NSEvent* event)
{
    if (const auto row = rowAt(convertPointFromView(event->locationInWindow(), nullptr)))
        userSelects(*row);
}

void PageList::mouseMoved(NSEvent* event)
{
    setHoveredRow(rowAt(convertPointFromView(event->locationInWindow(), nullptr)));
}

void PageList::mouseExited(NSEvent*)
{
    setHoveredRow(std::nullopt);
}

void PageList::keyDown(NSEvent* event)
{
    const NSString& characters = event->charactersIgnoringModifiers();
    switch (characters.length() == 1 ? characters.characterAtIndex(0) : 0) {
    case NSUpArrowFunctionKey:
        if (_selectedRow > 0)
            userSelects(_selectedRow - 1);
        return;
    case NSDownArrowFunctionKey:
        return userSelects(_selectedRow + 1);
    case NSHomeFunctionKey:
        return userSelects(0);
    case NSEndFunctionKey:
        return userSelects(count() - 1);
    default:
        NSView::keyDown(event);
    }
}
