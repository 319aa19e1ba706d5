#include "EmbeddedWidget.h"

#include <QEvent>
#include <QFocusEvent>

#include <utility>

EmbeddedWidget::EmbeddedWidget(HostWindowEvents& events, QWidget& parent)
    : WindowWidget(events, {}, &parent)
{
    setAttribute(Qt::WA_OpaquePaintEvent, false);
    setAttribute(Qt::WA_NoSystemBackground, false);
    // A click gives the focus to a view that takes it; see NSWindow.
    setFocusPolicy(Qt::TabFocus);
    parent.setFocusProxy(this);
    followAncestors();
    setGeometry(parent.rect());
    show();
}

/// The place on the screen changes with that of every widget around this one.
void EmbeddedWidget::followAncestors()
{
    for (const auto& ancestor : _ancestors) {
        if (ancestor)
            ancestor->removeEventFilter(this);
    }
    _ancestors.clear();
    for (QWidget* ancestor = parentWidget(); ancestor; ancestor = ancestor->parentWidget()) {
        ancestor->installEventFilter(this);
        _ancestors.emplace_back(ancestor);
        if (ancestor->isWindow())
            break;
    }
}

bool EmbeddedWidget::eventFilter(QObject* object, QEvent* event)
{
    switch (event->type()) {
    case QEvent::Resize:
        if (object == parentWidget())
            resize(parentWidget()->size());
        break;
    case QEvent::Move:
        placeMayHaveChanged();
        break;
    case QEvent::ParentChange:
        followAncestors();
        placeMayHaveChanged();
        break;
    default:
        break;
    }
    return WindowWidget::eventFilter(object, event);
}

void EmbeddedWidget::focusInEvent(QFocusEvent* event)
{
    // A click chooses a view itself, and so does Tab. Other reasons return to the view that had the focus.
    const Qt::FocusReason reason = event->reason();
    const bool isChosen =
        reason == Qt::MouseFocusReason || reason == Qt::TabFocusReason || reason == Qt::BacktabFocusReason;
    if (!std::exchange(_hadFocus, true) && !isChosen && events())
        events()->selectKeyView(true);
    WindowWidget::focusInEvent(event);
}

void EmbeddedWidget::showEvent(QShowEvent* event)
{
    if (events())
        events()->willAppear();
    placeMayHaveChanged();
    WindowWidget::showEvent(event);
}

void EmbeddedWidget::hideEvent(QHideEvent* event)
{
    WindowWidget::hideEvent(event);
    if (events())
        events()->inputWasBlocked();
}
