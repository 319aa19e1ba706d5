#include "AccessibleView.h"

#include "Conversions.h"
#include "WindowWidget.h"

#include <Foundation/NSNumber.h>
#include <QWindow>

namespace {

void appendElementsIn(NSView* view, std::vector<NSView*>& elements)
{
    if (view->isHidden())
        return;
    if (view->isAccessibilityElement()) {
        elements.push_back(view);
        return;
    }
    for (const auto& subview : view->subviews())
        appendElementsIn(subview, elements);
}

bool isChecked(const NSView& view)
{
    const RetainPtr<NSObject> value = view.accessibilityValue();
    const auto* const number = dynamic_cast<const NSNumber*>(value.get());
    return number && number->doubleValue() != 0;
}

} // namespace

std::vector<NSView*> accessibilityElementsIn(NSView* view)
{
    std::vector<NSView*> elements;
    if (view)
        appendElementsIn(view, elements);
    return elements;
}

std::vector<NSView*> accessibilityElementsBelow(const NSView& view)
{
    std::vector<NSView*> elements;
    for (const auto& subview : view.subviews())
        appendElementsIn(subview, elements);
    return elements;
}

NSView* accessibilityElementAround(NSView* view)
{
    while (view && !view->isAccessibilityElement())
        view = view->superview();
    return view;
}

bool AccessibleView::isValid() const
{
    const RetainPtr<NSView> view = _view.lock();
    return view && view->window();
}

QWindow* AccessibleView::window() const
{
    return _widget.window()->windowHandle();
}

// The tree.

QAccessibleInterface* AccessibleView::parent() const
{
    const RetainPtr<NSView> view = _view.lock();
    if (NSView* const element = accessibilityElementAround(view ? view->superview() : nullptr))
        return _widget.accessibleViews().interfaceOf(element);
    return QAccessible::queryAccessibleInterface(&_widget);
}

std::vector<NSView*> AccessibleView::children() const
{
    const RetainPtr<NSView> view = _view.lock();
    return view ? accessibilityElementsBelow(*view) : std::vector<NSView*>();
}

QAccessibleInterface* AccessibleView::child(int index) const
{
    return _widget.accessibleViews().interfaceAt(children(), index);
}

int AccessibleView::childCount() const
{
    return int(children().size());
}

int AccessibleView::indexOfChild(const QAccessibleInterface* child) const
{
    return AccessibleViews::indexOf(child, children());
}

QAccessibleInterface* AccessibleView::childAt(int x, int y) const
{
    const RetainPtr<NSView> view = _view.lock();
    NSView* const hit = view ? _widget.accessibleViews().elementAt(x, y) : nullptr;
    return hit && hit != view && hit->isDescendantOf(view) ? _widget.accessibleViews().interfaceOf(hit)
                                                           : nullptr;
}

QAccessibleInterface* AccessibleView::focusChild() const
{
    const RetainPtr<NSView> view = _view.lock();
    NSView* const focused = view ? _widget.accessibleViews().focusedElement() : nullptr;
    return focused && focused->isDescendantOf(view) ? _widget.accessibleViews().interfaceOf(focused)
                                                    : nullptr;
}

// What it is.

QString AccessibleView::text(QAccessible::Text kind) const
{
    const RetainPtr<NSView> view = _view.lock();
    if (!view)
        return {};
    const NSString label = view->accessibilityLabel();
    const NSString description = view->accessibilityValueDescription();
    switch (kind) {
    case QAccessible::Name:
        if (!label && view->accessibilityRole() == NSAccessibilityStaticTextRole)
            return text(QAccessible::Value); // the name of a label is its text
        return toQt(label ? label : view->toolTip());
    case QAccessible::Value:
        if (const RetainPtr<NSObject> value = view->accessibilityValue(); value && !description)
            return toQt(value->description());
        return toQt(description);
    case QAccessible::Description:
        // Bridges report values as numbers only; words of theirs reach the user this way.
        if (description)
            return toQt(description);
        return label ? toQt(view->toolTip()) : QString();
    default:
        return {};
    }
}

QRect AccessibleView::rect() const
{
    const RetainPtr<NSView> view = _view.lock();
    if (!view)
        return {};
    const NSRect area = view->convertRectToView(view->bounds(), nullptr);
    const QRectF inWidget(NSMinX(area), _widget.height() - NSMaxY(area), area.size.width, area.size.height);
    return inWidget.toAlignedRect().translated(_widget.mapToGlobal(QPoint(0, 0)));
}

QAccessible::Role AccessibleView::role() const
{
    const RetainPtr<NSView> view = _view.lock();
    const NSAccessibilityRole role = view ? view->accessibilityRole() : NSAccessibilityRole();
    if (role == NSAccessibilityCheckBoxRole)
        return QAccessible::CheckBox;
    if (role == NSAccessibilityButtonRole)
        return QAccessible::Button;
    if (role == NSAccessibilityColorWellRole)
        return QAccessible::ColorChooser;
    if (role == NSAccessibilityStaticTextRole)
        return QAccessible::StaticText;
    if (role == NSAccessibilityGroupRole)
        return QAccessible::Grouping;
    return QAccessible::NoRole;
}

QAccessible::State AccessibleView::state() const
{
    QAccessible::State state;
    const RetainPtr<NSView> view = _view.lock();
    if (!view || !view->window()) {
        state.invalid = true;
        return state;
    }
    state.disabled = !view->isAccessibilityEnabled();
    state.focusable = view->acceptsFirstResponder();
    state.focused = view->isAccessibilityFocused() && _widget.hasFocus();
    state.invisible = !_widget.isVisible() || view->isHiddenOrHasHiddenAncestor();
    state.offscreen = NSIsEmptyRect(view->visibleRect());
    if (role() == QAccessible::CheckBox) {
        state.checkable = true;
        state.checked = isChecked(*view);
    }
    return state;
}

// What can be done with it.

void* AccessibleView::interface_cast(QAccessible::InterfaceType type)
{
    return type == QAccessible::ActionInterface ? static_cast<QAccessibleActionInterface*>(this) : nullptr;
}

/// The action that operates the element; empty if nothing does.
QString AccessibleView::pressActionName() const
{
    switch (role()) {
    case QAccessible::CheckBox:
        return toggleAction();
    case QAccessible::Button:
        return pressAction();
    default:
        return {};
    }
}

QStringList AccessibleView::actionNames() const
{
    QStringList names;
    const RetainPtr<NSView> view = _view.lock();
    if (!view)
        return names;
    if (const QString press = pressActionName(); !press.isEmpty() && view->isAccessibilityEnabled())
        names << press;
    if (view->acceptsFirstResponder())
        names << setFocusAction();
    return names;
}

void AccessibleView::doAction(const QString& name)
{
    // Either call may delete this interface.
    const RetainPtr<NSView> view = _view.lock();
    if (!view || name.isEmpty())
        return;
    if (name == setFocusAction())
        view->setAccessibilityFocused(true);
    else if (name == pressActionName())
        view->accessibilityPerformPress();
}
