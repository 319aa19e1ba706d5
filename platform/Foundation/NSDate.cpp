#include <Foundation/NSDate.h>

#include <cmath>
#include <ctime>
#include <functional>

NSDate::NSDate(NSTimeInterval secondsSinceReferenceDate)
    : _seconds(secondsSinceReferenceDate)
{
}

NSDate::~NSDate() = default;

RetainPtr<NSDate> NSDate::dateWithTimeIntervalSinceReferenceDate(NSTimeInterval seconds)
{
    return adopt(new NSDate(seconds));
}

RetainPtr<NSDate> NSDate::dateWithTimeIntervalSince1970(NSTimeInterval seconds)
{
    return adopt(new NSDate(seconds - NSTimeIntervalSince1970));
}

bool NSDate::isEqual(const NSObject* other) const
{
    const auto* date = dynamic_cast<const NSDate*>(other);
    return date && date->_seconds == _seconds;
}

NSUInteger NSDate::hash() const
{
    return std::hash<double>{}(0.0 + _seconds);
}

NSString NSDate::description() const
{
    const double seconds = std::floor(timeIntervalSince1970());
    // Beyond some 30 million years either way a year has no place in the calendar's fields.
    if (!(std::abs(seconds) < 1e15))
        return "a date beyond the calendar";
    const auto time = static_cast<std::time_t>(seconds);
    std::tm fields{};
    gmtime_r(&time, &fields);
    char text[64];
    const std::size_t length = std::strftime(text, sizeof text, "%Y-%m-%d %H:%M:%S +0000", &fields);
    return NSString(std::string_view(text, length));
}
