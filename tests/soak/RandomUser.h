#pragma once

#include "GalleryWindow.h"

#include <QEvent>
#include <QWidget>

#include <deque>
#include <functional>
#include <random>

/// A user of the gallery who does anything: clicks, drags, turns the wheel, presses keys, resizes the window
/// and changes pages and the appearance. The same seed makes the same plans.
///
/// Events go to the window system's side of the window, as a real user's do.
class RandomUser {
public:
    explicit RandomUser(unsigned seed)
        : _random(seed)
    {
    }

    /// The window to use; null while there is none.
    void setWindow(GalleryWindow* window) { _window = window; }
    /// Whether the keys that close the window are among those pressed.
    void setMayClose(bool mayClose) { _mayClose = mayClose; }

    /// Does one thing, such as a part of a drag. Where a dialog is open, uses that.
    void act();
    /// Number of calls of `act`.
    int actions() const { return _actions; }

private:
    using Action = std::function<void()>;

    int below(int count) { return static_cast<int>(_random() % static_cast<unsigned>(count)); }
    QWidget* widget() const;
    QPoint anyPoint();
    Qt::KeyboardModifiers anyModifiers();
    /// The middle of a view that takes keys or clicks; any point when there is none.
    QPoint pointOnControl();

    void plan();
    /// Plans one event of the mouse; `button` is the one that is down, or that is pressed or released.
    void planMouse(QEvent::Type type, QPoint point, Qt::MouseButton button);
    void planClick(QPoint point);
    void planDrag();
    void planMoves();
    void turnWheel();
    void pressKey();
    void resize();
    void showPage();
    void changeAppearance();
    void useDialog(QWidget& dialog);

    std::mt19937 _random;
    GalleryWindow* _window = nullptr;
    bool _mayClose = true;
    int _actions = 0;
    std::deque<Action> _planned; ///< the rest of an action that takes several events
};
