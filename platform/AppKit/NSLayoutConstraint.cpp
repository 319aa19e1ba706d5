#include "CoreGraphics/FiniteGeometry.h"
#include "ViewLayout.h"

#include <Foundation/NSLog.h>

#include <algorithm>
#include <cmath>

namespace {

const char* nameOf(NSLayoutAttribute attribute)
{
    switch (attribute) {
    case NSLayoutAttributeLeft:
        return "left";
    case NSLayoutAttributeRight:
        return "right";
    case NSLayoutAttributeTop:
        return "top";
    case NSLayoutAttributeBottom:
        return "bottom";
    case NSLayoutAttributeLeading:
        return "leading";
    case NSLayoutAttributeTrailing:
        return "trailing";
    case NSLayoutAttributeWidth:
        return "width";
    case NSLayoutAttributeHeight:
        return "height";
    case NSLayoutAttributeCenterX:
        return "centerX";
    case NSLayoutAttributeCenterY:
        return "centerY";
    case NSLayoutAttributeNotAnAttribute:
        break;
    }
    return "nothing";
}

const char* signOf(NSLayoutRelation relation)
{
    if (relation == NSLayoutRelationEqual)
        return "==";
    return relation == NSLayoutRelationLessThanOrEqual ? "<=" : ">=";
}

} // namespace

NSLayoutConstraint::NSLayoutConstraint(NSView* view1, NSLayoutAttribute attribute1, NSLayoutRelation relation,
    NSView* view2, NSLayoutAttribute attribute2, CGFloat multiplier, CGFloat constant)
    : _firstItem(view1)
    , _secondItem(view2)
    , _firstAttribute(attribute1)
    , _secondAttribute(attribute2)
    , _relation(relation)
    , _multiplier(finiteOrZero(multiplier))
    , _constant(finiteOrZero(constant))
{
}

NSLayoutConstraint::~NSLayoutConstraint() = default;

RetainPtr<NSLayoutConstraint> NSLayoutConstraint::constraintWithItem(NSView* view1,
    NSLayoutAttribute attribute1, NSLayoutRelation relation, NSView* view2, NSLayoutAttribute attribute2,
    CGFloat multiplier, CGFloat constant)
{
    return adopt(
        new NSLayoutConstraint(view1, attribute1, relation, view2, attribute2, multiplier, constant));
}

bool NSLayoutConstraint::concerns(const NSView* view) const
{
    return firstItem() == view || secondItem() == view;
}

/// Schedules the layout: of the holder, and of its superview if the constraint is about the holder itself.
void NSLayoutConstraint::didChange()
{
    _conflictIsLogged = false;
    if (!_holder)
        return;
    _holder->setNeedsLayout(true);
    if (_holder->superview() && firstItem() == _holder)
        _holder->superview()->setNeedsLayout(true);
}

void NSLayoutConstraint::setConstant(CGFloat constant)
{
    constant = finiteOrZero(constant);
    if (constant == _constant)
        return;
    _constant = constant;
    didChange();
}

void NSLayoutConstraint::setPriority(NSLayoutPriority priority)
{
    priority = priority > 1 ? std::min(priority, NSLayoutPriorityRequired) : 1; // NaN too
    if (priority == _priority)
        return;
    _priority = priority;
    didChange();
}

void NSLayoutConstraint::setActive(bool active)
{
    if (active == isActive())
        return;
    if (!active)
        return _holder->removeConstraint(this);

    const RetainPtr<NSView> first = firstItem();
    if (!first)
        return;
    for (NSView* view : {first.get(), first->superview()}) {
        if (view && view->mayHold(*this))
            return view->addConstraint(this);
    }
    NSLog("No view contains both items of %@", description());
}

void NSLayoutConstraint::activateConstraints(const std::vector<RetainPtr<NSLayoutConstraint>>& constraints)
{
    for (const auto& constraint : constraints) {
        if (constraint)
            constraint->setActive(true);
    }
}

void NSLayoutConstraint::deactivateConstraints(const std::vector<RetainPtr<NSLayoutConstraint>>& constraints)
{
    for (const auto& constraint : constraints) {
        if (constraint)
            constraint->setActive(false);
    }
}

NSString NSLayoutConstraint::description() const
{
    const RetainPtr<NSView> first = firstItem();
    const RetainPtr<NSView> second = secondItem();
    const NSString left =
        NSString::stringWithFormat("%@.%s %s ", first, nameOf(_firstAttribute), signOf(_relation));
    const NSString right = second ? NSString::stringWithFormat(
                               "%@.%s * %g + %g", second, nameOf(_secondAttribute), _multiplier, _constant)
                                  : NSString::stringWithFormat("%g", _constant);
    return NSString::stringWithFormat("%@%@ (priority %g)", left, right, double(_priority));
}
