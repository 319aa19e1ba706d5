// Writes the picture of an alert in the documentation: alert-picture FILE. Alerts are the window system's
// dialogs, which the gallery cannot draw: this program takes the picture from Qt.

#include <AppKit/NSAppearance.h>
#include <AppKit/NSApplication.h>
#include <Foundation/NSDictionary.h>
#include <KorvidAppKit/ZRAlert.h>
#include <KorvidAppKit/ZRSwitchControl.h>
#include <QApplication>
#include <QFont>
#include <QPixmap>
#include <QTimer>
#include <QWidget>

#include <cstdio>

namespace {

/// Shows the alert, and writes its picture once it is shown. False when it cannot be written.
bool writeAlertPicture(const QString& file)
{
    const auto control = make<ZRSwitchControl>(NSMakeRect(0, 0, 88, 32));
    control->setOn(true, false);
    const auto configuration = make<NSMutableDictionary>();
    configuration->setObject(control, kZRAlertAccessoryViewKey);

    bool isWritten = false;
    // The offscreen window system gives the dialog the keyboard focus some events after it is shown.
    QTimer turns;
    QObject::connect(&turns, &QTimer::timeout, [&, count = 0]() mutable {
        constexpr int kMostTurns = 10000;
        QWidget* const alert = QApplication::activeModalWidget();
        const bool hasFocus = alert && alert->isActiveWindow() && alert->focusWidget();
        if (!hasFocus && ++count < kMostTurns)
            return;
        isWritten = hasFocus && alert->grab().save(file, "PNG");
        turns.stop();
        NSApp->abortModal();
    });
    turns.start(0);
    ZRAlertBlockWithConf("Save the changes?",
        "They are lost otherwise. The switch says whether the next ones are saved by themselves.",
        {"Save", "Cancel", "Discard"}, nullptr, configuration);
    return isWritten;
}

} // namespace

int main(int argc, char** argv)
{
    if (argc != 2) {
        std::fprintf(stderr, "Usage: alert-picture FILE\n");
        return 2;
    }
    qputenv("QT_QPA_PLATFORM", "offscreen");
    qputenv("QT_SCALE_FACTOR", "2");
    NSApplication::sharedApplication()->setAppearance(
        NSAppearance::appearanceNamed(NSAppearanceNameDarkAqua));
    // The face of the gallery's other pictures; alerts have the desktop's.
    QFont font("Liberation Sans");
    font.setPixelSize(13);
    QApplication::setFont(font);
    if (writeAlertPicture(QString::fromLocal8Bit(argv[1])))
        return 0;
    std::fprintf(stderr, "alert-picture: cannot write %s\n", argv[1]);
    return 1;
}
