#include "ControlValue.h"

#include <Foundation/NSNumber.h>

#include <algorithm>
#include <limits>

NSString stringOfValue(const NSObject* value)
{
    if (const auto* attributed = dynamic_cast<const NSAttributedString*>(value))
        return attributed->string();
    return value ? value->description() : NSString("");
}

NSInteger integerOfValue(const NSObject* value)
{
    if (const auto* number = dynamic_cast<const NSNumber*>(value))
        return number->integerValue();
    return stringOfValue(value).integerValue();
}

int intOfValue(const NSObject* value)
{
    using Limits = std::numeric_limits<int>;
    return int(std::clamp<NSInteger>(integerOfValue(value), Limits::min(), Limits::max()));
}

double doubleOfValue(const NSObject* value)
{
    if (const auto* number = dynamic_cast<const NSNumber*>(value))
        return number->doubleValue();
    return stringOfValue(value).doubleValue();
}

RetainPtr<NSAttributedString> attributedStringOfValue(NSObject* value, RetainPtr<NSDictionary> attributes)
{
    if (auto* const attributed = dynamic_cast<NSAttributedString*>(value))
        return attributed;
    return make<NSAttributedString>(stringOfValue(value), std::move(attributes));
}
