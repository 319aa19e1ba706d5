#pragma once

#include "QtTestSupport.h"

#include <AppKit/NSAlert.h>
#include <QDialog>
#include <QPushButton>
#include <QTextEdit>
#include <QTimer>
#include <QtTest/qtestkeyboard.h>
#include <QtTest/qtestmouse.h>

#include <functional>
#include <string>
#include <vector>

/// The alert on top; null without one.
inline QDialog* shownAlert()
{
    return dynamic_cast<QDialog*>(QApplication::activeModalWidget());
}

/// A button of the alert on top; null if it has no such button.
inline QPushButton* alertButton(int number)
{
    QDialog* const alert = shownAlert();
    return alert ? alert->findChild<QPushButton*>(QStringLiteral("alertButton%1").arg(number)) : nullptr;
}

inline std::string textOf(const char* name)
{
    const auto* edit = shownAlert()->findChild<QTextEdit*>(QLatin1String(name));
    return edit ? edit->toPlainText().toStdString() : "";
}

inline void pressAlertButton(int number)
{
    if (QPushButton* const button = alertButton(number))
        QTest::mouseClick(button, Qt::LeftButton);
    else
        ADD_FAILURE() << "no button " << number;
}

/// An alert with a message and buttons of these titles.
inline RetainPtr<NSAlert> makeAlert(const std::vector<const char*>& titles)
{
    auto alert = make<NSAlert>();
    alert->setMessageText("Message");
    for (const char* title : titles)
        alert->addButtonWithTitle(title);
    return alert;
}

/// Runs an alert and calls `user` once it is shown. Where that does not end it, the test fails.
inline NSModalResponse answer(NSAlert& alert, const std::function<void()>& user)
{
    constexpr int kTimeout = 20000;     // milliseconds, far more than any correct run takes
    NSApplication::sharedApplication(); // without which Qt has no timers
    const QObject context;
    QTimer::singleShot(kTimeout, &context, [] {
        ADD_FAILURE() << "nothing answers the alert";
        NSApp->abortModal();
    });
    QTimer::singleShot(0, &context, [&] {
        if (shownAlert())
            user();
        else
            ADD_FAILURE() << "no alert is shown";
    });
    return alert.runModal();
}
