#include "RandomUser.h"

#include <AppKit/NSAppearance.h>
#include <AppKit/NSApplication.h>
#include <AppKit/NSControl.h>

#include <QAbstractButton>
#include <QApplication>
#include <QMouseEvent>
#include <QWheelEvent>
#include <QWindow>
#include <QtTest/qtestkeyboard.h>
#include <QtTest/qtestmouse.h>

namespace {

/// The views in a tree that take keys or clicks.
void collectControls(const NSView& view, std::vector<NSView*>& controls)
{
    for (const auto& subview : view.subviews()) {
        if (subview->isHidden())
            continue;
        if (subview->acceptsFirstResponder() || dynamic_cast<NSControl*>(subview.get()))
            controls.push_back(subview);
        collectControls(*subview, controls);
    }
}

} // namespace

QWidget* RandomUser::widget() const
{
    if (!_window)
        return nullptr;
    const QString title = QString::fromStdString(_window->title().UTF8String());
    for (QWidget* widget : QApplication::topLevelWidgets()) {
        if (widget->isVisible() && widget->windowTitle() == title)
            return widget;
    }
    return nullptr;
}

QPoint RandomUser::anyPoint()
{
    const QWidget* const shown = widget();
    return {below(shown->width()), below(shown->height())};
}

Qt::KeyboardModifiers RandomUser::anyModifiers()
{
    constexpr Qt::KeyboardModifier kModifiers[] = {
        Qt::ShiftModifier, Qt::ControlModifier, Qt::AltModifier, Qt::MetaModifier};
    return below(8) == 0 ? Qt::KeyboardModifiers(kModifiers[below(4)]) : Qt::NoModifier;
}

QPoint RandomUser::pointOnControl()
{
    std::vector<NSView*> controls;
    collectControls(*_window->galleryView()->pageArea(), controls);
    if (controls.empty())
        return anyPoint();
    NSView* const control = controls[std::size_t(below(int(controls.size())))];
    const NSRect frame = control->convertRectToView(control->bounds(), nullptr);
    const QPoint point(int(NSMidX(frame)), widget()->height() - int(NSMidY(frame)));
    return widget()->rect().contains(point) ? point : anyPoint();
}

void RandomUser::planMouse(QEvent::Type type, QPoint point, Qt::MouseButton button)
{
    const auto modifiers = anyModifiers();
    _planned.emplace_back([=, this] {
        // While a button is down, moves are made with it.
        const bool isMove = type == QEvent::MouseMove;
        const bool isRelease = type == QEvent::MouseButtonRelease;
        QMouseEvent event(type, point, widget()->mapToGlobal(QPointF(point)), isMove ? Qt::NoButton : button,
            isRelease ? Qt::NoButton : button, modifiers);
        QCoreApplication::sendEvent(widget(), &event);
    });
}

void RandomUser::planClick(QPoint point)
{
    const auto button = below(10) == 0 ? Qt::RightButton : Qt::LeftButton;
    planMouse(QEvent::MouseButtonPress, point, button);
    planMouse(QEvent::MouseButtonRelease, point, button);
    if (below(6) == 0) {
        planMouse(QEvent::MouseButtonDblClick, point, button);
        planMouse(QEvent::MouseButtonRelease, point, button);
    }
}

void RandomUser::planDrag()
{
    QPoint point = below(2) == 0 ? pointOnControl() : anyPoint();
    planMouse(QEvent::MouseButtonPress, point, Qt::LeftButton);
    for (int moves = 2 + below(6); moves > 0; --moves) {
        point += QPoint(below(161) - 80, below(161) - 80); // beyond the window's edges too
        planMouse(QEvent::MouseMove, point, Qt::LeftButton);
    }
    planMouse(QEvent::MouseButtonRelease, point, Qt::LeftButton);
}

void RandomUser::planMoves()
{
    for (int moves = 1 + below(4); moves > 0; --moves)
        planMouse(QEvent::MouseMove, anyPoint(), Qt::NoButton);
}

void RandomUser::turnWheel()
{
    const QPointF point = anyPoint();
    const QPoint steps(below(8) == 0 ? 120 * (below(5) - 2) : 0, 120 * (below(7) - 3));
    const QPoint pixels = below(2) == 0 ? steps / 4 : QPoint();
    QWheelEvent event(point, widget()->mapToGlobal(point), pixels, steps, Qt::NoButton, anyModifiers(),
        Qt::NoScrollPhase, false);
    QCoreApplication::sendEvent(widget(), &event);
}

void RandomUser::pressKey()
{
    constexpr Qt::Key kKeys[] = {Qt::Key_Tab, Qt::Key_Tab, Qt::Key_Backtab, Qt::Key_Up, Qt::Key_Down,
        Qt::Key_Left, Qt::Key_Right, Qt::Key_PageUp, Qt::Key_PageDown, Qt::Key_Home, Qt::Key_End,
        Qt::Key_Space, Qt::Key_Return, Qt::Key_Backspace, Qt::Key_Delete, Qt::Key_F5, Qt::Key_A, Qt::Key_Q,
        Qt::Key_W, Qt::Key_1, Qt::Key_Escape};
    const Qt::Key key = kKeys[below(int(std::size(kKeys)))];
    const auto modifiers = anyModifiers();
    const bool closes = key == Qt::Key_Escape
        || ((key == Qt::Key_Q || key == Qt::Key_W) && (modifiers & Qt::ControlModifier));
    if (_mayClose || !closes)
        QTest::keyClick(widget()->windowHandle(), key, modifiers);
}

void RandomUser::resize()
{
    const NSSize least = GalleryWindow::kMinimumSize;
    _window->setContentSize({least.width - 40 + below(900), least.height - 40 + below(700)});
}

void RandomUser::showPage()
{
    GalleryView* const view = _window->galleryView();
    const auto number = std::size_t(below(int(view->list()->count())));
    if (below(2) == 0) {
        view->showPage(number);
        return;
    }
    const NSRect row = view->list()->convertRectToView(view->list()->rectOfRow(number), nullptr);
    planClick({int(NSMidX(row)), widget()->height() - int(NSMidY(row))});
}

void RandomUser::changeAppearance()
{
    NSApp->setAppearance(
        NSAppearance::appearanceNamed(below(2) == 0 ? NSAppearanceNameAqua : NSAppearanceNameDarkAqua));
}

void RandomUser::useDialog(QWidget& dialog)
{
    const auto buttons = dialog.findChildren<QAbstractButton*>();
    const int kind = below(6);
    if (kind < 3 && !buttons.isEmpty())
        QTest::mouseClick(buttons[below(int(buttons.size()))], Qt::LeftButton);
    else
        QTest::keyClick(&dialog, kind == 3 ? Qt::Key_Return : kind == 4 ? Qt::Key_Escape : Qt::Key_Tab);
}

void RandomUser::plan()
{
    const int kind = below(100);
    if (kind < 15)
        planClick(anyPoint());
    else if (kind < 35)
        planClick(pointOnControl());
    else if (kind < 50)
        planDrag();
    else if (kind < 60)
        planMoves();
    else if (kind < 70)
        turnWheel();
    else if (kind < 86)
        pressKey();
    else if (kind < 90)
        resize();
    else if (kind < 98)
        showPage();
    else
        changeAppearance();
}

void RandomUser::act()
{
    ++_actions;
    if (QWidget* const dialog = QApplication::activeModalWidget()) {
        _planned.clear();
        useDialog(*dialog);
        return;
    }
    if (!widget()) {
        _planned.clear();
        return;
    }
    if (_planned.empty()) {
        plan();
        return;
    }
    const Action next = std::move(_planned.front());
    _planned.pop_front();
    next();
}
