#pragma once

#include <Foundation/NSObject.h>

class NSData;
class NSError;

/// How to read JSON; combine with `|`.
enum NSJSONReadingOptions : NSUInteger {
    /// Also accept JSON that is only a string, a number, `true`, `false` or `null`.
    NSJSONReadingFragmentsAllowed = 1 << 2,
};

/// How to write JSON; combine with `|`.
enum NSJSONWritingOptions : NSUInteger {
    /// One value per line, indented by four blanks.
    NSJSONWritingPrettyPrinted = 1 << 0,
    /// Also write an object that is neither an array nor a dictionary.
    NSJSONWritingFragmentsAllowed = 1 << 2,
};

/// Turns JSON into objects and back. Safe on any thread.
///
/// Objects are NSDictionary, arrays NSArray, strings NSBoxedString, numbers NSNumber, true and false the
/// truth values of NSNumber, null NSNull. A number without a fraction that fits NSInteger is an integer,
/// any other a double.
class KORVID_EXPORT NSJSONSerialization {
public:
    NSJSONSerialization() = delete;

    /// The object that the JSON in `data` describes: UTF-8, or UTF-16 or UTF-32 of either byte order, with
    /// or without a byte order mark. Null, with an error in NSCocoaErrorDomain, when it is not JSON, is
    /// nested more than 512 deep, or is a fragment without the option; also for null or empty data. Where a
    /// key is there twice, the last one counts.
    static RetainPtr<NSObject> JSONObjectWithData(
        const NSData* data, NSUInteger options, RetainPtr<NSError>* error = nullptr);

    /// The JSON text of `object` in UTF-8, keys sorted. Null, with an error in NSCocoaErrorDomain, when the
    /// object is of another class than those above or holds one, holds a number that is not finite, is
    /// nested more than 512 deep, is a fragment without the option, or is null.
    static RetainPtr<NSData> dataWithJSONObject(
        const NSObject* object, NSUInteger options, RetainPtr<NSError>* error = nullptr);
};
