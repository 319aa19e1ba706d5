#include "QtEmbeddedWindow.h"

#include "EmbeddedWidget.h"

QtEmbeddedWindow::QtEmbeddedWindow(HostWindowEvents& events, QWidget& parent)
    : QtWindow(new EmbeddedWidget(events, parent), false)
{
}

void QtEmbeddedWindow::makeKey()
{
    widget()->setFocus(Qt::MouseFocusReason);
    widget()->activateWindow();
}
