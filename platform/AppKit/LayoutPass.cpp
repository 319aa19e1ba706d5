#include "LayoutPass.h"

#include "ViewLayout.h"

#include <Foundation/NSLog.h>

#include <algorithm>
#include <cmath>

namespace {

/// In points; less is a rounding error.
constexpr double kTolerance = 1e-6;

/// By how much a relation of `value` to 0 does not hold.
double violation(NSLayoutRelation relation, double value)
{
    switch (relation) {
    case NSLayoutRelationLessThanOrEqual:
        return std::max(value, 0.0);
    case NSLayoutRelationGreaterThanOrEqual:
        return std::max(-value, 0.0);
    case NSLayoutRelationEqual:
        return std::fabs(value);
    }
    return 0;
}

LinearExpression sum(LinearExpression a, const LinearExpression& b, double factor)
{
    a.add(b, factor);
    return a;
}

} // namespace

LayoutPass::LayoutPass(NSView& view)
    : _view(view)
{
    const auto constraints = this->constraints();
    for (const NSLayoutConstraint* constraint : constraints) {
        addBox(*constraint->firstItem());
        if (const RetainPtr<NSView> second = constraint->secondItem())
            addBox(*second);
    }
    for (NSLayoutConstraint* constraint : constraints)
        addRule(*constraint);
    for (const Box& box : _boxes)
        addIntrinsicSize(box);
    std::stable_sort(
        _rules.begin(), _rules.end(), [](const Rule& a, const Rule& b) { return a.priority > b.priority; });
}

/// The view's own constraints, then those that subviews hold for themselves. Only such as have an effect.
std::vector<NSLayoutConstraint*> LayoutPass::constraints() const
{
    std::vector<NSLayoutConstraint*> found;
    const auto hasEffect = [](const NSLayoutConstraint& constraint) {
        const bool hasSecond = constraint.secondAttribute() != NSLayoutAttributeNotAnAttribute;
        return constraint.firstItem() && constraint.firstAttribute() != NSLayoutAttributeNotAnAttribute
            && hasSecond == bool(constraint.secondItem());
    };
    if (_view._layout) {
        for (const auto& constraint : _view._layout->constraints) {
            if (hasEffect(*constraint))
                found.push_back(constraint.get());
        }
    }
    for (const auto& subview : _view._subviews) {
        if (!subview->_layout)
            continue;
        for (const auto& constraint : subview->_layout->constraints) {
            const RetainPtr<NSView> second = constraint->secondItem();
            if (hasEffect(*constraint) && constraint->firstItem() == subview
                && (!second || second == subview))
                found.push_back(constraint.get());
        }
    }
    return found;
}

void LayoutPass::addBox(NSView& view)
{
    if (!_boxOf.emplace(&view, _boxes.size()).second)
        return;
    const NSRect bounds = _view.bounds();
    const NSRect rect = &view == &_view ? bounds : view.frame();
    Box box{&view, NSMinX(rect) - NSMinX(bounds),
        _view.isFlipped() ? NSMinY(rect) - NSMinY(bounds) : NSMaxY(bounds) - NSMaxY(rect), 0, 0, {}};
    box.right = box.left + rect.size.width;
    box.bottom = box.top + rect.size.height;
    if (&view != &_view && !view.translatesAutoresizingMaskIntoConstraints()) {
        box.firstVariable = _variables;
        _variables += kEdges;
    }
    _boxes.push_back(std::move(box));
}

LinearExpression LayoutPass::edge(const Box& box, Edge edge) const
{
    if (!box.firstVariable) {
        const CGFloat given[] = {box.left, box.top, box.right, box.bottom};
        return LinearExpression(given[edge]);
    }
    LinearExpression expression;
    expression.add(*box.firstVariable + edge, 1);
    return expression;
}

LinearExpression LayoutPass::quantity(const NSView* view, NSLayoutAttribute attribute) const
{
    if (attribute == NSLayoutAttributeNotAnAttribute)
        return LinearExpression();
    const Box& box = _boxes[_boxOf.at(view)];
    const auto middle = [](const LinearExpression& a, const LinearExpression& b) {
        return sum(sum(LinearExpression(), a, 0.5), b, 0.5);
    };
    switch (attribute) {
    case NSLayoutAttributeLeft:
    case NSLayoutAttributeLeading:
        return edge(box, kLeft);
    case NSLayoutAttributeRight:
    case NSLayoutAttributeTrailing:
        return edge(box, kRight);
    case NSLayoutAttributeTop:
        return edge(box, kTop);
    case NSLayoutAttributeBottom:
        return edge(box, kBottom);
    case NSLayoutAttributeWidth:
        return sum(edge(box, kRight), edge(box, kLeft), -1);
    case NSLayoutAttributeHeight:
        return sum(edge(box, kBottom), edge(box, kTop), -1);
    case NSLayoutAttributeCenterX:
        return middle(edge(box, kLeft), edge(box, kRight));
    case NSLayoutAttributeCenterY:
        return middle(edge(box, kTop), edge(box, kBottom));
    case NSLayoutAttributeNotAnAttribute:
        break;
    }
    return LinearExpression();
}

void LayoutPass::addRule(NSLayoutConstraint& constraint)
{
    const RetainPtr<NSView> first = constraint.firstItem(), second = constraint.secondItem();
    LinearExpression expression = quantity(first, constraint.firstAttribute());
    expression.add(quantity(second, constraint.secondAttribute()), -constraint.multiplier());
    expression.add(LinearExpression(constraint.constant()), -1);
    if (expression.terms().empty())
        return; // all is given
    _rules.push_back({std::move(expression), constraint.relation(), constraint.priority(), &constraint,
        constraint.relation() == NSLayoutRelationEqual});
}

void LayoutPass::addIntrinsicSize(const Box& box)
{
    if (!box.firstVariable)
        return;
    const NSSize size = box.view->intrinsicContentSize();
    const auto addSide = [&](NSLayoutAttribute attribute, CGFloat length) {
        if (!(length >= 0))
            return; // no preference
        const LinearExpression excess = sum(quantity(box.view, attribute), LinearExpression(length), -1);
        _rules.push_back(
            {excess, NSLayoutRelationGreaterThanOrEqual, NSLayoutPriorityDefaultHigh, nullptr, false});
        _rules.push_back({excess, NSLayoutRelationEqual, NSLayoutPriorityDefaultLow, nullptr, true});
    };
    addSide(NSLayoutAttributeWidth, size.width);
    addSide(NSLayoutAttributeHeight, size.height);
}

/// The solution of all equations; what they leave open is as it was, sizes before positions.
LinearSystem LayoutPass::solved() const
{
    LinearSystem system(_variables);
    for (const Rule& rule : _rules) {
        if (rule.isEquation)
            system.add(rule.expression);
    }
    const auto stay = [&](const LinearExpression& expression, CGFloat value) {
        system.add(sum(expression, LinearExpression(value), -1));
    };
    for (const Box& box : _boxes) {
        if (!box.firstVariable)
            continue;
        stay(quantity(box.view, NSLayoutAttributeWidth), box.right - box.left);
        stay(quantity(box.view, NSLayoutAttributeHeight), box.bottom - box.top);
        stay(edge(box, kLeft), box.left);
        stay(edge(box, kTop), box.top);
    }
    return system;
}

/// Of the violated inequalities of the highest priority, the one that is violated most. Null without one.
LayoutPass::Rule* LayoutPass::mostImportantViolated(const LinearSystem& system)
{
    Rule* found = nullptr;
    double greatest = kTolerance;
    for (Rule& rule : _rules) {
        if (found && rule.priority < found->priority)
            break;
        if (rule.isEquation)
            continue;
        const double amount = violation(rule.relation, system.valueOf(rule.expression));
        if (amount > greatest) {
            found = &rule;
            greatest = amount;
        }
    }
    return found;
}

void LayoutPass::logConflicts(const LinearSystem& system) const
{
    for (const Rule& rule : _rules) {
        if (!rule.constraint || rule.priority < NSLayoutPriorityRequired
            || rule.constraint->_conflictIsLogged)
            continue;
        if (violation(rule.relation, system.valueOf(rule.expression)) <= kTolerance)
            continue;
        rule.constraint->_conflictIsLogged = true;
        NSLog("A required constraint contradicts earlier ones and is ignored: %@",
            rule.constraint->description());
    }
}

void LayoutPass::setFrame(const Box& box, const LinearSystem& system) const
{
    const auto value = [&](Edge side) { return system.valueOf(edge(box, side)); };
    const CGFloat left = value(kLeft), top = value(kTop);
    const CGFloat width = std::max(value(kRight) - left, 0.0), height = std::max(value(kBottom) - top, 0.0);
    const NSRect bounds = _view.bounds();
    const NSRect exact = NSMakeRect(NSMinX(bounds) + left,
        _view.isFlipped() ? NSMinY(bounds) + top : NSMaxY(bounds) - top - height, width, height);

    const NSRect pixels = _view.convertRectToBacking(exact);
    const CGFloat pixelLeft = std::round(NSMinX(pixels)), pixelBottom = std::round(NSMinY(pixels));
    box.view->setFrame(_view.convertRectFromBacking(NSMakeRect(pixelLeft, pixelBottom,
        std::round(NSMaxX(pixels)) - pixelLeft, std::round(NSMaxY(pixels)) - pixelBottom)));
}

void LayoutPass::run()
{
    LinearSystem system = solved();
    while (Rule* const rule = mostImportantViolated(system)) {
        rule->isEquation = true;
        system = solved();
    }
    logConflicts(system);
    for (const Box& box : _boxes) {
        if (box.firstVariable && box.view->superview() == &_view)
            setFrame(box, system);
    }
}
