#pragma once

#include <Foundation/NSCoder.h>

#include <string>

/// The classes that may be in archives: those registered by NSCodingClass, and Foundation's values.

/// The class registered under `name`, or null. Foundation's values have no names.
const NSCodingClassInfo* codingClassNamed(const std::string& name);
/// The name of the object's class; empty when it is not registered.
std::string codingClassNameOf(const NSObject& object);

/// The entry of one of Foundation's value classes, whose objects are written as such.
template <class T> const NSCodingClassInfo& valueClass()
{
    static const NSCodingClassInfo info{typeid(T), nullptr, [] { throw static_cast<T*>(nullptr); }};
    return info;
}

/// True when an object of the class may be returned where `allowed` was requested.
inline bool allows(const NSAllowedClass& allowed, const NSCodingClassInfo& info)
{
    return allowed.type == info.type || allowed.catches(info.throwPointer);
}
