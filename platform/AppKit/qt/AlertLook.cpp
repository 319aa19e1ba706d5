#include "AlertLook.h"

namespace {

struct AlertColors {
    const char* window;
    const char* text;
    const char* secondaryText;
    const char* button;
    const char* pressedButton;
    const char* buttonBorder;
    const char* defaultButton;
    const char* pressedDefaultButton;
    const char* focusRing;
};

// The windows' own background, and white on blue for the default button: 5 to 1 in contrast.
constexpr AlertColors kDark{
    "#1e1e1e", "#f2f2f2", "#c4c4c8", "#3a3a3e", "#55555a", "#4c4c51", "#1f6feb", "#1a5bc4", "#8ab8ff"};
constexpr AlertColors kLight{
    "#ececec", "#141414", "#4a4a4e", "#ffffff", "#d8d8dc", "#c2c2c6", "#1f6feb", "#1a5bc4", "#0b3d91"};

const AlertColors& alertColors(bool isDark)
{
    return isDark ? kDark : kLight;
}

} // namespace

QPalette alertPalette(bool isDark)
{
    const AlertColors& colors = alertColors(isDark);
    QPalette palette(QColor(colors.button), QColor(colors.window));
    palette.setColor(QPalette::WindowText, QColor(colors.text));
    palette.setColor(QPalette::Text, QColor(colors.text));
    palette.setColor(QPalette::ButtonText, QColor(colors.text));
    palette.setColor(QPalette::Base, QColor(colors.window));
    palette.setColor(QPalette::Highlight, QColor(colors.defaultButton));
    palette.setColor(QPalette::HighlightedText, Qt::white);
    return palette;
}

QString alertStyleSheet(bool isDark)
{
    const AlertColors& colors = alertColors(isDark);
    return QStringLiteral("QDialog { background: %1 }"
                          "QTextEdit { background: transparent; border: none; color: %2 }"
                          "QTextEdit#alertInformativeText { color: %3 }"
                          "QPushButton { background: %4; color: %2; border: 1px solid %6; border-radius: 6px;"
                          " padding: 5px 14px; min-width: 56px; min-height: 18px }"
                          "QPushButton:pressed { background: %5 }"
                          "QPushButton:default { background: %7; color: white; border-color: %7 }"
                          "QPushButton:default:pressed { background: %8; border-color: %8 }"
                          "QPushButton:focus { border: 2px solid %9; padding: 4px 13px }")
        .arg(QLatin1String(colors.window), QLatin1String(colors.text), QLatin1String(colors.secondaryText),
            QLatin1String(colors.button), QLatin1String(colors.pressedButton),
            QLatin1String(colors.buttonBorder), QLatin1String(colors.defaultButton),
            QLatin1String(colors.pressedDefaultButton), QLatin1String(colors.focusRing));
}
