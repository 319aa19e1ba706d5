#pragma once

#include <AppKit/NSView.h>

/// A quantity of a view's rectangle. Left and right are the absolute sides; leading and trailing are the same
/// two here. Top and bottom are those on the screen, whether the view is flipped or not, and positions grow
/// to the right and downward: `bottom == superview.bottom - 10` is 10 points above it.
///
/// Differs: there are no baselines, and text runs from left to right.
enum NSLayoutAttribute : NSInteger {
    NSLayoutAttributeNotAnAttribute = 0, ///< no second item: the constant alone counts
    NSLayoutAttributeLeft = 1,
    NSLayoutAttributeRight = 2,
    NSLayoutAttributeTop = 3,
    NSLayoutAttributeBottom = 4,
    NSLayoutAttributeLeading = 5,
    NSLayoutAttributeTrailing = 6,
    NSLayoutAttributeWidth = 7,
    NSLayoutAttributeHeight = 8,
    NSLayoutAttributeCenterX = 9,
    NSLayoutAttributeCenterY = 10,
};

/// How the first item's quantity relates to the second one's.
enum NSLayoutRelation : NSInteger {
    NSLayoutRelationLessThanOrEqual = -1,
    NSLayoutRelationEqual = 0,
    NSLayoutRelationGreaterThanOrEqual = 1,
};

/// Which of two constraints that cannot both hold does: the one of higher priority, and among equals the one
/// that was added first. From 1 to 1000.
using NSLayoutPriority = float;

/// A required constraint: where it cannot hold, a message is logged.
inline constexpr NSLayoutPriority NSLayoutPriorityRequired = 1000;
/// The priority with which a view resists becoming smaller than its intrinsic size.
inline constexpr NSLayoutPriority NSLayoutPriorityDefaultHigh = 750;
/// The priority with which a view resists becoming larger than its intrinsic size.
inline constexpr NSLayoutPriority NSLayoutPriorityDefaultLow = 250;

/// A linear relation between the frames of two views, or a fixed size of one:
///
///     first.attribute (==, <=, >=) multiplier * second.attribute + constant
///
/// A view whose `translatesAutoresizingMaskIntoConstraints` is false gets its frame from the constraints of
/// its superview, and from its own ones that name only itself:
///
///     label->setTranslatesAutoresizingMaskIntoConstraints(false);
///     panel->addConstraint(NSLayoutConstraint::constraintWithItem(label, NSLayoutAttributeLeft,
///         NSLayoutRelationEqual, panel, NSLayoutAttributeLeft, 1, 12));
///
/// The superview's own size is given, and so are the frames of its other subviews. Constraints are fulfilled
/// from the highest priority down, in each in the order in which the views hold them; a weaker one that
/// contradicts them has no effect, and of required ones that contradict each other the later is ignored and
/// logged once. What they do not determine stays unchanged, the size rather than the position. A view's
/// intrinsic size counts as two constraints for each side that it has, with the priorities above. Edges are
/// rounded to device pixels; a negative size counts as 0.
///
/// Differs: Apple's resolves contradictions of equal priority below 1000 by a compromise.
///
/// Main thread only.
class KORVID_EXPORT NSLayoutConstraint : public NSObject {
public:
    /// A constraint that no view holds yet. The views are not retained: once one of them is destroyed, the
    /// constraint has no effect. It has none either when `view1` is null, when `attribute1` is
    /// NSLayoutAttributeNotAnAttribute, or when only one of `view2` and `attribute2` is missing. Numbers that
    /// are not finite count as 0.
    static RetainPtr<NSLayoutConstraint> constraintWithItem(NSView* view1, NSLayoutAttribute attribute1,
        NSLayoutRelation relation, NSView* view2, NSLayoutAttribute attribute2, CGFloat multiplier,
        CGFloat constant);

    /// Null once the view is destroyed.
    RetainPtr<NSView> firstItem() const { return _firstItem.lock(); }
    /// The quantity of the first item.
    NSLayoutAttribute firstAttribute() const { return _firstAttribute; }
    /// How the two sides relate.
    NSLayoutRelation relation() const { return _relation; }
    /// Null without one, and once the view is destroyed.
    RetainPtr<NSView> secondItem() const { return _secondItem.lock(); }
    /// The quantity of the second item; NSLayoutAttributeNotAnAttribute without one.
    NSLayoutAttribute secondAttribute() const { return _secondAttribute; }
    /// The factor of the second item's quantity.
    CGFloat multiplier() const { return _multiplier; }

    /// What is added, in points.
    CGFloat constant() const { return _constant; }
    /// Schedules the layout, unless the value is the same. A number that is not finite counts as 0.
    void setConstant(CGFloat constant);

    /// Default NSLayoutPriorityRequired.
    NSLayoutPriority priority() const { return _priority; }
    /// Clamped to 1 … 1000; NaN counts as 1. Schedules the layout, unless the value is the same.
    ///
    /// Differs: Apple's raises an exception when a constraint that is held becomes required, or no longer is.
    void setPriority(NSLayoutPriority priority);

    /// Whether a view holds the constraint.
    bool isActive() const { return _holder != nullptr; }
    /// True adds the constraint to the view that contains both items: the superview of both, or of one the
    /// other; the first item itself when it is the only one. Logged and ignored when there is no such view.
    /// False removes it from the view that holds it.
    void setActive(bool active);
    /// Calls `setActive(true)` for each, in the order given; null ones are ignored.
    static void activateConstraints(const std::vector<RetainPtr<NSLayoutConstraint>>& constraints);
    /// Calls `setActive(false)` for each, in the order given; null ones are ignored.
    static void deactivateConstraints(const std::vector<RetainPtr<NSLayoutConstraint>>& constraints);

    /// The relation, such as "NSView.right == NSView.right * 1 - 10 (priority 1000)".
    NSString description() const override;

protected:
    ~NSLayoutConstraint() override;

private:
    friend class LayoutPass;
    friend class NSView;

    NSLayoutConstraint(NSView* view1, NSLayoutAttribute attribute1, NSLayoutRelation relation, NSView* view2,
        NSLayoutAttribute attribute2, CGFloat multiplier, CGFloat constant);
    bool concerns(const NSView* view) const;
    void didChange();

    const WeakPtr<NSView> _firstItem;
    const WeakPtr<NSView> _secondItem;
    const NSLayoutAttribute _firstAttribute;
    const NSLayoutAttribute _secondAttribute;
    const NSLayoutRelation _relation;
    const CGFloat _multiplier;
    CGFloat _constant;
    NSLayoutPriority _priority = NSLayoutPriorityRequired;
    NSView* _holder = nullptr; ///< clears this pointer when it is destroyed
    bool _conflictIsLogged = false;
};
