#pragma once

#include <AppKit/NSView.h>

#include <functional>
#include <optional>

/// The part of a content that is visible along one axis, in points from its start.
struct ScrollRange {
    CGFloat offset = 0;  ///< of the visible part's start
    CGFloat visible = 0; ///< length of the visible part
    CGFloat total = 0;   ///< length of the content

    /// The largest offset: the content's end is visible. 0 when all of it is.
    CGFloat maximum() const;
    /// `value` within 0 and `maximum()`, on a whole point; NaN counts as 0.
    CGFloat clamped(CGFloat value) const;

    bool operator==(const ScrollRange&) const = default;
};

/// A thin bar without a ground, with a knob for the visible part. Hidden while all is visible. Drag the knob,
/// or press beside it to scroll by a page.
class ScrollBar : public NSView {
public:
    enum class Axis {
        Horizontal, ///< offsets count from the left
        Vertical,   ///< offsets count from the top
    };
    /// Width of the bar, which lies over the content.
    static constexpr CGFloat kWidth = 12;

    /// `scrollTo` is called with the offset that the user asks for, which may be out of range.
    ScrollBar(Axis axis, std::function<void(CGFloat offset)> scrollTo);

    const ScrollRange& range() const { return _range; }
    void setRange(const ScrollRange& range);

    /// The place of the knob within the bounds.
    NSRect knob() const;

    void drawRect(NSRect dirtyRect) override;
    void mouseDown(NSEvent* event) override;
    void mouseDragged(NSEvent* event) override;
    void mouseUp(NSEvent* event) override;

protected:
    ~ScrollBar() override;

private:
    CGFloat track() const;
    CGFloat knobLength() const;
    CGFloat position(NSEvent* event) const;

    const Axis _axis;
    const std::function<void(CGFloat)> _scrollTo;
    ScrollRange _range;
    /// From the knob's start to the pointer, while it is dragged.
    std::optional<CGFloat> _grip;
};
