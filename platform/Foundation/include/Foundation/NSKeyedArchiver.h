#pragma once

#include <Foundation/NSCoder.h>

class NSData;
class NSError;

/// Writes an object, with the objects that it holds, as bytes.
///
/// Differs: the format is this library's own, an XML property list. Archives of Apple's NSKeyedArchiver
/// cannot be read, and Apple's NSKeyedUnarchiver cannot read these.
///
/// Safe on any thread, as long as no other thread changes the objects meanwhile.
class KORVID_EXPORT NSKeyedArchiver {
public:
    NSKeyedArchiver() = delete;

    /// The archive of `object`, in which an object that is reached several times stands once. Null when it,
    /// or an object that it holds, can neither be encoded as NSSecureCoding (see NSCoder.h) nor is a value of
    /// Foundation's, when it is nested more than 512 deep, or when `object` is null; `error`, if given, then
    /// receives an error in NSCocoaErrorDomain, and null otherwise.
    ///
    /// Only secure coding exists here, so `requiringSecureCoding` makes no difference.
    static RetainPtr<NSData> archivedDataWithRootObject(
        const NSObject* object, bool requiringSecureCoding, RetainPtr<NSError>* error = nullptr);
};

/// Recreates the objects of an archive. Safe on any thread.
///
/// Archives may come from untrusted sources. Only objects of the requested class are made, and only of
/// registered classes; damaged bytes, more than 64 MB, more than 512 levels and objects that hold themselves
/// give null. An object that several others hold is one object again, so a small archive can stand for an
/// enormous tree: `isEqual` of arrays and dictionaries visits each object once, while `description` has the
/// size of the tree.
class KORVID_EXPORT NSKeyedUnarchiver {
public:
    NSKeyedUnarchiver() = delete;

    /// The archive's object if it is of class `T` or of one derived from it, else null, with an error in
    /// NSCocoaErrorDomain in `error`, if given. Null data gives null too.
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
