#pragma once

#include "LinearSystem.h"

#include <AppKit/NSLayoutConstraint.h>

#include <optional>
#include <unordered_map>
#include <vector>

/// Computes the frames of a view's subviews from the constraints that it and they hold: equations over the
/// four edges of each subview, added from the most important one down. Inequalities are left out at first;
/// as long as one is violated, the most important of them counts as an equation.
class LayoutPass {
public:
    explicit LayoutPass(NSView& view);

    /// Sets the frames.
    void run();

private:
    /// A view's place from the top left corner of the superview, y downward.
    struct Box {
        RetainPtr<NSView> view;
        CGFloat left, top, right, bottom;
        std::optional<std::size_t> firstVariable; ///< of the four edges; nothing when they are given
    };
    enum Edge : std::size_t { kLeft, kTop, kRight, kBottom, kEdges };

    /// A relation of an expression to 0.
    struct Rule {
        LinearExpression expression;
        NSLayoutRelation relation;
        NSLayoutPriority priority;
        NSLayoutConstraint* constraint; ///< null for a rule of an intrinsic size
        bool isEquation;                ///< an inequality may become one
    };

    std::vector<NSLayoutConstraint*> constraints() const;
    void addBox(NSView& view);
    void addRule(NSLayoutConstraint& constraint);
    void addIntrinsicSize(const Box& box);
    LinearExpression edge(const Box& box, Edge edge) const;
    LinearExpression quantity(const NSView* view, NSLayoutAttribute attribute) const;
    LinearSystem solved() const;
    Rule* mostImportantViolated(const LinearSystem& system);
    void logConflicts(const LinearSystem& system) const;
    void setFrame(const Box& box, const LinearSystem& system) const;

    NSView& _view;
    std::vector<Box> _boxes; ///< of the views that constraints name
    std::unordered_map<const NSView*, std::size_t> _boxOf;
    std::size_t _variables = 0;
    std::vector<Rule> _rules; ///< by descending priority
};
