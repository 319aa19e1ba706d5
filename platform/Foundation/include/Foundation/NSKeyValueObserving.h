#pragma once

#include <Foundation/NSObjCRuntime.h>

class NSDictionary;
class NSObject;
class NSString;

/// When an observer is notified, and what the change holds; combine with `|`. See NSObject's addObserver.
enum NSKeyValueObservingOptions : NSUInteger {
    NSKeyValueObservingOptionNew = 1 << 0,     ///< the change holds the value after it
    NSKeyValueObservingOptionOld = 1 << 1,     ///< the change holds the value before it
    NSKeyValueObservingOptionInitial = 1 << 2, ///< notify at once, within addObserver
    NSKeyValueObservingOptionPrior = 1 << 3,   ///< notify before each change too
};

/// Keys in the dictionary that describes a change.
inline constexpr const char* NSKeyValueChangeKindKey = "kind";
inline constexpr const char* NSKeyValueChangeNewKey = "new"; ///< the value, or NSNull for null
inline constexpr const char* NSKeyValueChangeOldKey = "old"; ///< the value, or NSNull for null
inline constexpr const char* NSKeyValueChangeNotificationIsPriorKey =
    "notificationIsPrior"; ///< true, or absent

/// The value under NSKeyValueChangeKindKey: the property was set.
inline constexpr NSInteger NSKeyValueChangeSetting = 1;
