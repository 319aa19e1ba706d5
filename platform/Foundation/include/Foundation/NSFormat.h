#pragma once

#include <Foundation/NSObject.h>

#include <concepts>
#include <initializer_list>
#include <span>
#include <type_traits>

/// One argument of a format, with its type, so that a wrong conversion cannot read invalid memory.
class KORVID_EXPORT NSFormatArgument {
public:
    /// What an argument is.
    enum class Kind { Integer, Real, Text, Object, Pointer };

    /// An integer of any size, a character, a truth value or an enumerator.
    template <class T>
    requires std::integral<T> || std::is_enum_v<T> NSFormatArgument(T value)
        : _kind(Kind::Integer)
        , _isUnsigned(isUnsignedType<T>())
        , _size(sizeof(T))
        , _integer(static_cast<long long>(value))
    {
    }
    /// A real number.
    NSFormatArgument(double value)
        : _kind(Kind::Real)
        , _real(value)
    {
    }
    /// A NUL-terminated string in UTF-8; may be null.
    NSFormatArgument(const char* utf8)
        : _kind(Kind::Text)
        , _pointer(utf8)
        , _text(utf8)
    {
    }
    /// A string; may be null.
    NSFormatArgument(const NSString& text)
        : _kind(Kind::Text)
        , _text(text)
    {
    }
    /// An object, which must live until the format is used; may be null.
    NSFormatArgument(const NSObject* object)
        : _kind(Kind::Object)
        , _pointer(object)
    {
    }
    /// An object, which must live until the format is used; may be null.
    template <class T>
    requires std::derived_from<T, NSObject> NSFormatArgument(const RetainPtr<T>& object)
        : NSFormatArgument(static_cast<const NSObject*>(object))
    {
    }
    /// An address.
    NSFormatArgument(const void* pointer)
        : _kind(Kind::Pointer)
        , _pointer(pointer)
    {
    }
    /// A null address.
    NSFormatArgument(std::nullptr_t)
        : NSFormatArgument(static_cast<const void*>(nullptr))
    {
    }

    /// What the argument is.
    Kind kind() const { return _kind; }
    /// An integer of a type without a sign; its value is `unsignedInteger()`.
    bool isUnsigned() const { return _isUnsigned; }
    /// Of an integer, sign-extended; of a real number, truncated toward zero and clamped to the range.
    long long integer() const;
    /// The integer as an unsigned one of its own size.
    unsigned long long unsignedInteger() const;
    /// The real number; of an integer its value.
    double real() const;
    /// The address; of an object or C string that of the object or string.
    const void* pointer() const { return _pointer; }
    /// What "%@" and "%s" print; "(null)" for null.
    NSString text() const;

private:
    template <class T> static constexpr bool isUnsignedType()
    {
        if constexpr (std::is_enum_v<T>)
            return std::is_unsigned_v<std::underlying_type_t<T>>;
        else
            return std::is_unsigned_v<T>;
    }

    Kind _kind;
    bool _isUnsigned = false;
    unsigned char _size = sizeof(long long);
    long long _integer = 0;
    double _real = 0;
    const void* _pointer = nullptr;
    NSString _text;
};

/// Builds a string from a format and its arguments. `NSString::stringWithFormat` and `NSLog` call it.
///
/// The grammar is that of `printf`, with flags, width, precision, "*" and positions ("%2$@"):
///
/// - `%@` and `%s` print a string or an object's description, "(null)" for null; a number as by `%d` or `%g`;
/// - `%d %i %u %x %X %o %c %C` print an integer, whose size and sign follow from its type: length modifiers
///   (l, ll, z, …) are accepted and ignored, and `%d` prints large unsigned numbers as they are; `%c` and
///   `%C` print the character of that Unicode number;
/// - `%f %e %g %a` and their capitals print a real number; `%p` an address; `%%` a percent sign.
///
/// Numbers look the same in every locale: the decimal point is a point, and "'" groups nothing. Integers and
/// reals are converted where the format expects the other. Any other mismatch prints "(mismatch)", a missing
/// argument "(missing)"; a conversion that does not exist is printed as it stands. Arguments that no
/// conversion uses are ignored. A null format gives null.
KORVID_EXPORT NSString NSFormatString(const NSString& format, std::span<const NSFormatArgument> arguments);

template <class... Args> NSString NSString::stringWithFormat(const NSString& format, const Args&... args)
{
    const std::initializer_list<NSFormatArgument> arguments{NSFormatArgument(args)...};
    return NSFormatString(format, {arguments.begin(), arguments.size()});
}
