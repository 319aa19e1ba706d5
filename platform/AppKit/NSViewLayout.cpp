#include "LayoutPass.h"
#include "ViewLayout.h"

#include <AppKit/NSWindow.h>
#include <Foundation/NSLog.h>

#include <algorithm>
#include <utility>

NSView::Layout::~Layout()
{
    for (const auto& constraint : constraints)
        constraint->_holder = nullptr;
}

void NSView::Layout::removeConstraintsOf(const NSView* view)
{
    std::erase_if(constraints, [view](const RetainPtr<NSLayoutConstraint>& constraint) {
        if (!constraint->concerns(view))
            return false;
        constraint->_holder = nullptr;
        return true;
    });
}

NSView::Layout& NSView::ensureLayout()
{
    if (!_layout)
        _layout = std::make_unique<Layout>();
    return *_layout;
}

std::vector<RetainPtr<NSLayoutConstraint>> NSView::constraints() const
{
    return _layout ? _layout->constraints : std::vector<RetainPtr<NSLayoutConstraint>>();
}

bool NSView::mayHold(const NSLayoutConstraint& constraint) const
{
    const auto isNear = [this](const RetainPtr<NSView>& item) {
        return !item || item == this || item->_superview == this;
    };
    return isNear(constraint.firstItem()) && isNear(constraint.secondItem());
}

void NSView::addConstraint(RetainPtr<NSLayoutConstraint> constraint)
{
    if (!constraint || constraint->_holder == this)
        return;
    if (!mayHold(*constraint)) {
        NSLog("A view can only hold constraints between itself and its subviews, not %@",
            constraint->description());
        return;
    }
    if (NSView* const holder = constraint->_holder)
        holder->removeConstraint(constraint);
    constraint->_holder = this;
    NSLayoutConstraint* const added = constraint;
    ensureLayout().constraints.push_back(std::move(constraint));
    added->didChange();
}

void NSView::addConstraints(const std::vector<RetainPtr<NSLayoutConstraint>>& constraints)
{
    for (const auto& constraint : constraints)
        addConstraint(constraint);
}

void NSView::removeConstraint(NSLayoutConstraint* constraint)
{
    if (!constraint || constraint->_holder != this)
        return;
    const RetainPtr<NSLayoutConstraint> keep = constraint;
    constraint->didChange();
    constraint->_holder = nullptr;
    std::erase(_layout->constraints, keep);
}

void NSView::removeConstraints(const std::vector<RetainPtr<NSLayoutConstraint>>& constraints)
{
    for (const auto& constraint : constraints)
        removeConstraint(constraint);
}

void NSView::setTranslatesAutoresizingMaskIntoConstraints(bool translates)
{
    if (translates == _translatesAutoresizingMask)
        return;
    _translatesAutoresizingMask = translates;
    if (_superview && (_superview->_layout || _layout))
        _superview->setNeedsLayout(true);
}

bool NSView::needsLayout() const
{
    return _layout && _layout->isNeeded;
}

void NSView::setNeedsLayout(bool needsLayout)
{
    if (!needsLayout) {
        if (_layout)
            _layout->isNeeded = false;
        return;
    }
    if (std::exchange(ensureLayout().isNeeded, true))
        return;
    scheduleLayout();
}

void NSView::scheduleLayout()
{
    if (_window)
        _window->scheduleLayout();
}

void NSView::subviewFrameDidChange(NSView* view)
{
    // Only frames that are given have an effect on others.
    if (_layout && !_layout->isRunning && view && view->_translatesAutoresizingMask)
        setNeedsLayout(true);
}

void NSView::layoutSubtreeIfNeeded()
{
    const RetainPtr<NSView> keep = this;
    if (needsLayout())
        layOutConstraints();
    const auto subviews = _subviews;
    for (const auto& subview : subviews)
        subview->layoutSubtreeIfNeeded();
}

void NSView::layOutConstraints()
{
    if (_layout->isRunning)
        return;
    _layout->isNeeded = false;
    _layout->isRunning = true;
    LayoutPass(*this).run();
    _layout->isRunning = false;
}
