#pragma once

#include "WindowWidget.h"

#include <QPointer>

/// The widget of a window that fills another widget, among whose neighbours it takes part in Qt's focus
/// chain. What the views do not paint shows that other widget.
class EmbeddedWidget final : public WindowWidget {
public:
    EmbeddedWidget(HostWindowEvents& events, QWidget& parent);

protected:
    bool eventFilter(QObject* object, QEvent* event) override;
    void focusInEvent(QFocusEvent* event) override;
    void showEvent(QShowEvent* event) override;
    void hideEvent(QHideEvent* event) override;

private:
    void followAncestors();

    std::vector<QPointer<QWidget>> _ancestors; ///< whose events are filtered here, the parent first
    bool _hadFocus = false;
};
