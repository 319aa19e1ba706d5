#pragma once

#include <AppKit/NSView.h>
#include <Foundation/WeakPtr.h>
#include <QAccessible>
#include <vector>

class WindowWidget;

/// The accessibility elements in the place of `view`: itself, or if it is none, those inside. Nothing of a
/// hidden view.
std::vector<NSView*> accessibilityElementsIn(NSView* view);
/// The elements in the places of the subviews of `view`.
std::vector<NSView*> accessibilityElementsBelow(const NSView& view);
/// `view`, or the nearest superview that is an accessibility element. Null if none is, and for null.
NSView* accessibilityElementAround(NSView* view);

/// A view of a window, as Qt's bridges to assistive technology see it. It may outlive the view, and is
/// invalid from then on.
class AccessibleView final : public QAccessibleInterface, public QAccessibleActionInterface {
public:
    /// Both are borrowed: the widget deletes the interface first, the view may go earlier.
    AccessibleView(WindowWidget& widget, NSView* view)
        : _widget(widget)
        , _view(view)
    {
    }

    bool isValid() const override;
    QObject* object() const override { return nullptr; }
    QWindow* window() const override;

    QAccessibleInterface* parent() const override;
    QAccessibleInterface* child(int index) const override;
    int childCount() const override;
    int indexOfChild(const QAccessibleInterface* child) const override;
    QAccessibleInterface* childAt(int x, int y) const override;
    QAccessibleInterface* focusChild() const override;

    QString text(QAccessible::Text kind) const override;
    void setText(QAccessible::Text, const QString&) override { }
    QRect rect() const override;
    QAccessible::Role role() const override;
    QAccessible::State state() const override;
    void* interface_cast(QAccessible::InterfaceType type) override;

    QStringList actionNames() const override;
    void doAction(const QString& name) override;
    QStringList keyBindingsForAction(const QString&) const override { return {}; }

    const NSView* view() const { return _view.lock().get(); }

private:
    std::vector<NSView*> children() const;
    QString pressActionName() const;

    WindowWidget& _widget;
    const WeakPtr<NSView> _view;
};
