#pragma once

#include <Foundation/NSCoder.h>

class NSData;
class NSError;

/// Turns an object, with the objects that it holds, into bytes.
///
/// The archive is an XML property list. Safe on any thread, as long as nobody changes the objects meanwhile.
class KORVID_EXPORT NSKeyedArchiver {
public:
    NSKeyedArchiver() = delete;

    /// The archive of `object`; null when it, or an object that it holds, can neither be encoded as
    /// NSSecureCoding (see NSCoder.h) nor is a value of Foundation's, when it is nested more than
    /// 512 deep, or when `object` is null.
    ///
    /// Only secure coding exists here, so `requiringSecureCoding` makes no difference.
    static RetainPtr<NSData> archivedDataWithRootObject(
        const NSObject* object, bool requiringSecureCoding, RetainPtr<NSError>* error = nullptr);
};

/// Makes the objects of an archive again.
///
/// Archives may come from anywhere. Only objects of the class that is asked for are made, and only of
/// classes that were registered; damaged bytes, more than 64 MB, more than 512 levels and objects that hold
/// themselves give null. Safe on any thread.
class KORVID_EXPORT NSKeyedUnarchiver {
public:
    NSKeyedUnarchiver() = delete;

    /// The archive's object if it is of class `T` or of one derived from it, else null with an error in
    /// NSCocoaErrorDomain. Null data gives null too.
    template <class T>
    static RetainPtr<T> unarchivedObjectOfClass(const NSData* data, RetainPtr<NSError>* error = nullptr)
    {
        const RetainPtr<NSObject> object = unarchive(data, NSAllowedClass::of<T>(), error);
        return dynamic_cast<T*>(object.get());
    }

private:
    static RetainPtr<NSObject> unarchive(
        const NSData* data, const NSAllowedClass& allowed, RetainPtr<NSError>* error);
};
