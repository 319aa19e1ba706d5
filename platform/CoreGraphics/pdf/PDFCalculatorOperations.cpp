#include "CoreGraphics/pdf/PDFCalculatorOperations.h"

#include <numbers>
#include <utility>

namespace {

using Stack = PDFCalculatorStack;

constexpr double kDegree = std::numbers::pi / 180;

double finite(double number)
{
    return std::isfinite(number) ? number : 0;
}

template <double (*function)(double)> void unary(Stack& stack)
{
    stack.push(finite(function(stack.pop())));
}

template <double (*function)(double, double)> void binary(Stack& stack)
{
    const double b = stack.pop();
    const double a = stack.pop();
    stack.push(finite(function(a, b)));
}

template <bool (*function)(double, double)> void comparison(Stack& stack)
{
    const double b = stack.pop();
    const double a = stack.pop();
    stack.pushBoolean(function(a, b));
}

/// Of the bits of two integers, or of two Booleans.
template <std::int32_t (*function)(std::int32_t, std::int32_t)> void bitwise(Stack& stack)
{
    const auto operands = stack.top(2);
    const bool areBooleans = operands.size() == 2 && operands[0].isBoolean && operands[1].isBoolean;
    const std::int32_t b = stack.popInteger();
    const std::int32_t a = stack.popInteger();
    if (areBooleans)
        stack.pushBoolean(function(a, b) != 0);
    else
        stack.push(function(a, b));
}

void negateBits(Stack& stack)
{
    const auto operand = stack.top(1);
    const bool isBoolean = operand.size() == 1 && operand[0].isBoolean;
    const std::int32_t number = stack.popInteger();
    if (isBoolean)
        stack.pushBoolean(number == 0);
    else
        stack.push(~number);
}

/// To the left; to the right, with zeros, by a negative number of bits.
void shiftBits(Stack& stack)
{
    const std::int32_t shift = stack.popInteger();
    const auto bits = std::uint32_t(stack.popInteger());
    if (shift <= -32 || shift >= 32)
        stack.push(0);
    else
        stack.push(std::int32_t(shift >= 0 ? bits << shift : bits >> -shift));
}

void divideIntegers(Stack& stack)
{
    const double b = stack.popInteger();
    const double a = stack.popInteger();
    stack.push(finite(std::trunc(a / b)));
}

void remainder(Stack& stack)
{
    const double b = stack.popInteger();
    const double a = stack.popInteger();
    stack.push(finite(std::fmod(a, b)));
}

/// The angle of a vector, from 0 to below 360 degrees.
double angle(double y, double x)
{
    const double degrees = std::atan2(y, x) / kDegree;
    return degrees < 0 ? degrees + 360 : degrees;
}

void exchange(Stack& stack)
{
    if (const auto operands = stack.top(2); !operands.empty())
        std::swap(operands[0], operands[1]);
}

void duplicate(Stack& stack)
{
    const Stack::Value value = stack.popValue();
    stack.push(value);
    stack.push(value);
}

void copy(Stack& stack)
{
    for (const Stack::Value& value : stack.top(stack.popInteger()))
        stack.push(value);
}

void pushFromDepth(Stack& stack)
{
    const std::int32_t depth = stack.popInteger();
    const bool isInside = depth >= 0 && std::size_t(depth) < stack.size();
    const auto values = stack.top(isInside ? depth + 1 : -1);
    if (!values.empty())
        stack.push(values.front());
}

/// Moves the topmost of `count` values to their bottom, `steps` times; the other way round for negative
/// steps.
void roll(Stack& stack)
{
    const std::int32_t steps = stack.popInteger();
    const std::int32_t count = stack.popInteger();
    const auto values = stack.top(count);
    if (values.empty() || count == 0)
        return;
    const std::int32_t places = (steps % count + count) % count;
    std::rotate(values.begin(), values.end() - places, values.end());
}

struct NamedOperation {
    std::string_view name;
    PDFCalculatorOperation operation;
};

// Functions without linkage, since those of the standard library are overloaded. Of numbers that they are not
// defined for they return NaN or infinity, which becomes 0.
constexpr NamedOperation kOperations[] = {
    // sorted
    {"abs", unary<[](double x) { return std::fabs(x); }>},
    {"add", binary<[](double a, double b) { return a + b; }>},
    {"and", bitwise<[](std::int32_t a, std::int32_t b) { return a & b; }>},
    {"atan", binary<angle>},
    {"bitshift", shiftBits},
    {"ceiling", unary<[](double x) { return std::ceil(x); }>},
    {"copy", copy},
    {"cos", unary<[](double x) { return std::cos(x * kDegree); }>},
    {"cvi", unary<[](double x) { return std::trunc(x); }>},
    {"cvr", unary<[](double x) { return x; }>},
    {"div", binary<[](double a, double b) { return a / b; }>},
    {"dup", duplicate},
    {"eq", comparison<[](double a, double b) { return a == b; }>},
    {"exch", exchange},
    {"exp", binary<[](double a, double b) { return std::pow(a, b); }>},
    {"false", [](Stack& stack) { stack.pushBoolean(false); }},
    {"floor", unary<[](double x) { return std::floor(x); }>},
    {"ge", comparison<[](double a, double b) { return a >= b; }>},
    {"gt", comparison<[](double a, double b) { return (a > b); }>},
    {"idiv", divideIntegers},
    {"index", pushFromDepth},
    {"le", comparison<[](double a, double b) { return a <= b; }>},
    {"ln", unary<[](double x) { return std::log(x); }>},
    {"log", unary<[](double x) { return std::log10(x); }>},
    {"lt", comparison<[](double a, double b) { return a < b; }>},
    {"mod", remainder},
    {"mul", binary<[](double a, double b) { return a * b; }>},
    {"ne", comparison<[](double a, double b) { return a != b; }>},
    {"neg", unary<[](double x) { return -x; }>},
    {"not", negateBits},
    {"or", bitwise<[](std::int32_t a, std::int32_t b) { return a | b; }>},
    {"pop", [](Stack& stack) { stack.pop(); }},
    {"roll", roll},
    {"round", unary<[](double x) { return std::floor(x + 0.5); }>},
    {"sin", unary<[](double x) { return std::sin(x * kDegree); }>},
    {"sqrt", unary<[](double x) { return std::sqrt(x); }>},
    {"sub", binary<[](double a, double b) { return a - b; }>},
    {"true", [](Stack& stack) { stack.pushBoolean(true); }},
    {"truncate", unary<[](double x) { return std::trunc(x); }>},
    {"xor", bitwise<[](std::int32_t a, std::int32_t b) { return a ^ b; }>},
};

} // namespace

PDFCalculatorOperation findCalculatorOperation(std::string_view name)
{
    const auto* const found = std::ranges::lower_bound(kOperations, name, {}, &NamedOperation::name);
    return found != std::end(kOperations) && found->name == name ? found->operation : nullptr;
}
