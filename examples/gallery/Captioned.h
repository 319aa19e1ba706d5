#pragma once

#include "Page.h"

/// A view with a caption below it, on the background of the page. The caption is left out where the view is
/// too small for it.
class CaptionedView : public NSView {
public:
    /// Lines are broken to fit, at most `lines` of them.
    CaptionedView(RetainPtr<NSView> view, NSString caption, std::size_t lines);

    /// The view above the caption. Borrowed.
    NSView* view() const { return subviews().front().get(); }
    const NSString& caption() const { return _caption; }
    /// The lines that are drawn; none where there is no room.
    std::vector<NSString> captionLines() const;

    void resizeSubviewsWithOldSize(NSSize oldSize) override;
    void drawRect(NSRect dirtyRect) override;

protected:
    ~CaptionedView() override;

private:
    CGFloat captionHeight() const;

    const NSString _caption;
    const std::size_t _maximumLines;
};
