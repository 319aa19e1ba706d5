#pragma once

#include "AppKit/Host.h"

#include <Foundation/NSString.h>
#include <QMouseEvent>
#include <QRect>
#include <QString>

// Between our types and Qt's.

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

/// 0 left, 1 right, 2 middle, and so on.
NSInteger buttonNumber(Qt::MouseButton button);
/// The first button of a set by that number; NoButton for an empty set.
Qt::MouseButton firstButton(Qt::MouseButtons buttons);
NSEventModifierFlags modifierFlags(Qt::KeyboardModifiers modifiers);

/// What a key stands for.
struct KeyCharacters {
    NSString characters;
    NSString ignoringModifiers; ///< with no modifier but Shift
};
KeyCharacters keyCharacters(const QKeyEvent& event);
