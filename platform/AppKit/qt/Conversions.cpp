#include "Conversions.h"

#include <QApplication>
#include <QScreen>

#include <bit>

NSRect upward(const QRect& rect)
{
    const QScreen* const primary = QGuiApplication::primaryScreen();
    const int height = primary ? primary->geometry().height() : 0;
    return NSMakeRect(rect.x(), height - (rect.y() + rect.height()), rect.width(), rect.height());
}

bool isDarkPalette(const QPalette& palette)
{
    constexpr double kMiddle = 0.5;
    return palette.color(QPalette::Window).lightnessF() < kMiddle;
}

NSInteger buttonNumber(Qt::MouseButton button)
{
    // Qt's buttons are bits in the same order: left, right, middle, others.
    return std::countr_zero(static_cast<unsigned>(button));
}

Qt::MouseButton firstButton(Qt::MouseButtons buttons)
{
    const auto bits = static_cast<unsigned>(buttons.toInt());
    return static_cast<Qt::MouseButton>(bits & ~(bits - 1));
}

NSEventModifierFlags modifierFlags(Qt::KeyboardModifiers modifiers)
{
    NSEventModifierFlags flags = 0;
    const auto add = [&](Qt::KeyboardModifier modifier, NSEventModifierFlags flag) {
        if (modifiers & modifier)
            flags |= flag;
    };
    add(Qt::ShiftModifier, NSEventModifierFlagShift);
    add(Qt::ControlModifier, NSEventModifierFlagControl);
    add(Qt::AltModifier, NSEventModifierFlagOption);
    add(Qt::MetaModifier, NSEventModifierFlagCommand);
    add(Qt::KeypadModifier, NSEventModifierFlagNumericPad);
    return flags;
}

Qt::CursorShape cursorShape(HostCursor cursor)
{
    switch (cursor) {
    case HostCursor::Arrow:
        return Qt::ArrowCursor;
    case HostCursor::IBeam:
        return Qt::IBeamCursor;
    case HostCursor::Crosshair:
        return Qt::CrossCursor;
    case HostCursor::ClosedHand:
        return Qt::ClosedHandCursor;
    case HostCursor::OpenHand:
        return Qt::OpenHandCursor;
    case HostCursor::PointingHand:
        return Qt::PointingHandCursor;
    case HostCursor::ResizeLeftRight:
        return Qt::SizeHorCursor;
    case HostCursor::ResizeUpDown:
        return Qt::SizeVerCursor;
    case HostCursor::OperationNotAllowed:
        return Qt::ForbiddenCursor;
    }
    return Qt::ArrowCursor;
}

ScrollDelta scrollDelta(const QWheelEvent& event)
{
    // Qt documents that the points which it reports on X11 depend on the driver and are unreliable.
    const bool isPrecise = !event.pixelDelta().isNull() && QGuiApplication::platformName() != "xcb";
    if (isPrecise)
        return {NSMakeSize(event.pixelDelta().x(), event.pixelDelta().y()), true};
    constexpr CGFloat kUnitsPerNotch =
        8 * 15.0; // eighths of a degree; most wheels have notches of 15 degrees
    const CGFloat linesPerUnit = QApplication::wheelScrollLines() / kUnitsPerNotch;
    return {NSMakeSize(event.angleDelta().x() * linesPerUnit, event.angleDelta().y() * linesPerUnit), false};
}

namespace {

/// The character of a key that has the same one in every keyboard layout; 0 for all others.
char16_t fixedCharacter(int key)
{
    if (key >= Qt::Key_F1 && key <= Qt::Key_F35)
        return static_cast<char16_t>(NSF1FunctionKey + (key - Qt::Key_F1));
    switch (key) {
    case Qt::Key_Up:
        return NSUpArrowFunctionKey;
    case Qt::Key_Down:
        return NSDownArrowFunctionKey;
    case Qt::Key_Left:
        return NSLeftArrowFunctionKey;
    case Qt::Key_Right:
        return NSRightArrowFunctionKey;
    case Qt::Key_Insert:
        return NSInsertFunctionKey;
    case Qt::Key_Delete:
        return NSDeleteFunctionKey;
    case Qt::Key_Home:
        return NSHomeFunctionKey;
    case Qt::Key_End:
        return NSEndFunctionKey;
    case Qt::Key_PageUp:
        return NSPageUpFunctionKey;
    case Qt::Key_PageDown:
        return NSPageDownFunctionKey;
    case Qt::Key_Return:
        return 0x0D;
    case Qt::Key_Enter:
        return 0x03;
    case Qt::Key_Tab:
        return 0x09;
    case Qt::Key_Backtab:
        return 0x19;
    case Qt::Key_Escape:
        return 0x1B;
    case Qt::Key_Backspace:
        return 0x7F;
    default:
        return 0;
    }
}

} // namespace

KeyCharacters keyCharacters(const QKeyEvent& event)
{
    if (const char16_t fixed = fixedCharacter(event.key())) {
        const NSString text{std::u16string_view(&fixed, 1)};
        return {text, text};
    }
    // A key code up to the last character is the key's character in upper case; other keys have none.
    constexpr int kLastCharacter = 0x10FFFF;
    QString plain;
    if (event.key() > 0 && event.key() <= kLastCharacter) {
        const auto character = static_cast<char32_t>(event.key());
        plain = QString::fromUcs4(&character, 1);
        if (!(event.modifiers() & Qt::ShiftModifier))
            plain = plain.toLower();
    }
    return {fromQt(event.text()), fromQt(plain)};
}
