#pragma once

#include <Foundation/NSObject.h>
#include <Foundation/NSString.h>

#include <string>

/// An object's description.
inline std::string text(const NSObject& object)
{
    return object.description().UTF8String();
}
