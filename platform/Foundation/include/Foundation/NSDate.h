#pragma once

#include <Foundation/NSObject.h>

/// Seconds, with fractions.
using NSTimeInterval = double;

/// Seconds from the beginning of 1970 to the beginning of 2001, both UTC.
inline constexpr NSTimeInterval NSTimeIntervalSince1970 = 978307200.0;

/// A moment in time. Immutable; any thread.
class KORVID_EXPORT NSDate : public NSObject {
public:
    /// `seconds` counts from the beginning of 2001, UTC.
    static RetainPtr<NSDate> dateWithTimeIntervalSinceReferenceDate(NSTimeInterval seconds);
    /// `seconds` counts from the beginning of 1970, UTC.
    static RetainPtr<NSDate> dateWithTimeIntervalSince1970(NSTimeInterval seconds);

    /// Seconds from the beginning of 2001, UTC; negative before it.
    NSTimeInterval timeIntervalSinceReferenceDate() const { return _seconds; }
    /// Seconds from the beginning of 1970, UTC; negative before it.
    NSTimeInterval timeIntervalSince1970() const { return _seconds + NSTimeIntervalSince1970; }

    /// True for another date of exactly the same moment.
    bool isEqual(const NSObject* other) const override;
    NSUInteger hash() const override;
    /// Like "2001-01-01 00:00:00 +0000"; fractions of a second are left out.
    NSString description() const override;

protected:
    ~NSDate() override;

private:
    explicit NSDate(NSTimeInterval secondsSinceReferenceDate);

    NSTimeInterval _seconds;
};
