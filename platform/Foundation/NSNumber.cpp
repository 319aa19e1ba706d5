#include <Foundation/NSNumber.h>

#include <charconv>
#include <cmath>
#include <functional>

namespace {

/// 2^63: the first double beyond the range of NSInteger.
constexpr double kIntegerLimit = 9223372036854775808.0;

/// Whether the double is exactly the integer; a conversion to double alone would round large integers.
bool sameValue(NSInteger integer, double real)
{
    return real >= -kIntegerLimit && real < kIntegerLimit && std::trunc(real) == real
        && static_cast<NSInteger>(real) == integer;
}

} // namespace

NSNumber::NSNumber(bool value)
    : _kind(Kind::Boolean)
    , _integer(value)
{
}

NSNumber::NSNumber(NSInteger value)
    : _kind(Kind::Integer)
    , _integer(value)
{
}

NSNumber::NSNumber(double value)
    : _kind(Kind::Double)
    , _double(value)
{
}

NSNumber::~NSNumber() = default;

RetainPtr<NSNumber> NSNumber::numberWithBool(bool value)
{
    return adopt(new NSNumber(value));
}
RetainPtr<NSNumber> NSNumber::numberWithInteger(NSInteger value)
{
    return adopt(new NSNumber(value));
}
RetainPtr<NSNumber> NSNumber::numberWithDouble(double value)
{
    return adopt(new NSNumber(value));
}

bool NSNumber::boolValue() const
{
    return _kind == Kind::Double ? _double != 0 : _integer != 0;
}

NSInteger NSNumber::integerValue() const
{
    if (_kind != Kind::Double)
        return _integer;
    if (std::isnan(_double))
        return 0;
    if (_double >= kIntegerLimit)
        return INT64_MAX;
    return _double < -kIntegerLimit ? INT64_MIN : static_cast<NSInteger>(_double);
}

double NSNumber::doubleValue() const
{
    return _kind == Kind::Double ? _double : static_cast<double>(_integer);
}

NSString NSNumber::stringValue() const
{
    char text[32];
    const auto end = _kind == Kind::Double ? std::to_chars(text, text + sizeof text, _double).ptr
                                           : std::to_chars(text, text + sizeof text, _integer).ptr;
    return NSString(std::string_view(text, static_cast<std::size_t>(end - text)));
}

bool NSNumber::isEqual(const NSObject* other) const
{
    const auto* number = dynamic_cast<const NSNumber*>(other);
    if (!number)
        return false;
    const bool real = _kind == Kind::Double;
    const bool otherReal = number->_kind == Kind::Double;
    if (real && otherReal)
        return _double == number->_double || (std::isnan(_double) && std::isnan(number->_double));
    if (real)
        return sameValue(number->_integer, _double);
    return otherReal ? sameValue(_integer, number->_double) : _integer == number->_integer;
}

NSUInteger NSNumber::hash() const
{
    // Numbers of different kinds that are equal are equal as doubles; 0 + x turns -0 into 0.
    const double value = doubleValue();
    return std::isnan(value) ? 0 : std::hash<double>{}(0.0 + value);
}

NSString NSNumber::description() const
{
    return stringValue();
}
