#pragma once

#include <Foundation/NSCoder.h>

#include <string>

/// The classes that may be in archives: those made known by NSCodingClass, and Foundation's values.

/// What is known under `name`, or null. Foundation's values have no names.
const NSCodingClassInfo* codingClassNamed(const std::string& name);
/// The name of the object's own class; empty when it is not known.
std::string codingClassNameOf(const NSObject& object);

/// The entry of a value class of Foundation's, whose objects archives hold as they are.
template <class T> const NSCodingClassInfo& valueClass()
{
    static const NSCodingClassInfo info{typeid(T), nullptr, [] { throw static_cast<T*>(nullptr); }};
    return info;
}

/// True when an object of the class may come out where `allowed` was asked for.
inline bool allows(const NSAllowedClass& allowed, const NSCodingClassInfo& info)
{
    return allowed.type == info.type || allowed.catches(info.throwPointer);
}
