#pragma once

#include <Foundation/NSObject.h>

#include <typeinfo>

class NSCoder;

/// An object that can be put into an archive and made again from it.
///
/// A class that is to be archived derives from NSObject and from this one, has a constructor that takes an
/// `NSCoder*` and makes an object from what the archive holds, and is made known by one NSCodingClass. Where
/// that may make no sense, the class has a static function in place of the constructor, `static
/// RetainPtr<NSObject> initWithCoder(NSCoder* coder)`, which then answers null:
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
    const std::type_info& type;
    RetainPtr<NSObject> (*initWithCoder)(NSCoder* coder);
    /// Throws a null pointer to the class; see NSAllowedClass.
    void (*throwPointer)();
};

/// A class that may come out of an archive: it tells whether another class is the same or derived from it.
struct NSAllowedClass {
    const std::type_info& type;
    /// Calls `throwPointer` and tells whether what it throws converts to a pointer to this class. The
    /// language has no other way to ask for a base class without an object, and an object of a class that
    /// was not asked for must never be made.
    bool (*catches)(void (*throwPointer)());

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

/// Makes class `T` known to the archivers under a name, from here to the end of the process.
template <class T> class NSCodingClass {
public:
    /// `name` stands for the class in archives: never change it once archives have been written. A name or
    /// class that is already known stops the process with a message.
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
/// A coder either encodes or decodes; a call of the other kind does nothing and answers the neutral value,
/// and so does one with a null key. Use it only during the call that it was given to.
class KORVID_EXPORT NSCoder {
public:
    virtual void encodeBool(bool value, NSString key) = 0;
    virtual void encodeInteger(NSInteger value, NSString key) = 0;
    /// Every bit is kept, except those that tell one NaN from another.
    virtual void encodeDouble(double value, NSString key) = 0;
    /// An object that conforms to NSSecureCoding, or one of Foundation's values: NSBoxedString, NSNumber,
    /// NSDate, NSData, NSNull, or an NSArray or NSDictionary of what may be encoded. Null is kept as null.
    /// An object that is encoded twice is one object again afterwards. Anything else makes the whole
    /// archive fail.
    virtual void encodeObject(const NSObject* object, NSString key) = 0;
    /// A text, as an NSBoxedString. Null is kept as null.
    void encodeString(const NSString& value, NSString key);

    /// True when something was encoded under `key`, null included.
    virtual bool containsValueForKey(NSString key) const = 0;
    /// The value, or the neutral one (false, 0) when there is none. The three convert numbers as NSNumber
    /// does; an object under that key makes the whole archive fail.
    virtual bool decodeBoolForKey(NSString key) = 0;
    virtual NSInteger decodeIntegerForKey(NSString key) = 0;
    virtual double decodeDoubleForKey(NSString key) = 0;
    /// The object of class `T`, or of one derived from it, under `key`; null when there is none or null was
    /// encoded. An object of another class is not made: the result is null and the whole archive fails. The
    /// objects in an array or dictionary may only be Foundation's values.
    template <class T> RetainPtr<T> decodeObjectOfClass(NSString key)
    {
        const RetainPtr<NSObject> object = decodeObject(key, NSAllowedClass::of<T>());
        return dynamic_cast<T*>(object.get());
    }
    /// The text that `encodeString` was given, under the same rules.
    NSString decodeStringForKey(NSString key);

protected:
    virtual ~NSCoder() = default;

    virtual RetainPtr<NSObject> decodeObject(const NSString& key, const NSAllowedClass& allowed) = 0;
};
