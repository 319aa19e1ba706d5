#pragma once

#include "views/ZRMiddleTruncation.h"

#include <string>

/// Middle truncation step by step, each of them measured.
inline NSString plainTruncation(const NSString& text, double width, const RetainPtr<NSDictionary>& attributes)
{
    std::u16string units(text.view());
    do {
        const std::size_t half = units.size() / 2;
        if (units.size() < half + 2)
            break;
        units.replace(half, 2, u"…");
    } while (!(ZRLineWidth(NSString(std::u16string_view(units)), attributes) <= width));
    return NSString(std::u16string_view(units));
}
