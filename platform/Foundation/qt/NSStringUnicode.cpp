// What needs Unicode's tables of letters: Qt has them.

#include "Foundation/NSStringUnicode.h"

#include "Foundation/qt/QtConversions.h"

NSString lowercasedByUnicode(const NSString& string)
{
    return fromQString(borrowedQString(string).toLower());
}

NSString uppercasedByUnicode(const NSString& string)
{
    return fromQString(borrowedQString(string).toUpper());
}

bool NSString::localizedCaseInsensitiveContainsString(const NSString& part) const
{
    return part.length() > 0 && borrowedQString(*this).contains(borrowedQString(part), Qt::CaseInsensitive);
}
