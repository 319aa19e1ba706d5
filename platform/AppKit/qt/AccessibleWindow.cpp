#include "AccessibleWindow.h"

#include "AccessibleView.h"
#include "AppKit/testing/AccessibilityListener.h"
#include "Conversions.h"
#include "WindowWidget.h"

#include <QAccessibleWidget>

#include <algorithm>

namespace {

/// A window as assistive technology sees it: with its elements as children.
class AccessibleWindow final : public QAccessibleWidget {
public:
    explicit AccessibleWindow(WindowWidget& widget)
        : QAccessibleWidget(&widget, QAccessible::Window)
    {
    }

    QAccessible::Role role() const override
    {
        return widget()->isWindow() ? QAccessible::Window : QAccessible::Grouping;
    }
    int childCount() const override { return int(views().elements().size()); }
    QAccessibleInterface* child(int index) const override
    {
        return views().interfaceAt(views().elements(), index);
    }
    int indexOfChild(const QAccessibleInterface* child) const override
    {
        return AccessibleViews::indexOf(child, views().elements());
    }
    QAccessibleInterface* childAt(int x, int y) const override
    {
        return views().interfaceOf(views().elementAt(x, y));
    }
    QAccessibleInterface* focusChild() const override
    {
        return views().interfaceOf(views().focusedElement());
    }
    QAccessible::State state() const override
    {
        QAccessible::State state = QAccessibleWidget::state();
        if (views().focusedElement())
            state.focused = false; // it is the element that has the focus
        return state;
    }

private:
    AccessibleViews& views() const { return static_cast<WindowWidget*>(widget())->accessibleViews(); }
};

QAccessibleInterface* makeAccessibleWindow(const QString&, QObject* object)
{
    auto* const widget = dynamic_cast<WindowWidget*>(object);
    return widget ? new AccessibleWindow(*widget) : nullptr;
}

bool isAnyoneListening()
{
    return QAccessible::isActive() || AccessibilityListener::handler();
}

void notify(QAccessibleEvent& event)
{
    if (const auto handler = AccessibilityListener::handler())
        handler(&event);
    else
        QAccessible::updateAccessibility(&event);
}

} // namespace

void installAccessibleWindows()
{
    QAccessible::installFactory(makeAccessibleWindow);
}

// The interfaces.

void AccessibleViews::clear()
{
    for (const auto& [view, identifier] : std::exchange(_identifiers, {}))
        QAccessible::deleteAccessibleInterface(identifier);
}

void AccessibleViews::forget(NSView& view)
{
    if (const auto node = _identifiers.extract(&view))
        QAccessible::deleteAccessibleInterface(node.mapped());
}

QAccessibleInterface* AccessibleViews::interfaceOf(NSView* view)
{
    if (!view || !view->window())
        return nullptr;
    const auto [entry, isNew] = _identifiers.try_emplace(view);
    if (isNew)
        entry->second = QAccessible::registerAccessibleInterface(new AccessibleView(_widget, view));
    return QAccessible::accessibleInterface(entry->second);
}

QAccessibleInterface* AccessibleViews::interfaceAt(const std::vector<NSView*>& views, int index)
{
    return index >= 0 && index < int(views.size()) ? interfaceOf(views[std::size_t(index)]) : nullptr;
}

int AccessibleViews::indexOf(const QAccessibleInterface* interface, const std::vector<NSView*>& views)
{
    const auto* const accessible = dynamic_cast<const AccessibleView*>(interface);
    if (!accessible)
        return -1;
    const auto found = std::find(views.begin(), views.end(), accessible->view());
    return found == views.end() ? -1 : int(found - views.begin());
}

// The elements.

std::vector<NSView*> AccessibleViews::elements() const
{
    return accessibilityElementsIn(_widget.contentView());
}

NSView* AccessibleViews::elementAt(int x, int y) const
{
    NSView* const content = _widget.contentView();
    if (!content)
        return nullptr;
    // The centre of the pixel, which no two views share.
    const QPointF point = _widget.mapFromGlobal(QPoint(x, y)) + QPointF(0.5, 0.5);
    return accessibilityElementAround(content->hitTest({point.x(), _widget.height() - point.y()}));
}

NSView* AccessibleViews::focusedElement() const
{
    NSView* const content = _widget.contentView();
    if (!content || !content->window())
        return nullptr;
    return accessibilityElementAround(dynamic_cast<NSView*>(content->window()->firstResponder()));
}

// Notifications.

void AccessibleViews::post(NSView* view, QAccessible::Event event)
{
    QAccessibleEvent notification(interfaceOf(view), event);
    notify(notification);
}

void AccessibleViews::postState(NSView* view, QAccessible::State changed)
{
    QAccessibleStateChangeEvent notification(interfaceOf(view), changed);
    notify(notification);
}

void AccessibleViews::viewDidChange(NSView& view, HostAccessibilityChange change)
{
    using Change = HostAccessibilityChange;
    if (isAnyoneListening()) {
        if (change == Change::Focus)
            windowDidBecomeKey();
        else if (change == Change::Shown || change == Change::Hidden)
            postTreeChange(view, change == Change::Shown);
        else if (view.isAccessibilityElement())
            postChange(view, change);
    }
    if (change == Change::Removed)
        forget(view);
}

void AccessibleViews::postTreeChange(NSView& view, bool isShown)
{
    std::vector<NSView*> elements;
    if (view.isAccessibilityElement())
        elements.push_back(&view);
    else
        elements = accessibilityElementsBelow(view);
    for (NSView* const element : elements)
        post(element, isShown ? QAccessible::ObjectCreated : QAccessible::ObjectDestroyed);
}

void AccessibleViews::postChange(NSView& view, HostAccessibilityChange change)
{
    switch (change) {
    case HostAccessibilityChange::Label:
        return post(&view, QAccessible::NameChanged);
    case HostAccessibilityChange::Value:
        return postValue(view);
    case HostAccessibilityChange::Enabled: {
        QAccessible::State changed;
        changed.disabled = true;
        return postState(&view, changed);
    }
    case HostAccessibilityChange::Removed:
        return post(&view, QAccessible::ObjectDestroyed);
    default:
        return;
    }
}

void AccessibleViews::postValue(NSView& view)
{
    QAccessibleInterface* const interface = interfaceOf(&view);
    if (interface->state().checkable) {
        QAccessible::State changed;
        changed.checked = true;
        return postState(&view, changed);
    }
    QAccessibleValueChangeEvent notification(interface, interface->text(QAccessible::Value));
    notify(notification);
    if (view.accessibilityValueDescription())
        post(&view, QAccessible::DescriptionChanged);
}

void AccessibleViews::windowDidBecomeKey()
{
    if (!isAnyoneListening() || !_widget.hasFocus())
        return;
    if (NSView* const focused = focusedElement())
        post(focused, QAccessible::Focus);
}
