#pragma once

#include "ScrollBar.h"

/// A content that is scrolled, and laid out for what is visible of it.
class ScrolledView : public NSView {
public:
    /// The size for that visible size; in either direction it may be smaller or larger. The area resizes the
    /// content to it, at least to the visible size.
    virtual NSSize sizeFor(NSSize visible) const = 0;

protected:
    ~ScrolledView() override = default;
};

/// Shows a content, from its top left corner, with scroll bars over it where it is larger than the area.
///
/// Resizing the area lays the content out again.
class ScrollArea : public NSView {
public:
    ScrollArea();

    /// Borrowed; null at first.
    ScrolledView* content() const { return _content.get(); }
    /// Shows another content, from its top left corner. Null shows none.
    void setContent(RetainPtr<ScrolledView> content);

    /// What is visible of the content: the point at the top left corner of the area, in points from the
    /// content's left and from its top.
    NSPoint offset() const { return _offset; }
    /// Scrolls, as far as there is content.
    void scrollTo(NSPoint offset);
    /// Scrolls by no more than what makes that part of the content visible, in the content's coordinates.
    void scrollToVisible(NSRect rect);
    /// Scrolls as the arrow keys, Page Up, Page Down, Home and End do. False for the character of another
    /// key.
    bool scrollByKey(char16_t key);

    void resizeSubviewsWithOldSize(NSSize oldSize) override;
    /// Scrolls; with Shift, a wheel scrolls sideways. Passes the event on when nothing can be scrolled.
    void scrollWheel(NSEvent* event) override;

protected:
    ~ScrollArea() override;

private:
    ScrollRange range(ScrollBar::Axis axis) const;
    void layOut();

    RetainPtr<ScrolledView> _content;
    RetainPtr<ScrollBar> _horizontal, _vertical;
    NSPoint _offset{};
};
