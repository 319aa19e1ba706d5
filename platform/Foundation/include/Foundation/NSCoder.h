#pragma once

#include <Foundation/NSObject.h>

#include <typeinfo>

class NSCoder;

/// An object that can be written to an archive and recreated from it.
///
/// A class that is to be archived derives from NSObject and from this one, has a constructor that takes an
/// `NSCoder*` and makes an object from what the archive holds, and is registered by one NSCodingClass. A
/// class whose archived state may be invalid has a static function in place of the constructor, `static
/// RetainPtr<NSObject> initWithCoder(NSCoder* coder)`, which then returns null:
///
///     class Badge : public NSObject, public NSSecureCoding { … };
///     const NSCodingClass<Badge> badgeCoding("Badge");
class KORVID_EXPORT NSSecureCoding {
public:
    /// Stores the object's state in `coder`, value by value.
    virtual void encodeWithCoder(NSCoder* coder) const = 0;

protected:
    ~NSSecureCoding() = default;
};

/// What the archivers know of a class: its name in archives, and how to make an object.
struct NSCodingClassInfo {
    /// The class.
    const std::type_info& type;
    /// Makes an object from an archive; may return null.
    RetainPtr<NSObject> (*initWithCoder)(NSCoder* coder);
    /// Throws a null pointer to the class; see NSAllowedClass.
    void (*throwPointer)();
};

/// A class that is allowed when an archive is read, with the test whether another class is derived from it.
struct NSAllowedClass {
    /// The class.
    const std::type_info& type;
    /// Calls `throwPointer` and returns whether what it throws converts to a pointer to this class. C++ has
    /// no other test for a base class without an object, and no object of a class that is not allowed may be
    /// made.
    bool (*catches)(void (*throwPointer)());

    /// The record of class `T`.
    template <class T> static NSAllowedClass of()
    {
        return {typeid(T), [](void (*throwPointer)()) {
                    try {
                        throwPointer();
                    } catch (const T*) {
                        return true;
                    } catch (...) {
                    }
                    return false;
                }};
    }
};

/// What NSCodingClass does.
KORVID_EXPORT void _NSRegisterCodingClass(const char* name, const NSCodingClassInfo& info);

/// Registers class `T` with the archivers under a name, until the process ends.
template <class T> class NSCodingClass {
public:
    /// `name` identifies the class in archives: never change it once archives have been written. A name or
    /// class that is already registered aborts the process with a message.
    explicit NSCodingClass(const char* name)
    {
        _NSRegisterCodingClass(name,
            {typeid(T),
                [](NSCoder* coder) -> RetainPtr<NSObject> {
                    if constexpr (requires { T::initWithCoder(coder); })
                        return T::initWithCoder(coder);
                    else
                        return make<T>(coder);
                },
                [] { throw static_cast<T*>(nullptr); }});
    }
};

/// Writes or reads the values of one object of an archive. Each has a key that is unique within the object.
///
/// A coder either encodes or decodes; a call of the other kind, or with a null key, does nothing and returns
/// the neutral value. Use it only within the call that it is an argument of.
class KORVID_EXPORT NSCoder {
public:
    /// Stores a truth value under `key`.
    virtual void encodeBool(bool value, NSString key) = 0;
    /// Stores an integer under `key`.
    virtual void encodeInteger(NSInteger value, NSString key) = 0;
    /// Preserves every bit, except those that distinguish one NaN from another.
    virtual void encodeDouble(double value, NSString key) = 0;
    /// An object that conforms to NSSecureCoding, or one of Foundation's values: NSBoxedString, NSNumber,
    /// NSDate, NSData, NSNull, or an NSArray or NSDictionary of what may be encoded. Null is decoded as null.
    /// An object that is encoded twice is one object again afterwards. Anything else makes the whole
    /// archive fail.
    virtual void encodeObject(const NSObject* object, NSString key) = 0;
    /// A string, as an NSBoxedString. Null is decoded as null.
    void encodeString(const NSString& value, NSString key);

    /// True when something was encoded under `key`, null included.
    virtual bool containsValueForKey(NSString key) const = 0;
    /// The value, or the neutral one (false, 0) when there is none. The three convert numbers as NSNumber
    /// does; an object under that key makes the whole archive fail.
    virtual bool decodeBoolForKey(NSString key) = 0;
    /// The integer under `key`, likewise.
    virtual NSInteger decodeIntegerForKey(NSString key) = 0;
    /// The real number under `key`, likewise.
    virtual double decodeDoubleForKey(NSString key) = 0;
    /// The object of class `T`, or of one derived from it, under `key`; null when there is none or null was
    /// encoded. An object of another class is not made: the result is null and the whole archive fails. The
    /// objects in an array or dictionary may only be Foundation's values.
    template <class T> RetainPtr<T> decodeObjectOfClass(NSString key)
    {
        const RetainPtr<NSObject> object = decodeObject(key, NSAllowedClass::of<T>());
        return dynamic_cast<T*>(object.get());
    }
    /// The string that `encodeString` was given, under the same rules.
    NSString decodeStringForKey(NSString key);

protected:
    virtual ~NSCoder() = default;

    /// The object under `key`, if it is of the allowed class or of one derived from it; else null.
    virtual RetainPtr<NSObject> decodeObject(const NSString& key, const NSAllowedClass& allowed) = 0;
};
