#pragma once

#include <AppKit/NSView.h>

/// A view that shows a part of a larger one, its document view, and scrolls it with the wheel.
///
///     auto clip = make<NSClipView>(NSMakeRect(0, 0, 300, 200));
///     clip->setDocumentView(longText);
///
/// What it shows is the part of the document at `bounds().origin`. The document keeps its own frame; when
/// that changes, or the size of the clip view does, it scrolls no further than the document reaches. In a
/// clip view that is not flipped, a document that is too small lies at the bottom, in a flipped one at the
/// top.
///
/// Differs: it handles the wheel itself, without an NSScrollView around it. Main thread only.
class KORVID_EXPORT NSClipView : public NSView {
public:
    using NSView::NSView;

    /// Borrowed; null (the default) for none.
    NSView* documentView() const { return _documentView.get(); }
    /// Retains the view, makes it a subview in the place of the old one, and scrolls to the corner of its
    /// frame: the lower left one, or in a flipped clip view the upper left one. Null shows none.
    void setDocumentView(RetainPtr<NSView> view);

    /// The document's frame; without one, NSZeroRect.
    NSRect documentRect() const;
    /// The part of the document that is visible, in its own coordinates; NSZeroRect without one.
    NSRect documentVisibleRect() const;

    /// Scrolls: `point` of these coordinates comes to the corner of the frame, as far as the document
    /// reaches.
    void scrollToPoint(NSPoint point);
    /// The bounds that are used in the place of `bounds`: within the document, as far as that is large
    /// enough. Override it to limit scrolling in another way.
    virtual NSRect constrainBoundsRect(NSRect bounds) const;
    /// Scrolls, sideways with Shift if the wheel has one direction only; by lines, 16 points each, where the
    /// device reports lines. Passes the event on when nothing can be scrolled that way.
    void scrollWheel(NSEvent* event) override;

    void setFrameSize(NSSize size) override;
    void subviewFrameDidChange(NSView* view) override;

protected:
    ~NSClipView() override;

private:
    RetainPtr<NSView> _documentView;
};
