#pragma once

#include "AppKit/Host.h"

#include <QAccessible>
#include <unordered_map>
#include <vector>

class WindowWidget;

/// The interfaces of one window's views. Empty until assistive technology asks for one.
class AccessibleViews {
public:
    explicit AccessibleViews(WindowWidget& widget)
        : _widget(widget)
    {
    }
    AccessibleViews(const AccessibleViews&) = delete;
    AccessibleViews& operator=(const AccessibleViews&) = delete;
    ~AccessibleViews() { clear(); }

    /// Deletes all interfaces.
    void clear();

    /// Makes the interface when first needed. Borrowed; null for a view that is in no window.
    QAccessibleInterface* interfaceOf(NSView* view);
    /// The interface of one of several views; null for an index out of range.
    QAccessibleInterface* interfaceAt(const std::vector<NSView*>& views, int index);
    /// The index of the view of an interface; -1 if it is none of them.
    static int indexOf(const QAccessibleInterface* interface, const std::vector<NSView*>& views);

    /// The elements in the window that are in no other element.
    std::vector<NSView*> elements() const;
    /// The innermost element at a place on the screen, in Qt's coordinates; null without one.
    NSView* elementAt(int x, int y) const;
    /// The innermost element around the first responder; null without one.
    NSView* focusedElement() const;

    /// Notifies assistive technology. Does nothing while there is none.
    void viewDidChange(NSView& view, HostAccessibilityChange change);
    /// Notifies assistive technology of the element that has the focus in the window.
    void windowDidBecomeKey();

private:
    void postTreeChange(NSView& view, bool isShown);
    void postChange(NSView& view, HostAccessibilityChange change);
    void postValue(NSView& view);
    void post(NSView* view, QAccessible::Event event);
    void postState(NSView* view, QAccessible::State changed);
    void forget(NSView& view);

    WindowWidget& _widget;
    std::unordered_map<const NSView*, QAccessible::Id> _identifiers;
};

/// Makes Qt look for the views when assistive technology looks into a window of ours. To be called once.
void installAccessibleWindows();
