#pragma once

#include "AppKit/Host.h"

#include <Foundation/NSString.h>
#include <QMouseEvent>
#include <QPalette>
#include <QRect>
#include <QString>
#include <QWheelEvent>

// Conversions between our types and Qt's.

inline QString toQt(const NSString& text)
{
    const std::u16string_view units = text.view();
    return QString(reinterpret_cast<const QChar*>(units.data()), static_cast<qsizetype>(units.size()));
}

inline NSString fromQt(const QString& text)
{
    return NSString(std::u16string_view(
        reinterpret_cast<const char16_t*>(text.utf16()), static_cast<std::size_t>(text.size())));
}

/// A rectangle of the desktop, with y upward from the bottom left of the primary screen.
NSRect upward(const QRect& rect);

/// Whether the palette is that of a dark user interface.
bool isDarkPalette(const QPalette& palette);

/// The button's number: 0 left, 1 right, 2 middle, and so on.
NSInteger buttonNumber(Qt::MouseButton button);
/// The button of a set that has the lowest number; NoButton for an empty set.
Qt::MouseButton firstButton(Qt::MouseButtons buttons);
NSEventModifierFlags modifierFlags(Qt::KeyboardModifiers modifiers);

Qt::CursorShape cursorShape(HostCursor cursor);

struct ScrollDelta {
    NSSize delta;
    bool isPrecise; ///< in points; else in lines
};
ScrollDelta scrollDelta(const QWheelEvent& event);

/// The characters of a key event.
struct KeyCharacters {
    NSString characters;
    NSString ignoringModifiers; ///< with no modifier but Shift
};
KeyCharacters keyCharacters(const QKeyEvent& event);
