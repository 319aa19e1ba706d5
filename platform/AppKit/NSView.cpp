#include "Host.h"
#include "HostedLayer.h"
#include "PointerTracker.h"
#include "SubviewIndex.h"
#include "SubviewPlaces.h"
#include "ViewLayout.h"
#include "ViewPainter.h"

#include <AppKit/NSAppearance.h>
#include <AppKit/NSApplication.h>
#include <AppKit/NSView.h>
#include <AppKit/NSWindow.h>

#include <algorithm>

NSView::NSView()
    : NSView(NSZeroRect)
{
}

NSView::~NSView()
{
    for (const auto& subview : _subviews) {
        subview->_superview = nullptr;
        subview->setWindow(nullptr);
    }
}

NSResponder* NSView::nextResponder() const
{
    if (_superview)
        return _superview;
    return _window;
}

bool NSView::isDescendantOf(const NSView* view) const
{
    for (const NSView* ancestor = this; ancestor; ancestor = ancestor->_superview) {
        if (ancestor == view)
            return true;
    }
    return false;
}

void NSView::addSubview(RetainPtr<NSView> view)
{
    addSubview(std::move(view), NSWindowAbove, nullptr);
}

void NSView::addSubview(RetainPtr<NSView> view, NSWindowOrderingMode place, NSView* other)
{
    if (!view || isDescendantOf(view))
        return;

    if (view->_superview && view->_superview != this && view->_superview->_layout)
        view->_superview->_layout->removeConstraintsOf(view);
    view->detach();
    auto position = other ? std::find(_subviews.begin(), _subviews.end(), other) : _subviews.end();
    if (position == _subviews.end())
        position = place == NSWindowBelow ? _subviews.begin() : _subviews.end();
    else if (place == NSWindowAbove)
        ++position;
    _subviews.insert(position, view);
    view->_superview = this;
    if (_subviewIndex)
        _subviewIndex->add(*view);
    const bool isNew = view->_window != _window;
    if (view->_layout)
        setNeedsLayout(true); // for the constraints on its own size
    view->setWindow(_window);
    if (!view->_isHidden)
        setNeedsDisplayInRect(view->_frame);
    if (isNew && view->_window)
        view->_window->accessibilityDidChange(*view, HostAccessibilityChange::Shown);
}

void NSView::removeFromSuperview()
{
    const RetainPtr<NSView> keep = this;
    if (_superview && _superview->_layout)
        _superview->_layout->removeConstraintsOf(this);
    detach();
    setWindow(nullptr);
}

/// Removes the view from its superview's subviews or from its window. `_window` stays: a view that only moves
/// within its window neither leaves nor enters it.
void NSView::detach()
{
    if (_window)
        _window->_pointer->viewsDidChange();
    if (NSView* superview = std::exchange(_superview, nullptr)) {
        std::vector<RetainPtr<NSView>>& siblings = superview->_subviews;
        const auto position = std::find(siblings.begin(), siblings.end(), this);
        const RetainPtr<NSView> keep = std::move(*position);
        siblings.erase(position);
        if (superview->_subviewIndex)
            superview->_subviewIndex->remove(*this);
        if (!_isHidden)
            superview->setNeedsDisplayInRect(_frame);
    } else if (_window && _window->_contentView == this) {
        const RetainPtr<NSView> keep = std::move(_window->_contentView);
        _window->setNeedsDisplayInRect(_frame);
    }
}

void NSView::setWindow(NSWindow* window)
{
    if (window == _window)
        return;

    const RetainPtr<NSView> keep = this;
    if (_window)
        _window->viewDidLeave(this);
    _window = window;
    _trackingIsCurrent = false;
    if (_window)
        _window->_pointer->viewsDidChange();
    if (needsLayout())
        scheduleLayout();
    viewDidMoveToWindow();
    // viewDidMoveToWindow may have changed the tree.
    const auto subviews = _subviews;
    for (const auto& subview : subviews) {
        if (subview->_superview == this)
            subview->setWindow(_window);
    }
}

void NSView::setHidden(bool hidden)
{
    if (hidden == _isHidden)
        return;
    _isHidden = hidden;
    setNeedsDisplayInSuperview(_frame);
    if (_window)
        _window->accessibilityDidChange(
            *this, hidden ? HostAccessibilityChange::Hidden : HostAccessibilityChange::Shown);
}

bool NSView::isHiddenOrHasHiddenAncestor() const
{
    for (const NSView* view = this; view; view = view->_superview) {
        if (view->_isHidden)
            return true;
    }
    return false;
}

NSView* NSView::hitTest(NSPoint point)
{
    if (_isHidden)
        return nullptr;
    // As superviewFromView converts in the other direction.
    const bool isFlipped = this->isFlipped();
    const bool isMirrored = isFlipped != (_superview && _superview->isFlipped());
    const CGFloat y = isMirrored ? NSMaxY(_frame) - point.y : point.y - NSMinY(_frame);
    const NSPoint inside{
        (point.x - NSMinX(_frame)) / _scale.width + NSMinX(_bounds), y / _scale.height + NSMinY(_bounds)};
    if (!NSMouseInRect(inside, _bounds, isFlipped))
        return nullptr;
    if (SubviewIndex* const index = subviewIndex()) {
        NSView* const hit = index->hitTest(inside);
        return hit ? hit : this;
    }
    const NSRect around = grownByRounding({inside, NSZeroSize});
    for (auto subview = _subviews.rbegin(); subview != _subviews.rend(); ++subview) {
        if (!touch((*subview)->_frame, around) && !overridesHitTest(**subview))
            continue;
        if (NSView* hit = (*subview)->hitTest(inside))
            return hit;
    }
    return this;
}

/// The index of the subviews; null while there are so few that a search through all of them is faster.
NSView::SubviewIndex* NSView::subviewIndex()
{
    constexpr std::size_t kFew = 16;
    if (_subviews.size() <= kFew)
        return nullptr;
    if (!_subviewIndex)
        _subviewIndex = std::make_unique<SubviewIndex>(*this);
    return _subviewIndex.get();
}

bool NSView::performKeyEquivalent(NSEvent* event)
{
    if (!event)
        return false;
    const auto subviews = _subviews; // a key may change the tree
    return std::any_of(subviews.rbegin(), subviews.rend(), [&](const RetainPtr<NSView>& subview) {
        return !subview->_isHidden && subview->performKeyEquivalent(event);
    });
}

bool NSView::acceptsFirstMouse(NSEvent*)
{
    return true;
}

void NSView::setToolTip(NSString toolTip)
{
    _toolTip = std::move(toolTip);
}

NSAppearance* NSView::effectiveAppearance() const
{
    // The appearance of an image may be another one than the application's.
    if (NSAppearance* const drawn = ViewPainter::currentAppearance())
        return drawn;
    if (_window)
        return _window->effectiveAppearance();
    // Appearances are never destroyed.
    return NSApp ? NSApp->effectiveAppearance() : NSAppearance::appearanceNamed(NSAppearanceNameAqua).get();
}
