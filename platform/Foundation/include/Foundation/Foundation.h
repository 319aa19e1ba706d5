#pragma once

/// @file
/// All of Foundation.

#include <Foundation/CFDate.h>
#include <Foundation/FoundationErrors.h>
#include <Foundation/NSArray.h>
#include <Foundation/NSAttributedString.h>
#include <Foundation/NSBoxedString.h>
#include <Foundation/NSBundle.h>
#include <Foundation/NSCoder.h>
#include <Foundation/NSData.h>
#include <Foundation/NSDate.h>
#include <Foundation/NSDictionary.h>
#include <Foundation/NSError.h>
#include <Foundation/NSException.h>
#include <Foundation/NSFormat.h>
#include <Foundation/NSJSONSerialization.h>
#include <Foundation/NSKeyValueObserving.h>
#include <Foundation/NSKeyedArchiver.h>
#include <Foundation/NSLog.h>
#include <Foundation/NSNull.h>
#include <Foundation/NSNumber.h>
#include <Foundation/NSObjCRuntime.h>
#include <Foundation/NSObject.h>
#include <Foundation/NSRange.h>
#include <Foundation/NSRunLoop.h>
#include <Foundation/NSString.h>
#include <Foundation/NSTimer.h>
#include <Foundation/NSURL.h>
#include <Foundation/NSUserDefaults.h>
#include <Foundation/RetainPtr.h>
#include <Foundation/Selector.h>
#include <Foundation/WeakPtr.h>
#include <Foundation/dispatch.h>
