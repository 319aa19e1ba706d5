#pragma once

// Strings to and from Qt's, once for the whole platform layer.

#include <Foundation/NSString.h>

#include <QString>

/// A QString that borrows the units of `string`, valid as long as `string`. Null gives a null QString.
inline QString borrowedQString(const NSString& string)
{
    if (string.isNull())
        return {};
    if (string.length() == 0)
        return QLatin1String("");
    return QString::fromRawData(
        reinterpret_cast<const QChar*>(string.view().data()), static_cast<qsizetype>(string.length()));
}

/// A QString of its own. Null gives a null QString.
inline QString toQString(const NSString& string)
{
    QString copy = borrowedQString(string);
    copy.detach();
    return copy;
}

/// A null QString gives null.
inline NSString fromQString(const QString& string)
{
    if (string.isNull())
        return {};
    return NSString(std::u16string_view(
        reinterpret_cast<const char16_t*>(string.utf16()), static_cast<std::size_t>(string.size())));
}
