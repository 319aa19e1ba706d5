#pragma once

#include "RecordingView.h"

#include <KorvidQt/KorvidWidget.h>

#include <AppKit/NSWindow.h>
#include <QApplication>
#include <QtTest/qtestsystem.h>
#include <gtest/gtest.h>

/// The program's own application object, made before the first widget.
inline void makeApplicationOnce()
{
    static char name[] = "test";
    static char* arguments[] = {name, nullptr};
    static int count = 1;
    if (!QCoreApplication::instance())
        new QApplication(count, arguments);
}

/// Shows a program's window, and makes it active.
inline void showActive(QWidget& window)
{
    window.show();
    window.activateWindow();
    if (!QTest::qWaitForWindowActive(&window))
        ADD_FAILURE() << "the window does not become active";
    QCoreApplication::processEvents();
}

/// The child that shows the views and gets the events.
inline QWidget* innerOf(const KorvidWidget& widget)
{
    return widget.focusProxy();
}

class EmbeddedViews : public testing::Test {
protected:
    EmbeddedViews() { makeApplicationOnce(); }

    RetainPtr<RecordingView> view(const char* name, NSRect frame, NSColor* color = nullptr)
    {
        auto made = make<RecordingView>(frame, name, log);
        made->color = color;
        return made;
    }

    Log log;
};
